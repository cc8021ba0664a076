#include "player/MidiIn.h"

#include <RtMidi.h>

#include <algorithm>
#include <stdexcept>

#include "platform/Console.h"
#include "player/ProgramName.h"

namespace player
{
namespace
{
constexpr unsigned char firstChannelStatus = 0x80;
constexpr unsigned char firstSystemStatus = 0xF0;

// Without the numbers of client and port that ALSA puts behind it, for they change from one day to the next:
// "Keys 28:0".
std::string plainName (const std::string& name)
{
    constexpr char digits[] = "0123456789";
    const std::size_t colon = name.find_last_not_of (digits);
    if (colon == std::string::npos || colon == 0 || name[colon] != ':')
        return name;
    const std::size_t blank = name.find_last_not_of (digits, colon - 1);
    return blank != std::string::npos && name[blank] == ' ' ? name.substr (0, blank) : name;
}
}

class MidiIn::Input
{
public:
    // Throws RtMidiError.
    Input () : input (makeInput ()) {}

    std::vector<Device> devices ()
    {
        std::vector<Device> found;
        for (unsigned port = 0; port < input->getPortCount (); ++port)
            found.push_back ({ plainName (input->getPortName (port)), "MIDI" });
        return found;
    }

    void listen (std::size_t port, LiveEvents& destination)
    {
        input->setCallback ([] (double, std::vector<unsigned char>* message, void* events)
                            { take (*message, *static_cast<LiveEvents*> (events)); },
                            &destination);
        input->openPort (static_cast<unsigned> (port), programName);
    }

private:
    // Where there is no MIDI the system's library says so itself.
    static std::unique_ptr<RtMidiIn> makeInput ()
    {
        const platform::QuietErrors quiet;
        return std::make_unique<RtMidiIn> (RtMidi::UNSPECIFIED, programName);
    }

    std::unique_ptr<RtMidiIn> input;
};

void MidiIn::take (std::span<const unsigned char> message, LiveEvents& destination)
{
    ShortMessage bytes = {};
    if (message.empty () || message.size () > bytes.size () || message[0] < firstChannelStatus ||
        message[0] >= firstSystemStatus)
        return;
    std::ranges::copy (message, bytes.begin ());
    destination.send (bytes);
}

std::vector<Device> MidiIn::devices ()
{
    try
    {
        return Input ().devices ();
    }
    catch (const RtMidiError&)
    {
        throw std::runtime_error ("this system has no MIDI, so MIDI keyboards cannot be played");
    }
}

MidiIn::MidiIn (const DeviceWish& wish, LiveEvents& destination)
{
    const std::vector<Device> found = devices ();
    const auto wanted = findDevice (found, wish);
    if (!wish.isAny () && !wanted)
        throw std::runtime_error (wish.text.empty () ? "the MIDI keyboard that was chosen last is not there"
                                                     : "no MIDI keyboard is called \"" + wish.text +
                                                           "\"; --list-devices shows those that there are");
    std::string refused;
    for (std::size_t port = 0; port < found.size (); ++port)
    {
        if (!wish.isAny () && wanted != port)
            continue;
        try
        {
            auto input = std::make_unique<Input> ();
            input->listen (port, destination);
            inputs.push_back (std::move (input));
            opened.push_back (found[port].name);
        }
        catch (const RtMidiError&) // another program has it
        {
            refused = found[port].name;
        }
    }
    if (inputs.empty () && !refused.empty ())
        throw std::runtime_error ("the MIDI keyboard \"" + refused +
                                  "\" cannot be opened; does another program use it?");
}

MidiIn::~MidiIn () = default;
}
