// makeDemos: writes the example pieces as MIDI files. Programs are named; their numbers come from the
// bank source.

#include "examples/MidiFile.h"
#include "examples/Pieces.h"
#include "resources/bank/BankSource.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>

namespace
{
void write (const std::filesystem::path& path, const std::vector<unsigned char>& bytes)
{
    std::ofstream file (path, std::ios::binary);
    for (const unsigned char byte : bytes)
        file.put (static_cast<char> (byte));
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
        write (folder / "demo.mid", examples::midiFile (examples::demo (), names));
        write (folder / "low-roads.mid", examples::midiFile (examples::lowRoads (), names));
        write (folder / "harbour-lights.mid", examples::midiFile (examples::harbourLights (), names));
        write (folder / "night-train.mid", examples::midiFile (examples::nightTrain (), names));
    }
    catch (const std::exception& error)
    {
        std::cerr << "makeDemos: " << error.what () << ".\n";
        return 1;
    }
    return 0;
}
