// What the command line asks for.
#pragma once

#include "host/WavWriter.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace host
{
struct Options
{
    std::filesystem::path library;
    std::filesystem::path song;
    std::filesystem::path sounds;      // preset or bank to load before anything else; these four empty: none
    std::filesystem::path programFile; // to save the current program in
    std::filesystem::path bankFile;    // to save the bank in
    std::filesystem::path plot;        // picture of the sound
    std::filesystem::path output;      // the song's name with .wav in the current folder, when not given
    std::string program;               // empty: the instrument's own start, and the song's program changes
    int sampleRate = 44100;            // Hz
    int blockSize = 512;               // frames
    double tailLimit = 30.0;           // seconds
    SampleFormat format = SampleFormat::int24;
    bool stems = false; // a file for each channel, too
    bool listPrograms = false;
    bool progress = false;
};

// What main() ends with when the command line asks for nothing that can be done, or only for help.
struct Ending
{
    int status = 0;
    std::string text; // to standard output when status is 0, else to standard error
};

// Fills the options from UTF-8 arguments, the program's own name first. An answer means: stop with it.
std::optional<Ending> parseOptions (const std::vector<std::string>& arguments, bool terminal,
                                    Options& options);
}
