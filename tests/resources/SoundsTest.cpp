// The whole bank, played and measured.

#include "audition/SoundReport.h"
#include "tests/resources/Files.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace
{
using bank::SourceProgram;

// A note of this program, held for so many seconds after its filter has settled; only the held part.
audition::Audio held (const std::vector<SourceProgram>& programs, const std::string& name, int key,
                      double beatsPerMinute, double seconds)
{
    constexpr double settling = 2.0;
    examples::Piece piece (name, beatsPerMinute);
    piece.program (0.0, name);
    piece.note ({ 0.0, (settling + seconds) * beatsPerMinute / 60.0, key, 100 });
    audition::Audio audio = audition::Player (programs).play (piece, 0.0);
    audio.erase (audio.begin (),
                 audio.begin () + static_cast<std::ptrdiff_t> (settling * audition::sampleRate));
    return audio;
}

TEST (Sounds, KeepTheirLimits)
{
    const std::vector<SourceProgram> programs = factoryPrograms ();
    const std::vector<audition::SoundFigures> figures = audition::measureBank (programs);
    ASSERT_EQ (figures.size (), 128u);
    for (const std::string& complaint : audition::complaints (programs, figures))
        ADD_FAILURE () << complaint;
}

// The distance sees a copy that only plays louder, and one whose cutoff was nudged.
TEST (Sounds, NearCopiesAreFound)
{
    std::vector<SourceProgram> programs = factoryPrograms ();
    const audition::Fingerprint original =
        audition::fingerprint (held (programs, "Simple Lead", 60, 120.0, 4.0));
    SourceProgram& lead = programs[24];
    lead.record.values[paramVolume] *= 0.5f;
    EXPECT_LT (
        audition::distance (original, audition::fingerprint (held (programs, "Simple Lead", 60, 120.0, 4.0))),
        0.5);
    lead.record.values[paramFilterFreq] *= 1.05f;
    EXPECT_LT (
        audition::distance (original, audition::fingerprint (held (programs, "Simple Lead", 60, 120.0, 4.0))),
        audition::leastDistance);
}

TEST (Sounds, SubBassLivesBelow120Hz)
{
    for (const int key : { 36, 43, 48 })
    {
        const std::vector<double> power =
            audition::powerSpectrum (held (factoryPrograms (), "Sub Bass", key, 120.0, 1.5), 0, 65536);
        double below = 0.0;
        double total = 0.0;
        for (std::size_t bin = 0; bin < power.size (); ++bin)
        {
            total += power[bin];
            below += static_cast<double> (bin) * audition::sampleRate / 65536.0 < 120.0 ? power[bin] : 0.0;
        }
        EXPECT_GT (below / total, 0.97) << key;
    }
}

// The frequency between 3 and 20 Hz at which a sound's upper partials come and go the most.
double modulationHz (const audition::Audio& audio)
{
    constexpr std::size_t window = 441;
    std::vector<double> levels;
    for (std::size_t start = 0; start + window <= audio.size (); start += window)
    {
        double sum = 0.0;
        for (std::size_t n = std::max<std::size_t> (start, 2); n < start + window; ++n)
        {
            const double bend = static_cast<double> (audio[n] - 2.0f * audio[n - 1] + audio[n - 2]);
            sum += bend * bend;
        }
        levels.push_back (std::sqrt (sum / window));
    }
    double best = 0.0;
    double most = 0.0;
    for (double hz = 3.0; hz <= 20.0; hz += 0.05)
    {
        std::complex<double> sum;
        for (std::size_t n = 0; n < levels.size (); ++n)
            sum +=
                levels[n] * std::polar (1.0, -2.0 * 3.14159265358979 * hz * static_cast<double> (n) / 100.0);
        if (std::abs (sum) > most)
        {
            most = std::abs (sum);
            best = hz;
        }
    }
    return best;
}

TEST (Sounds, MidiSyncLfoFollowsTheTempo)
{
    for (const double beatsPerMinute : { 75.0, 100.0, 150.0 })
    {
        const audition::Audio audio = held (factoryPrograms (), "MidiSyncLFO", 60, beatsPerMinute, 4.0);
        EXPECT_NEAR (modulationHz (audio), 4.0 * beatsPerMinute / 60.0, 0.11) << beatsPerMinute;
    }
}

TEST (Sounds, ListNamesEverySound)
{
    const std::string list = bytesOf ("docs/sounds.md");
    const std::vector<SourceProgram> programs = factoryPrograms ();
    for (std::size_t n = 0; n < programs.size (); ++n)
    {
        const std::string row = "| " + std::to_string (n) + " | " + programs[n].name () + " | " +
                                std::string (kindName (programs[n].kind)) + " | " + programs[n].about + " |";
        EXPECT_NE (list.find (row), std::string::npos) << row;
    }
}
}
