// Draws the panel's bitmaps into a folder: makePanel resources/panel
// With --preview it also writes the assembled panel as a PNG file to look at, with --controls the list of
// controls.
#include "resources/panel/ControlList.h"
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
        std::string folder, preview, controls;
        app.add_option ("folder", folder, "Where the .bmp files go")->check (CLI::ExistingDirectory);
        app.add_option ("--preview", preview, "PNG file for the assembled panel");
        app.add_option ("--controls", controls, "Markdown file for the list of controls");
        CLI11_PARSE (app, argc, argv);

        if (!folder.empty ())
        {
            for (const panel::Bitmap& bitmap : panel::bitmaps ())
                writeFile (std::filesystem::path (folder) / bitmap.file, panel::bmpFile (bitmap));
        }
        if (!preview.empty ())
            panel::savePreview (preview);
        if (!controls.empty ())
        {
            const std::string page = panel::controlList ();
            writeFile (controls, { page.begin (), page.end () });
        }
    }
    catch (const std::exception& error)
    {
        std::cerr << "makePanel: " << error.what () << '\n';
        return 1;
    }
    return 0;
}
