#pragma once

#include <memory>
#include <vector>

#include "player/Devices.h"
#include "player/MidiKeyboard.h"

namespace player
{
// The system's MIDI, as far as it is needed here. User-interface thread.
class MidiSystem
{
public:
    // A keyboard is listened to while this lives.
    class Line
    {
    public:
        Line () = default;
        virtual ~Line () = default;
        Line (const Line&) = delete;
        Line& operator= (const Line&) = delete;
    };

    // Throws std::runtime_error, as one sentence, when there is none.
    static std::unique_ptr<MidiSystem> make ();

    MidiSystem () = default;
    virtual ~MidiSystem () = default;
    MidiSystem (const MidiSystem&) = delete;
    MidiSystem& operator= (const MidiSystem&) = delete;

    virtual std::vector<Device> devices () = 0; // that are there now

    // One of those, by its place in the list. Null when it refuses, as one that another program has. The
    // keyboard must outlive the answer.
    virtual std::unique_ptr<Line> listen (std::size_t device, MidiKeyboard& keyboard) = 0;
};

// The MIDI keyboards that are wanted: what they send goes to the audio thread as it comes. User-interface
// thread.
class MidiIn
{
public:
    // Listens to the device that is wished for, or to all, as far as they are there. The destination must
    // live as long as this.
    MidiIn (std::unique_ptr<MidiSystem> midi, DeviceWish wanted, LiveEvents& destination);

    std::vector<std::string> names () const; // of the devices that are listened to

    // Why nothing is listened to although there should be, as one sentence; empty when there is no reason.
    std::string problem () const;

    // Looks who has come and who has gone since the last time, and listens to those that are wanted. One that
    // has gone lets go of what it holds. The answer tells about it in a sentence, empty when there is nothing
    // to tell.
    std::string look ();

private:
    struct Keyboard
    {
        Keyboard (Device itself, LiveEvents& destination) : device (std::move (itself)), played (destination)
        {
        }

        Device device;
        MidiKeyboard played;
        std::unique_ptr<MidiSystem::Line> line;
    };

    void drop (const Device& device);
    void open (std::size_t place);

    std::unique_ptr<MidiSystem> system;
    DeviceWish wish;
    LiveEvents& events;
    std::vector<Device> there; // at the last look
    std::vector<std::unique_ptr<Keyboard>> keyboards;
    std::string refused; // by the last look
};
}
