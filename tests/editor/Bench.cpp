#include "tests/editor/Bench.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <thread>
#include <utility>

#include "editor/MenuTable.h"
#include "picture/Dib.h"
#include "tests/host/TemporaryFolder.h"

namespace
{
// Set: the tests play the library for Windows under Wine, in a prefix named after this.
constexpr char wineVariable[] = "BRIMVALE_EDITOR_WINE";

constexpr auto patience = std::chrono::seconds (10);
constexpr auto pollPause = std::chrono::milliseconds (20);
constexpr int readPatience = 60000; // ms; the first start of Wine is slow
}

ChildProcess::ChildProcess (std::vector<std::string> command)
{
    std::signal (SIGPIPE, SIG_IGN); // a child that ends early is told by its answers
    int toChild[2];                 // to read from, to write to
    int fromChild[2];               // the same
    if (pipe2 (toChild, O_CLOEXEC) != 0 || pipe2 (fromChild, O_CLOEXEC) != 0)
        throw std::runtime_error ("no pipe");
    std::vector<char*> arguments;
    for (auto& word : command)
        arguments.push_back (word.data ());
    arguments.push_back (nullptr);

    pid = fork ();
    if (pid == 0)
    {
        setpgid (0, 0);                    // so that a shell's children end with it
        prctl (PR_SET_PDEATHSIG, SIGKILL); // and it ends with a test that crashes
        dup2 (toChild[0], STDIN_FILENO);
        dup2 (fromChild[1], STDOUT_FILENO);
        execvp (arguments[0], arguments.data ());
        _exit (127);
    }
    close (toChild[0]);
    close (fromChild[1]);
    input = toChild[1];
    output = fromChild[0];
}

ChildProcess::~ChildProcess ()
{
    if (pid > 0)
    {
        kill (-pid, SIGTERM);
        waitpid (pid, nullptr, 0);
    }
    if (input >= 0)
        close (input);
    close (output);
}

void ChildProcess::writeLine (const std::string& line)
{
    const std::string text = line + "\n";
    if (write (input, text.data (), text.size ()) != static_cast<ssize_t> (text.size ()))
        throw std::runtime_error ("the program no longer listens");
}

std::string ChildProcess::readLine ()
{
    std::string line;
    for (char character = 0;;)
    {
        pollfd waiting = { output, POLLIN, 0 };
        if (poll (&waiting, 1, readPatience) <= 0 || read (output, &character, 1) != 1 || character == '\n')
            break;
        if (character != '\r')
            line += character;
    }
    return line;
}

int ChildProcess::wait ()
{
    close (input);
    input = -1;
    int status = 0;
    waitpid (pid, &status, 0);
    pid = -1;
    return WIFEXITED (status) ? WEXITSTATUS (status) : 128 + WTERMSIG (status);
}

bool Bench::isWine ()
{
    return std::getenv (wineVariable) != nullptr;
}

VirtualDisplay::VirtualDisplay ()
{
    server = std::make_unique<ChildProcess> (std::vector<std::string>{
        "Xvfb", "-displayfd", "1", "-screen", "0", "2000x1400x24", "-noreset", "-nolisten", "tcp" });
    const std::string number = server->readLine ();
    if (number.empty ())
        throw std::runtime_error ("Xvfb did not start");
    setenv ("DISPLAY", (":" + number).c_str (), 1);
}

VirtualDisplay::~VirtualDisplay ()
{
    leave ();
}

void VirtualDisplay::leave ()
{
    unsetenv ("DISPLAY");
}

Bench::Bench ()
{
    char folder[] = "/tmp/brimvale-editor.XXXXXX";
    settingsFolder = mkdtemp (folder);
    setenv ("XDG_CONFIG_HOME", settingsFolder.c_str (), 1);

    std::vector<std::string> command = { EDITOR_HOST, EDITOR_LIBRARY };
    if (isWine ())
        command = { SOURCE_FOLDER "/scripts/wineRun.sh",
                    "--own-prefix",
                    std::string ("editor") + std::getenv (wineVariable),
                    "--this-display",
                    SOURCE_FOLDER "/build/windows/brimvale-editor-host.exe",
                    SOURCE_FOLDER "/build/windows/Brimvale.dll" };
    host = std::make_unique<ChildProcess> (command);
    screen = std::make_unique<ScreenGrab> ();
}

Bench::~Bench ()
{
    screen.reset ();
    if (host != nullptr)
        finish ();
    std::filesystem::remove_all (settingsFolder);
}

int Bench::finish ()
{
    host->writeLine ("quit");
    const int code = host->wait ();
    host.reset ();
    return code;
}

std::string Bench::say (const std::string& command)
{
    host->writeLine (command);
    return host->readLine ();
}

float Bench::parameter (int index)
{
    const std::string answer = say ("get " + std::to_string (index));
    return answer.empty () ? -1.0f : std::stof (answer);
}

std::string Bench::open ()
{
    const std::string answer = say ("open");
    // The logo's corner of the background is the first thing to look at.
    eventually (
        [this] {
            return matches (picture (), { 0, 0, 160, 90 }, bitmapFile (panel::panelBitmapId), 0);
        });
    say ("calls");
    return answer;
}

void Bench::mouse (const std::string& actions)
{
    if (std::system (("xdotool " + actions).c_str ()) != 0)
        throw std::runtime_error ("xdotool failed");
}

void Bench::moveTo (int x, int y)
{
    mouse ("mousemove " + std::to_string (x) + " " + std::to_string (y));
}

// One by one, for a menu that opens or moves wants to be drawn before it takes the next.
void Bench::keys (const std::string& names)
{
    mouse ("key --delay 60 " + names);
}

Picture Bench::picture (int width, int height)
{
    return screen->grab (width, height);
}

Picture Bench::redrawnPicture (int width, int height)
{
    if (isWine ())
        say ("redraw");
    return picture (width, height);
}

bool Bench::changesAfter (const std::string& actions, int width, int height)
{
    const Picture before = redrawnPicture (width, height);
    Picture last = before;
    mouse (actions);
    return eventually (
        [&]
        {
            const Picture now = picture (width, height);
            return now != before && std::exchange (last, now) == now;
        });
}

bool Bench::eventually (const std::function<bool ()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now () + patience;
    while (!condition ())
    {
        if (std::chrono::steady_clock::now () > deadline)
            return false;
        std::this_thread::sleep_for (pollPause);
    }
    return true;
}

bool Bench::shows (const panel::Rect& place, int bitmapId, int frame)
{
    const int row = frame * panel::findBitmap (bitmapId)->frameHeight ();
    return eventually ([&] { return matches (redrawnPicture (), place, bitmapFile (bitmapId), row); });
}

std::string Bench::callsUntil (const std::string& last)
{
    std::string calls;
    eventually (
        [&]
        {
            calls += say ("calls");
            return calls.find (last) != std::string::npos;
        });
    return calls;
}

std::string zoomKeys (std::size_t entry)
{
    std::string keys = "Down Down Down Down Down Down Down Down Down Down Down Right";
    for (; entry < std::size (editor::zoomPercents); ++entry)
        keys += " Up";
    return keys + " Return";
}

const Picture& bitmapFile (int id)
{
    static std::map<int, Picture> read;
    if (!read.contains (id))
    {
        const auto bytes =
            contentOf (SOURCE_FOLDER "/resources/panel/" + panel::bitmapFile (*panel::findBitmap (id)));
        read[id] = picture::readBmpFile (std::as_bytes (std::span (bytes))).value ();
    }
    return read[id];
}

bool matches (const Picture& picture, const panel::Rect& place, const Picture& bitmap, int row)
{
    return picture.part (place.x, place.y, place.width, place.height) ==
           bitmap.part (0, row, place.width, place.height);
}

const panel::Control& controlOf (int tag)
{
    for (const panel::Control& control : panel::controls ())
    {
        if (control.tag == tag && control.kind != panel::ControlKind::valueDisplay)
            return control;
    }
    throw std::out_of_range ("no control has this tag");
}
