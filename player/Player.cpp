#include "player/Player.h"

#include <cstdio>
#include <stdexcept>
#include <utility>

#include "midi/Reader.h"
#include "player/ProgramName.h"
#include "resources/icon/Icon.h"

namespace player
{
namespace
{
constexpr int iconSide = 64;         // pixels
constexpr double seekSeconds = 5.0;  // of one step
constexpr int firstNumberKey = 0x02; // scan codes of the row above the letters
constexpr int lastNumberKey = 0x0B;

editor::KeyGroup groupOf (int key)
{
    if (key >= firstNumberKey && key <= lastNumberKey)
        return editor::KeyGroup::number;
    const bool isArrow = key == platform::keyLeft || key == platform::keyRight || key == platform::keyUp ||
                         key == platform::keyDown;
    return isArrow ? editor::KeyGroup::arrow : editor::KeyGroup::other;
}

std::string clock (double seconds)
{
    constexpr int secondsPerMinute = 60;
    const int whole = static_cast<int> (seconds);
    char text[32];
    std::snprintf (text, sizeof text, "%d:%02d", whole / secondsPerMinute, whole % secondsPerMinute);
    return text;
}
}

Player::Player (Performer& newPerformer, Settings newSettings)
    : performer (newPerformer),
      settings (std::move (newSettings)),
      keyboard (performer.liveEvents ()),
      panel (editor::createPanel (performer.instrument (), *this))
{
    const auto size = panel->size ();
    window = platform::PlayerWindow::make (size.width, size.height, icon::draw (iconSide), *this);
    if (window == nullptr)
        throw std::runtime_error ("there is no display to show the panel on");
    performer.instrument ().attachEditor (panel.get ());
    if (!panel->open (window->handle ()))
        throw std::runtime_error ("the panel could not be opened");
    window->acceptFiles ();
    idle (0);
}

Player::~Player ()
{
    keyboard.releaseAll ();
    panel->close ();
}

void Player::openSong (const std::filesystem::path& file)
{
    SongPlayer& song = performer.songPlayer ();
    song.open (readSong (file, settings.sampleRate, settings.followsProgramChanges));
    song.play ();
}

void Player::idle (int milliseconds)
{
    window->handleEvents (milliseconds);
    for (const std::filesystem::path& file : std::exchange (dropped, {}))
    {
        try
        {
            openSong (file);
        }
        catch (const midi::ReadError& error)
        {
            const std::string text =
                std::string ("This is no song that can be played: ") + error.what () + ".";
            performer.instrument ().showMessage (text.c_str (), programName, platform::Buttons::ok);
        }
    }
    panel->idle ();
    std::string now = title ();
    if (now != shownTitle)
        window->setTitle (now);
    shownTitle = std::move (now);
}

std::string Player::title () const
{
    const SongPlayer& song = performer.songPlayer ();
    std::string text = programName;
    if (song.song () != nullptr)
        text = song.song ()->name + " " + clock (song.seconds ()) + " / " +
               clock (song.song ()->sequence.seconds) + (song.isPlaying () ? "" : " (paused)") + " - " + text;
    return settings.note.empty () ? text : text + " - " + settings.note;
}

void Player::setParameterAutomated (std::int32_t index, float value)
{
    performer.instrument ().setParameter (index, value);
}

bool Player::resize (int width, int height)
{
    window->resize (width, height);
    return true;
}

bool Player::keyPressed (int key)
{
    return !panel->wantsKey (groupOf (key)) && (isCommand (key) || keyboard.press (key));
}

bool Player::isCommand (int key)
{
    SongPlayer& song = performer.songPlayer ();
    switch (key)
    {
    case platform::keySpace:
        song.isPlaying () ? song.pause () : song.play ();
        return true;
    case platform::keyLeft:
        song.seek (song.seconds () - seekSeconds);
        return true;
    case platform::keyRight:
        song.seek (song.seconds () + seekSeconds);
        return true;
    case platform::keyHome:
        song.seek (0.0);
        return true;
    case platform::keyPageUp:
        keyboard.shift (1);
        return true;
    case platform::keyPageDown:
        keyboard.shift (-1);
        return true;
    default:
        return false;
    }
}

// Not opened at once: a song that cannot be read shows a message, which waits, and whoever has dropped it
// waits, too.
void Player::filesDropped (const std::vector<std::filesystem::path>& files)
{
    dropped = { files.front () };
}
}
