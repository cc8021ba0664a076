// The whole bank, played and measured.

#include "audition/PulseWidth.h"
#include "audition/SoundReport.h"
#include "tests/resources/Files.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{
using audition::Audio;
using bank::SourceProgram;

const std::vector<SourceProgram>& programs ()
{
    static const std::vector<SourceProgram> all = factoryPrograms ();
    return all;
}

const SourceProgram& named (const std::string& name)
{
    return *std::ranges::find (programs (), name, &SourceProgram::name);
}

// A note of this program, held for so many seconds after its filter has settled; only the held part.
Audio held (const SourceProgram& program, int key, double beatsPerMinute, double seconds)
{
    constexpr double settling = 2.0;
    examples::Piece piece ("note", beatsPerMinute);
    piece.program (0.0, program.name ());
    piece.note (0.0, (settling + seconds) * beatsPerMinute / 60.0, key, 100);
    Audio audio = audition::Player ({ program }).play (piece, 0.0);
    audio.erase (audio.begin (),
                 audio.begin () + static_cast<std::ptrdiff_t> (settling * audition::sampleRate));
    return audio;
}

// Level, takes, velocity, peaks, attacks, DC, tails and distances.
TEST (Sounds, KeepTheirLimits)
{
    const std::vector<audition::SoundFigures> figures = audition::measureBank (programs ());
    ASSERT_EQ (figures.size (), 128u);
    for (const std::string& complaint : audition::complaints (programs (), figures))
        ADD_FAILURE () << complaint;
    int slow = 0;
    for (std::size_t n = 0; n < figures.size (); ++n)
        slow += programs ()[n].kind == bank::Kind::pad && figures[n].attack > 0.03 ? 1 : 0;
    EXPECT_GE (slow, 20) << "pads that come in over more than 30 ms";
}

double shareBelow (const Audio& audio, double hz)
{
    constexpr int size = 65536;
    const std::vector<double> power = audition::powerSpectrum (audio, 0, size);
    const auto edge = power.begin () + static_cast<std::ptrdiff_t> (hz * size / audition::sampleRate);
    return std::accumulate (power.begin (), edge, 0.0) / std::accumulate (power.begin (), power.end (), 0.0);
}

TEST (Sounds, BassesPlayInTheBassRange)
{
    for (const int key : { 24, 31, 36 })
        EXPECT_GT (shareBelow (held (named ("Sub Bass"), key, 120.0, 1.5), 120.0), 0.97) << key;
    constexpr int lowestString = 28; // E1
    int rumbling = 0;
    for (const SourceProgram& program : programs ())
    {
        if (program.kind == bank::Kind::bass)
            rumbling += shareBelow (audition::playTakes (program, { lowestString }, { { 100 } }).front (),
                                    35.0) > 0.5;
    }
    EXPECT_LE (rumbling, 4);
}

// Oscillator 1 of every sound that makes its pulse narrow, on a middle and on a high key of its range.
TEST (Sounds, NarrowPulsesStayClean)
{
    for (const SourceProgram& program : programs ())
    {
        const bool narrow = program.value (paramOsc1Wave) == 1.0f && program.value (paramOsc1PW) < 0.97f;
        if (!narrow || program.value (paramOsc1Vol) == 0.0f)
            continue;
        const int octaves = static_cast<int> (program.value (paramOsc1Range) * 4.0f) - 2;
        const int middle = program.kind == bank::Kind::bass ? 48 : 60;
        for (const auto& [key, limit] : { std::pair (middle, -25.0), std::pair (middle + 12, -20.0) })
            EXPECT_LT (audition::inharmonicShare (audition::steadyPulse (program, key),
                                                  audition::pulseToneHz (key + 12 * octaves)),
                       limit)
                << program.name () << ", key " << key;
    }
}

// A filter envelope that waits begins where it stopped when the voice fell silent; if its release is the
// longer one, that is heard as a click at the end of the delay.
TEST (Sounds, DelayedFiltersBeginWithoutAClick)
{
    const auto edges = [] (const Audio& audio, double second) // power of the second difference in 10 ms
    {
        double sum = 0.0;
        const auto first = static_cast<std::size_t> (second * audition::sampleRate);
        for (std::size_t n = first; n < first + audition::sampleRate / 100; ++n)
            sum += std::pow (static_cast<double> (audio[n] - 2.0f * audio[n - 1] + audio[n - 2]), 2.0);
        return 10.0 * std::log10 (sum);
    };
    for (const SourceProgram& program : programs ())
    {
        const double delay = static_cast<double> (program.value (param2Delay));
        if (delay < 0.02)
            continue;
        for (const Audio& take : audition::playTakes (program, { 60 }, std::vector<int> (8, 100)))
            EXPECT_LT (edges (take, delay) - edges (take, delay - 0.01), 6.0) << program.name ();
    }
}

TEST (Sounds, ListNamesEverySound)
{
    const std::string list = bytesOf ("docs/sounds.md");
    for (std::size_t n = 0; n < programs ().size (); ++n)
    {
        const SourceProgram& program = programs ()[n];
        const std::string row = "| " + std::to_string (n) + " | " + program.name () + " | " +
                                std::string (kindName (program.kind)) + " | " + program.about + " |";
        EXPECT_NE (list.find (row), std::string::npos) << row;
    }
}
}
