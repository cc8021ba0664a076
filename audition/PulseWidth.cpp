#include "audition/PulseWidth.h"

#include "resources/bank/ParameterUnits.h"

namespace audition
{
namespace
{
// A note of the program, once its filter has settled.
Audio steady (const bank::SourceProgram& program, int key)
{
    constexpr double settling = 0.5; // seconds
    constexpr double length = 2.0;
    examples::Piece piece ("tone", 60.0);
    piece.program (0.0, program.name ());
    piece.note (0.0, settling + length + 1.0, key, 127);
    const Audio audio = Player ({ program }).play (piece, 0.0);
    const auto from = audio.begin () + static_cast<std::ptrdiff_t> (settling * sampleRate);
    return { from, from + static_cast<std::ptrdiff_t> (length * sampleRate) };
}
}

Audio pulseTone (float pulseWidth, int key)
{
    struct Setting
    {
        Param parameter;
        const char* written;
    };
    // The low-pass fully open, as a bright sound would use the knob.
    constexpr Setting settings[] = {
        { paramVolume, "100%" },       { paramOsc1Vol, "100%" },  { paramOsc1Wave, "pulse" },
        { paramOsc1Range, "+0oct" },   { paramOsc2Wave, "off" },  { paramMasterP, "0.5" },
        { param1Sustain, "100%" },     { param1Attack, "2ms" },   { param1Decay, "20ms" },
        { param2ToFilter, "+0%" },     { paramFilterRez, "30%" }, { paramFilterType, "lowpass" },
        { paramFilterFreq, "6560Hz" }, { paramLfoFilter, "+0%" },
    };
    bank::SourceProgram program;
    program.record.setName ("pulse");
    program.record.values.fill (0.0f);
    for (const Setting& setting : settings)
        program.record.values[static_cast<std::size_t> (setting.parameter)] =
            bank::knobPosition (setting.parameter, setting.written).value ();
    program.record.values[paramOsc1PW] = pulseWidth;
    return steady (program, key);
}

Audio steadyPulse (bank::SourceProgram program, int key)
{
    constexpr std::pair<Param, float> stilled[] = { { paramOsc2Wave, 0.0f },  { paramNoise, 0.0f },
                                                    { paramLfoPitch, 0.0f },  { paramLfoFilter, 0.5f },
                                                    { param2ToFilter, 0.5f }, { param1Sustain, 1.0f },
                                                    { paramGlideMono, 0.0f } };
    for (const auto& [parameter, value] : stilled)
        program.record.values[static_cast<std::size_t> (parameter)] = value;
    return steady (program, key);
}
}
