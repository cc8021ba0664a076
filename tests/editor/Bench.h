#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "picture/Picture.h"
#include "resources/panel/PanelLayout.h"
#include "tests/stage/grabScreen/ScreenGrab.h"

using picture::Picture;

// A program started with pipes to its input and output, killed with this object. Native systems only.
class ChildProcess
{
public:
    explicit ChildProcess (std::vector<std::string> command);
    ~ChildProcess ();
    ChildProcess (const ChildProcess&) = delete;
    ChildProcess& operator= (const ChildProcess&) = delete;

    void writeLine (const std::string& line);
    std::string readLine (); // waits a minute at most; empty at the end of the output
    int wait ();             // closes its input and answers its exit code, or 128 + signal

private:
    int pid = -1;
    int input = -1;
    int output = -1;
};

// An X server that DISPLAY names while this object lives.
class VirtualDisplay
{
public:
    VirtualDisplay ();
    ~VirtualDisplay ();

    void leave (); // DISPLAY names none any more

private:
    std::unique_ptr<ChildProcess> server;
};

// A display of its own with one instrument's editor in it, played with a real mouse and keyboard. Both the
// library for Linux and the one for Windows (under Wine) can be on it: see `isWine`.
class Bench
{
public:
    Bench ();
    ~Bench ();

    static bool isWine (); // BRIMVALE_EDITOR_WINE is set

    // One command of the test host and its answer.
    std::string say (const std::string& command);
    float parameter (int index);
    std::string open (); // the editor; waits until it is drawn

    void moveTo (int x, int y);
    void mouse (const std::string& actions); // as xdotool takes them: "mousedown 1 mousemove 10 20"
    void keys (const std::string& names);    // "Down Down Return"

    Picture picture (int width = 612, int height = 433);

    // The same when no menu is open. Wine at times empties a Direct2D window that gets the focus and has only
    // what changes drawn again, so there it is asked to draw everything.
    Picture redrawnPicture (int width = 612, int height = 433);

    // Whether the picture rests at something new after these actions of the mouse, as where a menu or a field
    // opens.
    bool changesAfter (const std::string& actions, int width = 612, int height = 433);

    // Asks again and again until it is so; false when that takes more than ten seconds.
    static bool eventually (const std::function<bool ()>& condition);

    // Whether the panel shows the picture of this bitmap's frame at a place, at once or soon.
    bool shows (const panel::Rect& place, int bitmapId, int frame = 0);

    // Calls of the host since the last question, together with those that still come, up to one that
    // contains `last`; everything so far when it does not come.
    std::string callsUntil (const std::string& last);

    int finish (); // ends the host; its exit code

private:
    std::string settingsFolder;
    VirtualDisplay display;
    std::unique_ptr<ChildProcess> host;
    std::unique_ptr<ScreenGrab> screen;
};

// The keys that choose an entry of the zoom menu in the open main menu: it is the eleventh one's, and its own
// are told from the last one up.
std::string zoomKeys (std::size_t entry);

// A bitmap of the panel from its file.
const Picture& bitmapFile (int id);

// True when the picture's pixels at x, y are those of the bitmap's rows from `row` on.
bool matches (const Picture& picture, const panel::Rect& place, const Picture& bitmap, int row);

// The control of the table with this tag that is not a mere display.
const panel::Control& controlOf (int tag);
