// A library for the tests of the host: an instrument whose sound tells what the host did. Its programs:
//   1 Clicks  left: at the sample of every note-on its velocity / 128, else 0; right: 0
//   2 Drone   the same with 0.25 added to both channels, so that its sound never ends
//   3 Tempo   left as Clicks; right: the tempo / 1000 at the first sample of every block, else 0
// It has two parameters, which do nothing, and gives its sounds as chunks or not, as PROBE_FLAGS says.
// Every break of the rules that hosts must keep gives the sample value 9.
#include "plugin/vst2.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

namespace
{
constexpr float brokenRule = 9.0f;
constexpr int drone = 1;
constexpr int tempo = 2;

constexpr std::size_t programs = 3;
using Values = std::array<float, 2>;

struct Probe : AEffect
{
    std::array<Values, programs> values = { { { 0.0f, 0.125f }, { 0.25f, 0.375f }, { 0.5f, 0.625f } } };
    std::array<std::array<char, kVstMaxProgNameLen + 1>, programs> names = { "Clicks  ", " Drone", "Tempo" };
    Values& current () { return values[static_cast<std::size_t> (selected)]; }

    AudioMasterCallback host = nullptr;
    VstEvents* events = nullptr;
    VstIntPtr selected = 0;
    bool opened = false;
    bool on = false;
    float rate = 0.0f;
    VstIntPtr largestBlock = 0;
    double nextSample = 0.0;
};

VstIntPtr dispatch (AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    Probe& probe = *static_cast<Probe*> (effect);
    if (opcode == effClose)
        delete &probe;
    else if (opcode == effOpen)
        probe.opened = true;
    else if (opcode == effSetProgram)
        probe.selected = value;
    else if (opcode == effGetProgram)
        return probe.selected;
    else if (opcode == effGetProgramNameIndexed)
        std::strcpy (static_cast<char*> (ptr), probe.names[static_cast<std::size_t> (index)].data ());
    else if (opcode == effSetProgramName)
        std::strncpy (probe.names[static_cast<std::size_t> (probe.selected)].data (),
                      static_cast<char*> (ptr), kVstMaxProgNameLen);
    else if (opcode == effGetChunk)
    {
        *static_cast<void**> (ptr) = index != 0 ? probe.current ().data () : probe.values.data ()->data ();
        return index != 0 ? sizeof probe.current () : sizeof probe.values;
    }
    else if (opcode == effSetChunk && index != 0)
        std::memcpy (probe.current ().data (), ptr, static_cast<std::size_t> (value));
    else if (opcode == effSetChunk)
        std::memcpy (probe.values.data (), ptr, static_cast<std::size_t> (value));
    else if (opcode == effSetSampleRate)
        probe.rate = opt;
    else if (opcode == effSetBlockSize)
        probe.largestBlock = value;
    else if (opcode == effMainsChanged)
        probe.on = value != 0;
    else if (opcode == effProcessEvents)
        probe.events = static_cast<VstEvents*> (ptr);
    return opcode == effGetProgramNameIndexed ? 1 : 0;
}

// What the host promised to keep: open, on, no block larger than announced, an event list for every block,
// time that moves on.
bool rulesKept (const Probe& probe, const VstTimeInfo* time, VstInt32 frames)
{
    return probe.opened && probe.on && frames <= probe.largestBlock && probe.events != nullptr &&
           time != nullptr && static_cast<float> (time->sampleRate) == probe.rate &&
           time->samplePos == probe.nextSample && (time->flags & kVstTempoValid) != 0 &&
           (time->flags & kVstPpqPosValid) != 0;
}

void process (AEffect* effect, float**, float** outputs, VstInt32 frames)
{
    Probe& probe = *static_cast<Probe*> (effect);
    const auto* time = reinterpret_cast<const VstTimeInfo*> (
        probe.host (effect, audioMasterGetTime, 0, kVstTempoValid, nullptr, 0.0f));
    for (float* output : { outputs[0], outputs[1] })
        std::fill_n (output, frames, probe.selected == drone ? 0.25f : 0.0f);
    bool kept = rulesKept (probe, time, frames);
    if (kept && probe.selected == tempo)
        outputs[1][0] = static_cast<float> (time->tempo / 1000.0);
    probe.nextSample += frames;

    VstInt32 earliest = 0;
    for (VstInt32 i = 0; kept && i < probe.events->numEvents; ++i)
    {
        VstMidiEvent event;
        std::memcpy (&event, probe.events->events[i], sizeof event);
        kept = event.type == kVstMidiType && event.deltaFrames >= earliest && event.deltaFrames < frames;
        earliest = event.deltaFrames;
        const int kind = event.midiData[0] & 0xF0;
        if (kept && kind == 0x90)
            outputs[0][event.deltaFrames] += static_cast<float> (event.midiData[2]) / 128.0f;
        if (kind == 0xC0)
            probe.selected = event.midiData[1];
    }
    probe.events = nullptr;
    if (!kept)
        outputs[0][0] = brokenRule;
}
}

extern "C" __attribute__ ((visibility ("default"))) AEffect* VSTPluginMain (AudioMasterCallback host)
{
    if (host (nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) != kVstVersion)
        return nullptr;
    auto probe = std::make_unique<Probe> ();
    probe->host = host;
    probe->magic = kEffectMagic;
    probe->dispatcher = &dispatch;
    probe->processReplacing = &process;
    probe->setParameter = [] (AEffect* effect, VstInt32 index, float value)
    { static_cast<Probe*> (effect)->current ()[static_cast<std::size_t> (index)] = value; };
    probe->getParameter = [] (AEffect* effect, VstInt32 index)
    { return static_cast<Probe*> (effect)->current ()[static_cast<std::size_t> (index)]; };
    probe->uniqueID = fourCharacterCode ('P', 'r', 'o', 'b');
    probe->version = 7;
    probe->numParams = 2;
    probe->numPrograms = programs;
    probe->numOutputs = 2;
    probe->flags = effFlagsCanReplacing | effFlagsIsSynth | PROBE_FLAGS;
    return probe.release ();
}
