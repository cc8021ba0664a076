#include "audition/PulseWidth.h"

#include "resources/bank/ParameterUnits.h"

namespace audition
{
Audio pulseTone (std::vector<bank::SourceProgram> programs, float pulseWidth)
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
    ProgramRecord& record = programs.front ().record;
    record.values.fill (0.0f);
    for (const Setting& setting : settings)
        record.values[static_cast<std::size_t> (setting.parameter)] =
            bank::knobPosition (setting.parameter, setting.written).value ();
    record.values[paramOsc1PW] = pulseWidth;

    constexpr double settling = 2.0; // seconds
    constexpr double steady = 2.0;
    examples::Piece piece ("pulse", 60.0);
    piece.program (0.0, programs.front ().name ());
    piece.note ({ 0.0, settling + steady + 1.0, 60, 127 });
    const Audio audio = Player (programs).play (piece, 0.0);
    const auto from = audio.begin () + static_cast<std::ptrdiff_t> (settling * sampleRate);
    return { from, from + static_cast<std::ptrdiff_t> (steady * sampleRate) };
}
}
