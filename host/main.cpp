// brimvale-host: plays a MIDI file into a VST 2.4 instrument and writes a WAV file.
#include "host/LevelMeter.h"
#include "host/Options.h"
#include "host/Plot.h"
#include "host/Plugin.h"
#include "host/ProgramList.h"
#include "host/ProgressBar.h"
#include "host/Renderer.h"
#include "host/Sequence.h"
#include "host/SoundFiles.h"
#include "host/TempoMap.h"
#include "host/WavWriter.h"
#include "midi/Reader.h"
#include "platform/Console.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace
{
using namespace host;

constexpr int failedStatus = 1;
constexpr int noteOn = 0x90;
constexpr int programChange = 0xC0;

// Set by Ctrl-C and its like, looked at between blocks: a render that is broken off leaves no file behind.
volatile std::sig_atomic_t interrupted = 0;

void interrupt (int /*signal*/)
{
    interrupted = 1;
}

std::string utf8 (const std::filesystem::path& path)
{
    const std::u8string text = path.u8string ();
    return { text.begin (), text.end () };
}

// Adds to a failure what was being done: "cannot read the MIDI file song.mid: there is no such file".
template <typename Action>
auto during (const std::string& what, const std::filesystem::path& file, Action action)
{
    try
    {
        return action ();
    }
    catch (const std::exception& error)
    {
        throw std::runtime_error ("cannot " + what + " " + utf8 (file) + ": " + error.what ());
    }
}

ProgramList programsOf (Plugin& plugin)
{
    std::vector<std::string> names;
    names.reserve (static_cast<std::size_t> (plugin.programCount ()));
    for (int i = 0; i < plugin.programCount (); ++i)
        names.push_back (plugin.programName (i));
    return ProgramList (std::move (names));
}

void selectProgram (Plugin& plugin, const ProgramList& programs, const std::string& wanted)
{
    if (const auto index = programs.find (wanted))
    {
        plugin.selectProgram (*index);
        return;
    }
    throw std::runtime_error ("there is no program \"" + wanted + "\"; --list-programs shows all " +
                              std::to_string (programs.size ()));
}

std::unique_ptr<Plugin> loadLibrary (const Options& options)
{
    return during ("load the library", options.library,
                   [&] { return std::make_unique<Plugin> (options.library); });
}

std::optional<SoundFile> soundsOf (const Options& options)
{
    if (options.sounds.empty ())
        return std::nullopt;
    return during ("load", options.sounds, [&] { return SoundFile (options.sounds); });
}

// The sounds that are to be loaded, and the program that is to play. It is looked for in a bank that was
// loaded, and it is where a preset goes.
void prepare (Plugin& plugin, const Options& options, const std::optional<SoundFile>& sounds)
{
    const auto load = [&] { during ("load", options.sounds, [&] { sounds->load (plugin); }); };
    if (sounds && sounds->isBank ())
        load ();
    if (!options.program.empty ())
        selectProgram (plugin, programsOf (plugin), options.program);
    if (sounds && !sounds->isBank ())
        load ();
}

// An instrument for each channel that plays.
struct Ensemble
{
    std::vector<std::unique_ptr<Plugin>> plugins;
    std::vector<Sequence> sequences;

    std::vector<Part> parts () const
    {
        std::vector<Part> result;
        for (std::size_t n = 0; n < plugins.size (); ++n)
            result.push_back ({ *plugins[n], sequences[n] });
        return result;
    }
};

// The programs that are heard, in the order of their first appearance, channel by channel.
std::vector<std::string> programsHeard (const Ensemble& ensemble, const ProgramList& programs)
{
    std::vector<std::string> heard;
    for (std::size_t part = 0; part < ensemble.plugins.size (); ++part)
    {
        int program = ensemble.plugins[part]->currentProgram ();
        for (const TimedMessage& message : ensemble.sequences[part].messages)
        {
            const int kind = message.bytes[0] & 0xF0;
            if (kind == programChange)
                program = message.bytes[1];
            if (kind != noteOn || message.bytes[2] == 0 || program >= programs.size ())
                continue;
            const std::string title = programs.title (program);
            if (std::find (heard.begin (), heard.end (), title) == heard.end ())
                heard.push_back (title);
        }
    }
    return heard;
}

// "song 03.wav" for the third channel of "song.wav".
std::filesystem::path stemPath (const std::filesystem::path& output, const Sequence& sequence)
{
    const int channel = sequence.messages.empty () ? 1 : (sequence.messages.front ().bytes[0] & 0x0F) + 1;
    std::string number = std::to_string (channel);
    number.insert (0, number.size () < 2 ? " 0" : " ");
    std::filesystem::path name = output.stem ();
    name += number;
    name += output.extension ();
    return std::filesystem::path (output).replace_filename (name);
}

void print (const Sequence& sequence, const LevelMeter& meter, const RenderReport& report, int sampleRate)
{
    const double seconds = static_cast<double> (meter.frames ()) / sampleRate;
    std::printf ("Length:    %.2f s (song %.2f s)\n", seconds, sequence.seconds);
    if (std::isinf (meter.peakDecibels ()))
        std::printf ("Peak:      silence\n");
    else
        std::printf ("Peak:      %.2f dBFS\n", meter.peakDecibels ());
    if (std::isinf (meter.loudness ()))
        std::printf ("Loudness:  too quiet or too short to measure\n");
    else
        std::printf ("Loudness:  %.1f LUFS\n", meter.loudness ());
    if (meter.clipped () > 0)
        std::printf ("Clipped:   %llu samples\n", static_cast<unsigned long long> (meter.clipped ()));
    if (meter.notFinite () > 0)
        std::printf ("Damaged:   %llu samples are no numbers\n",
                     static_cast<unsigned long long> (meter.notFinite ()));
    if (report.processSeconds > 0.0)
        std::printf ("Speed:     %.0f times faster than real time\n", seconds / report.processSeconds);
}

// Compares what the names lead to, links included.
void checkOutput (const Options& options, const std::filesystem::path& output)
{
    std::error_code none;
    for (const auto& [file, what] : { std::pair{ options.song, "song" },
                                      { options.library, "library" },
                                      { options.sounds, "loaded sounds" } })
    {
        if (std::filesystem::equivalent (file, output, none))
            throw std::runtime_error (utf8 (output) + " would overwrite the " + what +
                                      "; give it another name");
    }
}

void checkLength (const Sequence& sequence, const Options& options)
{
    const double longest = static_cast<double> (WavWriter::maxFrames (options.format)) / options.sampleRate;
    if (sequence.seconds + options.tailLimit > longest)
        throw std::runtime_error ("the song lasts " +
                                  std::to_string (static_cast<long long> (sequence.seconds / 3600.0)) +
                                  " hours, which is more than a WAV file can hold at this rate");
}

// The song's own program changes are left out when the user has named a program or brought one.
Ensemble ensembleFor (const Options& options, const midi::Song& song, const TempoMap& tempos)
{
    const std::optional<SoundFile> sounds = soundsOf (options);
    const bool songChooses = options.program.empty () && (!sounds || sounds->isBank ());
    Ensemble ensemble;
    ensemble.sequences = splitByChannel (makeSequence (song, tempos, options.sampleRate, songChooses));
    for (std::size_t n = 0; n < ensemble.sequences.size (); ++n)
    {
        ensemble.plugins.push_back (loadLibrary (options));
        prepare (*ensemble.plugins.back (), options, sounds);
    }
    return ensemble;
}

void saveSounds (const Options& options, Plugin& plugin)
{
    const auto save = [&] (const std::filesystem::path& file, auto write)
    {
        if (file.empty ())
            return;
        checkOutput (options, file);
        during ("write", file, [&] { write (plugin, file); });
        std::printf ("Written:   %s\n", utf8 (file).c_str ());
    };
    save (options.programFile, &saveProgram);
    save (options.bankFile, &saveBank);
}

RenderReport renderToFiles (const Options& options, const Ensemble& ensemble, const TempoMap& tempos,
                            LevelMeter& meter)
{
    std::vector<std::unique_ptr<WavWriter>> stems;
    if (options.stems)
    {
        for (const Sequence& sequence : ensemble.sequences)
            stems.push_back (std::make_unique<WavWriter> (stemPath (options.output, sequence),
                                                          options.sampleRate, options.format));
    }
    WavWriter wav (options.output, options.sampleRate, options.format);
    const auto plot = options.plot.empty () ? nullptr : Plot::make (options.plot, options.sampleRate);
    ProgressBar bar (options.progress);
    const auto keep = [&] (std::span<const float> stereo)
    {
        wav.add (stereo);
        meter.add (stereo);
        if (plot)
            plot->add (stereo);
    };
    const auto keepPart = [&] (std::size_t part, std::span<const float> stereo)
    {
        if (options.stems)
            stems[part]->add (stereo);
    };
    const auto progress = [&] (double done, double all)
    {
        if (interrupted != 0)
            throw std::runtime_error ("it was interrupted");
        bar.show (done, all);
    };
    Renderer renderer (
        ensemble.parts (), tempos,
        { options.sampleRate, options.blockSize, options.tailLimit, WavWriter::maxFrames (options.format) });
    const RenderReport result = renderer.render (keep, progress, keepPart);
    wav.finish ();
    for (const auto& stem : stems)
        stem->finish ();
    if (plot)
        plot->finish ();
    return result;
}

void renderSong (const Options& options)
{
    const midi::Song song =
        during ("read the MIDI file", options.song, [&] { return midi::read (options.song); });
    checkOutput (options, options.output);
    checkOutput (options, options.plot);
    const TempoMap tempos (song);
    const Ensemble ensemble = ensembleFor (options, song, tempos);
    for (const Sequence& sequence : ensemble.sequences)
    {
        if (options.stems)
            checkOutput (options, stemPath (options.output, sequence));
    }
    const ProgramList programs = programsOf (*ensemble.plugins.front ());
    checkLength (ensemble.sequences.front (), options);
    saveSounds (options, *ensemble.plugins.front ());
    const std::vector<std::string> heard = programsHeard (ensemble, programs);

    LevelMeter meter (options.sampleRate);
    const RenderReport report =
        during ("write", options.output, [&] { return renderToFiles (options, ensemble, tempos, meter); });
    for (const std::string& title : heard)
        std::printf ("Program:   %s\n", title.c_str ());
    print (ensemble.sequences.front (), meter, report, options.sampleRate);
    std::printf ("Written:   %s\n", utf8 (options.output).c_str ());
    if (!options.plot.empty ())
        std::printf ("Written:   %s\n", utf8 (options.plot).c_str ());
    if (options.stems)
    {
        for (const Sequence& sequence : ensemble.sequences)
            std::printf ("Written:   %s\n", utf8 (stemPath (options.output, sequence)).c_str ());
    }
}

void withoutASong (const Options& options)
{
    const auto plugin = loadLibrary (options);
    prepare (*plugin, options, soundsOf (options));
    saveSounds (options, *plugin);
    const ProgramList programs = programsOf (*plugin);
    for (int i = 0; options.listPrograms && i < programs.size (); ++i)
        std::printf ("%s\n", programs.title (i).c_str ());
}

void finishOutput ()
{
    if (std::fflush (stdout) != 0 || std::ferror (stdout) != 0)
        throw std::runtime_error ("cannot write to standard output: " +
                                  std::generic_category ().message (errno));
}
}

int main (int argc, char** argv)
{
    platform::keepLineEnds ();
    std::signal (SIGINT, &interrupt);
    std::signal (SIGTERM, &interrupt);
    try
    {
        Options options;
        const auto ending =
            parseOptions (platform::utf8Arguments (argc, argv), platform::errorStreamIsTerminal (), options);
        if (ending && ending->status != 0)
        {
            std::fprintf (stderr, "brimvale-host: %s\n", ending->text.c_str ());
            return ending->status;
        }
        if (ending)
            std::printf ("%s", ending->text.c_str ());
        else if (options.listPrograms || options.song.empty ())
            withoutASong (options);
        else
            renderSong (options);
        finishOutput ();
        return 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf (stderr, "brimvale-host: %s.\n", error.what ());
        return failedStatus;
    }
}
