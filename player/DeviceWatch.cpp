#include "player/DeviceWatch.h"

#include <utility>

namespace player
{
namespace
{
using namespace std::chrono_literals;

constexpr auto interval = 1s;
constexpr auto newsLast = 8s;
}

DeviceWatch::DeviceWatch (Sound& audio, MidiIn* midi, SongPlayer& songPlayer)
    : sound (audio),
      keyboards (midi),
      song (songPlayer)
{
}

std::vector<std::string> DeviceWatch::look (Time now)
{
    if (now < next)
        return {};
    next = now + interval;
    std::vector<std::string> all;
    const auto take = [&] (std::string text, News& news, Time until)
    {
        if (!text.empty ())
            all.push_back (text);
        if (!text.empty () || news.until <= now)
            news = { std::move (text), until };
    };
    std::string text = lookAtSound ();
    take (std::move (text), ofSound, sound.isHeard () ? now + newsLast : Time::max ());
    if (keyboards != nullptr)
        take (keyboards->look (), ofKeyboards, now + newsLast);
    return all;
}

std::string DeviceWatch::lookAtSound ()
{
    const bool wasHeard = sound.isHeard ();
    std::string news = sound.look ();
    if (wasHeard && !sound.isHeard ())
    {
        goesOn = song.isPlaying ();
        song.pause ();
    }
    else if (!wasHeard && sound.isHeard () && std::exchange (goesOn, false))
    {
        song.play ();
    }
    return news;
}

std::string DeviceWatch::note () const
{
    std::string text = sound.isHeard () ? "" : "no sound";
    for (const News* news : { &ofSound, &ofKeyboards })
    {
        if (!news->text.empty ())
            text += (text.empty () ? "" : " - ") + news->text;
    }
    return text;
}
}
