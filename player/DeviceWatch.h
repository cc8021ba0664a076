#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "player/MidiIn.h"
#include "player/SongPlayer.h"
#include "player/Sound.h"

namespace player
{
// Looks after the devices while the player runs and says what has become of them. A song stands still while
// nobody hears it, and goes on when the sound is back. User-interface thread.
class DeviceWatch
{
public:
    using Time = std::chrono::steady_clock::time_point;

    // All must outlive this. Without MIDI keyboards `midi` is null.
    DeviceWatch (Sound& audio, MidiIn* midi, SongPlayer& songPlayer);

    // To be called often; looks once a second. The answer are news, each a sentence.
    std::vector<std::string> look (Time now);

    // For the window: what is new, for some seconds, and whether there is no sound.
    std::string note () const;

private:
    struct News
    {
        std::string text;
        Time until;
    };

    std::string lookAtSound ();

    Sound& sound;
    MidiIn* keyboards;
    SongPlayer& song;
    Time next = {};
    bool goesOn = false; // the song, when the sound is back
    News ofSound, ofKeyboards;
};
}
