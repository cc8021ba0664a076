#include "audition/SoundReport.h"

#include "audition/Phrases.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace audition
{
namespace
{
constexpr double tailSeconds = 2.0;

std::size_t samplesOf (double seconds)
{
    return static_cast<std::size_t> (seconds * sampleRate);
}

Audio musicOf (const Player& player, const examples::Piece& piece)
{
    Audio audio = player.play (piece, tailSeconds);
    audio.erase (audio.begin (), audio.begin () + static_cast<std::ptrdiff_t> (samplesOf (warmUpSeconds)));
    return audio;
}

// A sound that takes its time says so in its name.
bool promisesSwell (const std::string& name)
{
    return name.find ("Swell") != std::string::npos;
}

template <typename... Values>
std::string formatted (const char* pattern, Values... values)
{
    char text[200];
    std::snprintf (text, sizeof text, pattern, values...);
    return text;
}
}

Audio playPhrase (const Player& player, const bank::SourceProgram& program)
{
    return musicOf (player, phrase (program));
}

std::vector<SoundFigures> measureBank (const std::vector<bank::SourceProgram>& programs)
{
    const Player player (programs);
    std::vector<SoundFigures> result;
    std::vector<Fingerprint> prints;
    for (const bank::SourceProgram& program : programs)
    {
        const Audio note = musicOf (player, heldNote (program));
        const Audio chord = musicOf (player, heldChord (program));
        const bool single = program.kind == bank::Kind::bass || program.value (paramGlideMono) > 0.0f;
        result.push_back ({ .loudness = loudness (single ? note : chord),
                            .chordPeak = truePeak (chord),
                            .answer = secondsToReach (note, answerDecibels),
                            .attack = secondsToReach (note, attackDecibels),
                            .brightness = brightness (Samples (note).first (samplesOf (heldSeconds))),
                            .dc = dcShare (note),
                            .nearest = std::numeric_limits<double>::infinity (),
                            .nearestProgram = -1 });
        prints.push_back (fingerprint (note));
    }
    for (std::size_t a = 0; a < prints.size (); ++a)
    {
        for (std::size_t b = 0; b < prints.size (); ++b)
        {
            const double apart =
                a == b ? std::numeric_limits<double>::infinity () : distance (prints[a], prints[b]);
            if (apart < result[a].nearest)
            {
                result[a].nearest = apart;
                result[a].nearestProgram = static_cast<int> (b);
            }
        }
    }
    return result;
}

double medianLoudness (const std::vector<SoundFigures>& figures)
{
    std::vector<double> values;
    values.reserve (figures.size ());
    for (const SoundFigures& sound : figures)
        values.push_back (sound.loudness);
    std::ranges::sort (values);
    return (values[(values.size () - 1) / 2] + values[values.size () / 2]) / 2.0;
}

std::vector<std::string> complaints (const std::vector<bank::SourceProgram>& programs,
                                     const std::vector<SoundFigures>& figures)
{
    std::vector<std::string> result;
    const double median = medianLoudness (figures);
    for (std::size_t n = 0; n < programs.size (); ++n)
    {
        const SoundFigures& sound = figures[n];
        const std::string name = formatted ("%zu %s: ", n, programs[n].name ().c_str ());
        if (!(std::abs (sound.loudness - median) <= loudnessTolerance))
            result.push_back (name + formatted ("%+.1f LU from the median", sound.loudness - median));
        if (!(sound.chordPeak < chordPeakLimit))
            result.push_back (name + formatted ("a chord peaks at %+.1f dBFS", sound.chordPeak));
        if (!(sound.answer <= answerLimit) && !promisesSwell (programs[n].name ()))
            result.push_back (name + formatted ("answers after %.0f ms", sound.answer * 1000.0));
        if (!(std::abs (sound.dc) <= dcLimit))
            result.push_back (name + formatted ("%.2f %% DC", sound.dc * 100.0));
        if (!(sound.nearest >= leastDistance))
            result.push_back (name + formatted ("only %.1f dB away from ", sound.nearest) +
                              programs[static_cast<std::size_t> (sound.nearestProgram)].name ());
    }
    return result;
}

std::string soundList (const std::vector<bank::SourceProgram>& programs,
                       const std::vector<SoundFigures>& figures)
{
    std::string text = "# The sounds\n\n"
                       "The 128 programs of the factory bank with what `audition` measured. Each is played "
                       "at velocity 100:\n"
                       "a held chord (keys 60 64 67 72), for the basses and the mono sounds one held note "
                       "(60, basses 48).\n\n"
                       "![Spectrograms of all sounds](sounds.png)\n\n"
                       "- **LUFS**: the loudest 400 ms. All lie within 4 LU of the median, ";
    text += formatted ("%.1f.\n", medianLoudness (figures));
    text += "- **Peak**: true peak of the four-note chord in dBFS, below 0.\n"
            "- **Centroid**: of the note's power spectrum, in Hz.\n"
            "- **Attack**: until a note is within 6 dB of its loudest, in ms. Within 30 ms every note is at "
            "least within\n"
            "  20 dB of it, unless the name promises a swell.\n";
    text += formatted ("- **Distance**: to the most similar other sound, in dB; none is below %.0f. It is "
                       "the root mean square\n",
                       leastDistance);
    text += "  difference of the notes' mel spectra by time plus that of their levels by time, volume left "
            "out.\n\n"
            "| | Name | Kind | What it is for | LUFS | Peak | Centroid | Attack | Distance |\n"
            "|--:|---|---|---|--:|--:|--:|--:|--:|\n";
    for (std::size_t n = 0; n < programs.size (); ++n)
    {
        const SoundFigures& sound = figures[n];
        text += formatted ("| %zu | ", n) + programs[n].name () + " | " +
                std::string (kindName (programs[n].kind)) + " | " + programs[n].about +
                formatted (" | %.1f | %.1f | %.0f | %.0f | %.1f |\n", sound.loudness, sound.chordPeak,
                           sound.brightness, sound.attack * 1000.0, sound.nearest);
    }
    return text;
}

PieceFigures measurePiece (const std::vector<bank::SourceProgram>& programs, const examples::Piece& piece)
{
    const Audio audio = Player (programs).play (piece, tailSeconds);
    double loudestAtChange = -std::numeric_limits<double>::infinity ();
    for (const examples::ProgramChange& change : piece.programChanges ())
    {
        const std::size_t end = samplesOf (change.start * 60.0 / piece.beatsPerMinute ());
        const std::size_t length = std::min (end, samplesOf (0.02));
        for (const float sample : Samples (audio).subspan (end - length, length))
            loudestAtChange = std::max (loudestAtChange,
                                        20.0 * std::log10 (std::abs (static_cast<double> (sample)) + 1e-9));
    }
    return { .seconds = static_cast<double> (audio.size ()) / sampleRate,
             .loudness = loudness (audio),
             .peak = truePeak (audio),
             .dc = dcShare (audio),
             .click = sharpestClick (audio),
             .loudestAtChange = loudestAtChange };
}

std::vector<std::string> complaints (const examples::Piece& piece, const PieceFigures& figures)
{
    std::vector<std::string> result;
    const std::string name = piece.title () + ": ";
    if (!(figures.peak < chordPeakLimit))
        result.push_back (name + formatted ("peaks at %+.1f dBFS", figures.peak));
    if (!(std::abs (figures.dc) <= dcLimit))
        result.push_back (name + formatted ("%.2f %% DC", figures.dc * 100.0));
    if (!(figures.click <= clickLimit))
        result.push_back (name +
                          formatted ("a click, %.1f times sharper than what is around it", figures.click));
    if (!(figures.loudestAtChange <= restBeforeChange))
        result.push_back (name + formatted ("a program change cuts off %.0f dBFS", figures.loudestAtChange));
    return result;
}

std::string describe (const PieceFigures& figures)
{
    return formatted (
        "%.1f s, %.1f LUFS at its loudest, peak %.1f dBFS, DC %.2f %%, sharpest step %.1f, at most %.0f dBFS "
        "before a program change",
        figures.seconds, figures.loudness, figures.peak, figures.dc * 100.0, figures.click,
        figures.loudestAtChange);
}
}
