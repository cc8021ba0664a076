#include "engine/Engine.h"

#include <algorithm>
#include <array>

#include "engine/Controllers.h"
#include "engine/PitchLaw.h"

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
constexpr int dataBits = 7;
constexpr int bendCentre = 8192; // of a pitch wheel's 14 bits
constexpr float dataMax = 127.0f;

constexpr int highestNote = 127;

constexpr std::uint32_t keyboardVelocity = 120;
constexpr float keyboardRelease = -1.0f;
constexpr float notesPerUnit = 128.0f; // the keyboard's value x 128 = note
}

Engine::Engine (WaveTables waveTables, EngineHost& owner, const VoiceKernel& kernel)
    : host (owner),
      tables (std::move (waveTables)),
      renderer (voices, lfo, kernel)
{
    const float hz = host.sampleRate ();
    sampleRate = static_cast<double> (hz);
    lfo.setSampleRate (hz);
    lfo.setShape (Lfo::triangle);
    lfo.setRateRange (lfoFastestHz, lfoLongestPeriod);
    voices.initialise (tables.saw, tables.noise, hz);
}

void Engine::parameterChange (std::int32_t index, float value, bool unclamped)
{
    mapping.change (index, value, unclamped);
}

void Engine::selectProgram (const ParameterValues& values, std::uint64_t unclamped)
{
    mapping.select (values, unclamped);
}

void Engine::setAdditions (const Additions& wanted)
{
    if (wanted == additions)
        return;
    const bool pedalChanges = wanted.pedalAndWheel != additions.pedalAndWheel;
    additions = wanted;
    lfoSync.lock (additions.songLock);
    if (!pedalChanges)
        return;
    endKeptKeys ();
    const float depth = pedalAndWheel.vibratoDepth ();
    pedalAndWheel.clear ();
    endVibratoSince (depth);
    bendPitch ();
    takeParameters ();
}

void Engine::playKeyboard (float value)
{
    if (value == keyboardRelease)
    {
        noteEvent (keyboardNote, keyboardVelocity, false);
        keyboardNote = -1;
        return;
    }
    if (keyboardNote != -1)
        noteEvent (keyboardNote, keyboardVelocity, false);
    keyboardNote = positionOf (value, notesPerUnit);
    noteEvent (keyboardNote, keyboardVelocity, true);
}

void Engine::refreshVoiceFilters ()
{
    for (Voice& voice : voices.all ())
        voice.filter.setCutoff (voice.filter.keyTrackedBase (mapping.value (paramFilterFreq)));
}

void Engine::processEvents (const EventList* events)
{
    intake.take (events);
    if (!lfoSync.isStopped () || mapping.value (paramLfoBmpSync) == 0.0f)
        return;
    if (const auto transport = host.transport ())
        lfoSync.eventsArrive (*transport, mapping.syncDivision (), sampleRate);
}

// What a block prepares before its first sample while the engine is awake.
void Engine::beginBlock ()
{
    followSampleRate ();
    if (mapping.value (paramLfoBmpSync) != 0.0f)
    {
        if (const auto transport = host.transport ())
            lfoSync.blockBegins (*transport, mapping.syncDivision (), sampleRate, samplesRendered);
    }
    takeParameters ();
}

// At the start of a block, and at the sample of every event that can change one, so that what MIDI does never
// depends on the host's block size.
void Engine::takeParameters ()
{
    const Renderer::Performance performance = { expression * pedalAndWheel.gain (),
                                                pedalAndWheel.vibratoDepth () };
    renderer.takeParameters (mapping, performance, sampleRate);
}

void Engine::followSampleRate ()
{
    const float hz = host.sampleRate ();
    if (static_cast<double> (hz) == sampleRate)
        return;
    sampleRate = static_cast<double> (hz);
    lfo.setSampleRate (hz);
    voices.setSampleRate (hz);
    mapping.applyAll ();
}

void Engine::renderBlock (float* left, float* right, std::int32_t frames)
{
    samplesRendered = 0;
    if (!renderer.isAsleep ())
        beginBlock ();
    std::array<float, longestRun> mono;
    for (std::int32_t done = 0; done < frames;)
    {
        applyEvents (std::min (done + 1, frames - 1)); // the block has no sample for offsets from `frames` on
        const bool isAsleep = renderer.isAsleep ();
        const std::int32_t run =
            intake.samplesToNext (done, isAsleep ? frames - done : std::min (frames - done, longestRun));
        if (!isAsleep)
            renderer.renderRun (mono.data (), run);
        for (float* const channel : { left, right })
        {
            if (channel == nullptr)
                continue;
            if (isAsleep)
                std::fill_n (channel + done, run, 0.0f);
            else
                std::copy_n (mono.data (), run, channel + done);
        }
        done += run;
        samplesRendered = done;
    }
    intake.clear ();
}

void Engine::applyEvents (std::int32_t n)
{
    while (const auto event = intake.nextDue (n))
        apply (*event);
}

// Any message wakes the engine, and the block's preparations that sleep left out are made up for before it
// acts. A parameter's change does not: a host that automates a silent instrument does not pay for it.
void Engine::wake ()
{
    renderer.restartSilence ();
    if (!renderer.isAsleep ())
        return;
    renderer.wake ();
    beginBlock ();
}

void Engine::apply (const Event& event)
{
    if (event.kind == Event::Kind::parameter)
    {
        host.parameterReceived (event.index, event.value);
        if (!renderer.isAsleep ())
            takeParameters ();
        return;
    }
    wake ();
    const unsigned data1 = event.data1 & dataMask;
    const unsigned data2 = event.data2 & dataMask;
    switch (event.status & statusMask)
    {
    case statusPitchBend:
        bendPosition = static_cast<int> (data2 << dataBits | data1) - bendCentre;
        bendPitch ();
        break;
    case statusProgramChange:
        host.programChange (static_cast<int> (data1));
        takeParameters ();
        break;
    case statusController:
        applyController (data1, data2);
        takeParameters ();
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

// As it has always been, only the upper seven bits count, and their middle is 63.5: a wheel at rest, 64,
// bends up by 1/127 of two semitones, which songs made with this instrument have in their tuning.
void Engine::bendPitch ()
{
    if (!bendPosition)
        return;
    if (additions.pedalAndWheel)
    {
        const double semitones = pedalAndWheel.bendSemitones (*bendPosition);
        voices.setPitchBend (0.0f, static_cast<float> (pitchLaw::ratioOfSemitones (semitones)));
        return;
    }
    const int upperBits = (*bendPosition + bendCentre) >> dataBits;
    voices.setPitchBend (2.0f * (static_cast<float> (upperBits) / dataMax) - 1.0f, 1.0f);
}

void Engine::applyController (std::uint32_t controller, std::uint32_t data)
{
    const float value = static_cast<float> (data) / dataMax;
    const bool bound = host.controllerReceived (controller, value);
    if (controller == controllerExpression)
        expression = value;
    else if (controller == controllerAllNotesOff)
        endAllNotes ();
    else if (additions.pedalAndWheel && !bound)
        applyPedalOrWheel (controller, data);
}

void Engine::applyPedalOrWheel (std::uint32_t controller, std::uint32_t data)
{
    const float depth = pedalAndWheel.vibratoDepth ();
    switch (controller)
    {
    case controllerModulation:
        pedalAndWheel.turnWheel (data);
        break;
    case controllerDataEntry:
        if (pedalAndWheel.enterData (data))
            bendPitch ();
        break;
    case controllerVolume:
        pedalAndWheel.setVolume (data);
        break;
    case controllerSustain:
        pedalAndWheel.setPedal (data);
        if (!pedalAndWheel.isPedalDown ())
            endKeptKeys ();
        break;
    case controllerAllSoundOff:
        silence ();
        break;
    case controllerReset:
        pedalAndWheel.resetControllers ();
        endKeptKeys ();
        expression = 1.0f;
        bendPosition = 0;
        bendPitch ();
        break;
    default:
        if (controller >= controllerFirstParameterNumber && controller <= controllerLastParameterNumber)
            pedalAndWheel.chooseParameter (controller, data);
        break;
    }
    endVibratoSince (depth);
}

// What the LFO has last done to the pitch would stay otherwise.
void Engine::endVibratoSince (float depthBefore)
{
    if (depthBefore > 0.0f && pedalAndWheel.vibratoDepth () == 0.0f && mapping.value (paramLfoPitch) == 0.0f)
        voices.endVibrato ();
}

void Engine::endKeptKeys ()
{
    const PedalAndWheel::Strokes kept = pedalAndWheel.takeAllKept ();
    for (int key = 0; key < PedalAndWheel::keys; ++key)
        endStrokes (key, kept[static_cast<std::size_t> (key)]);
}

void Engine::endAllNotes ()
{
    pedalAndWheel.takeAllKept ();
    voices.releaseAll ();
    voices.forgetKeys ();
    host.allKeysEnded ();
}

void Engine::silence ()
{
    voices.silence (false);
    endAllNotes ();
}

bool Engine::endNote (int note)
{
    const bool wasHeld = voices.endNote (note);
    if (wasHeld)
        host.keyEnded (note);
    return wasHeld;
}

void Engine::endStrokes (int note, int strokes)
{
    while (strokes > 0 && endNote (note))
        --strokes;
}

void Engine::noteEvent (int note, std::uint32_t velocity, bool isNoteOn)
{
    if (note < 0 || note > highestNote)
        return;
    renderer.wake ();
    if (isNoteOn)
    {
        endStrokes (note, pedalAndWheel.takeKept (note)); // a new one has a velocity of its own
        voices.startNote (note, velocity);
        host.keyStarted (note);
    }
    else if (pedalAndWheel.isPedalDown ())
    {
        pedalAndWheel.keep (note);
    }
    else
    {
        endNote (note);
    }
}
}
