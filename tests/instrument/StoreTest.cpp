// Parameters, programs and chunks as they are stored.
#include <limits>
#include <random>
#include <span>

#include <gtest/gtest.h>

#include "tests/instrument/TestInstrument.h"

using namespace instrument;

namespace
{
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN ();
constexpr float infinity = std::numeric_limits<float>::infinity ();

class StoreTest : public testing::Test
{
protected:
    BankImage bank () { return synth.bank (); }
    std::vector<float> play () { return synth.block (400, { noteOn (0) }); }

    FakeSystem system;
    TestInstrument synth{ system };
};
}

// Hosts and stored settings know parameters by these, misspellings and blanks included.
TEST_F (StoreTest, NamesOfParameters)
{
    const std::string names =
        "Volume    |Osc1-Vol  |Osc1-Wave |Osc1-PW   |Osc1-Range|Osc2-Vol  |Osc2-Wave |Osc2-Fine |Osc2-Range|"
        "MasterP   |Noise     |1-Attack  |1-Sustain |1-Decay   |2-Attack  |2-Decay   |2-Delay   |2-ToFilter|"
        "FilterFreq|FilterRez |FilterType|LfoRate   |LfoWave   |LfoPitch  |LfoFilter |Glide-Mono|Glide-Auto|"
        "Voices    |VolType   |PitchBend |ShowKeys  |VelocityAmp|VelocityFilter|SmothFilt |HighQuality|"
        "FilterKeyTrak|LfoBmpSync|NonUsed  |";
    std::string found;
    for (std::int32_t index = 0; index < 38; ++index)
        found += synth.core.parameterName (index) + "|";
    EXPECT_EQ (found, names);
    EXPECT_EQ (synth.core.parameterName (38) + synth.core.parameterName (-1), "");
}

// What is stored is what the editor hears.
TEST_F (StoreTest, StoreRule)
{
    using Row = std::tuple<std::int32_t, float, float>;
    for (const auto& [index, value, stored] :
         { Row{ paramVolume, 0.3f, 0.3f }, Row{ paramVolume, 3.0f, 1.0f }, Row{ paramVolume, -0.1f, 0.0f },
           Row{ paramVolume, infinity, 1.0f }, Row{ paramVolume, -infinity, 0.0f },
           Row{ paramVoices, 3.0f, 3.0f }, Row{ paramVolType, 2.0f, 2.0f },
           Row{ paramGlideAuto, -4.0f, -4.0f }, Row{ paramShowKeys, 7.5f, 7.5f },
           Row{ paramPitchBend, 2.0f, 1.0f }, Row{ paramHighQuality, 2.0f, 1.0f },
           Row{ param2ToFilter, 0.48f, 0.48f }, Row{ param2ToFilter, std::nextafter (0.48f, 1.0f), 0.5f },
           Row{ param2ToFilter, 0.52f, 0.52f }, Row{ param2ToFilter, std::nextafter (0.52f, 0.0f), 0.5f },
           Row{ paramLfoFilter, 0.49f, 0.5f }, Row{ paramLfoFilter, 1.2f, 1.0f },
           Row{ paramFilterFreq, 0.49f, 0.49f }, Row{ paramNonUsed, 0.7f, 0.7f } })
    {
        synth.told.clear ();
        synth.set (index, value);
        EXPECT_EQ (synth.get (index), stored) << index << " to " << value;
        EXPECT_EQ (synth.told, (TestInstrument::News{ { index, stored } }));
    }
}

TEST_F (StoreTest, NaNAndIndicesOutsideStoreNothing)
{
    const BankImage before = bank ();
    for (std::int32_t index = -1; index < 60; ++index)
        synth.set (index, notANumber);
    for (const std::int32_t index : { -1, -1000000, 38, 39, 47, 55, 1000000, 2147483647, -2147483647 - 1 })
    {
        synth.set (index, 0.77f);
        EXPECT_EQ (synth.get (index), 0.0f) << index;
    }
    EXPECT_TRUE (equal (bank (), before));
    for (const std::int32_t program : { -1, 128, 1000000 })
    {
        synth.core.setProgram (program);
        EXPECT_EQ (synth.core.getProgram (), 0);
        EXPECT_FALSE (synth.core.copyProgram (program));
    }
}

TEST_F (StoreTest, ANewInstancePlaysTheFirstProgramOfTheFactory)
{
    EXPECT_EQ (synth.core.programName (0), "Bass One");
    EXPECT_EQ (synth.core.programName (127), "Retro Pad 64");
    for (std::int32_t index = 0; index < parameterCount; ++index)
    {
        const ParamRow& row = paramTable[static_cast<std::size_t> (index)];
        const float first = bank ().programs[0].values[static_cast<std::size_t> (index)];
        EXPECT_EQ (synth.get (index), row.scope == Scope::program ? first : row.initial) << row.name;
    }
    EXPECT_NEAR (synth.get (paramFilterFreq), 0.284f, 0.0001f);
}

TEST_F (StoreTest, PluginWideValuesOutliveAProgramChange)
{
    for (std::int32_t index = 0; index < 38; ++index)
    {
        synth.core.setProgram (5);
        const float inFive = synth.get (index);
        synth.core.setProgram (4);
        const float other = synth.get (index) == 0.25f ? 0.3125f : 0.25f;
        synth.set (index, other);
        synth.block (1, { midi (0, 0xC9, 0x85, 0) }); // program 5, by MIDI
        EXPECT_EQ (synth.core.getProgram (), 5);
        const bool isWide = (index >= 26 && index <= 30) || index == 34;
        EXPECT_EQ (synth.get (index), isWide ? other : inFive) << index;
    }
}

TEST_F (StoreTest, ProgramsHaveNamesOf24CharactersAndAreCopiedWhole)
{
    for (const auto& [given, kept] : { std::pair{ "123456789012345678901234", "123456789012345678901234" },
                                       std::pair{ "Soft Lead", "Soft Lead" }, std::pair{ "", "" },
                                       std::pair{ "1234567890123456789012345", "123456789012345678901234" } })
    {
        synth.core.setProgramName (given);
        EXPECT_EQ (synth.core.programName (0), kept);
        std::array<char, 24> field = {}; // nothing of a longer name before is left over
        std::copy_n (kept, std::strlen (kept), field.begin ());
        EXPECT_EQ (std::memcmp (bank ().programs[0].name, field.data (), 24), 0);
    }
    EXPECT_TRUE (synth.core.copyProgram (0)); // onto itself
    EXPECT_TRUE (synth.core.copyProgram (127));
    EXPECT_EQ (std::memcmp (&bank ().programs[127], &bank ().programs[0], 176), 0);
}

TEST_F (StoreTest, ABankComesBackAsItWasAndAProgramReplacesTheCurrentOneAlone)
{
    BankImage image = bank ();
    image.slots[paramVolume].midiController = 74;
    image.slots[paramShowKeys].value = 0.4f;
    image.slots[paramVoices].value = 0.2f;
    image.programs[17].setName ("Xylophone");
    image.programs[9].values[paramFilterFreq] = 0.123f;
    synth.core.setProgram (9);
    synth.load (image);
    EXPECT_EQ (synth.core.getProgram (), 9);
    EXPECT_EQ (synth.get (paramFilterFreq), 0.123f);
    EXPECT_EQ (synth.get (paramShowKeys), 0.4f);
    EXPECT_EQ (synth.core.midiController (paramVolume), 74u);
    EXPECT_EQ (synth.entries[17], "018 Xylophone");
    EXPECT_EQ (synth.menuRefreshes, 1);
    synth.core.setProgram (0);
    EXPECT_TRUE (equal (bank (), image));

    synth.core.setProgram (60);
    const auto chunk = synth.core.getChunk (true);
    const std::vector<std::byte> preset (chunk.begin (), chunk.end ());
    ASSERT_EQ (preset.size (), 176u);
    EXPECT_EQ (std::memcmp (preset.data (), &image.programs[60], 176), 0);
    synth.core.setProgram (3);
    synth.core.setChunk (preset.data (), 176, true);
    image.programs[3] = image.programs[60];
    image.slots[0].spare = 3; // the selected program
    EXPECT_TRUE (equal (bank (), image));
    EXPECT_GT (peakOf (play ()), 0.0f);
    image.programs[3].values[paramVolume] = 0.0f;
    synth.core.setChunk (&image.programs[3], 176, true);
    EXPECT_EQ (peakOf (play ()), 0.0f) << "and the engine has it, too";
}

// Hosts that restore the chunk alone would write the values that they saved over program 0.
TEST_F (StoreTest, AWholeBankTellsTheSelectedProgram)
{
    synth.core.setProgram (77);
    BankImage image = bank ();
    EXPECT_EQ (image.slots[0].spare, 77);
    using Row = std::tuple<int, int, int>;
    for (const auto& [told, missing, selected] : { Row{ 77, 0, 77 }, Row{ 0, 0, 5 }, Row{ 127, 0, 127 },
                                                   Row{ 128, 0, 5 }, Row{ 255, 0, 5 }, Row{ 9, 1, 5 } })
    {
        synth.core.setProgram (5);
        image.slots[0].spare = static_cast<std::uint8_t> (told);
        synth.core.setChunk (&image, static_cast<std::int64_t> (sizeof image) - missing, false);
        EXPECT_EQ (synth.core.getProgram (), selected) << told;
        EXPECT_EQ (bank ().slots[0].spare, selected) << "and nothing of it is kept";
    }
}

// An older song, of which the bytes are 0, sounds as it did; what is no 1 is damage.
TEST_F (StoreTest, AWholeBankTellsTheAdditions)
{
    const auto stored = [this]
    { return std::pair<int, int> (bank ().slots[1].spare, bank ().slots[2].spare); };
    EXPECT_EQ (stored (), std::pair (0, 0));
    EXPECT_EQ (synth.core.additions (), Additions{});
    synth.core.setAdditions ({ true, false });
    EXPECT_EQ (stored (), std::pair (1, 0));
    BankImage image = bank ();
    using Row = std::tuple<int, int, int, Additions>;
    for (const auto& [pedal, lock, missing, expected] :
         { Row{ 0, 1, 0, { false, true } }, Row{ 0, 0, 1, { false, true } }, Row{ 1, 1, 0, { true, true } },
           Row{ 2, 255, 0, { false, false } } })
    {
        image.slots[1].spare = static_cast<std::uint8_t> (pedal);
        image.slots[2].spare = static_cast<std::uint8_t> (lock);
        synth.core.setChunk (&image, static_cast<std::int64_t> (sizeof image) - missing, false);
        EXPECT_EQ (synth.core.additions (), expected) << pedal << lock;
    }
    EXPECT_EQ (stored (), std::pair (0, 0)) << "and nothing of it is kept";

    // They reach the engine, and a binding goes before them.
    image.slots[1].spare = 1;
    synth.load (image);
    play ();
    synth.controller (7, 0);
    EXPECT_EQ (peakOf (play ()), 0.0f);
    synth.controller (7, 100);
    synth.learn (paramFilterRez, 7, 0);
    EXPECT_GT (peakOf (play ()), 0.0f);
}

TEST_F (StoreTest, AChunkIsACopyThatLastsUntilTheNextCall)
{
    synth.set (paramVolume, 0.5f);
    const auto chunk = synth.core.getChunk (false);
    const std::vector<std::byte> before (chunk.begin (), chunk.end ());
    synth.set (paramVolume, 0.25f);
    synth.core.setProgramName ("Other");
    EXPECT_TRUE (std::equal (before.begin (), before.end (), chunk.begin (), chunk.end ()));
    EXPECT_FALSE (std::ranges::equal (synth.core.getChunk (false), before));
}

TEST_F (StoreTest, TooLongAChunkIsAnErrorAndTooShortAOneIsNot)
{
    const char* noBank = "Can't load bank, wrong file size!";
    const char* noPreset = "Can't load preset, wrong file size!";
    using Row = std::tuple<std::int64_t, bool, const char*>;
    for (const auto& [size, isPreset, message] :
         { Row{ 23897, false, noBank }, Row{ -1, false, noBank }, Row{ 177, true, noPreset },
           Row{ 1000000, true, noPreset }, Row{ 1371, false, nullptr }, Row{ 30, true, nullptr },
           Row{ 1, true, nullptr }, Row{ 0, false, nullptr } })
    {
        BankImage expected = bank ();
        std::vector<char> chunk (1000001, 'Q');
        std::memcpy (chunk.data (), &expected, 1368);
        auto* record = reinterpret_cast<char*> (&expected.programs[0]);
        if (message == nullptr && isPreset)
            std::copy_n (chunk.data (), size, record);
        else if (message == nullptr && size > 1368)
            std::copy_n ("QQQ", size - 1368, record);
        system.messages.clear ();
        synth.core.setChunk (chunk.data (), size, isPreset);
        std::vector<FakeSystem::Message> messages;
        if (message != nullptr)
            messages.push_back ({ message, "Error!", platform::Buttons::ok });
        EXPECT_EQ (system.messages, messages) << size;
        EXPECT_EQ (std::memcmp (bank ().programs[0].name, expected.programs[0].name, 24), 0) << size;
        EXPECT_EQ (std::memcmp (bank ().slots.data (), expected.slots.data (), 1368), 0) << size;
    }
}

// Selecting writes back what the store rule makes of the selected record, and nothing else.
TEST_F (StoreTest, SelectingNormalisesTheSelectedRecordAlone)
{
    BankImage image = bank ();
    for (const std::size_t program : { 3u, 4u })
    {
        image.programs[program].values[paramVolume] = 55.0f;
        image.programs[program].values[paramOsc1Vol] = notANumber;
        image.programs[program].values[param2ToFilter] = 0.49f;
        image.programs[program].values[paramVoices] = -7.0f; // not of the program
    }
    image.slots[paramPitchBend].value = 9.0f;
    synth.load (image);
    synth.core.setProgram (3);
    image.programs[3].values[paramVolume] = 1.0f;
    image.programs[3].values[paramOsc1Vol] = 0.0f;
    image.programs[3].values[param2ToFilter] = 0.5f;
    image.slots[0].spare = 3; // the selected program
    EXPECT_TRUE (equal (bank (), image));
    synth.core.setSampleRate (96000.0f);
    play ();
    EXPECT_TRUE (equal (bank (), image)) << "nor does a new sample rate";
}

TEST_F (StoreTest, DamagedBanksAreNotPlayed)
{
    std::mt19937 random (77);
    for (int round = 0; round < 40; ++round)
    {
        BankImage image = bank ();
        for (std::byte& byte : std::as_writable_bytes (std::span (&image, 1)))
            byte = static_cast<std::byte> (round % 3 == 0 ? 0xFF - round : random ());
        const float values[] = { notANumber, infinity, -infinity, 1e38f, -1e38f, 55.0f };
        for (ProgramRecord& program : image.programs)
        {
            if (round % 3 == 1)
                program.values.fill (values[random () % 6u]);
        }
        synth.load (image);
        for (std::int32_t program = 0; program < 128; program += 13)
        {
            EXPECT_LE (synth.core.programName (program).size (), 24u);
            synth.core.setProgram (program);
            ASSERT_TRUE (isFinite (synth.block (
                100, { noteOn (0), midi (5, 0xB0, 74, 100), midi (30, 0xE0, 0, 3), noteOn (40, 70) })))
                << round;
        }
    }
    EXPECT_TRUE (system.messages.empty ());
}
