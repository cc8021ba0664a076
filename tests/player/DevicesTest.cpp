// The choice of devices, and what comes from them.
#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

#include "player/DeviceWatch.h"
#include "player/StoredChoice.h"
#include "tests/player/SentEvents.h"
#include "tests/support/FakeSystem.h"

using namespace player;

namespace
{
using Messages = std::vector<ShortMessage>;

// Keyboards that come and go by hand; those that nobody may open are called "taken".
struct FakeMidi final : MidiSystem
{
    struct FakeLine final : Line
    {
        FakeLine (const Device& device, MidiKeyboard& keyboard)
            : place (open.emplace (device.name + device.place, &keyboard))
        {
        }
        ~FakeLine () override { open.erase (place); }
        std::multimap<std::string, MidiKeyboard*>::iterator place;
    };
    std::vector<Device> devices () override { return plugged; }
    std::unique_ptr<Line> listen (std::size_t n, MidiKeyboard& keyboard) override
    {
        return plugged[n].name == "taken" ? nullptr : std::make_unique<FakeLine> (plugged[n], keyboard);
    }

    static inline std::vector<Device> plugged;
    static inline std::multimap<std::string, MidiKeyboard*> open; // by name and place
};

// Sound devices, of which at most one is there.
struct FakeOut final : AudioOut
{
    explicit FakeOut (std::string newName) : title (std::move (newName)) {}
    ~FakeOut () override { playing -= isStarted ? 1 : 0; }
    const std::string& name () const override { return title; }
    std::uint32_t sampleRate () const override { return 48000; }
    void start (AudioSource& /*source*/) override
    {
        if (refuses && title != "silence")
            throw std::runtime_error ("it does not start");
        EXPECT_EQ (playing, 0) << "one at a time asks for sound";
        isStarted = true;
        ++playing;
    }
    bool isRunning () const override { return plugged == title; }

    static inline std::string plugged;
    static inline bool refuses = false;
    static inline int playing = 0; // how many ask for sound
    std::string title;
    bool isStarted = false;
};
}

TEST (MidiKeyboard, TakesWholeChannelMessagesAndEndsWhatItHolds)
{
    LiveEvents events;
    MidiKeyboard keyboard (events);
    const auto play = [&] (const std::vector<std::vector<unsigned char>>& messages)
    {
        for (const auto& message : messages)
            keyboard.take (message);
        return sentBy (events);
    };
    EXPECT_EQ (play ({ { 0x91, 60, 1 }, { 0xC2, 5 }, {}, { 0xF8 }, { 0xF0, 1, 2, 0xF7 }, { 60, 1 } }),
               (Messages{ { 0x91, 60, 1 }, { 0xC2, 5, 0 } }));
    play ({ { 0x90, 2, 1 },
            { 0x90, 2, 0 },
            { 0x90, 3, 1 },
            { 0x80, 3, 1 },
            { 0xB0, 64, 64 },
            { 0xEF, 0, 65 } });
    keyboard.letGo ();
    EXPECT_EQ (sentBy (events), (Messages{ { 0x80, 60, 0 }, { 0xB0, 64, 0 }, { 0xE0, 0, 64 } }));
    play ({ { 0xB0, 64, 127 }, { 0xB0, 64, 63 }, { 0xB0, 1, 9 }, { 0xE0, 1, 1 }, { 0xE0, 0, 64 } });
    keyboard.letGo ();
    keyboard.letGo ();
    EXPECT_EQ (sentBy (events), (Messages{ { 0xB0, 1, 0 } }));
}

TEST (MidiIn, FollowsKeyboardsThatComeAndGo)
{
    LiveEvents events;
    MidiIn all (std::make_unique<FakeMidi> (), {}, events);
    EXPECT_EQ (all.problem (), "");
    const auto look = [&] (const std::vector<Device>& devices)
    {
        FakeMidi::plugged = devices;
        return all.look ();
    };
    const Device keys = { "Keys", "MIDI", "28:0" }, twin = { "Keys", "MIDI", "32:0" },
                 pads = { "Pads", "MIDI" };
    EXPECT_EQ (look ({ pads, keys }),
               "the MIDI keyboard \"Pads\" can be played now, \"Keys\" can be played now");
    EXPECT_EQ (look ({ keys, pads }), "");
    EXPECT_EQ (look ({ keys, twin, pads }), "the MIDI keyboard \"Keys\" can be played now");
    for (const auto& [place, keyboard] : FakeMidi::open)
        keyboard->take (ShortMessage{ 0x90, static_cast<std::uint8_t> (place.back ()), 100 });
    sentBy (events);
    EXPECT_EQ (look ({ twin, pads }), "the MIDI keyboard \"Keys\" has gone");
    EXPECT_EQ (FakeMidi::open.count ("Keys32:0"), 1u);
    EXPECT_EQ (sentBy (events).size (), 1u) << "the key that it held";

    // Of two that cannot be told apart both are opened anew, and each once.
    EXPECT_NE (look ({ pads, pads }), "");
    EXPECT_EQ (look ({ pads }), "the MIDI keyboard \"Pads\" has gone");
    EXPECT_EQ (FakeMidi::open.size (), 1u);
    EXPECT_EQ (look ({ pads, { "taken", "MIDI" } }), "");
    EXPECT_EQ (all.problem (), "");
    EXPECT_EQ (look ({ { "taken", "MIDI" } }), "the MIDI keyboard \"Pads\" has gone");
    EXPECT_EQ (all.problem (), "the MIDI keyboard \"taken\" cannot be opened; does another program use it?");

    FakeMidi::plugged = { pads };
    MidiIn one (std::make_unique<FakeMidi> (), { "key", 0 }, events);
    EXPECT_TRUE (one.problem ().starts_with ("no MIDI keyboard is called \"key\"")) << one.problem ();
    FakeMidi::plugged = { pads, twin, keys };
    EXPECT_EQ (one.look (), "the MIDI keyboard \"Keys\" can be played now");
    EXPECT_EQ (one.names (), std::vector<std::string> ({ "Keys" }));
}

TEST (Sound, GoesOnWhenTheDeviceIsBackOrAnotherIsThere)
{
    const SoundDoors doors = { [] (const AudioSettings& settings)
                               {
                                   if (FakeOut::plugged.empty () ||
                                       !FakeOut::plugged.starts_with (settings.device.text))
                                       throw std::runtime_error ("no " + settings.device.text);
                                   return std::make_unique<FakeOut> (FakeOut::plugged);
                               },
                               [] (const AudioSettings&) { return std::make_unique<FakeOut> ("silence"); } };
    FakeSystem system;
    Performer performer (system.services (), {});
    SongPlayer& song = performer.songPlayer ();
    song.open (readSong (DEMO_SONG, 48000.0, true));
    {
        FakeOut::plugged = "phones";
        Sound any ({ { { "desk", 0 } }, false, true }, doors);
        EXPECT_EQ (any.problem () + ", " + any.deviceName (), "no desk, phones");
        any.start (performer);
        FakeOut::plugged = "desk";
        EXPECT_EQ (any.look (), "the audio device \"phones\" has gone, \"desk\" plays now");
    }
    Sound sound ({ { { "desk", 0 } } }, doors);
    EXPECT_EQ (sound.problem (), "");
    sound.start (performer);
    DeviceWatch watch (sound, nullptr, song);
    DeviceWatch::Time now = {};
    const auto news = [&] (int seconds)
    {
        std::string all;
        for (; seconds > 0; --seconds)
        {
            for (const std::string& sentence : watch.look (now += std::chrono::seconds (1)))
                all += sentence + ".";
        }
        return all;
    };
    song.play ();
    EXPECT_EQ (news (9), "");
    for (const char* left : { "", "phones" }) // another one was not wished for
    {
        FakeOut::plugged = left;
        EXPECT_EQ (news (52), "the audio device \"desk\" has gone.");
        EXPECT_FALSE (song.isPlaying ());
        EXPECT_EQ (watch.note (), "no sound - the audio device \"desk\" has gone");
        EXPECT_EQ (FakeOut::playing, 1) << "silence";
        FakeOut::plugged = "desk";
        FakeOut::refuses = true; // to start
        EXPECT_EQ (news (8), "");
        FakeOut::refuses = false;
        EXPECT_EQ (news (8), "the audio device \"desk\" plays now.");
        EXPECT_TRUE (song.isPlaying ());
        EXPECT_EQ (news (9), "");
        EXPECT_EQ (watch.note (), "") << "told long enough";
    }
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
