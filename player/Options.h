#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace player
{
// What the command line asks for. What is not told is as it was the last time.
struct Options
{
    std::filesystem::path song; // empty: none
    std::string program;        // name or number from 1; empty: the first, and the songs' own program changes
    std::optional<std::string> device;
    std::optional<std::uint32_t> sampleRate; // Hz, 0: the device's own
    std::optional<std::uint32_t> period;     // frames, 0: the device's own
    std::optional<std::string> midi;
    bool silent = false;
    bool listDevices = false;
};

// Names that mean no device: the system's own choice, all MIDI keyboards, none of them.
inline constexpr char defaultDevice[] = "default";
inline constexpr char allKeyboards[] = "all";
inline constexpr char noKeyboards[] = "none";

// What the program ends with when the command line asks for nothing that can be done, or only for help.
struct Ending
{
    int status = 0;
    std::string text; // to standard output when status is 0, else to standard error
};

// Fills the options from UTF-8 arguments, the program's own name first. An answer means: stop with it.
std::optional<Ending> parseOptions (const std::vector<std::string>& arguments, Options& options);
}
