#include "engine/Engine.h"
#include "parameters/Parameters.h"

namespace engine
{
using namespace parameters;

namespace
{
constexpr std::uint32_t keyboardVelocity = 120;
constexpr float keyboardRelease = -1.0f;
constexpr float notesPerUnit = 128.0f; // the keyboard's value x 128 = note

// Output gain by VolType. Other values leave the gain as it was.
struct VolTypeGain
{
    float value;
    float gain;
};
constexpr VolTypeGain volTypeGains[] = { { 0.0f, 1.6f }, { 1.0f, 1.0f }, { 2.0f, 0.52f } };

// LFO shape by LfoWave x 5. The plain triangle is the start value and cannot be chosen again.
constexpr Lfo::Shape lfoShapes[] = { Lfo::roundedTriangle, Lfo::risingSaw, Lfo::fallingSaw,
                                     Lfo::square,          Lfo::noise,     Lfo::sampleAndHold };

constexpr float rangeSemitones[] = { -24.0f, -12.0f, 0.0f, 12.0f, 24.0f }; // by range x 4

// The tables' own pitch is a little low; each has its correction (see Oscillator::setRange).
constexpr float sawCorrection = 0.441f;
constexpr float pulseCorrection = 0.396f;

constexpr float pulseCycles = 200.0f; // Osc1-PW spans cycles 0 (at 1.0) to 200 (at 0.0)

float cubed (float x)
{
    return x * x * x;
}

// The cycle of the pulse table for a pulse width.
float pulseCycleFor (float width)
{
    return static_cast<float> (truncateToInt ((1.0f - width) * pulseCycles));
}

// Voice count for a Voices value: steps of two, 2..16; 0 for values that name none.
std::int32_t voicesFor (float value)
{
    const std::int32_t k = positionOf (value, 15.0f);
    return k >= 0 && k <= 15 ? 2 * (k / 2) + 2 : 0;
}

// The table's entry at value x (entries - 1), or null outside.
template <typename T, std::size_t size>
const T* entryAt (const T (&table)[size], float value)
{
    const std::int32_t k = positionOf (value, static_cast<float> (size - 1));
    return k >= 0 && k < static_cast<std::int32_t> (size) ? &table[k] : nullptr;
}
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

void Engine::silenceVoices (bool clearGlides)
{
    for (Voice& voice : voices)
    {
        if (clearGlides)
        {
            voice.osc1.setGlide (0.0f);
            voice.osc2.setGlide (0.0f);
        }
        voice.ampEnv.kill ();
        voice.filterEnv.kill ();
    }
}

// Glide-Mono above 0 switches to mono, exactly 0 back to the voices chosen before.
void Engine::switchMono (float glideMono)
{
    if (voiceCount != 1 && glideMono > 0.0f)
    {
        voiceAllocator.reset ();
        host.notifyEditor (commandVoiceMode, 1.0f);
        voiceCount = 1;
        voiceAllocator.setVoiceLimit (1);
        silenceVoices (false);
    }
    if (voiceCount == 1 && glideMono == 0.0f)
    {
        voiceAllocator.reset ();
        host.notifyEditor (commandVoiceMode, 1.0f);
        silenceVoices (true);
        if (const std::int32_t count = voicesFor (voicesParam); count > 0)
            voiceCount = count;
        voiceAllocator.setVoiceLimit (voiceCount);
    }
}

bool Engine::setVoices (float value)
{
    if (voicesParam == value)
        return false;
    voicesParam = value;
    if (const std::int32_t count = voicesFor (value); count > 0)
        voiceCount = count;
    if (host.parameterValue (paramGlideMono) > 0.0f && voiceCount > 1)
        voiceCount = 1;
    host.notifyEditor (commandVoiceMode, 1.0f);
    voiceAllocator.setVoiceLimit (voiceCount);
    if (voiceCount != 1)
        silenceVoices (true);
    return true;
}

void Engine::parameterChanging (std::int32_t index, float value)
{
    switch (index)
    {
    case commandKeyboard:
        playKeyboard (value);
        break;
    case paramGlideAuto:
        glideAuto = value;
        break;
    case paramVolType:
        for (const VolTypeGain& row : volTypeGains)
        {
            if (value == row.value)
                volTypeGain = row.gain;
        }
        break;
    case paramGlideMono:
        switchMono (value);
        break;
    default:
        break;
    }
}

bool Engine::parameterChanged (std::int32_t index, float value)
{
    if (index == paramVoices)
        return setVoices (value);
    mapToLfo (index, value);
    if (const float* semitones = entryAt (rangeSemitones, value); semitones != nullptr)
    {
        if (index == paramOsc1Range)
            osc1RangeSemis = *semitones;
        else if (index == paramOsc2Range)
            osc2RangeSemis = *semitones;
    }
    for (Voice& voice : voices)
        mapToVoice (voice, index, value);
    return true;
}

void Engine::mapToLfo (std::int32_t index, float value)
{
    switch (index)
    {
    case paramLfoWave:
        if (const Lfo::Shape* shape = entryAt (lfoShapes, value); shape != nullptr)
            lfo.setShape (*shape);
        break;
    case paramLfoBmpSync:
        if (value == 0.0f)
            lfo.setRate (cubed (host.parameterValue (paramLfoRate)));
        break;
    case paramLfoRate:
        if (host.parameterValue (paramLfoBmpSync) == 0.0f)
            lfo.setRate (cubed (value));
        if (const SyncDivision* division = syncDivisionFor (value); division != nullptr)
            syncDivision = division->divisor;
        break;
    default:
        break;
    }
}

// Position 2 is the pulse, 1 the saw. Position 0 leaves the table: the render loop mutes the oscillator.
void Engine::setWave (Oscillator& oscillator, float value, float rangeSemis)
{
    const std::int32_t k = positionOf (value, 2.0f);
    if (k == 2 && oscillator.mode () != Oscillator::Mode::cycleSelect)
    {
        oscillator.setTable (pulseTable.samples.data (), pulseTable.length, Oscillator::Mode::cycleSelect,
                             pulseCycleLength);
        applyRange (oscillator, rangeSemis);
    }
    else if (k == 1 && oscillator.mode () != Oscillator::Mode::singleCycle)
    {
        oscillator.setTable (sawTable.samples.data (), sawTable.length, Oscillator::Mode::singleCycle, 0);
        applyRange (oscillator, rangeSemis);
    }
}

void Engine::applyRange (Oscillator& oscillator, float rangeSemis)
{
    const int offset = truncateToInt (rangeSemis + 1.0f);
    const bool isPulse = oscillator.mode () == Oscillator::Mode::cycleSelect;
    oscillator.setRange (offset, isPulse ? pulseCorrection : sawCorrection);
    oscillator.updateIncrement ();
}

void Engine::mapToVoice (Voice& voice, std::int32_t index, float value)
{
    switch (index)
    {
    case paramOsc1Wave:
    {
        const Oscillator::Mode before = voice.osc1.mode ();
        setWave (voice.osc1, value, osc1RangeSemis);
        if (voice.osc1.mode () == Oscillator::Mode::cycleSelect && voice.osc1.mode () != before)
            voice.osc1.setPulseWidth (pulseCycleFor (host.parameterValue (paramOsc1PW)));
        break;
    }
    case paramOsc1PW:
        if (voice.osc1.mode () == Oscillator::Mode::cycleSelect)
            voice.osc1.setPulseWidth (pulseCycleFor (value));
        break;
    case paramOsc1Range:
        applyRange (voice.osc1, osc1RangeSemis);
        break;
    case paramOsc2Wave: // no pulse width: oscillator 2 always plays the first cycle
        setWave (voice.osc2, value, osc2RangeSemis);
        break;
    case paramOsc2Range:
        applyRange (voice.osc2, osc2RangeSemis);
        break;
    case paramOsc2Fine:
        voice.osc2.setFine (cubed (value));
        voice.osc2.updateIncrement ();
        break;
    case paramMasterP:
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setMasterPitch (2.0f * value - 1.0f);
            oscillator->updateIncrement ();
        }
        break;
    case paramLfoPitch:
        if (value != 0.0f)
            break; // the render loop drives the pitch
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setLfoPitch (0.0f);
            oscillator->updateIncrement ();
        }
        break;
    case paramGlideMono:
        if (value > 0.0f)
        {
            voice.osc1.setGlide (value);
            voice.osc2.setGlide (value);
            voice.noise.setGlide (value);
        }
        break;
    case param1Attack:
        voice.ampEnv.setAttack (static_cast<float> (static_cast<double> (value * value) + 0.009));
        break;
    case param1Decay: // one knob for decay and release
    {
        const auto x = static_cast<float> (static_cast<double> (value * value) + 0.006);
        voice.ampEnv.setDecay (x);
        voice.ampEnv.setRelease (x);
        break;
    }
    case param1Sustain:
        voice.ampEnv.setSustain (value * value);
        break;
    case param2Attack:
        voice.filterEnv.setAttack (value * value);
        break;
    case param2Decay:
        voice.filterEnv.setDecay (value * value);
        voice.filterEnv.setRelease (value * value);
        break;
    case param2Delay: // the render loop times the delay itself
        voice.filterEnv.setLoop (value <= 0.0f);
        break;
    case paramVelocityAmp:
        voice.ampEnv.setVelocitySensitivity (value);
        break;
    case paramVelocityFilter:
        voice.filterEnv.setVelocitySensitivity (value);
        break;
    case paramFilterRez:
        voice.filter.setResonance (value);
        break;
    case paramFilterType:
        voice.filter.setType (positionOf (value, 2.0f));
        break;
    case paramSmothFilt:
        voice.filter.setSmooth (value > 0.0f);
        break;
    case paramFilterKeyTrak:
        voice.filter.setKeyTrack (value != 0.0f);
        break;
    case paramHighQuality: // inverted on purpose: 0 is on, 1 is off, anything between changes nothing
        if (value != 0.0f && value != 1.0f)
            break;
        voice.osc1.setHighQuality (value == 0.0f);
        voice.osc2.setHighQuality (value == 0.0f);
        voice.filter.setHighQuality (value == 0.0f);
        break;
    default:
        break;
    }
}
}
