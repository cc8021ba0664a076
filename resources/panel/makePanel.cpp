// Draws the panel's bitmaps into a folder: makePanel resources/panel
#include "picture/Png.h"
#include "resources/panel/PanelArt.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace
{
void writeFile (const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes)
{
    std::ofstream file (path, std::ios::binary);
    file.write (reinterpret_cast<const char*> (bytes.data ()), static_cast<std::streamsize> (bytes.size ()));
    if (!file.flush ())
        throw std::runtime_error ("cannot write " + path.string ());
}
}

int main (int argc, char** argv)
{
    try
    {
        CLI::App app{ "Draws the bitmaps of the panel." };
        std::string folder;
        app.add_option ("folder", folder, "Where the pictures go")->check (CLI::ExistingDirectory);
        CLI11_PARSE (app, argc, argv);

        if (!folder.empty ())
        {
            for (const panel::Bitmap& bitmap : panel::bitmaps ())
            {
                writeFile (std::filesystem::path (folder) / panel::bitmapFile (bitmap),
                           panel::bmpFile (bitmap));
                for (const int percent : panel::largerSets)
                {
                    const auto file = std::filesystem::path (folder) / panel::largerFile (bitmap, percent);
                    std::filesystem::create_directories (file.parent_path ());
                    picture::writePng (panel::drawBitmap (bitmap, percent), file);
                }
            }
        }
    }
    catch (const std::exception& error)
    {
        std::cerr << "makePanel: " << error.what () << '\n';
        return 1;
    }
    return 0;
}
