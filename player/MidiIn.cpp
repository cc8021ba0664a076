#include "player/MidiIn.h"

#include <RtMidi.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/Console.h"
#include "player/ProgramName.h"

namespace player
{
namespace
{
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

// Where there is no MIDI the system's library says so itself, and the answer is null. Later failures, such as
// those of a keyboard that is pulled out, would be thrown from destructors, too; they show in what is
// answered anyway.
std::unique_ptr<RtMidiIn> makeInput ()
{
    const platform::QuietErrors quiet;
    try
    {
        auto input = std::make_unique<RtMidiIn> (RtMidi::UNSPECIFIED, programName);
        input->setErrorCallback ([] (RtMidiError::Type, const std::string&, void*) {});
        return input;
    }
    catch (const RtMidiError&)
    {
        return nullptr;
    }
}

class RtMidiLine final : public MidiSystem::Line
{
public:
    static std::unique_ptr<Line> open (unsigned port, MidiKeyboard& keyboard)
    {
        auto line = std::make_unique<RtMidiLine> ();
        line->input = makeInput ();
        if (line->input == nullptr)
            return nullptr;
        line->input->setCallback ([] (double, std::vector<unsigned char>* message, void* played)
                                  { static_cast<MidiKeyboard*> (played)->take (*message); },
                                  &keyboard);
        line->input->openPort (port, programName);
        return line->input->isPortOpen () ? std::move (line) : nullptr;
    }

private:
    std::unique_ptr<RtMidiIn> input;
};

class RtMidiSystem final : public MidiSystem
{
public:
    explicit RtMidiSystem (std::unique_ptr<RtMidiIn> anyInput) : input (std::move (anyInput)) {}

    std::vector<Device> devices () override
    {
        std::vector<Device> found;
        for (unsigned port = 0; port < input->getPortCount (); ++port)
        {
            const std::string name = input->getPortName (port);
            found.push_back ({ plainName (name), "MIDI", name });
        }
        return found;
    }

    std::unique_ptr<Line> listen (std::size_t device, MidiKeyboard& keyboard) override
    {
        return RtMidiLine::open (static_cast<unsigned> (device), keyboard);
    }

private:
    std::unique_ptr<RtMidiIn> input; // only asks
};

// Those that are in the first list more often than in the second.
std::vector<std::string> missing (std::vector<std::string> first, const std::vector<std::string>& second)
{
    for (const std::string& name : second)
    {
        if (const auto found = std::ranges::find (first, name); found != first.end ())
            first.erase (found);
    }
    return first;
}
}

std::unique_ptr<MidiSystem> MidiSystem::make ()
{
    auto input = makeInput ();
    if (input == nullptr)
        throw std::runtime_error ("this system has no MIDI, so MIDI keyboards cannot be played");
    return std::make_unique<RtMidiSystem> (std::move (input));
}

MidiIn::MidiIn (std::unique_ptr<MidiSystem> midi, DeviceWish wanted, LiveEvents& destination)
    : system (std::move (midi)),
      wish (std::move (wanted)),
      events (destination)
{
    look ();
}

std::vector<std::string> MidiIn::names () const
{
    std::vector<std::string> all;
    for (const auto& keyboard : keyboards)
        all.push_back (keyboard->device.name);
    return all;
}

std::string MidiIn::problem () const
{
    if (!keyboards.empty ())
        return {};
    if (!refused.empty ())
        return "the MIDI keyboard \"" + refused + "\" cannot be opened; does another program use it?";
    if (wish.isAny ())
        return {};
    return wish.text.empty () ? "the MIDI keyboard that was chosen last is not there"
                              : "no MIDI keyboard is called \"" + wish.text +
                                    "\"; --list-devices shows those that there are";
}

std::string MidiIn::look ()
{
    const std::vector<std::string> before = names ();
    const std::vector<Device> last = std::exchange (there, system->devices ());
    refused.clear ();
    // Of several that cannot be told apart nobody knows which one has gone: all of them are opened anew.
    for (const Device& device : last)
    {
        if (std::ranges::count (last, device) != std::ranges::count (there, device))
            drop (device);
    }
    const std::vector<std::unique_ptr<Keyboard>>::size_type kept = keyboards.size ();
    const auto wanted = findDevice (there, wish);
    for (std::size_t place = 0; place < there.size (); ++place)
    {
        const bool isOpen =
            std::any_of (keyboards.begin (), keyboards.begin () + static_cast<std::ptrdiff_t> (kept),
                         [&] (const auto& keyboard) { return keyboard->device == there[place]; });
        if (!isOpen && (wish.isAny () || (wanted == place && keyboards.empty ())))
            open (place);
    }

    std::string news;
    const auto tell = [&] (const std::vector<std::string>& some, const char* what)
    {
        for (const std::string& name : some)
            news += (news.empty () ? "the MIDI keyboard \"" : ", \"") + name + "\" " + what;
    };
    tell (missing (before, names ()), "has gone");
    tell (missing (names (), before), "can be played now");
    return news;
}

void MidiIn::drop (const Device& device)
{
    std::erase_if (keyboards,
                   [&] (const auto& keyboard)
                   {
                       if (keyboard->device != device)
                           return false;
                       keyboard->line.reset ();
                       keyboard->played.letGo ();
                       return true;
                   });
}

void MidiIn::open (std::size_t place)
{
    auto keyboard = std::make_unique<Keyboard> (there[place], events);
    keyboard->line = system->listen (place, keyboard->played);
    if (keyboard->line != nullptr)
        keyboards.push_back (std::move (keyboard));
    else
        refused = there[place].name;
}
}
