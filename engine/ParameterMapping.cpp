#include "engine/ParameterMapping.h"

namespace engine
{
using namespace parameters;

namespace
{
// LFO shape by LfoWave. The plain triangle is the start value and cannot be chosen again.
Lfo::Shape shapeOf (LfoWave wave)
{
    switch (wave)
    {
    case LfoWave::triangle:
        return Lfo::roundedTriangle;
    case LfoWave::risingSaw:
        return Lfo::risingSaw;
    case LfoWave::fallingSaw:
        return Lfo::fallingSaw;
    case LfoWave::square:
        return Lfo::square;
    case LfoWave::noise:
        return Lfo::noise;
    default:
        return Lfo::sampleAndHold;
    }
}

bool isUnclamped (std::uint64_t flags, std::int32_t index)
{
    return ((flags >> index) & 1u) != 0;
}
}

void ParameterMapping::change (std::int32_t index, float value, bool unclamped)
{
    if (!isParameter (index))
        return;
    // These three see the value as it was sent, before it is limited.
    if (index == paramGlideAuto)
        voices.setGlidesOnlyLegato (value != 0.0f);
    else if (index == paramVolType)
        gain = parameters::volTypeGain (value).value_or (gain);
    else if (index == paramGlideMono)
        switchMono (value);

    const float usable = usableValue (index, storableValue (index, value, unclamped));
    values[static_cast<std::size_t> (index)] = usable;
    if (index == paramVoices)
    {
        setVoices (usable);
        return;
    }
    mapToLfo (index, usable);
    if (index == paramOsc1Range)
        osc1RangeSemis = positionIn (rangeSemitones, usable).value_or (osc1RangeSemis);
    else if (index == paramOsc2Range)
        osc2RangeSemis = positionIn (rangeSemitones, usable).value_or (osc2RangeSemis);
    for (Voice& voice : voices.all ())
        mapToVoice (voice, index, usable);
}

void ParameterMapping::select (const ParameterValues& newValues, std::uint64_t unclamped)
{
    values = newValues;
    for (std::int32_t index = 0; index < parameterCount; ++index)
        change (index, newValues[static_cast<std::size_t> (index)], isUnclamped (unclamped, index));
}

// Glide-Mono above 0 switches to mono, exactly 0 back to the voices chosen before.
void ParameterMapping::switchMono (float glideMono)
{
    if (!voices.isMono () && glideMono > 0.0f)
    {
        voices.forgetKeys ();
        host.allKeysEnded ();
        voices.setCount (1);
        voices.silence (false);
    }
    if (voices.isMono () && glideMono == 0.0f)
    {
        voices.forgetKeys ();
        host.allKeysEnded ();
        voices.silence (true);
        voices.setCount (voiceCountFor (voicesParam).value_or (voices.count ()));
    }
}

void ParameterMapping::setVoices (float knob)
{
    if (voicesParam == knob)
        return;
    voicesParam = knob;
    std::int32_t count = voiceCountFor (knob).value_or (voices.count ());
    if (value (paramGlideMono) > 0.0f)
        count = 1;
    host.allKeysEnded ();
    voices.setCount (count);
    if (!voices.isMono ())
        voices.silence (true);
}

void ParameterMapping::mapToLfo (std::int32_t index, float knob)
{
    switch (index)
    {
    case paramLfoWave:
        if (const auto wave = positionIn (lfoWaves, knob))
            lfo.setShape (shapeOf (*wave));
        break;
    case paramLfoBmpSync:
        if (knob == 0.0f)
            lfo.setRate (lfoRateControl (value (paramLfoRate)));
        break;
    case paramLfoRate:
        if (value (paramLfoBmpSync) == 0.0f)
            lfo.setRate (lfoRateControl (knob));
        if (const auto found = syncDivisionFor (knob))
            division = found->divisor;
        break;
    default:
        break;
    }
}

// Off leaves the table: the renderer mutes the oscillator.
void ParameterMapping::setWave (Oscillator& oscillator, float knob, float rangeSemis)
{
    const auto wave = positionIn (oscillatorWaves, knob);
    if (wave == OscillatorWave::pulse && oscillator.mode () != Oscillator::Mode::cycleSelect)
    {
        oscillator.setTable (tables.pulse.samples.data (), tables.pulse.length, Oscillator::Mode::cycleSelect,
                             pulseCycleLength);
        applyRange (oscillator, rangeSemis);
    }
    else if (wave == OscillatorWave::saw && oscillator.mode () != Oscillator::Mode::singleCycle)
    {
        oscillator.setTable (tables.saw.samples.data (), tables.saw.length, Oscillator::Mode::singleCycle, 0);
        applyRange (oscillator, rangeSemis);
    }
}

void ParameterMapping::applyRange (Oscillator& oscillator, float rangeSemis)
{
    const int offset = truncateToInt (rangeSemis + 1.0f);
    const bool isPulse = oscillator.mode () == Oscillator::Mode::cycleSelect;
    oscillator.setRange (offset, isPulse ? pulseCorrection : sawCorrection);
    oscillator.updateIncrement ();
}

void ParameterMapping::mapToVoice (Voice& voice, std::int32_t index, float knob)
{
    switch (index)
    {
    case paramOsc1Wave:
    {
        const Oscillator::Mode before = voice.osc1.mode ();
        setWave (voice.osc1, knob, osc1RangeSemis);
        if (voice.osc1.mode () == Oscillator::Mode::cycleSelect && voice.osc1.mode () != before)
            voice.osc1.setPulseWidth (pulseCycle (value (paramOsc1PW)));
        break;
    }
    case paramOsc1PW:
        if (voice.osc1.mode () == Oscillator::Mode::cycleSelect)
            voice.osc1.setPulseWidth (pulseCycle (knob));
        break;
    case paramOsc1Range:
        applyRange (voice.osc1, osc1RangeSemis);
        break;
    case paramOsc2Wave: // no pulse width: oscillator 2 always plays the first cycle
        setWave (voice.osc2, knob, osc2RangeSemis);
        break;
    case paramOsc2Range:
        applyRange (voice.osc2, osc2RangeSemis);
        break;
    case paramOsc2Fine:
        voice.osc2.setFine (fineAmount (knob));
        voice.osc2.updateIncrement ();
        break;
    case paramMasterP:
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setMasterPitch (masterPitch (knob));
            oscillator->updateIncrement ();
        }
        break;
    case paramLfoPitch:
        if (knob != 0.0f)
            break; // the renderer drives the pitch
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setLfoPitch (0.0f);
            oscillator->updateIncrement ();
        }
        break;
    case paramGlideMono:
        if (knob > 0.0f)
        {
            voice.osc1.setGlide (knob);
            voice.osc2.setGlide (knob);
            voice.noise.setGlide (knob);
        }
        break;
    case param1Attack:
        voice.ampEnv.setAttack (ampAttackControl (knob));
        break;
    case param1Decay: // one knob for decay and release
        voice.ampEnv.setDecay (ampDecayControl (knob));
        voice.ampEnv.setRelease (ampDecayControl (knob));
        break;
    case param1Sustain:
        voice.ampEnv.setSustain (sustainLevel (knob));
        break;
    case param2Attack:
        voice.filterEnv.setAttack (filterTimeControl (knob));
        break;
    case param2Decay:
        voice.filterEnv.setDecay (filterTimeControl (knob));
        voice.filterEnv.setRelease (filterTimeControl (knob));
        break;
    case param2Delay: // the renderer times the delay itself
        voice.filterEnv.setLoop (knob <= 0.0f);
        break;
    case paramVelocityAmp:
        voice.ampEnv.setVelocitySensitivity (knob);
        break;
    case paramVelocityFilter:
        voice.filterEnv.setVelocitySensitivity (knob);
        break;
    case paramFilterRez:
        voice.filter.setResonance (knob);
        break;
    case paramFilterType:
        voice.filter.setType (positionIn (filterTypes, knob).value_or (0));
        break;
    case paramSmothFilt:
        voice.filter.setSmooth (knob > 0.0f);
        break;
    case paramFilterKeyTrak:
        voice.filter.setKeyTrack (knob != 0.0f);
        break;
    case paramHighQuality: // inverted on purpose: 0 is on, 1 is off, anything between changes nothing
        if (knob != 0.0f && knob != 1.0f)
            break;
        voice.osc1.setHighQuality (knob == 0.0f);
        voice.osc2.setHighQuality (knob == 0.0f);
        voice.filter.setHighQuality (knob == 0.0f);
        break;
    default:
        break;
    }
}
}
