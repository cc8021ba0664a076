#pragma once

#include "platform/SettingsStore.h"
#include "player/AudioOut.h"
#include "player/Options.h"

namespace player
{
// The devices that are wanted: what the command line says, else what it said the last time. User-interface
// thread.
struct Choice
{
    AudioSettings audio;
    DeviceWish midi;
    bool listensToMidi = true;
};

Choice readChoice (const Options& options, const platform::SettingsStore& store);

// Keeps what the command line said. `device` and `keyboard` are the names of those that were opened, empty
// where none was: then the older choice stays. False when it could not be stored.
bool storeChoice (const Options& options, const std::string& device, const std::string& keyboard,
                  platform::SettingsStore& store);
}
