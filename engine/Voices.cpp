#include "engine/Voices.h"

namespace engine
{
namespace
{
constexpr float initialRelease = 0.2f; // 0.56 s
constexpr int noiseNote = 60;          // reads the noise table at twice its own rate
}

void Voices::initialise (const WaveTable& saw, const WaveTable& noise, float hz)
{
    allocator.setVoiceLimit (voiceCount);
    setSampleRate (hz);
    for (Voice& voice : all ())
    {
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setTable (saw.samples.data (), saw.length, Oscillator::Mode::singleCycle, 0);
            oscillator->setGlide (0.0f);
        }
        voice.noise.setTable (noise.samples.data (), noise.length, Oscillator::Mode::plain, 0);
        voice.noise.setGlide (0.0f);
        voice.noise.setNote (noiseNote, true);
        for (Envelope* envelope : { &voice.ampEnv, &voice.filterEnv })
        {
            envelope->setAttack (0.0f);
            envelope->setDecay (0.0f);
            envelope->setSustain (envelope == &voice.ampEnv ? 1.0f : 0.0f);
            envelope->setRelease (initialRelease);
            envelope->setLoop (true);
            envelope->release ();
        }
    }
}

void Voices::setSampleRate (float hz)
{
    for (Voice& voice : all ())
    {
        voice.osc1.setSampleRate (hz);
        voice.osc2.setSampleRate (hz);
        voice.noise.setSampleRate (hz);
        voice.ampEnv.setSampleRate (hz);
        voice.filterEnv.setSampleRate (hz);
        voice.filter.setSampleRate (hz);
        voice.noise.updateIncrement (); // the others follow when the parameters are applied again
    }
}

SoundingVoices* Voices::enterLanes ()
{
    return inLanes.enter ({ voices.data (), static_cast<std::size_t> (voiceCount) }) ? &inLanes : nullptr;
}

void Voices::setCount (std::int32_t count)
{
    inLanes.leave ();
    voiceCount = count;
    allocator.setVoiceLimit (count);
}

void Voices::startNote (int note, std::uint32_t velocity)
{
    const auto idle = [this] (int slot) { return (*this)[slot].ampEnv.isIdle (); };
    const int slot = allocator.allocate (static_cast<std::uint32_t> (note), velocity, idle);
    const bool legato = slot == VoiceAllocator::noSlot; // the sounding mono voice takes the new pitch
    Voice& voice = (*this)[legato ? 0 : slot];
    if (!legato)
    {
        const std::uint32_t taken = allocator.velocityOf (slot);
        voice.ampEnv.trigger (taken);
        voice.filterEnv.trigger (taken);
    }
    if (isMono () && !legato && glidesOnlyLegato)
    {
        voice.osc1.clearGlide ();
        voice.osc2.clearGlide ();
    }
    voice.osc1.setNote (note, true);
    voice.osc2.setNote (note, true);
    voice.filter.setKey (note);
    voice.filter.heal ();
    voice.env2DelayCounter = 0;
}

bool Voices::endNote (int note)
{
    if (!allocator.contains (static_cast<std::uint32_t> (note)))
        return false;
    const int slot = allocator.release (static_cast<std::uint32_t> (note));
    if (slot != VoiceAllocator::noSlot)
    {
        (*this)[slot].ampEnv.release ();
        (*this)[slot].filterEnv.release ();
    }
    if (isMono ())
    {
        const int held = static_cast<int> (allocator.currentNote ());
        (*this)[0].osc1.setNote (held, true);
        (*this)[0].osc2.setNote (held, true);
        (*this)[0].filter.setKey (held);
    }
    return true;
}

void Voices::releaseAll ()
{
    for (Voice& voice : all ())
    {
        voice.ampEnv.release ();
        voice.filterEnv.release ();
    }
}

void Voices::forgetKeys ()
{
    allocator.reset ();
}

void Voices::silence (bool clearsGlides)
{
    for (Voice& voice : all ())
    {
        if (clearsGlides)
        {
            voice.osc1.setGlide (0.0f);
            voice.osc2.setGlide (0.0f);
        }
        voice.ampEnv.kill ();
        voice.filterEnv.kill ();
    }
}

void Voices::setPitchBend (float bend, float ratio)
{
    constexpr int semitones = 2;
    for (Voice& voice : all ())
    {
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setPitchBend (bend, semitones);
            oscillator->setBendFactor (ratio);
            oscillator->updateIncrement ();
        }
    }
}

void Voices::endVibrato ()
{
    for (Voice& voice : all ())
    {
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setLfoPitch (0.0f);
            oscillator->updateIncrement ();
        }
    }
}
}
