// Renews the tables and the drawn pictures of the manual: makeManual TOP, where TOP is the top of the tree.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "manual/Page.h"
#include "manual/Pictures.h"
#include "picture/Png.h"

namespace
{
namespace fs = std::filesystem;

// Files that are right already are left alone: nothing that hangs on them is made again.
void renewPage (const fs::path& file, const manual::Programs& programs)
{
    std::ifstream in (file, std::ios::binary);
    const std::string before{ std::istreambuf_iterator<char> (in), {} };
    const std::string after = manual::withTables (before, programs);
    if (after == before)
        return;
    std::ofstream out (file, std::ios::binary);
    if (!(out << after).flush ())
        throw std::runtime_error ("cannot write " + file.string ());
}

void renewPicture (const fs::path& file, const picture::Picture& drawn)
{
    if (!fs::exists (file) || picture::readPng (file) != drawn)
        picture::writePng (drawn, file);
}
}

int main (int count, char** arguments)
{
    if (count != 2)
    {
        std::cerr << "usage: makeManual TOP\n";
        return 2;
    }
    try
    {
        const fs::path top = arguments[1];
        std::ifstream source (top / "resources/bank/factorybank.txt");
        const manual::Programs programs = bank::readBankSource (source);
        fs::create_directories (top / "docs/manual");
        for (const manual::Drawing& drawing : manual::drawings ())
            renewPicture (top / "docs/manual" / drawing.file, drawing.draw (programs));
        renewPage (top / "docs/manual.md", programs);
    }
    catch (const std::exception& error)
    {
        std::cerr << "makeManual: " << error.what () << '\n';
        return 1;
    }
    return 0;
}
