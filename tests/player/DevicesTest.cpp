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
    struct Row
    {
        const char* text;
        std::optional<std::size_t> found;
    };
    for (const Row& row : { Row{ "speakers", 1 }, Row{ "usb", 0 }, Row{ "jack", 2 }, Row{ "Phones", {} } })
        EXPECT_EQ (findDevice (devices, { row.text, 0 }), row.found) << row.text;
    EXPECT_EQ (findDevice (devices, { "", keyOfName ("Default") }), 2u);
    EXPECT_EQ (findDevice (devices, { "", keyOfName ("Gone") }), std::nullopt);
}

TEST (Choice, IsKeptUntilAnotherOneIsMade)
{
    FakeSystem system;
    const auto store = system.services ().settings;
    Options told;
    ASSERT_FALSE (parseOptions ({ "brimvale", "-d", "usb", "-r", "48000", "-m", "none", "-b", "256" }, told));
    EXPECT_TRUE (storeChoice (told, "USB Speakers", "", *store));
    Choice later = readChoice ({}, *store);
    EXPECT_EQ (later.audio.device.key, keyOfName ("USB Speakers"));
    EXPECT_EQ (later.audio.sampleRate, 48000u);
    EXPECT_EQ (later.audio.period, 256u);
    EXPECT_FALSE (later.listensToMidi);

    ASSERT_FALSE (parseOptions ({ "brimvale", "-d", "wrong", "-m", "all", "-r", "0" }, told = {}));
    storeChoice (told, "", "", *store);
    later = readChoice ({}, *store);
    EXPECT_EQ (later.audio.device.key, keyOfName ("USB Speakers")) << "what could not be opened is not kept";
    EXPECT_EQ (later.audio.sampleRate, 0u);
    EXPECT_TRUE (later.listensToMidi && later.midi.isAny ());

    ASSERT_FALSE (parseOptions ({ "brimvale", "-d", "default" }, told = {}));
    storeChoice (told, "USB Speakers", "", *store);
    EXPECT_TRUE (readChoice ({}, *store).audio.device.isAny ());
}

TEST (CommandLine, RefusesWhatCannotBeDone)
{
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{ { "--rate", "7999" },
                                                { "--rate", "x" },
                                                { "--period", "15" },
                                                { "a.mid", "b.mid" },
                                                { "--nonsense" },
                                                { "--device" } })
    {
        std::vector<std::string> all = { "brimvale" };
        all.insert (all.end (), arguments.begin (), arguments.end ());
        Options options;
        const auto ending = parseOptions (all, options);
        ASSERT_TRUE (ending.has_value ()) << arguments[0];
        EXPECT_EQ (ending->status, 2) << arguments[0];
        EXPECT_TRUE (ending->text.ends_with ("; --help shows what can be asked for.")) << ending->text;
    }
}
