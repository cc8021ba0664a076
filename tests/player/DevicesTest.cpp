// The choice of devices, and what comes from them.
#include <gtest/gtest.h>

#include "player/MidiIn.h"
#include "player/StoredChoice.h"
#include "tests/player/SentEvents.h"
#include "tests/support/FakeSystem.h"

using namespace player;

TEST (MidiIn, TakesWholeChannelMessagesOnly)
{
    LiveEvents events;
    for (const std::vector<unsigned char>& message : std::vector<std::vector<unsigned char>>{
             { 0x91, 60, 1 }, { 0xC2, 5 }, {}, { 0xF8 }, { 0xF0, 1, 2, 0xF7 }, { 60, 1 }, { 0xEF, 0, 64 } })
        MidiIn::take (message, events);
    EXPECT_EQ (sentBy (events),
               (std::vector<ShortMessage>{ { 0x91, 60, 1 }, { 0xC2, 5, 0 }, { 0xEF, 0, 64 } }));
}

TEST (Choice, FindsDevicesByNamePartAndSystem)
{
    const Device devices[] = { { "USB Speakers", "ALSA" }, { "Speakers", "WASAPI" }, { "Default", "JACK" } };
    using Row = std::pair<const char*, std::optional<std::size_t>>;
    for (const auto& [text, found] :
         { Row{ "speakers", 1 }, Row{ "usb", 0 }, Row{ "jack", 2 }, Row{ "Phones", {} } })
        EXPECT_EQ (findDevice (devices, { text, 0 }), found) << text;
    EXPECT_EQ (findDevice (devices, { "", keyOfName ("Default") }), 2u);
    EXPECT_EQ (findDevice (devices, { "", keyOfName ("Gone") }), std::nullopt);
}

TEST (Choice, IsKeptUntilAnotherOneIsMade)
{
    FakeSystem system;
    const auto store = system.services ().settings;
    // What the next run does after one with these arguments, which could open this device.
    const auto choiceAfter = [&] (const std::vector<std::string>& arguments, const std::string& device)
    {
        Options told;
        EXPECT_FALSE (parseOptions (arguments, told));
        EXPECT_TRUE (storeChoice (told, device, "", *store));
        return readChoice ({}, *store);
    };
    Choice later =
        choiceAfter ({ "brimvale", "-d", "usb", "-r", "48000", "-m", "none", "-b", "256" }, "USB Speakers");
    EXPECT_EQ (later.audio.device.key, keyOfName ("USB Speakers"));
    EXPECT_EQ (later.audio.sampleRate, 48000u);
    EXPECT_EQ (later.audio.period, 256u);
    EXPECT_FALSE (later.listensToMidi);

    later = choiceAfter ({ "brimvale", "-d", "wrong", "-m", "all", "-r", "0" }, "");
    EXPECT_EQ (later.audio.device.key, keyOfName ("USB Speakers")) << "what could not be opened is not kept";
    EXPECT_EQ (later.audio.sampleRate, 0u);
    EXPECT_TRUE (later.listensToMidi && later.midi.isAny ());
    EXPECT_TRUE (choiceAfter ({ "brimvale", "-d", "default" }, "USB Speakers").audio.device.isAny ());
    Options refused;
    EXPECT_TRUE (parseOptions ({ "brimvale", "-b", "15" }, refused)) << "a device asks for more at a time";
}
