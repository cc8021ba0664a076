// brimvale-host: plays a MIDI file into a VST 2.4 instrument and writes a WAV file.
#include "host/LevelMeter.h"
#include "host/Options.h"
#include "host/Plugin.h"
#include "host/ProgramList.h"
#include "host/ProgressBar.h"
#include "host/Renderer.h"
#include "host/Sequence.h"
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
#include <stdexcept>
#include <system_error>
#include <utility>

namespace
{
using namespace host;

constexpr int failedStatus = 1;
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

// The programs that are heard, in the order of their first appearance.
std::vector<std::string> programsHeard (const Sequence& sequence, int first, const ProgramList& programs)
{
    std::vector<std::string> heard;
    int program = first;
    for (const TimedMessage& message : sequence.messages)
    {
        const int kind = message.bytes[0] & 0xF0;
        if (kind == programChange)
            program = message.bytes[1];
        const bool noteOn = kind == 0x90 && message.bytes[2] > 0;
        if (!noteOn || program >= programs.size ())
            continue;
        const std::string title = programs.title (program);
        if (std::find (heard.begin (), heard.end (), title) == heard.end ())
            heard.push_back (title);
    }
    return heard;
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
void checkOutput (const Options& options)
{
    std::error_code none;
    for (const auto& [file, what] : { std::pair{ options.song, "song" }, { options.library, "library" } })
    {
        if (std::filesystem::equivalent (file, options.output, none))
            throw std::runtime_error (std::string ("the output would overwrite the ") + what +
                                      "; give it another name with -o");
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

void renderSong (const Options& options)
{
    const midi::Song song =
        during ("read the MIDI file", options.song, [&] { return midi::read (options.song); });
    checkOutput (options);
    const auto plugin = during ("load the library", options.library,
                                [&] { return std::make_unique<Plugin> (options.library); });
    const ProgramList programs = programsOf (*plugin);
    if (!options.program.empty ())
        selectProgram (*plugin, programs, options.program);

    const TempoMap tempos (song);
    const Sequence sequence = makeSequence (song, tempos, options.sampleRate, options.program.empty ());
    checkLength (sequence, options);
    const std::vector<std::string> heard = programsHeard (sequence, plugin->currentProgram (), programs);

    LevelMeter meter (options.sampleRate);
    const RenderReport report =
        during ("write", options.output,
                [&]
                {
                    WavWriter wav (options.output, options.sampleRate, options.format);
                    ProgressBar bar (options.progress);
                    const RenderSettings settings{ options.sampleRate, options.blockSize, options.tailLimit,
                                                   WavWriter::maxFrames (options.format) };
                    Renderer renderer (*plugin, sequence, tempos, settings);
                    const auto keep = [&] (std::span<const float> stereo)
                    {
                        wav.add (stereo);
                        meter.add (stereo);
                    };
                    const auto progress = [&] (double done, double all)
                    {
                        if (interrupted != 0)
                            throw std::runtime_error ("it was interrupted");
                        bar.show (done, all);
                    };
                    const RenderReport result = renderer.render (keep, progress);
                    wav.finish ();
                    return result;
                });
    for (const std::string& title : heard)
        std::printf ("Program:   %s\n", title.c_str ());
    print (sequence, meter, report, options.sampleRate);
    std::printf ("Written:   %s\n", utf8 (options.output).c_str ());
}

void listPrograms (const Options& options)
{
    const auto plugin = during ("load the library", options.library,
                                [&] { return std::make_unique<Plugin> (options.library); });
    const ProgramList programs = programsOf (*plugin);
    for (int i = 0; i < programs.size (); ++i)
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
        else if (options.listPrograms)
            listPrograms (options);
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
