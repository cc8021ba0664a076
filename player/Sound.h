#pragma once

#include <functional>
#include <memory>
#include <string>

#include "player/AudioOut.h"

namespace player
{
struct SoundWish
{
    AudioSettings settings;
    bool isSilent = false;     // no device is wanted
    bool mayBeAnother = false; // the system's own may take the place of the device
};

// How devices are opened; as AudioOut does.
struct SoundDoors
{
    std::function<std::unique_ptr<AudioOut> (const AudioSettings&)> open = AudioOut::open;
    std::function<std::unique_ptr<AudioOut> (const AudioSettings&)> openSilent = AudioOut::openSilent;
};

// Sound, as long as a device gives any. Where the one that is wanted is not there, or goes, the system's own
// may take its place, else silence does, with which everything else works; the device is looked for until it
// is there. User-interface thread.
class Sound
{
public:
    explicit Sound (SoundWish wanted, SoundDoors ways = {});

    std::uint32_t sampleRate () const { return out->sampleRate (); } // Hz, stays what it was at first

    // Of the device that is heard; empty for silence.
    std::string deviceName () const { return heard ? out->name () : ""; }
    bool isHeard () const { return heard; }

    // Why it is not what was wished for, as one sentence; empty when it is.
    const std::string& problem () const { return reason; }

    // Asks for sound from now on, on a thread of its own. The source must live as long as this. Throws
    // std::runtime_error when the device refuses.
    void start (AudioSource& newSource);

    // Looks whether the device is there still, or there again; the longer it is not, the more seldom, for
    // looking may disturb others that use the same system. The answer tells what has changed in a sentence,
    // empty when nothing has.
    std::string look ();

private:
    // Opens a device that is heard. False when there is none; a silent one that was open may have ended then.
    bool openHeard ();

    SoundWish wish;
    SoundDoors doors;
    AudioSource* source = nullptr;
    std::unique_ptr<AudioOut> out;
    bool heard = false;
    int looks = 0; // since the last attempt
    int pause = 1; // looks from that to the next
    std::string reason;
};
}
