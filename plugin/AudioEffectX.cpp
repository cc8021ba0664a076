#include "plugin/AudioEffectX.h"

VstIntPtr AudioEffectX::dispatcher (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    switch (opcode)
    {
    case effCanBeAutomated:
        return canParameterBeAutomated (index) ? 1 : 0;
    case effCopyProgram:
        return copyProgram (index) ? 1 : 0;
    case effGetPlugCategory:
        return getPlugCategory ();
    case effGetVendorVersion:
        return getVendorVersion ();
    case effVendorSpecific:
        return vendorSpecific (index, value, ptr, opt);
    case effGetVstVersion:
        return getVstVersion ();
    default:
        break;
    }
    if (ptr == nullptr)
        return AudioEffect::dispatcher (opcode, index, value, ptr, opt);

    auto* text = static_cast<char*> (ptr);
    switch (opcode)
    {
    case effProcessEvents:
        return processEvents (static_cast<VstEvents*> (ptr));
    case effGetProgramNameIndexed:
        return getProgramNameIndexed (static_cast<VstInt32> (value), index, text) ? 1 : 0;
    case effGetOutputProperties:
        return getOutputProperties (index, static_cast<VstPinProperties*> (ptr)) ? 1 : 0;
    case effGetEffectName:
        return getEffectName (text) ? 1 : 0;
    case effGetVendorString:
        return getVendorString (text) ? 1 : 0;
    case effGetProductString:
        return getProductString (text) ? 1 : 0;
    case effCanDo:
        return canDo (text);
    default:
        return AudioEffect::dispatcher (opcode, index, value, ptr, opt);
    }
}

VstPlugCategory AudioEffectX::getPlugCategory ()
{
    return (record.flags & effFlagsIsSynth) != 0 ? kPlugCategSynth : kPlugCategUnknown;
}

VstTimeInfo* AudioEffectX::getTimeInfo (VstInt32 filter)
{
    const VstIntPtr answer = callHost (audioMasterGetTime, 0, filter);
    return reinterpret_cast<VstTimeInfo*> (answer); // NOLINT(performance-no-int-to-ptr): the interface's way
}

bool AudioEffectX::sizeWindow (VstInt32 width, VstInt32 height)
{
    return callHost (audioMasterSizeWindow, width, height) != 0;
}

bool AudioEffectX::canHostDo (const char* text)
{
    return callHost (audioMasterCanDo, 0, 0, const_cast<char*> (text)) > 0;
}
