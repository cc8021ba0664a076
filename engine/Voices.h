#pragma once

#include <array>

#include "engine/SoundingVoices.h"
#include "engine/Voice.h"
#include "engine/VoiceAllocator.h"
#include "engine/WaveTable.h"
#include "parameters/KnobLaws.h"

namespace engine
{
inline constexpr int voiceSlots = 17; // one more than can sound; every setting goes to all of them

// All voices, and which of them play which keys: 2 to 16 that take turns, or one that plays legato. Audio
// thread, but for the set-up.
class Voices
{
public:
    // Brings every voice to its start state on the saw table. The tables outlive this object. Oscillators 1
    // and 2 are first tuned by the parameters, and start their cycle from there.
    void initialise (const WaveTable& saw, const WaveTable& noise, float sampleRateHz);

    // All parameters must be applied again afterwards.
    void setSampleRate (float hz);

    // Voices that may sound, 1..16; 1 is mono. A change forgets the held keys; what sounds goes on.
    void setCount (std::int32_t voices);
    std::int32_t count () const { return voiceCount; }
    bool isMono () const { return voiceCount == 1; }

    // In mono, whether a note that is not played legato starts at its own pitch instead of gliding there.
    void setGlidesOnlyLegato (bool on) { glidesOnlyLegato = on; }

    // `note` 0..127, `velocity` 1..127.
    void startNote (int note, std::uint32_t velocity);

    // False when the key was not held, and then nothing happens.
    bool endNote (int note);

    void releaseAll ();               // every voice goes into its release
    void forgetKeys ();               // the held keys, not the sound
    void silence (bool clearsGlides); // at once

    // Two bends: `bend`, -1..1 of the way, in Hz, to the note two semitones away; and a ratio of frequencies
    // that bends everything alike.
    void setPitchBend (float bend, float ratio);

    void endVibrato (); // the LFO no longer drives the pitch

    std::array<Voice, voiceSlots>& all ()
    {
        inLanes.leave ();
        return voices;
    }
    Voice& operator[] (int slot) { return all ()[static_cast<std::size_t> (slot)]; }

    // The voices that sound, in lanes until one of them is asked for again; null when none does.
    SoundingVoices* enterLanes ();

private:
    SoundingVoices inLanes;
    std::array<Voice, voiceSlots> voices; // use all (): what sounds may be in lanes
    VoiceAllocator allocator;
    std::int32_t voiceCount = parameters::mostVoices;
    bool glidesOnlyLegato = false;
};
}
