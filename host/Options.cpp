#include "host/Options.h"

#include "brimvale/Version.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <map>
#include <sstream>

namespace host
{
namespace
{
constexpr int usageStatus = 2;

std::filesystem::path pathFromUtf8 (const std::string& text)
{
    return { std::u8string (text.begin (), text.end ()) };
}

std::string sentence (const std::string& text)
{
    std::string line = text.substr (0, text.find ('\n'));
    line.erase (line.find_last_not_of (" .") + 1);
    return line;
}
}

std::optional<Ending> parseOptions (const std::vector<std::string>& arguments, bool terminal,
                                    Options& options)
{
    CLI::App app ("Plays a MIDI file into a VST 2.4 instrument and writes what it sounds like to a WAV file.",
                  "brimvale-host");
    app.allow_windows_style_options (false); // "/home/me/song.mid" is a file, on every system
    app.set_version_flag ("--version", "brimvale-host " + std::string (brimvale::version),
                          "show the version and stop");

    std::string library;
    std::string song;
    std::string output;
    std::string progress = "auto";
    app.add_option ("LIBRARY", library, "the instrument (Brimvale.dll or Brimvale.so)")->required ();
    auto* songOption = app.add_option ("SONG", song, "the MIDI file to play");
    auto* outputOption = app.add_option (
        "-o,--output", output, "the WAV file to write (the song's name with .wav, in the current folder)");
    app.add_option (
        "-p,--program", options.program,
        "name of a program, or its number from 1; the song's own program changes are then left out");
    app.add_option ("-r,--rate", options.sampleRate, "sample rate in Hz")
        ->check (CLI::Range (8000, 384000))
        ->capture_default_str ();
    app.add_option ("-b,--block", options.blockSize, "frames per block")
        ->check (CLI::Range (1, 65536))
        ->capture_default_str ();
    const std::map<std::string, SampleFormat> formats{ { "16", SampleFormat::int16 },
                                                       { "24", SampleFormat::int24 },
                                                       { "float", SampleFormat::float32 } };
    std::string format = "24";
    app.add_option ("-f,--format", format, "bits per sample")
        ->check (CLI::IsMember ({ "16", "24", "float" }))
        ->capture_default_str ();
    app.add_option ("--tail", options.tailLimit, "seconds that the sound may ring on after the song")
        ->check (CLI::Range (0.0, 600.0))
        ->capture_default_str ();
    app.add_flag (
        "--stems", options.stems,
        "write each MIDI channel of the song to a file of its own, too: OUTPUT with the channel's number");
    app.add_option ("--progress", progress, "when to show a progress bar")
        ->check (CLI::IsMember ({ "auto", "always", "never" }))
        ->capture_default_str ();
    auto* list =
        app.add_flag ("-l,--list-programs", options.listPrograms, "show the instrument's programs and stop");

    std::vector<std::string> reversed (arguments.rbegin (), arguments.rend () - 1);
    try
    {
        app.parse (reversed);
        if (songOption->count () == 0 && list->count () == 0)
            throw CLI::RequiredError ("SONG");
        if (std::isnan (options.tailLimit)) // which is in no range, but passes for it
            throw CLI::ValidationError ("--tail", "it needs a number of seconds");
        if (outputOption->count () > 0 && output.empty ())
            throw CLI::ValidationError ("--output", "it needs the name of a WAV file");
    }
    catch (const CLI::CallForVersion& version)
    {
        return Ending{ 0, version.what () + std::string ("\n") };
    }
    catch (const CLI::Success&)
    {
        return Ending{ 0, app.help () };
    }
    catch (const CLI::ParseError& error)
    {
        return Ending{ usageStatus, sentence (error.what ()) + "; --help shows what can be asked for." };
    }

    options.library = pathFromUtf8 (library);
    options.song = pathFromUtf8 (song);
    options.output = output.empty () ? options.song.stem () += ".wav" : pathFromUtf8 (output);
    options.format = formats.at (format);
    options.progress = progress == "always" || (progress == "auto" && terminal);
    return std::nullopt;
}
}
