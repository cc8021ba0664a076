#pragma once

#include <array>
#include <cstdint>

#include "engine/EngineHost.h"
#include "engine/Lfo.h"
#include "engine/Voices.h"
#include "engine/WaveTable.h"
#include "parameters/KnobLaws.h"
#include "parameters/Parameters.h"

namespace engine
{
// One value for each parameter.
using ParameterValues = std::array<float, parameters::parameterCount>;

// Turns parameter changes into settings of voices and LFO. Keeps the values as the engine has them, so that
// what one parameter means beside another never depends on what is set elsewhere meanwhile. Audio thread.
class ParameterMapping
{
public:
    ParameterMapping (Voices& allVoices, Lfo& sharedLfo, const WaveTables& waveTables, EngineHost& owner)
        : voices (allVoices),
          lfo (sharedLfo),
          tables (waveTables),
          host (owner)
    {
    }

    // A parameter gets a new value, which the store rule limits: `unclamped` is the rule's exception.
    void change (std::int32_t index, float value, bool unclamped);

    // All parameters change at once, in ascending order; bit n of `unclamped` belongs to parameter n. Each is
    // applied while the others, also the later ones, already have their new values.
    void select (const ParameterValues& newValues, std::uint64_t unclamped);

    // Everything once more, after the sample rate has changed.
    void applyAll () { select (ParameterValues (values), ~std::uint64_t{ 0 }); }

    float value (std::int32_t index) const { return values[static_cast<std::size_t> (index)]; }
    float volTypeGain () const { return gain; }
    float syncDivision () const { return division; } // tempo / this = LFO cycles per second; 0: none yet

private:
    void switchMono (float glideMono);
    void setVoices (float value);
    void mapToLfo (std::int32_t index, float value);
    void mapToVoice (Voice& voice, std::int32_t index, float value);
    void setWave (Oscillator& oscillator, float value, float rangeSemis);
    static void applyRange (Oscillator& oscillator, float rangeSemis);

    Voices& voices;
    Lfo& lfo;
    const WaveTables& tables;
    EngineHost& host;

    ParameterValues values = {};
    float voicesParam = 1.0f; // Voices as last applied
    float gain = 0.5f;
    float division = 0.0f;
    float osc1RangeSemis = 0.0f; // semitones
    float osc2RangeSemis = 0.0f;
};
}
