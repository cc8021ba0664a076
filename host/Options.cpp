#include "host/Options.h"

#include "brimvale/Version.h"
#include "host/Plot.h"

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
    std::string sounds;
    std::string programFile;
    std::string bankFile;
    std::string plot;
    std::string progress = "auto";
    app.add_option ("LIBRARY", library, "the instrument (Brimvale.dll or Brimvale.so)")->required ();
    auto* songOption = app.add_option ("SONG", song, "the MIDI file to play");
    auto* outputOption = app.add_option (
        "-o,--output", output, "the WAV file to write (the song's name with .wav, in the current folder)");
    app.add_option (
        "-p,--program", options.program,
        "name of a program, or its number from 1; the song's own program changes are then left out");
    auto* loadOption = app.add_option (
        "--load", sounds,
        "sounds to load first: a preset (.fxp, into the program, which the song then keeps), a bank "
        "(.fxb) or Brimvale's user default bank (.bnk)");
    auto* saveProgram =
        app.add_option ("--save-program", programFile, "write the program to a preset (.fxp)");
    auto* saveBank =
        app.add_option ("--save-bank", bankFile,
                        "write all programs to a bank (.fxb), or to one that Brimvale starts with (.bnk)");
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
    auto* plotOption =
        app.add_option ("--plot", plot,
                        std::string ("draw the sound, its wave and its frequencies, into a PNG file") +
                            (canPlot () ? "" : " (not with this build)"));
    app.add_option ("--progress", progress, "when to show a progress bar")
        ->check (CLI::IsMember ({ "auto", "always", "never" }))
        ->capture_default_str ();
    auto* list =
        app.add_flag ("-l,--list-programs", options.listPrograms, "show the instrument's programs and stop");

    const std::pair<CLI::Option*, const std::string*> files[] = { { outputOption, &output },
                                                                  { loadOption, &sounds },
                                                                  { saveProgram, &programFile },
                                                                  { saveBank, &bankFile },
                                                                  { plotOption, &plot } };
    std::vector<std::string> reversed (arguments.rbegin (), arguments.rend () - 1);
    try
    {
        app.parse (reversed);
        if (songOption->count () + list->count () + saveProgram->count () + saveBank->count () == 0)
            throw CLI::RequiredError ("SONG");
        if (!plot.empty () && !canPlot ())
            throw CLI::ValidationError ("--plot", "this build cannot draw; a native one on Linux can");
        if (!plot.empty () && songOption->count () == 0)
            throw CLI::RequiredError ("SONG");
        if (std::isnan (options.tailLimit)) // which is in no range, but passes for it
            throw CLI::ValidationError ("--tail", "it needs a number of seconds");
        for (const auto& [option, name] : files)
        {
            if (option->count () > 0 && name->empty ())
                throw CLI::ValidationError (option->get_name (), "it needs the name of a file");
        }
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
    options.sounds = pathFromUtf8 (sounds);
    options.programFile = pathFromUtf8 (programFile);
    options.bankFile = pathFromUtf8 (bankFile);
    options.plot = pathFromUtf8 (plot);
    options.output = output.empty () ? options.song.stem () += ".wav" : pathFromUtf8 (output);
    options.format = formats.at (format);
    options.progress = progress == "always" || (progress == "auto" && terminal);
    return std::nullopt;
}
}
