#include "tests/stage/editorHost/EditorHost.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <sstream>
#include <stdexcept>

namespace
{
constexpr int sampleRate = 44100; // Hz
constexpr int blockFrames = 512;

template <typename... Values>
std::string format (const char* pattern, Values... values)
{
    char text[256];
    std::snprintf (text, sizeof text, pattern, values...);
    return text;
}
}

// What a line can say. `words` counts the command itself.
struct EditorHost::Command
{
    const char* name;
    std::size_t words;
    std::string (EditorHost::*act) (const Words& words);
};

const EditorHost::Command EditorHost::commands[] = {
    { "open", 1, &EditorHost::openEditor }, // answers the milliseconds it took
    { "close", 1, &EditorHost::closeEditor },
    { "redraw", 1, &EditorHost::redraw },    // all of it, as if the window had been covered
    { "rect", 1, &EditorHost::rectangle },   // width height
    { "get", 2, &EditorHost::getParameter }, // get INDEX
    { "set", 3, &EditorHost::setParameter }, // set INDEX VALUE
    { "program", 2, &EditorHost::program },  // program NUMBER, or "program ?"; counted from 0
    { "midi", 4, &EditorHost::sendMidi },    // midi STATUS DATA1 DATA2
    { "render", 2, &EditorHost::render },    // render BLOCKS: answers the largest magnitude
    { "calls", 1, &EditorHost::takeCalls },  // what the host was told since the last question
    { "key", 2, &EditorHost::pressKey },     // key CHARACTER
    { "memory", 1, &EditorHost::memoryUse }, // resident kilobytes
    { "cycle", 2, &EditorHost::cycle },      // cycle COUNT: opens and closes so often
    { "fixed", 1, &EditorHost::fixSize },    // no window changes its size any more
    { "name", 2, &EditorHost::programName }, // name ?: of the program that is chosen
    { "rename", 2, &EditorHost::rename },    // rename NAME: the program that is chosen
    { "remove", 1, &EditorHost::removeInstrument },
};

EditorHost::EditorHost (const std::filesystem::path& library)
{
    plugin = std::make_unique<host::Plugin> (
        library, [this] (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
        { return answer (opcode, index, value, ptr, opt); });
    plugin->start (sampleRate, blockFrames);
    calls.clear ();
}

EditorHost::~EditorHost ()
{
    removeInstrument ({});
}

VstIntPtr EditorHost::answer (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    switch (opcode)
    {
    case audioMasterAutomate:
        calls += format ("automate %d %.4f;", index, static_cast<double> (opt));
        return 0;
    case audioMasterBeginEdit:
        calls += format ("begin %d;", index);
        return 1;
    case audioMasterEndEdit:
        calls += format ("end %d;", index);
        return 1;
    case audioMasterUpdateDisplay:
        calls += "display;";
        return 1;
    case audioMasterCanDo:
        return !sizeIsFixed && std::strcmp (static_cast<const char*> (ptr), "sizeWindow") == 0 ? 1 : 0;
    case audioMasterSizeWindow:
        calls += format ("size %d %d;", index, static_cast<int> (value));
        if (sizeIsFixed)
            return 0;
        if (window != nullptr)
            window->resize (index, static_cast<int> (value));
        return 1;
    default:
        return 0;
    }
}

std::string EditorHost::obey (const std::string& line)
{
    std::istringstream in (line);
    Words words;
    for (std::string word; in >> word;)
        words.push_back (word);
    const auto command = std::ranges::find_if (commands, [&] (const Command& row)
                                               { return !words.empty () && words.front () == row.name; });
    if (command == std::end (commands) || command->words != words.size ())
        return "error no such command: " + line;
    if (plugin == nullptr)
        return "error the instrument has been removed";
    try
    {
        return (this->*command->act) (words);
    }
    catch (const std::exception& problem)
    {
        return std::string ("error ") + problem.what ();
    }
}

void EditorHost::idle ()
{
    if (window == nullptr)
        return;
    window->handleEvents ();
    plugin->call (effEditIdle);
}

std::string EditorHost::openEditor (const Words& /*words*/)
{
    ERect* rect = nullptr;
    if (plugin->call (effEditGetRect, 0, 0, &rect) == 0 || rect == nullptr)
        return "error no editor";
    window = platform::HostWindow::make (rect->right - rect->left, rect->bottom - rect->top);
    if (window == nullptr)
        return "error no display";
    const auto before = std::chrono::steady_clock::now ();
    if (plugin->call (effEditOpen, 0, 0, window->handle ()) == 0)
        return "error the editor did not open";
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now () - before;
    return std::to_string (taken.count ());
}

std::string EditorHost::closeEditor (const Words& /*words*/)
{
    plugin->call (effEditClose);
    window = nullptr;
    return "ok";
}

std::string EditorHost::redraw (const Words& /*words*/)
{
    if (window != nullptr)
        window->redraw ();
    return "ok";
}

std::string EditorHost::rectangle (const Words& /*words*/)
{
    ERect* rect = nullptr;
    plugin->call (effEditGetRect, 0, 0, &rect);
    return rect != nullptr ? format ("%d %d", rect->right - rect->left, rect->bottom - rect->top) : "error";
}

std::string EditorHost::setParameter (const Words& words)
{
    plugin->setParameter (std::stoi (words[1]), std::stof (words[2]));
    return "ok";
}

std::string EditorHost::program (const Words& words)
{
    if (words[1] != "?")
        plugin->selectProgram (std::stoi (words[1]));
    return std::to_string (plugin->currentProgram ());
}

std::string EditorHost::sendMidi (const Words& words)
{
    std::array<std::uint8_t, 3> bytes = {};
    for (std::size_t byte = 0; byte < bytes.size (); ++byte)
        bytes[byte] = static_cast<std::uint8_t> (std::stoi (words[byte + 1]));
    host::BlockEvents events;
    events.add (0, bytes);
    plugin->sendEvents (events);
    return render ({ "render", "1" }); // while the list still lives
}

std::string EditorHost::render (const Words& words)
{
    float loudest = 0.0f;
    for (int block = 0; block < std::stoi (words[1]); ++block)
    {
        plugin->process (blockFrames);
        for (const float sample : std::span (plugin->left (), blockFrames))
            loudest = std::max (loudest, std::abs (sample));
    }
    return std::to_string (loudest);
}

std::string EditorHost::cycle (const Words& words)
{
    for (int count = 0; count < std::stoi (words[1]); ++count)
    {
        std::string opened = openEditor ({});
        if (opened.starts_with ("error"))
            return opened;
        idle ();
        closeEditor ({});
    }
    return "ok";
}

std::string EditorHost::fixSize (const Words& /*words*/)
{
    sizeIsFixed = true;
    return "ok";
}

std::string EditorHost::rename (const Words& words)
{
    plugin->call (effSetProgramName, 0, 0, std::string (words[1]).data ());
    return "ok";
}

// With the editor still open, if it is: hosts do that.
std::string EditorHost::removeInstrument (const Words& /*words*/)
{
    plugin = nullptr;
    window = nullptr;
    return "ok";
}
