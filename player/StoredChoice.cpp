#include "player/StoredChoice.h"

#include <string_view>

namespace player
{
namespace
{
constexpr std::string_view group = "Brimvale";
constexpr std::string_view deviceName = "PlayerDevice"; // keys of names; 0: default, all
constexpr std::string_view midiName = "PlayerMidi";
constexpr std::string_view rateName = "PlayerRate";     // Hz
constexpr std::string_view periodName = "PlayerPeriod"; // frames

const std::uint32_t noKeyboardsKey = keyOfName (noKeyboards);

// Of two choices for one kind of device the one that is told counts. A text that means any device leaves the
// wish as it is.
DeviceWish wishOf (const std::optional<std::string>& told, std::string_view any, std::uint32_t stored)
{
    if (!told)
        return { {}, stored };
    return *told == any ? DeviceWish () : DeviceWish{ *told, 0 };
}
}

Choice readChoice (const Options& options, const platform::SettingsStore& store)
{
    const auto stored = [&] (std::string_view name) { return store.read (group, name); };
    Choice choice;
    choice.audio.device = wishOf (options.device, defaultDevice, stored (deviceName));
    choice.audio.sampleRate = options.sampleRate.value_or (stored (rateName));
    choice.audio.period = options.period.value_or (stored (periodName));
    choice.midi = wishOf (options.midi, allKeyboards, stored (midiName));
    choice.listensToMidi = choice.midi.text != noKeyboards && choice.midi.key != noKeyboardsKey;
    return choice;
}

bool storeChoice (const Options& options, const std::string& device, const std::string& keyboard,
                  platform::SettingsStore& store)
{
    bool isStored = true;
    const auto keep = [&] (std::string_view name, std::uint32_t number)
    { isStored = store.write (group, name, number) && isStored; };
    if (options.device == defaultDevice || (options.device && !device.empty ()))
        keep (deviceName, options.device == defaultDevice ? 0 : keyOfName (device));
    if (options.midi == allKeyboards || options.midi == noKeyboards || (options.midi && !keyboard.empty ()))
        keep (midiName, options.midi == allKeyboards  ? 0
                        : options.midi == noKeyboards ? noKeyboardsKey
                                                      : keyOfName (keyboard));
    if (options.sampleRate)
        keep (rateName, *options.sampleRate);
    if (options.period)
        keep (periodName, *options.period);
    return store.commit () && isStored;
}
}
