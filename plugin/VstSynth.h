#pragma once

#include <memory>

#include "instrument/Instrument.h"
#include "plugin/AudioEffectX.h"

class VstSynth;

// Makes the editor of one synth, attached to its instrument; null when that failed, and then the library
// refuses to load.
using EditorFactory = std::unique_ptr<AEffEditor> (*) (VstSynth&);

// The instrument as a VST 2.4 host sees it: turns the interface's operations into the instrument's. The
// host's user-interface thread calls everything but process, processReplacing and processEvents, which come
// on its audio thread; a parameter or program change may come on either.
class VstSynth final : public AudioEffectX, private instrument::FormatHost
{
public:
    // Without `makeEditor` the instrument has no editor.
    VstSynth (AudioMasterCallback host, instrument::Services surroundings,
              EditorFactory makeEditor = nullptr);

    // Dispatch layer
    void resume () override { wantEvents (1); }
    void setSampleRate (float hz) override;
    void process (float** inputs, float** outputs, VstInt32 frames) override;
    void processReplacing (float** inputs, float** outputs, VstInt32 frames) override;
    VstInt32 processEvents (VstEvents* events) override;

    void setParameter (VstInt32 index, float value) override { core.setParameter (index, value); }
    void setParameterAutomated (VstInt32 index, float value) override;
    float getParameter (VstInt32 index) override { return core.getParameter (index); }
    void getParameterLabel (VstInt32 index, char* text) override;
    void getParameterDisplay (VstInt32 index, char* text) override;
    void getParameterName (VstInt32 index, char* text) override;

    VstInt32 getProgram () override { return core.getProgram (); }
    void setProgram (VstInt32 program) override { core.setProgram (program); }
    void setProgramName (const char* name) override;
    void getProgramName (char* text) override;
    bool getProgramNameIndexed (VstInt32 category, VstInt32 index, char* text) override;
    bool copyProgram (VstInt32 destination) override { return core.copyProgram (destination); }
    VstInt32 getChunk (void** data, bool isPreset) override;
    VstInt32 setChunk (const void* data, VstIntPtr byteSize, bool isPreset) override;

    bool getOutputProperties (VstInt32 index, VstPinProperties* properties) override;
    bool getEffectName (char* text) override;
    bool getVendorString (char* text) override;
    bool getProductString (char* text) override;
    VstInt32 getVendorVersion () override { return 1; }
    VstIntPtr vendorSpecific (VstInt32 index, VstIntPtr value, void* ptr, float opt) override;
    VstInt32 canDo (const char* text) override;

    // Applies the current cutoff setting to every voice's filter.
    virtual void refreshVoiceFilters () { core.refreshVoiceFilters (); }

    instrument::Instrument& instrument () { return core; }

    // False when there should be an editor and it could not be made.
    bool editorWasMade () const { return editorIsWanted == (ownEditor != nullptr); }

private:
    // The host's list in the form that the engine reads, without a copy.
    class HostEvents final : public engine::EventList
    {
    public:
        const engine::EventList* show (const VstEvents* hostList); // null for an empty one
        std::int32_t size () const override { return list->numEvents; }
        engine::Event at (std::int32_t n) const override; // a hole in the list is due at once
    private:
        const VstEvents* list = nullptr;
    };

    std::optional<engine::Transport> transport () override;

    HostEvents hostEvents;
    instrument::Instrument core;
    std::unique_ptr<AEffEditor> ownEditor;
    bool editorIsWanted;
};
