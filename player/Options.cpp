#include "player/Options.h"

#include "brimvale/Version.h"

#include <CLI/CLI.hpp>

namespace player
{
namespace
{
constexpr int usageStatus = 2;
constexpr std::uint32_t lowestRate = 8000; // Hz
constexpr std::uint32_t highestRate = 384000;
constexpr std::uint32_t shortestPeriod = 16; // frames
constexpr std::uint32_t longestPeriod = 8192;

std::string sentence (const std::string& text)
{
    std::string line = text.substr (0, text.find ('\n'));
    line.erase (line.find_last_not_of (" .") + 1);
    return line;
}

// A number from one to the other, or 0.
CLI::Validator orNone (std::uint32_t least, std::uint32_t most)
{
    const std::string range = "0 or " + std::to_string (least) + " to " + std::to_string (most);
    return { [=] (const std::string& text)
             {
                 std::uint32_t number = 0;
                 const bool fits = CLI::detail::lexical_cast (text, number) &&
                                   (number == 0 || (number >= least && number <= most));
                 return fits ? std::string () : text + " is not " + range;
             },
             range };
}
}

std::optional<Ending> parseOptions (const std::vector<std::string>& arguments, Options& options)
{
    CLI::App app ("Brimvale without a host: plays MIDI keyboards, the computer's keyboard and MIDI files.",
                  "brimvale");
    app.allow_windows_style_options (false); // "/home/me/song.mid" is a file, on every system
    app.set_version_flag ("--version", std::string ("Brimvale ") + brimvale::version);

    std::string song;
    app.add_option ("SONG", song, "a MIDI file to play");
    app.add_option (
        "-p,--program", options.program,
        "name of a program, or its number from 1; the songs' own program changes are then left out");
    app.add_option ("-d,--device", options.device,
                    "name of the audio device, or a part of it; \"default\": the system's own choice");
    app.add_option ("-r,--rate", options.sampleRate, "sample rate in Hz; 0: the device's own")
        ->check (orNone (lowestRate, highestRate));
    app.add_option ("-b,--period", options.period,
                    "frames that the device asks for at a time; 0: as few as it does well")
        ->check (orNone (shortestPeriod, longestPeriod));
    app.add_option ("-m,--midi", options.midi,
                    "name of the MIDI keyboard, or a part of it; \"all\" of them, or \"none\"");
    app.add_flag ("-n,--no-audio", options.silent, "open no audio device");
    app.add_flag ("-l,--list-devices", options.listDevices, "show audio devices and MIDI keyboards and stop");
    app.footer ("Device, rate, period and MIDI keyboard are kept for the next time.");

    std::vector<std::string> reversed (arguments.rbegin (), arguments.rend () - 1);
    try
    {
        app.parse (reversed);
    }
    catch (const CLI::CallForVersion& version)
    {
        return Ending{ 0, std::string (version.what ()) + "\n" };
    }
    catch (const CLI::Success&)
    {
        return Ending{ 0, app.help () };
    }
    catch (const CLI::ParseError& error)
    {
        return Ending{ usageStatus, sentence (error.what ()) + "; --help shows what can be asked for." };
    }
    options.song = std::u8string (song.begin (), song.end ());
    return std::nullopt;
}
}
