#pragma once

#include <array>
#include <cstdint>

namespace engine
{
// What MIDI controllers do beside the two that the engine has always known (11 and 123), while the addition
// is switched on: sustain pedal (64), modulation wheel (1), volume (7), reset (121), and the range of the
// pitch wheel (RPN 0). Keeps what they say; Engine does it. Audio thread. `data` is 0..127 throughout.
class PedalAndWheel
{
public:
    static constexpr int keys = 128;
    using Strokes = std::array<std::uint8_t, keys>; // how often each key was let go

    // Everything at rest, also the wheel's range.
    void clear () { *this = PedalAndWheel (); }

    void turnWheel (std::uint32_t data); // controller 1
    void setVolume (std::uint32_t data); // controller 7
    void setPedal (std::uint32_t data);  // controller 64: down from 64 on
    void resetControllers ();            // controller 121: all but the volume and the wheel's range
    void chooseParameter (std::uint32_t controller, std::uint32_t data); // controllers 98 to 101
    bool enterData (std::uint32_t data); // controller 6; true when it set the pitch wheel's range

    // A position of the pitch wheel, -8192 at its lower end, 0 at rest, 8191 at its upper end, as semitones.
    double bendSemitones (int position) const;

    // Added to the LFO's pitch depth, as parameters::lfoPitchDepth.
    float vibratoDepth () const { return vibrato; }
    float gain () const { return volumeGain; }

    bool isPedalDown () const { return pedalDown; }

    // A key that was let go while the pedal is down, and sounds on; one that is struck again, or all when the
    // pedal goes up, which do not wait any more. Strokes are counted, for two channels may hold one key, and
    // in mono each must be ended.
    void keep (int key);
    int takeKept (int key);
    Strokes takeAllKept ();

private:
    static constexpr std::uint32_t none = 127; // the parameter number that says: no parameter
    static constexpr int initialRange = 2;

    bool pedalDown = false;
    Strokes kept = {};
    float vibrato = 0.0f;
    float volumeGain = 1.0f;
    std::uint32_t numberHigh = none; // of the registered parameter that data entry sets
    std::uint32_t numberLow = none;
    int rangeSemitones = initialRange;
};
}
