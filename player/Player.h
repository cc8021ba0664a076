#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "editor/PanelFactory.h"
#include "platform/PlayerWindow.h"
#include "player/ComputerKeyboard.h"
#include "player/Performer.h"

namespace player
{
// The panel in a window of its own, and what is done there: keys, dropped songs, the transport.
// User-interface thread.
class Player final : private editor::PanelHost, private platform::PlayerWindowListener
{
public:
    struct Settings
    {
        double sampleRate = 48000.0;       // Hz, of the songs
        bool followsProgramChanges = true; // of the songs
        std::string note;                  // shown behind the title, UTF-8
    };

    // Opens the window. Throws std::runtime_error, as one sentence, when there is no display. The performer
    // must outlive the player.
    Player (Performer& newPerformer, Settings newSettings);
    ~Player () override;

    // Opens a song and plays it. Throws midi::ReadError; the song before then stays.
    void openSong (const std::filesystem::path& file);

    // Shown behind the title from now on.
    void setNote (const std::string& text) { settings.note = text; }

    // A turn of the event loop, which takes so many milliseconds when nothing happens.
    void idle (int milliseconds);
    bool isClosed () const { return closed; } // the user wants it to end

private:
    // PanelHost
    void setParameterAutomated (std::int32_t index, float value) override;
    void beginEdit (std::int32_t /*index*/) override {}
    void endEdit (std::int32_t /*index*/) override {}
    bool resize (int width, int height) override;
    void updateDisplay () override {}

    // PlayerWindowListener
    bool keyPressed (int key) override;
    void keyReleased (int key) override { keyboard.release (key); }
    void focusLost () override { keyboard.releaseAll (); }
    void filesDropped (const std::vector<std::filesystem::path>& files) override;
    void closeRequested () override { closed = true; }

    bool isCommand (int key);
    std::string title () const;

    Performer& performer;
    Settings settings;
    ComputerKeyboard keyboard;
    std::unique_ptr<editor::HostedPanel> panel;
    std::unique_ptr<platform::PlayerWindow> window;
    std::vector<std::filesystem::path> dropped; // songs to open, once the window's events are done
    std::string shownTitle;
    bool closed = false;
};
}
