#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/HostWindow.h"
#include "tests/editor/Bench.h"
#include "tests/formats/FormatHost.h"
#include "tests/host/TemporaryFolder.h"

// A display of its own with one panel in a window at the top left, played with a real mouse and keyboard by
// the one thread that also does what a host's main loop does.
class PanelStage
{
public:
    static PanelStage& shared (); // the one of a program: its libraries know one display

    void open (FormatPanel& panel);
    void close ();

    // Asks at every turn of the main loop until it is so; false when that takes more than ten seconds.
    bool until (const std::function<bool ()>& condition);

    void mouse (const std::string& actions); // as xdotool takes them
    void chooseZoom (std::size_t entry);     // of the panel's zoom menu, by keys
    Picture picture (int percent);
    bool shows (const Picture& expected, int percent);

    // The panel as the VST 2.4 library shows it at 100 and at 150 percent.
    const Picture& expected (int percent) const { return ofVst24.at (percent); }

    // Opens it twice and looks at it: made larger and left so, and made smaller again.
    void expectThePanel (FormatPanel& panel);

private:
    PanelStage ();
    void turn ();
    Picture settled (int percent, const std::function<bool (const Picture&)>& hasBegun);

    TemporaryFolder settings;
    VirtualDisplay display;
    std::unique_ptr<ScreenGrab> screen;
    std::unique_ptr<platform::HostWindow> window;
    FormatPanel* shown = nullptr;
    std::map<int, Picture> ofVst24;
};
