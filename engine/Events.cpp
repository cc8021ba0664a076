#include <algorithm>
#include <cmath>

#include "engine/Engine.h"
#include "parameters/Parameters.h"

namespace engine
{
using namespace parameters;

namespace
{
enum Status : unsigned
{
    statusNoteOff = 0x80,
    statusNoteOn = 0x90,
    statusController = 0xB0,
    statusProgramChange = 0xC0,
    statusPitchBend = 0xE0
};
constexpr unsigned statusMask = 0xF0; // the channel is ignored
constexpr unsigned dataMask = 0x7F;
constexpr float dataMax = 127.0f;

constexpr std::uint32_t controllerExpression = 11;
constexpr std::uint32_t controllerAllNotesOff = 123;

constexpr int bendSemitones = 2;
constexpr int highestNote = 127;
constexpr double mostCatchUpTicks =
    16777216.0; // 2^24, so that no position can hold the audio thread for long

unsigned byteOf (const VstMidiEvent& event, std::size_t n)
{
    return static_cast<unsigned char> (event.midiData[n]);
}
}

void Engine::processEvents (const VstEvents* events)
{
    const bool any = events != nullptr && events->numEvents > 0;
    blockEvents = any ? events : nullptr;
    nextEventIndex = any ? 0 : -1;

    if (!transportStopped || host.parameterValue (paramLfoBmpSync) == 0.0f)
        return;
    if (const VstTimeInfo* time = host.timeInfo (); time != nullptr)
        catchUpLfo (*time);
}

// Sets the LFO to the tempo; false where tempo or division give no rate.
bool Engine::setSyncedRate (const VstTimeInfo& time)
{
    if (!(time.tempo > 0.0) || !(syncDivision > 0.0f))
        return false;
    lfo.setRateHz (static_cast<float> (time.tempo / static_cast<double> (syncDivision)));
    return true;
}

// Lines the LFO up with the position at which the host starts to play.
void Engine::catchUpLfo (const VstTimeInfo& time)
{
    if (!setSyncedRate (time))
        return;
    lfo.resetPhase ();
    if (!(time.samplePos > 0.0) || !std::isfinite (time.samplePos))
        return;
    const double cycle = sampleRate / (time.tempo / static_cast<double> (syncDivision));
    const double remainder = std::fmod (time.samplePos, cycle);
    const double most = std::min (mostCatchUpTicks, static_cast<double> (lfo.cycleSamples ()) + 1.0);
    const auto ticks = static_cast<int> (std::min (std::floor (remainder) + 1.0, most));
    for (int tick = 0; tick < ticks; ++tick)
        lfo.tick ();
}

bool Engine::isPending () const
{
    return blockEvents != nullptr && nextEventIndex >= 0 && nextEventIndex < blockEvents->numEvents;
}

// Offset of the pending event in the block; a hole in the list counts as due at once.
std::int32_t Engine::nextOffset () const
{
    const VstEvent* event = blockEvents->events[nextEventIndex];
    return event != nullptr ? event->deltaFrames : 0;
}

// Applies what is due at the n-th sample of the block, counted from 1: an event sounds one sample ahead of
// its offset, and offsets 0 and 1 both from the first sample. That is meant. An event whose offset lies
// behind stalls the list until the block ends.
void Engine::applyPendingEvents (std::int32_t n)
{
    while (isPending ())
    {
        const std::int32_t offset = nextOffset ();
        if (offset != 0 && offset != n)
            return;
        const VstEvent* event = blockEvents->events[nextEventIndex];
        if (event != nullptr && event->type == kVstMidiType)
        {
            applyMidiEvent ();
            ++nextEventIndex;
        }
        else
        {
            // Meant as it stands: whatever follows a non-MIDI event is skipped with it.
            nextEventIndex += 2;
        }
    }
}

// Any event wakes the engine, and the block's preparations that sleep left out are made up for before it
// acts.
void Engine::wake ()
{
    silenceCounter = 0.0f;
    if (!asleep)
        return;
    asleep = false;
    beginBlock ();
}

void Engine::applyMidiEvent ()
{
    const auto& event = *reinterpret_cast<const VstMidiEvent*> (blockEvents->events[nextEventIndex]);
    const unsigned status = byteOf (event, 0) & statusMask;
    const unsigned data1 = byteOf (event, 1) & dataMask;
    const unsigned data2 = byteOf (event, 2) & dataMask;
    const float value = static_cast<float> (data2) / dataMax;

    wake ();
    switch (status)
    {
    case statusPitchBend:
        // Only the upper seven bits count, so the wheel's centre, 64, bends up by 1/127. That is meant.
        applyPitchBend (2.0f * value - 1.0f);
        break;
    case statusProgramChange:
        host.programChange (static_cast<int> (data1));
        break;
    case statusController:
        applyController (data1, value);
        break;
    case statusNoteOn:
        noteEvent (static_cast<int> (data1), data2, data2 != 0);
        break;
    case statusNoteOff:
        noteEvent (static_cast<int> (data1), data2, false);
        break;
    default:
        break;
    }
}

void Engine::applyPitchBend (float bend)
{
    for (Voice& voice : voices)
    {
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setPitchBend (bend, bendSemitones);
            oscillator->updateIncrement ();
        }
    }
}

void Engine::applyController (std::uint32_t controller, float value)
{
    host.controllerReceived (controller, value);
    if (controller == controllerExpression)
    {
        expression = value;
    }
    else if (controller == controllerAllNotesOff)
    {
        for (Voice& voice : voices)
        {
            voice.ampEnv.release ();
            voice.filterEnv.release ();
        }
        voiceAllocator.reset ();
        host.notifyEditor (commandVoiceMode, 1.0f);
    }
}

void Engine::noteEvent (int note, std::uint32_t velocity, bool isNoteOn)
{
    if (note < 0 || note > highestNote)
        return;
    asleep = false;
    if (isNoteOn)
        startNote (note, velocity);
    else
        endNote (note);
}

void Engine::startNote (int note, std::uint32_t velocity)
{
    const auto idle = [this] (int slot) { return voices[static_cast<std::size_t> (slot)].ampEnv.isIdle (); };
    const int slot = voiceAllocator.allocate (static_cast<std::uint32_t> (note), velocity, idle);
    const bool legato = slot == VoiceAllocator::noSlot; // the sounding mono voice takes the new pitch
    Voice& voice = voices[legato ? 0 : static_cast<std::size_t> (slot)];
    if (!legato)
    {
        const std::uint32_t taken = voiceAllocator.velocityOf (slot);
        voice.ampEnv.trigger (taken);
        voice.filterEnv.trigger (taken);
    }
    if (voiceCount == 1 && !legato && glideAuto != 0.0f)
    {
        voice.osc1.clearGlide ();
        voice.osc2.clearGlide ();
    }
    voice.osc1.setNote (note, true);
    voice.osc2.setNote (note, true);
    voice.filter.setKey (note);
    voice.env2DelayCounter = 0;
    host.notifyEditor (commandKeyOn, static_cast<float> (note) / 128.0f);
}

void Engine::endNote (int note)
{
    if (!voiceAllocator.contains (static_cast<std::uint32_t> (note)))
        return;
    host.notifyEditor (commandKeyOff, static_cast<float> (note) / 128.0f);
    const int slot = voiceAllocator.release (static_cast<std::uint32_t> (note));
    if (slot != VoiceAllocator::noSlot)
    {
        Voice& voice = voices[static_cast<std::size_t> (slot)];
        voice.ampEnv.release ();
        voice.filterEnv.release ();
    }
    if (voiceCount == 1)
    {
        const int held = static_cast<int> (voiceAllocator.currentNote ());
        voices[0].osc1.setNote (held, true);
        voices[0].osc2.setNote (held, true);
        voices[0].filter.setKey (held);
    }
}
}
