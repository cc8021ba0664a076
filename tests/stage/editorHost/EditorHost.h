#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/Plugin.h"
#include "platform/HostWindow.h"

// A host with one instrument and its editor in a window, driven by lines of text: see `commands` in the
// source for the list. One thread does everything, as the smallest real hosts do.
class EditorHost
{
public:
    // Throws std::runtime_error when the library cannot be loaded or refuses.
    explicit EditorHost (const std::filesystem::path& library);
    ~EditorHost ();
    EditorHost (const EditorHost&) = delete;
    EditorHost& operator= (const EditorHost&) = delete;

    // Carries out one line and answers what is to be printed, one line too: "ok", what was asked for, or
    // "error" and why.
    std::string obey (const std::string& line);

    // A turn of the event loop: window events, then the editor's idle call.
    void idle ();

private:
    using Words = std::vector<std::string>;
    struct Command;
    static const Command commands[];

    VstIntPtr answer (VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

    std::string openEditor (const Words& words);
    std::string closeEditor (const Words& words);
    std::string redraw (const Words& words);
    std::string rectangle (const Words& words);
    std::string getParameter (const Words& words)
    {
        return std::to_string (plugin->parameter (std::stoi (words[1])));
    }
    std::string setParameter (const Words& words);
    std::string program (const Words& words);
    std::string programName (const Words& /*words*/)
    {
        return plugin->programName (plugin->currentProgram ());
    }
    std::string sendMidi (const Words& words);
    std::string render (const Words& words);
    std::string takeCalls (const Words& /*words*/) { return std::exchange (calls, {}); }
    std::string pressKey (const Words& words)
    {
        return std::to_string (plugin->call (effEditKeyDown, words[1].front ()));
    }
    std::string memoryUse (const Words& /*words*/) { return std::to_string (platform::residentKilobytes ()); }
    std::string cycle (const Words& words);
    std::string fixSize (const Words& words);
    std::string rename (const Words& words);
    std::string removeInstrument (const Words& words);

    std::unique_ptr<platform::HostWindow> window;
    bool sizeIsFixed = false;
    std::string calls;                    // what the instrument told its host since the last question
    std::unique_ptr<host::Plugin> plugin; // null once it is removed
};
