#include "engine/Envelope.h"

#include <algorithm>

#include "parameters/KnobLaws.h"

namespace engine
{
namespace
{
constexpr float silent = 0.001f;       // the level at which release and fade-out end
constexpr float fadeOutStep = 0.01f;   // level per sample
constexpr float fastAttackStep = 0.1f; // an attack this steep (ten samples) starts without a fade-out
}

void Envelope::setSampleRate (float hz)
{
    sampleRate = hz;
    recomputeSteps ();
}

void Envelope::setAttack (float x)
{
    attackTime = parameters::attackSeconds (x);
    recomputeSteps ();
}

void Envelope::setDecay (float x)
{
    decayTime = parameters::decaySeconds (x);
    recomputeSteps ();
}

void Envelope::setRelease (float x)
{
    releaseTime = parameters::releaseSeconds (x);
    recomputeSteps ();
}

void Envelope::setSustain (float level)
{
    sustainLevel = !loop && level < silent ? 0.0f : level;
}

void Envelope::setVelocitySensitivity (float amount)
{
    velocitySensitivity = amount * 0.998f + 0.001f;
}

float Envelope::stepFor (float seconds) const
{
    if (!(seconds > 0.0f))
        return 1.0f;
    return static_cast<float> (static_cast<double> (steps.peak) /
                               (static_cast<double> (sampleRate) * static_cast<double> (seconds)));
}

void Envelope::recomputeSteps ()
{
    steps.peak = velocityGain;
    steps.attack = stepFor (attackTime);
    steps.decay = stepFor (decayTime);
    steps.release = stepFor (releaseTime);
    steps.sustainTarget = sustainLevel * steps.peak;
}

void Envelope::trigger (std::uint32_t velocity)
{
    const bool fadesFirst = current.level > 0.0f && steps.attack < fastAttackStep;
    current.state = fadesFirst ? State::fadeOut : State::attack;
    const float v = static_cast<float> (velocity) / 127.0f;
    velocityGain = velocitySensitivity * (v * v) + (1.0f - velocitySensitivity);
    recomputeSteps ();
}

void Envelope::release ()
{
    if (current.level > 0.0f)
        current.state = State::release;
    else
        kill ();
}

void Envelope::kill ()
{
    current = {};
}

Envelope::Steps Envelope::stepsNow () const
{
    Steps now = steps;
    now.repeats = loop && sustainLevel == 0.0f;
    return now;
}

void Envelope::advance (Position& position, const Steps& steps)
{
    float& level = position.level;
    switch (position.state)
    {
    case State::attack:
        level += steps.attack;
        if (level >= steps.peak)
        {
            level = steps.peak;
            position.state = State::decay;
        }
        break;
    case State::decay:
        level -= steps.decay;
        if (steps.sustainTarget >= level)
        {
            level = steps.sustainTarget;
            position.state = steps.repeats ? State::attack : State::sustain;
        }
        break;
    case State::release:
        level -= steps.release;
        if (level <= silent)
            position = {};
        break;
    case State::fadeOut:
        level -= fadeOutStep;
        if (level <= silent)
            position = { 0.0f, State::attack };
        break;
    case State::sustain:
    case State::idle:
        break;
    }
}

float Envelope::tick ()
{
    advance (current, stepsNow ());
    return current.level;
}

// As many samples as one ramp covers, at least one. The loops are those of advance() with the segment fixed.
int Envelope::renderSegment (Position& position, const Steps& steps, float* out, int samples)
{
    int n = 0;
    switch (position.state)
    {
    case State::sustain:
        std::fill_n (out, samples, position.level);
        return samples;
    case State::attack:
        for (float next = position.level + steps.attack; n < samples && next < steps.peak;
             next += steps.attack)
            out[n++] = position.level = next;
        break;
    case State::decay:
        for (float next = position.level - steps.decay; n < samples && next > steps.sustainTarget;
             next -= steps.decay)
            out[n++] = position.level = next;
        break;
    case State::release:
        for (float next = position.level - steps.release; n < samples && next > silent; next -= steps.release)
            out[n++] = position.level = next;
        break;
    case State::fadeOut:
    case State::idle:
        break;
    }
    if (n < samples) // the step that ends the segment
    {
        advance (position, steps);
        out[n++] = position.level;
    }
    return n;
}

int Envelope::render (float* out, int samples)
{
    const Steps now = stepsNow ();
    int n = 0;
    while (n < samples && current.state != State::idle)
        n += renderSegment (current, now, out + n, samples - n);
    return n;
}

float Envelope::rampStep () const
{
    switch (current.state)
    {
    case State::attack:
        return steps.attack;
    case State::decay:
        return -steps.decay;
    case State::release:
        return -steps.release;
    case State::fadeOut:
        return -fadeOutStep;
    case State::sustain:
    case State::idle:
        break;
    }
    return 0.0f;
}

bool Envelope::staysOnRamp (float level, int samples) const
{
    // More than what the roundings of a run add up to.
    constexpr float margin = 1e-4f;
    const float reached = level + rampStep () * static_cast<float> (samples);
    switch (current.state)
    {
    case State::attack:
        return reached < steps.peak - margin;
    case State::decay:
        return reached > steps.sustainTarget + margin;
    case State::release:
    case State::fadeOut:
        return reached > silent + margin;
    case State::sustain:
    case State::idle:
        break;
    }
    return true;
}

void Envelope::enter (EnvelopeLanes& lanes, std::size_t lane) const
{
    lanes.level.of[lane] = current.level;
    lanes.step.of[lane] = rampStep ();
}
}
