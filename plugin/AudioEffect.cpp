#include "plugin/AudioEffect.h"

#include "parameters/Parameters.h"

namespace
{
// Null for a record that never was one. One that has been closed is gone with its object: nothing can be told
// of it any more, and a host must not pass it.
AudioEffect* objectOf (AEffect* effect)
{
    return effect != nullptr ? static_cast<AudioEffect*> (effect->object) : nullptr;
}

// The functions that the record points at.

VstIntPtr dispatchEntry (AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                         float opt)
{
    AudioEffect* object = objectOf (effect);
    if (object == nullptr)
        return 0;
    if (opcode != effClose)
        return object->dispatcher (opcode, index, value, ptr, opt);
    object->dispatcher (opcode, index, value, ptr, opt);
    delete object;
    return 1;
}

void processEntry (AEffect* effect, float** inputs, float** outputs, VstInt32 frames)
{
    if (AudioEffect* object = objectOf (effect))
        object->process (inputs, outputs, frames);
}

void processReplacingEntry (AEffect* effect, float** inputs, float** outputs, VstInt32 frames)
{
    if (AudioEffect* object = objectOf (effect))
        object->processReplacing (inputs, outputs, frames);
}

void processDoubleEntry (AEffect* effect, double** inputs, double** outputs, VstInt32 frames)
{
    if (AudioEffect* object = objectOf (effect))
        object->processDoubleReplacing (inputs, outputs, frames);
}

void setParameterEntry (AEffect* effect, VstInt32 index, float value)
{
    if (AudioEffect* object = objectOf (effect))
        object->setParameter (index, value);
}

float getParameterEntry (AEffect* effect, VstInt32 index)
{
    AudioEffect* object = objectOf (effect);
    return object != nullptr ? object->getParameter (index) : 0.0f;
}
}

AudioEffect::AudioEffect (AudioMasterCallback host, VstInt32 programCount, VstInt32 parameterCount)
    : audioMaster (host),
      numPrograms (programCount),
      numParams (parameterCount)
{
    record.magic = kEffectMagic;
    record.dispatcher = dispatchEntry;
    record.process = processEntry;
    record.setParameter = setParameterEntry;
    record.getParameter = getParameterEntry;
    record.numPrograms = programCount;
    record.numParams = parameterCount;
    record.numInputs = 1;
    record.numOutputs = 2;
    record.ioRatio = 1.0f;
    record.object = this;
    record.uniqueID = fourCharacterCode ('N', 'o', 'E', 'f');
    record.version = 1;
    record.processReplacing = processReplacingEntry;
    record.processDoubleReplacing = processDoubleEntry;
    canProcessReplacing (true);
}

VstIntPtr AudioEffect::callHost (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    return audioMaster != nullptr ? audioMaster (&record, opcode, index, value, ptr, opt) : 0;
}

void AudioEffect::setFlag (VstInt32 flag, bool state)
{
    record.flags = state ? record.flags | flag : record.flags & ~flag;
}

void AudioEffect::setEditor (AEffEditor* attached)
{
    editor = attached;
    setFlag (effFlagsHasEditor, attached != nullptr);
}

void AudioEffect::setParameterAutomated (VstInt32 index, float value)
{
    setParameter (index, value);
    callHost (audioMasterAutomate, index, 0, nullptr, value);
}

VstIntPtr AudioEffect::dispatcher (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    switch (opcode)
    {
    case effOpen:
        open ();
        return 0;
    case effClose:
        close ();
        return 0;
    case effSetProgram:
    case effGetProgram:
    case effSetProgramName:
    case effGetProgramName:
        return dispatchProgram (opcode, value, ptr);
    case effSetSampleRate:
        setSampleRate (opt);
        return 0;
    case effSetBlockSize:
        setBlockSize (static_cast<VstInt32> (value));
        return 0;
    case effSetBlockSizeAndSampleRate:
        setBlockSize (static_cast<VstInt32> (value));
        setSampleRate (opt);
        return 0;
    case effMainsChanged:
        if (value == 0)
            suspend ();
        else
            resume ();
        return 0;
    case effIdentify:
        return effIdentifyAnswer;
    default:
        break;
    }

    if (opcode == effEditIdle || opcode == effSetEditKnobMode)
        return dispatchEditor (opcode, index, value, ptr, opt);
    if (opcode >= effEditGetRect && opcode <= effEditClose)
        return dispatchEditor (opcode, index, value, ptr, opt);
    if (opcode == effEditKeyDown || opcode == effEditKeyUp)
        return dispatchEditor (opcode, index, value, ptr, opt);
    if (ptr == nullptr)
        return 0;

    switch (opcode)
    {
    case effGetParamLabel:
        getParameterLabel (index, static_cast<char*> (ptr));
        return 0;
    case effGetParamDisplay:
        getParameterDisplay (index, static_cast<char*> (ptr));
        return 0;
    case effGetParamName:
        getParameterName (index, static_cast<char*> (ptr));
        return 0;
    case effGetChunk:
        return getChunk (static_cast<void**> (ptr), index != 0);
    case effSetChunk:
        return setChunk (ptr, value, index != 0);
    default:
        return 0;
    }
}

VstIntPtr AudioEffect::dispatchProgram (VstInt32 opcode, VstIntPtr value, void* ptr)
{
    if (opcode == effGetProgram)
        return getProgram ();
    if (opcode == effSetProgram)
    {
        if (value >= 0 && value < numPrograms)
            setProgram (static_cast<VstInt32> (value));
        return 0;
    }
    if (ptr == nullptr)
        return 0;
    if (opcode == effSetProgramName)
        setProgramName (static_cast<const char*> (ptr));
    else
        getProgramName (static_cast<char*> (ptr));
    return 0;
}

VstIntPtr AudioEffect::dispatchEditor (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    if (editor == nullptr)
        return 0;
    VstKeyCode key = { index, static_cast<unsigned char> (value),
                       static_cast<unsigned char> (parameters::truncateToInt (opt)) }; // any float may come
    switch (opcode)
    {
    case effEditGetRect:
        return ptr != nullptr && editor->getRect (static_cast<ERect**> (ptr)) ? 1 : 0;
    case effEditOpen:
        return editor->open (ptr) ? 1 : 0;
    case effEditClose:
        editor->close ();
        return 0;
    case effEditIdle:
        editor->idle ();
        return 0;
    case effEditKeyDown:
        return editor->onKeyDown (key) ? 1 : 0;
    case effEditKeyUp:
        return editor->onKeyUp (key) ? 1 : 0;
    case effSetEditKnobMode:
        return editor->setKnobMode (static_cast<VstInt32> (value)) ? 1 : 0;
    default:
        return 0;
    }
}
