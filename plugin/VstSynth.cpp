#include "plugin/VstSynth.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "instrument/PluginId.h"

namespace
{
constexpr char productName[] = "Brimvale";
constexpr char vendorName[] = "corvanex.com";

// The host's message for a turn of the mouse wheel.
constexpr VstInt32 wheelIndex = fourCharacterCode ('s', 't', 'C', 'A');
constexpr VstIntPtr wheelValue = fourCharacterCode ('W', 'h', 'e', 'e');

// tempo, musical position and bar position
constexpr VstInt32 timeFlags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid;

constexpr std::size_t longestProgramName = instrument::ProgramRecord::nameBytes;

// Copies a text and its terminator; the host's buffer holds `longest` characters and one byte more.
void copyTo (char* buffer, std::string_view text, std::size_t longest)
{
    const std::size_t length = text.copy (buffer, longest);
    buffer[length] = 0;
}
}

const engine::EventList* VstSynth::HostEvents::show (const VstEvents* hostList)
{
    list = hostList;
    return list != nullptr && list->numEvents > 0 ? this : nullptr;
}

engine::Event VstSynth::HostEvents::at (std::int32_t n) const
{
    engine::Event event;
    const VstEvent* found = list->events[n];
    if (found == nullptr)
        return event;
    event.offset = found->deltaFrames;
    if (found->type != kVstMidiType)
        return event;
    const auto& midi = *reinterpret_cast<const VstMidiEvent*> (found);
    event.kind = engine::Event::Kind::midi;
    event.status = static_cast<std::uint8_t> (midi.midiData[0]);
    event.data1 = static_cast<std::uint8_t> (midi.midiData[1]);
    event.data2 = static_cast<std::uint8_t> (midi.midiData[2]);
    return event;
}

VstSynth::VstSynth (AudioMasterCallback host, instrument::Services surroundings, EditorFactory makeEditor)
    : AudioEffectX (host, instrument::programCount, parameters::parameterCount),
      core (std::move (surroundings), *this),
      editorIsWanted (makeEditor != nullptr)
{
    programsAreChunks (true);
    if (host != nullptr)
    {
        setNumInputs (0);
        setNumOutputs (2);
        canProcessReplacing (true);
        isSynth (true);
        hasVu (false);
        hasClip (false);
        setUniqueID (instrument::pluginId);
    }
    if (makeEditor != nullptr)
        ownEditor = makeEditor (*this);
    setEditor (ownEditor.get ());
}

void VstSynth::setSampleRate (float hz)
{
    AudioEffectX::setSampleRate (hz);
    core.setSampleRate (hz);
}

// Older hosts call the accumulating entry; it overwrites just as the replacing one does.
void VstSynth::process (float** inputs, float** outputs, VstInt32 frames)
{
    processReplacing (inputs, outputs, frames);
}

void VstSynth::processReplacing (float** /*inputs*/, float** outputs, VstInt32 frames)
{
    const bool hasOutputs = outputs != nullptr;
    core.render (hasOutputs ? outputs[0] : nullptr, hasOutputs ? outputs[1] : nullptr, frames);
}

VstInt32 VstSynth::processEvents (VstEvents* events)
{
    core.processEvents (hostEvents.show (events));
    return 1;
}

std::optional<engine::Transport> VstSynth::transport ()
{
    const VstTimeInfo* time = getTimeInfo (timeFlags);
    if (time == nullptr)
        return std::nullopt;
    engine::Transport transport;
    transport.samplePosition = time->samplePos;
    if ((time->flags & kVstTempoValid) != 0)
        transport.tempo = time->tempo;
    if ((time->flags & kVstPpqPosValid) != 0)
        transport.quarterPosition = time->ppqPos;
    return transport;
}

// The numbers above the parameters are the panel's own; a host that looked them up would read past its table.
void VstSynth::setParameterAutomated (VstInt32 index, float value)
{
    if (parameters::isParameter (index))
        AudioEffectX::setParameterAutomated (index, value);
    else
        setParameter (index, value);
}

void VstSynth::getParameterLabel (VstInt32 /*index*/, char* text)
{
    *text = 0;
}

void VstSynth::getParameterDisplay (VstInt32 index, char* text)
{
    constexpr std::size_t longest = 23; // as the names, more than the interface's 8; every host holds them
    constexpr int decimals = 3;
    if (!parameters::isParameter (index))
    {
        *text = 0;
        return;
    }
    // Not printf: it would write the decimal comma of the host's language.
    std::array<char, 64> digits;
    const auto end = std::to_chars (digits.data (), digits.data () + digits.size (), getParameter (index),
                                    std::chars_format::fixed, decimals);
    copyTo (text, { digits.data (), static_cast<std::size_t> (end.ptr - digits.data ()) }, longest);
}

// The whole name, blanks included. The names are longer than the interface's 8 characters, which every host
// holds and songs with automation know.
void VstSynth::getParameterName (VstInt32 index, char* text)
{
    copyTo (text, core.parameterName (index), instrument::ParameterSlot::nameBytes - 1);
}

void VstSynth::setProgramName (const char* name)
{
    // The interface's names end with a zero; one that fills its 24 characters may come without.
    core.setProgramName ({ name, ::strnlen (name, longestProgramName) });
}

void VstSynth::getProgramName (char* text)
{
    copyTo (text, core.programName (core.getProgram ()), longestProgramName);
}

bool VstSynth::getProgramNameIndexed (VstInt32 /*category*/, VstInt32 index, char* text)
{
    if (index < 0 || index >= instrument::programCount)
        return false;
    copyTo (text, core.programName (index), longestProgramName);
    return true;
}

VstInt32 VstSynth::getChunk (void** data, bool isPreset)
{
    const std::span<const std::byte> chunk = core.getChunk (isPreset);
    *data = const_cast<std::byte*> (chunk.data ()); // the interface knows no const; hosts copy
    return static_cast<VstInt32> (chunk.size ());
}

// 1 also after an error: hosts that heard 0 would report the whole song as damaged.
VstInt32 VstSynth::setChunk (const void* data, VstIntPtr byteSize, bool isPreset)
{
    core.setChunk (data, byteSize, isPreset);
    return 1;
}

bool VstSynth::getOutputProperties (VstInt32 index, VstPinProperties* properties)
{
    if (index < 0 || index >= record.numOutputs)
        return false;
    std::snprintf (properties->label, sizeof properties->label, "%s %1d", productName,
                   static_cast<int> (index) + 1);
    properties->flags = kVstPinIsActive | kVstPinIsStereo;
    return true;
}

bool VstSynth::getEffectName (char* text)
{
    copyTo (text, productName, kVstMaxEffectNameLen);
    return true;
}

bool VstSynth::getVendorString (char* text)
{
    copyTo (text, vendorName, kVstMaxVendorStrLen);
    return true;
}

bool VstSynth::getProductString (char* text)
{
    copyTo (text, productName, kVstMaxProductStrLen);
    return true;
}

VstIntPtr VstSynth::vendorSpecific (VstInt32 index, VstIntPtr value, void* /*ptr*/, float opt)
{
    const bool isWheel = index == wheelIndex && value == wheelValue;
    return isWheel && getEditor () != nullptr && getEditor ()->onWheel (opt) ? 1 : 0;
}

VstInt32 VstSynth::canDo (const char* text)
{
    const std::string_view question = text;
    return question == "receiveVstEvents" || question == "receiveVstMidiEvent" ? 1 : -1;
}
