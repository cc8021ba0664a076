#pragma once

#include <memory>
#include <vector>

#include "player/Devices.h"
#include "player/LiveEvents.h"

namespace player
{
// MIDI keyboards: what they send goes to the audio thread as it comes. Made and ended on the user-interface
// thread.
class MidiIn
{
public:
    // Throws std::runtime_error, as one sentence, when the system has no MIDI.
    static std::vector<Device> devices ();

    // Listens to the device that is wished for, or to all. Throws std::runtime_error, as one sentence, when
    // the system has no MIDI or no such device. The destination must live as long as this.
    MidiIn (const DeviceWish& wish, LiveEvents& destination);
    ~MidiIn ();
    MidiIn (const MidiIn&) = delete;
    MidiIn& operator= (const MidiIn&) = delete;

    const std::vector<std::string>& names () const { return opened; } // of the devices that are listened to

    // Hands on a message as it came: channel messages, whole ones. Thread of the system's MIDI.
    static void take (std::span<const unsigned char> message, LiveEvents& destination);

private:
    class Input;
    std::vector<std::unique_ptr<Input>> inputs;
    std::vector<std::string> opened;
};
}
