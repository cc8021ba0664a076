#pragma once

#include "plugin/AEffEditor.h"
#include "plugin/vst2.h"

// The door towards the host: owns the AEffect record, turns its opcodes and entry functions into calls of
// virtual operations, and wraps the host callback. Every operation has a harmless default. The host calls
// process and processEvents on its audio thread and everything else on its user-interface thread.
class AudioEffect
{
public:
    // `host` may be null (no callbacks are sent then). Both counts go into the record as they stand.
    AudioEffect (AudioMasterCallback host, VstInt32 programCount, VstInt32 parameterCount);
    virtual ~AudioEffect () = default;
    AudioEffect (const AudioEffect&) = delete;
    AudioEffect& operator= (const AudioEffect&) = delete;

    // One opcode of AEffectOpcode; unknown ones and ones with a missing pointer answer 0.
    virtual VstIntPtr dispatcher (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

    virtual void open () {}
    virtual void close () {}
    virtual void suspend () {}
    virtual void resume () {}
    virtual void setSampleRate (float hz) { sampleRate = hz; }
    virtual void setBlockSize (VstInt32 frames) { blockSize = frames; }

    // The deprecated accumulating entry, the replacing one and its 64-bit form.
    virtual void process (float** /*inputs*/, float** /*outputs*/, VstInt32 /*frames*/) {}
    virtual void processReplacing (float** inputs, float** outputs, VstInt32 frames) = 0;
    virtual void processDoubleReplacing (double** /*inputs*/, double** /*outputs*/, VstInt32 /*frames*/) {}

    virtual void setParameter (VstInt32 /*index*/, float /*value*/) {}
    virtual float getParameter (VstInt32 /*index*/) { return 0.0f; }

    // Sets the parameter on this object and tells the host, so that it records automation.
    virtual void setParameterAutomated (VstInt32 index, float value);

    virtual VstInt32 getProgram () { return currentProgram; }
    virtual void setProgram (VstInt32 program) { currentProgram = program; }
    virtual void setProgramName (const char* /*name*/) {}
    virtual void getProgramName (char* text) { *text = 0; }

    virtual void getParameterLabel (VstInt32 /*index*/, char* text) { *text = 0; }
    virtual void getParameterDisplay (VstInt32 /*index*/, char* text) { *text = 0; }
    virtual void getParameterName (VstInt32 /*index*/, char* text) { *text = 0; }

    // Points *data at memory that stays the plug-in's; answers its size in bytes.
    virtual VstInt32 getChunk (void** /*data*/, bool /*isPreset*/) { return 0; }
    virtual VstInt32 setChunk (const void* /*data*/, VstIntPtr /*byteSize*/, bool /*isPreset*/) { return 0; }

    void setUniqueID (VstInt32 id) { record.uniqueID = id; }
    void setNumInputs (VstInt32 count) { record.numInputs = count; }
    void setNumOutputs (VstInt32 count) { record.numOutputs = count; }
    void canProcessReplacing (bool state) { setFlag (effFlagsCanReplacing, state); }
    void canDoubleReplacing (bool state) { setFlag (effFlagsCanDoubleReplacing, state); }
    void programsAreChunks (bool state) { setFlag (effFlagsProgramChunks, state); }
    void hasVu (bool state) { setFlag (effFlagsHasVu, state); }
    void hasClip (bool state) { setFlag (effFlagsHasClip, state); }
    AEffect* getAeffect () { return &record; }

    // Attaches an editor (null: none) and sets or clears the has-editor flag with it. Not owned: the
    // toolkit's binding attaches itself from its constructor, before anybody could own it.
    void setEditor (AEffEditor* attached);
    AEffEditor* getEditor () { return editor; }

    float getSampleRate () const { return sampleRate; }
    VstInt32 getBlockSize () const { return blockSize; }

protected:
    // Sends one audioMaster opcode; 0 without a host.
    VstIntPtr callHost (VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr,
                        float opt = 0.0f);
    void setFlag (VstInt32 flag, bool state);

    AudioMasterCallback audioMaster;
    AEffEditor* editor = nullptr;
    float sampleRate = 44100.0f; // Hz
    VstInt32 blockSize = 1024;   // samples, the largest block the host announced
    VstInt32 numPrograms;
    VstInt32 numParams;
    VstInt32 currentProgram = 0;
    AEffect record = {};

private:
    VstIntPtr dispatchProgram (VstInt32 opcode, VstIntPtr value, void* ptr);
    VstIntPtr dispatchEditor (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);
};
