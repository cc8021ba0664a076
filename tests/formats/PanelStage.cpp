#include "tests/formats/PanelStage.h"

#include <chrono>
#include <cstdlib>
#include <future>
#include <thread>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "resources/panel/PanelLayout.h"
#include "tests/formats/Vst24Host.h"

namespace
{
using namespace std::chrono_literals;

constexpr std::size_t smallZoom = 0; // entries of the zoom menu
constexpr std::size_t largeZoom = 2;

int places (int pixels, int percent)
{
    return pixels * percent / 100;
}
}

PanelStage& PanelStage::shared ()
{
    static PanelStage stage;
    return stage;
}

PanelStage::PanelStage ()
{
    setenv ("XDG_CONFIG_HOME", (settings / "").c_str (), 1);
    screen = std::make_unique<ScreenGrab> ();

    Vst24Host vst;
    open (vst);
    // The logo's corner is the first thing to come.
    const auto isThere = [] (const Picture& now) { return now.at (5, 5) != picture::Colour{}; };
    ofVst24[100] = settled (100, isThere);
    EXPECT_TRUE (matches (ofVst24[100], { 0, 0, 160, 90 }, bitmapFile (panel::panelBitmapId), 0));
    chooseZoom (largeZoom);
    ofVst24[150] = settled (150, isThere);
    chooseZoom (smallZoom);
    EXPECT_TRUE (shows (ofVst24[100], 100));
    close ();
}

void PanelStage::open (FormatPanel& panel)
{
    mouse ("mousemove 1900 1300"); // where it touches nothing
    const auto [width, height] = panel.size ();
    window = platform::HostWindow::make (width, height);
    panel.resized = [this] (int newWidth, int newHeight) { window->resize (newWidth, newHeight); };
    ASSERT_TRUE (panel.open (window->handle ()));
    shown = &panel;
}

void PanelStage::close ()
{
    shown->close ();
    shown = nullptr;
    window = nullptr;
}

void PanelStage::turn ()
{
    window->handleEvents ();
    shown->turn ();
    std::this_thread::sleep_for (10ms);
}

bool PanelStage::until (const std::function<bool ()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now () + 10s;
    while (!condition ())
    {
        if (std::chrono::steady_clock::now () > deadline)
            return false;
        turn ();
    }
    return true;
}

// The main loop goes on meanwhile.
void PanelStage::mouse (const std::string& actions)
{
    const auto done =
        std::async (std::launch::async, [&actions] { return std::system (("xdotool " + actions).c_str ()); });
    while (done.wait_for (0ms) != std::future_status::ready && shown != nullptr)
        turn ();
}

Picture PanelStage::picture (int percent)
{
    return screen->grab (places (panel::panelRect.width, percent), places (panel::panelRect.height, percent));
}

// All is there when it does not change any more.
Picture PanelStage::settled (int percent, const std::function<bool (const Picture&)>& hasBegun)
{
    Picture last;
    EXPECT_TRUE (until (
        [&]
        {
            const Picture now = picture (percent);
            return hasBegun (now) && std::exchange (last, now) == now;
        }));
    return last;
}

bool PanelStage::shows (const Picture& expected, int percent)
{
    return until ([&] { return picture (percent) == expected; });
}

void PanelStage::chooseZoom (std::size_t entry)
{
    const int percent = shown->size ().first * 100 / panel::panelRect.width;
    const panel::Rect& button = panel::menuButtonRect;
    mouse ("mousemove " + std::to_string (places (button.x + 10, percent)) + " " +
           std::to_string (places (button.y + 10, percent)));
    const Picture before = picture (percent);
    mouse ("click 1");
    settled (percent, [&] (const Picture& now) { return now != before; });
    mouse ("key --delay 30 " + zoomKeys (entry));
    mouse ("mousemove 1900 1300");
}

void PanelStage::expectThePanel (FormatPanel& panel)
{
    for (const auto& [before, zoom, after] :
         { std::tuple (100, largeZoom, 150), std::tuple (150, smallZoom, 100) })
    {
        SCOPED_TRACE (before);
        open (panel); // its host may make a window for 100 percent, as it could not know better
        EXPECT_TRUE (shows (expected (before), before));
        chooseZoom (zoom);
        EXPECT_TRUE (shows (expected (after), after));
        EXPECT_EQ (panel.size (), std::pair (places (panel::panelRect.width, after),
                                             places (panel::panelRect.height, after)));
        close ();
    }
}
