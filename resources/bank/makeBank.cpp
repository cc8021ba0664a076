// makeBank: turns the readable bank source into the bytes of the bank resource.

#include "resources/bank/BankSource.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>

int main (int argc, char** argv)
{
    CLI::App app{ "Turns the bank source into the bytes that the library carries" };
    std::filesystem::path sourcePath;
    std::filesystem::path bankPath;
    app.add_option ("source", sourcePath, "The bank source, e.g. factorybank.txt")
        ->required ()
        ->check (CLI::ExistingFile);
    app.add_option ("bank", bankPath, "The file to write, e.g. factorybank.bin")->required ();
    CLI11_PARSE (app, argc, argv);

    try
    {
        std::ifstream source (sourcePath);
        const std::vector<char> bytes = bank::bankBytes (bank::readBankSource (source));
        std::ofstream bank (bankPath, std::ios::binary);
        bank.write (bytes.data (), static_cast<std::streamsize> (bytes.size ()));
        bank.flush ();
        if (!bank)
            throw bank::SourceError ("cannot write " + bankPath.string () + ".");
    }
    catch (const bank::SourceError& error)
    {
        std::cerr << "makeBank: " << sourcePath.string () << ": " << error.what () << "\n";
        return 1;
    }
    return 0;
}
