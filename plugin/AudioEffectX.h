#pragma once

#include "plugin/AudioEffect.h"

// The second half of the dispatch layer: events, names, properties, capabilities and the host queries of
// the 2.x interface. Adds no state to AudioEffect.
class AudioEffectX : public AudioEffect
{
public:
    using AudioEffect::AudioEffect;

    VstIntPtr dispatcher (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) override;

    virtual bool canParameterBeAutomated (VstInt32 /*index*/) { return true; }

    // Copies at most kVstMaxProgNameLen characters of the program's name; false when there is no such
    // program.
    virtual bool getProgramNameIndexed (VstInt32 /*category*/, VstInt32 /*index*/, char* /*text*/)
    {
        return false;
    }
    virtual bool copyProgram (VstInt32 /*destination*/) { return false; }
    virtual bool getOutputProperties (VstInt32 /*index*/, VstPinProperties* /*properties*/) { return false; }

    // Audio thread. The list is the host's and stays valid until the next process call has returned.
    virtual VstInt32 processEvents (VstEvents* /*events*/) { return 0; }

    virtual bool getEffectName (char* /*text*/) { return false; }
    virtual bool getVendorString (char* /*text*/) { return false; }
    virtual bool getProductString (char* /*text*/) { return false; }
    virtual VstInt32 getVendorVersion () { return 0; }
    virtual VstIntPtr vendorSpecific (VstInt32 /*index*/, VstIntPtr /*value*/, void* /*ptr*/, float /*opt*/)
    {
        return 0;
    }

    // 1 yes, -1 no, 0 don't know.
    virtual VstInt32 canDo (const char* /*text*/) { return 0; }
    virtual VstInt32 getVstVersion () { return kVstVersion; }
    virtual VstPlugCategory getPlugCategory ();

    void isSynth (bool state) { setFlag (effFlagsIsSynth, state); }

    // Begin and end of a user's drag, so that the host groups what it records.
    bool beginEdit (VstInt32 index) { return callHost (audioMasterBeginEdit, index) != 0; }
    bool endEdit (VstInt32 index) { return callHost (audioMasterEndEdit, index) != 0; }

    // Host queries; all answer "no" without a host.
    VstTimeInfo* getTimeInfo (VstInt32 filter);
    void wantEvents (VstInt32 filter) { callHost (audioMasterWantMidi, 0, filter); }
    bool sizeWindow (VstInt32 width, VstInt32 height);
    bool canHostDo (const char* text);
    bool updateDisplay () { return callHost (audioMasterUpdateDisplay) != 0; }
};
