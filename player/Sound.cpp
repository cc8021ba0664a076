#include "player/Sound.h"

#include <algorithm>
#include <stdexcept>

namespace player
{
namespace
{
constexpr int longestPause = 8; // looks from one attempt to the next
}

Sound::Sound (SoundWish wanted, SoundDoors ways) : wish (std::move (wanted)), doors (std::move (ways))
{
    if (wish.isSilent || !openHeard ())
        out = doors.openSilent (wish.settings);
    wish.settings.sampleRate = out->sampleRate ();
}

void Sound::start (AudioSource& newSource)
{
    source = &newSource;
    out->start (newSource);
}

std::string Sound::look ()
{
    if (wish.isSilent || (heard ? out->isRunning () : ++looks < pause))
        return {};
    looks = 0;
    const std::string gone = deviceName ();
    const std::string loss = "the audio device \"" + gone + "\" has gone";
    if (heard)
        out.reset (); // else it might stand in the way of the next one
    if (openHeard ())
    {
        pause = 1;
        const std::string news = "\"" + out->name () + "\" plays now";
        return gone.empty () ? "the audio device " + news : loss + ", " + news;
    }
    pause = std::min (2 * pause, longestPause);
    if (out == nullptr)
    {
        out = doors.openSilent (wish.settings);
        out->start (*source);
    }
    return gone.empty () ? "" : loss;
}

bool Sound::openHeard ()
{
    std::vector<DeviceWish> wishes = { wish.settings.device };
    if (wish.mayBeAnother && !wishes.front ().isAny ())
        wishes.emplace_back ();
    heard = false;
    reason.clear ();
    for (const DeviceWish& device : wishes)
    {
        try
        {
            AudioSettings settings = wish.settings;
            settings.device = device;
            auto found = doors.open (settings);
            out.reset (); // only one at a time may ask for sound
            if (source != nullptr)
                found->start (*source);
            out = std::move (found);
            heard = true;
            return true;
        }
        catch (const std::runtime_error& error)
        {
            reason = error.what ();
        }
    }
    reason += "; the panel works without sound";
    return false;
}
}
