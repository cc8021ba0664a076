#include "audition/SoundReport.h"

#include "audition/Phrases.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <future>
#include <limits>
#include <thread>

namespace audition
{
namespace
{
constexpr double tailSeconds = 2.0;

std::size_t samplesOf (double seconds)
{
    return static_cast<std::size_t> (seconds * sampleRate);
}

// What each kind is measured with. The basses' note sounds C2, 65 Hz, on most of them.
struct KindRow
{
    bank::Kind kind;
    bool chords;      // is played in chords
    int key;          // the note
    int chordKey;     // the lowest of the chord
    double loudness;  // LUFS
    double tolerance; // LU; a drum cannot fill 400 ms, so the effects have more
};
constexpr KindRow kinds[] = {
    { bank::Kind::bass, false, 36, 48, -21.5, 1.5 },   { bank::Kind::lead, false, 60, 60, -21.5, 1.5 },
    { bank::Kind::pad, true, 60, 60, -18.5, 1.5 },     { bank::Kind::pluck, false, 60, 60, -23.5, 1.5 },
    { bank::Kind::keys, true, 60, 60, -18.5, 1.5 },    { bank::Kind::sequence, true, 60, 60, -18.5, 1.5 },
    { bank::Kind::effect, false, 60, 60, -27.0, 4.0 },
};
const KindRow& rowOf (bank::Kind kind)
{
    return *std::ranges::find (kinds, kind, &KindRow::kind);
}

// A sound that takes its time says so in its name.
bool promisesSwell (const std::string& name)
{
    return name.find ("Swell") != std::string::npos;
}

bool heard (const bank::SourceProgram& program, Param wave, Param level)
{
    return program.value (wave) >= 0.5f && program.value (level) > 0.0f;
}

// Pipes and reeds know no velocity.
bool playsLikeAnOrgan (const bank::SourceProgram& program)
{
    return program.value (paramVelocityAmp) <= 0.1f;
}

// Two oscillators a little apart come and go, and an LFO on the filter is somewhere else at each note.
bool meantToVary (const bank::SourceProgram& program)
{
    const bool beats = heard (program, paramOsc1Wave, paramOsc1Vol) &&
                       heard (program, paramOsc2Wave, paramOsc2Vol) && program.value (paramOsc2Fine) > 0.0f;
    return beats || program.value (paramLfoFilter) != 0.5f;
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
    return player.play (phrase (program), tailSeconds);
}

namespace
{
constexpr int pasts = 16;
constexpr std::ptrdiff_t fewPasts = 4;

double largest (const std::vector<Audio>& takes, double (*figure) (Samples))
{
    double most = 0.0;
    for (const Audio& take : takes)
    {
        const double now = figure (take);
        most = std::abs (now) > std::abs (most) ? now : most;
    }
    return most;
}

// The take that a gate or an LFO holds back the least.
double quickest (const std::vector<Audio>& takes, double decibels)
{
    double least = std::numeric_limits<double>::infinity ();
    for (const Audio& take : takes)
        least = std::min (least, secondsToReach (take, decibels));
    return least;
}

// Without its distances, which need the others.
SoundFigures measureSound (const bank::SourceProgram& program, Fingerprint& print)
{
    const KindRow& row = rowOf (program.kind);
    std::vector<int> velocities (pasts, 100);
    velocities.insert (velocities.end (), static_cast<std::size_t> (fewPasts), 30);
    velocities.insert (velocities.end (), static_cast<std::size_t> (fewPasts), 127);
    std::vector<Audio> notes = playTakes (program, { row.key }, velocities);
    const std::vector<Audio> hard (notes.end () - fewPasts, notes.end ());
    const std::vector<Audio> soft (notes.end () - 2 * fewPasts, notes.end () - fewPasts);
    notes.resize (pasts);
    const std::vector<Audio> chords =
        playTakes (program, { row.chordKey, row.chordKey + 4, row.chordKey + 7, row.chordKey + 12 },
                   std::vector<int> (static_cast<std::size_t> (fewPasts), 100));

    print = fingerprint (notes);
    const Levels levels = levelsOf (notes);
    double peak = -std::numeric_limits<double>::infinity ();
    for (const Audio& chord : chords)
        peak = std::max (peak, truePeak (chord));
    const auto held = static_cast<std::ptrdiff_t> (samplesOf (heldSeconds));
    return { .loudness = row.chords ? levelsOf (chords).mean : levels.mean,
             .spread = levels.spread,
             .velocity = levelsOf (hard).mean - levelsOf (soft).mean,
             .chordPeak = peak,
             .answer = quickest (notes, answerDecibels),
             .attack = quickest (notes, attackDecibels),
             .brightness = brightness (Samples (notes.front ()).first (static_cast<std::size_t> (held))),
             .dc = largest (notes, dcShare),
             .tail = tailBend (notes.front ()),
             .nearest = std::numeric_limits<double>::infinity (),
             .nearestProgram = -1 };
}
}

std::vector<SoundFigures> measureBank (const std::vector<bank::SourceProgram>& programs)
{
    std::vector<SoundFigures> result (programs.size ());
    std::vector<Fingerprint> prints (programs.size ());
    std::atomic<std::size_t> next = 0;
    const auto measureSome = [&]
    {
        for (std::size_t n = next++; n < programs.size (); n = next++)
            result[n] = measureSound (programs[n], prints[n]);
    };
    std::vector<std::future<void>> workers;
    for (unsigned n = 0; n < std::max (1u, std::thread::hardware_concurrency ()); ++n)
        workers.push_back (std::async (std::launch::async, measureSome));
    for (std::future<void>& worker : workers)
        worker.get ();
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

std::vector<std::string> complaints (const std::vector<bank::SourceProgram>& programs,
                                     const std::vector<SoundFigures>& figures)
{
    std::vector<std::string> result;
    for (std::size_t n = 0; n < programs.size (); ++n)
    {
        const SoundFigures& sound = figures[n];
        const std::string name = formatted ("%zu %s: ", n, programs[n].name ().c_str ());
        const KindRow& row = rowOf (programs[n].kind);
        const double offTarget = sound.loudness - row.loudness;
        if (!(std::abs (offTarget) <= row.tolerance) && n != givenProgram)
            result.push_back (name + formatted ("%+.1f LU from what its kind plays at", offTarget));
        if (!(sound.spread <= (meantToVary (programs[n]) ? varyingLimit : spreadLimit)) && n != givenProgram)
            result.push_back (name + formatted ("changes by %.1f LU from take to take", sound.spread));
        if (!(sound.velocity >= leastVelocity) && !playsLikeAnOrgan (programs[n]) && n != givenProgram)
            result.push_back (name + formatted ("velocity moves it by %.1f LU", sound.velocity));
        if (!(sound.tail < straightTail) && programs[n].kind == bank::Kind::pluck)
            result.push_back (name + formatted ("its tail ends straight, %.2f", sound.tail));
        if (!(sound.chordPeak < chordPeakLimit) && n != givenProgram)
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
    std::string text =
        "# The sounds\n\n"
        "The 128 programs of the factory bank with what `audition` measured. Every note is played 16 times "
        "at\n"
        "velocity 100, each time with the oscillators and the LFO somewhere else, as they are in a song.\n\n"
        "![Spectrograms of all sounds](sounds.png)\n\n"
        "- **LUFS**: the loudest 400 ms, mean of the takes: of a note for basses (key 36), leads, plucks and "
        "effects\n  (key 60), of a chord (60 64 67 72) for pads, keys and sequences.\n"
        "- **Takes**: how far the loudest take lies above the quietest, in LU. Up to 2 unless the sound is "
        "meant to\n  beat or to move.\n"
        "- **Velocity**: from velocity 30 to 127, in LU.\n"
        "- **Peak**: true peak of the four-note chord in dBFS, below 0.\n"
        "- **Centroid**: of the note's power spectrum, in Hz.\n"
        "- **Attack**: until the quickest take is within 6 dB of its loudest, in ms. Within 30 ms it is "
        "at least\n  within 20 dB of it, unless the name promises a swell.\n";
    text += formatted ("- **Distance**: to the most similar other sound, in dB; none is below %.0f. See "
                       "[how the sound is made](sound.md#the-bank).\n\n",
                       leastDistance);
    text +=
        "| | Name | Kind | What it is for | LUFS | Takes | Velocity | Peak | Centroid | Attack | Distance |\n"
        "|--:|---|---|---|--:|--:|--:|--:|--:|--:|--:|\n";
    for (std::size_t n = 0; n < programs.size (); ++n)
    {
        const SoundFigures& sound = figures[n];
        text += formatted ("| %zu | ", n) + programs[n].name () + " | " +
                std::string (kindName (programs[n].kind)) + " | " + programs[n].about +
                formatted (" | %.1f | %.1f | %.1f | %.1f | %.0f | %.0f | %.1f |\n", sound.loudness,
                           sound.spread, sound.velocity, sound.chordPeak, sound.brightness,
                           sound.attack * 1000.0, sound.nearest);
    }
    return text;
}

PieceFigures measurePiece (const std::vector<bank::SourceProgram>& programs, const examples::Piece& piece)
{
    const Audio audio = Player (programs).play (piece, tailSeconds);
    double lastNote = 0.0;
    for (const examples::Note& note : piece.notes ())
        lastNote = std::max (lastNote, note.start * 60.0 / piece.beatsPerMinute ());
    return { .seconds = static_cast<double> (audio.size ()) / sampleRate,
             .loudness = integratedLoudness (audio),
             .peak = truePeak (audio),
             .dc = dcShare (audio),
             .click = sharpestClick (audio),
             .hole = longestSilence (Samples (audio).first (samplesOf (lastNote))) };
}

std::vector<std::string> complaints (const examples::Piece& piece, const PieceFigures& figures)
{
    std::vector<std::string> result;
    const std::string name = piece.title () + ": ";
    if (!(figures.loudness >= softestPiece && figures.loudness <= loudestPiece))
        result.push_back (name + formatted ("plays at %.1f LUFS", figures.loudness));
    if (!(figures.peak < chordPeakLimit))
        result.push_back (name + formatted ("peaks at %+.1f dBFS", figures.peak));
    if (!(std::abs (figures.dc) <= dcLimit))
        result.push_back (name + formatted ("%.2f %% DC", figures.dc * 100.0));
    if (!(figures.click <= clickLimit))
        result.push_back (name +
                          formatted ("a click, %.1f times sharper than what is around it", figures.click));
    if (!(figures.hole <= longestHole))
        result.push_back (name + formatted ("is silent for %.1f s", figures.hole));
    return result;
}

std::string describe (const PieceFigures& figures)
{
    return formatted (
        "%.1f s, %.1f LUFS, peak %.1f dBFS, DC %.2f %%, sharpest step %.1f, longest silence %.2f s",
        figures.seconds, figures.loudness, figures.peak, figures.dc * 100.0, figures.click, figures.hole);
}
}
