// makeWaves: writes saw.pcm, pulse.pcm and noise.pcm into a folder, raw signed 16-bit little-endian.

#include "resources/waves/WaveTables.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>

namespace
{
bool writePcm (const std::filesystem::path& path, const waves::Samples& samples)
{
    std::ofstream file (path, std::ios::binary);
    for (const std::int16_t sample : samples)
    {
        const auto bits = static_cast<std::uint16_t> (sample);
        file.put (static_cast<char> (bits & 0xFF));
        file.put (static_cast<char> (bits >> 8));
    }
    file.flush ();
    if (!file)
        std::cerr << "makeWaves: cannot write " << path.string () << ".\n";
    return static_cast<bool> (file);
}
}

int main (int argc, char** argv)
{
    CLI::App app{ "Writes the wave tables saw.pcm, pulse.pcm and noise.pcm" };
    std::filesystem::path folder;
    app.add_option ("folder", folder, "Folder to write them to")->required ()->check (CLI::ExistingDirectory);
    CLI11_PARSE (app, argc, argv);

    const bool written = writePcm (folder / "saw.pcm", waves::makeSaw ()) &&
                         writePcm (folder / "pulse.pcm", waves::makePulse ()) &&
                         writePcm (folder / "noise.pcm", waves::makeNoise ());
    return written ? 0 : 1;
}
