#include "player/MidiKeyboard.h"

#include <algorithm>

namespace player
{
namespace
{
constexpr unsigned char noteOff = 0x80;
constexpr unsigned char noteOn = 0x90;
constexpr unsigned char controlChange = 0xB0;
constexpr unsigned char pitchBend = 0xE0;
constexpr unsigned char firstSystemStatus = 0xF0;
constexpr unsigned char kindBits = 0xF0;
constexpr unsigned char dataBits = 0x7F;

constexpr std::uint8_t modulationWheel = 1;
constexpr std::uint8_t sustainPedal = 64;
constexpr std::uint8_t pedalDown = 64; // and above
constexpr std::uint8_t middle = 64;
}

void MidiKeyboard::take (std::span<const unsigned char> message)
{
    ShortMessage bytes = {};
    if (message.empty () || message.size () > bytes.size () || message[0] < noteOff ||
        message[0] >= firstSystemStatus)
        return;
    std::ranges::copy (message, bytes.begin ());
    events.send (bytes);
    follow (bytes);
}

void MidiKeyboard::follow (const ShortMessage& message)
{
    const std::uint8_t number = message[1] & dataBits;
    switch (message[0] & kindBits)
    {
    case noteOff:
        keys.reset (number);
        break;
    case noteOn:
        keys.set (number, message[2] != 0);
        break;
    case controlChange:
        if (number == sustainPedal)
            pedal = message[2] >= pedalDown;
        else if (number == modulationWheel)
            modulation = message[2] != 0;
        break;
    case pitchBend:
        bend = message[1] != 0 || message[2] != middle;
        break;
    default:
        break;
    }
}

void MidiKeyboard::letGo ()
{
    for (std::size_t key = 0; key < keys.size (); ++key)
    {
        if (keys[key])
            events.send ({ noteOff, static_cast<std::uint8_t> (key), 0 });
    }
    if (pedal)
        events.send ({ controlChange, sustainPedal, 0 });
    if (modulation)
        events.send ({ controlChange, modulationWheel, 0 });
    if (bend)
        events.send ({ pitchBend, 0, middle });
    keys.reset ();
    pedal = modulation = bend = false;
}
}
