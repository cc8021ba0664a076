// makeDemos: writes the example pieces as MIDI files. Programs are named; their numbers come from the
// bank source.

#include "examples/Pieces.h"
#include "examples/Score.h"
#include "midi/Writer.h"
#include "resources/bank/BankSource.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>

namespace
{
void write (const std::filesystem::path& path, const midi::Song& song)
{
    const std::vector<std::uint8_t> bytes = midi::fileBytes (song);
    std::ofstream file (path, std::ios::binary);
    file.write (reinterpret_cast<const char*> (bytes.data ()), static_cast<std::streamsize> (bytes.size ()));
    file.flush ();
    if (!file)
        throw std::runtime_error ("cannot write " + path.string ());
}
}

int main (int argc, char** argv)
{
    CLI::App app{ "Writes the example pieces as MIDI files" };
    std::filesystem::path sourcePath;
    std::filesystem::path folder;
    app.add_option ("source", sourcePath, "The bank source, factorybank.txt")
        ->required ()
        ->check (CLI::ExistingFile);
    app.add_option ("folder", folder, "Folder to write the pieces to")
        ->required ()
        ->check (CLI::ExistingDirectory);
    CLI11_PARSE (app, argc, argv);

    try
    {
        std::ifstream source (sourcePath);
        std::vector<std::string> names;
        for (const bank::SourceProgram& program : bank::readBankSource (source))
            names.push_back (program.name ());
        write (folder / "demo.mid", examples::songOf (examples::demo (), names));
        write (folder / "low-roads.mid", examples::songOf (examples::lowRoads (), names));
        write (folder / "harbour-lights.mid", examples::songOf (examples::harbourLights (), names));
        write (folder / "night-train.mid", examples::songOf (examples::nightTrain (), names));
    }
    catch (const std::exception& error)
    {
        std::cerr << "makeDemos: " << error.what () << ".\n";
        return 1;
    }
    return 0;
}
