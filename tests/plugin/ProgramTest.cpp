// Programs and chunks.
#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "tests/plugin/HostedSynth.h"

namespace
{
constexpr VstIntPtr bankBytes = 23896;
constexpr VstIntPtr programBytes = 176;
constexpr std::size_t slotBytes = 36;
constexpr std::size_t programsAt = 38 * slotBytes;

std::vector<char> chunkOf (HostedSynth& synth, bool isPreset)
{
    void* data = nullptr;
    const VstIntPtr size = synth.call (effGetChunk, isPreset ? 1 : 0, 0, &data);
    EXPECT_EQ (size, isPreset ? programBytes : bankBytes);
    return { static_cast<char*> (data), static_cast<char*> (data) + size };
}

VstIntPtr load (HostedSynth& synth, std::vector<char> chunk, bool isPreset)
{
    return synth.call (effSetChunk, isPreset ? 1 : 0, static_cast<VstIntPtr> (chunk.size ()), chunk.data ());
}

void put (std::vector<char>& chunk, std::size_t at, float value)
{
    std::memcpy (chunk.data () + at, &value, sizeof value);
}
}

TEST (ProgramTest, ANewInstancePlaysTheFirstProgram)
{
    const double values[] = { 0.865, 1.0,    0.5013, 0.5636, 0.5307, 1.0,    1.0, 0.183,  0.502, 0.5,
                              0.0,   0.0,    0.2869, 0.418,  0.0,    0.4145, 0.0, 0.6335, 0.284, 0.82,
                              0.1,   0.0091, 0.1822, 0.0,    0.5268, 0.0,    1.0, 1.0,    1.0,   0.5,
                              1.0,   0.4457, 0.1191, 1.0,    0.0,    0.0,    0.0, 0.0 };
    HostedSynth synth;
    EXPECT_EQ (synth.name (), "Bass One");
    for (VstInt32 index = 0; index < 38; ++index)
        EXPECT_NEAR (static_cast<double> (synth.get (index)), values[index], 0.00006) << index;
}

TEST (ProgramTest, NamesHoldUpTo24Characters)
{
    HostedSynth synth;
    for (const auto& [given, kept] :
         { std::pair{ "Soft Lead", "Soft Lead" }, std::pair{ "", "" },
           std::pair{ "123456789012345678901234", "123456789012345678901234" },
           std::pair{ "1234567890123456789012345xyz", "123456789012345678901234" },
           std::pair{ "short", "short" } })
    {
        std::string text = given;
        synth.call (effSetProgramName, 0, 0, text.data ());
        EXPECT_EQ (synth.name (), kept);
        EXPECT_EQ (synth.text (effGetProgramNameIndexed, 0), kept);
        // Nothing of a longer name before is left over in the record.
        const std::vector<char> record = chunkOf (synth, true);
        EXPECT_EQ (std::count (record.begin (), record.begin () + 24, '\0'),
                   24 - static_cast<long> (std::strlen (kept)));
    }
}

TEST (ProgramTest, NamesByIndex)
{
    HostedSynth synth;
    struct Row
    {
        VstInt32 index;
        const char* name;
    };
    for (const Row& row :
         { Row{ 0, "Bass One" }, Row{ 24, "Simple Lead" }, Row{ 45, "Super Vimble" }, Row{ 54, "Low Pads" },
           Row{ 85, "Overdriven Vimble" }, Row{ 127, "Retro Pad 64" } })
    {
        EXPECT_EQ (synth.text (effGetProgramNameIndexed, row.index, -1), row.name);
        synth.call (effSetProgram, 0, row.index);
        EXPECT_EQ (synth.call (effGetProgram), row.index);
        EXPECT_EQ (synth.name (), row.name);
    }
}

TEST (ProgramTest, CopyTakesNameAndValues)
{
    HostedSynth synth;
    EXPECT_EQ (synth.call (effCopyProgram, 127), 1);
    const std::vector<char> source = chunkOf (synth, true);
    for (const VstInt32 destination : { -1, 128, 1000000 })
        EXPECT_EQ (synth.call (effCopyProgram, destination), 0) << destination;
    EXPECT_EQ (synth.call (effCopyProgram, 0), 1); // onto itself
    synth.call (effSetProgram, 0, 127);
    EXPECT_EQ (chunkOf (synth, true), source);
}

TEST (ProgramTest, MidiProgramChangesReachTheBank)
{
    HostedSynth synth;
    for (const auto& [data, program] : { std::pair{ 45, 45 }, std::pair{ 127, 127 }, std::pair{ 0x85, 5 } })
    {
        EventList list ({ { 3, 0xC9, static_cast<unsigned char> (data), 0 } });
        synth.call (effProcessEvents, 0, 0, list.get ());
        synth.effect->processReplacing (synth.effect, nullptr, nullptr, 16);
        EXPECT_EQ (synth.call (effGetProgram), program);
    }
}

TEST (ChunkTest, ABankComesBackAsItWas)
{
    HostedSynth synth;
    synth.call (effSetProgram, 0, 9);
    synth.set (paramVoices, 0.2f);
    synth.set (paramFilterFreq, 0.123f);
    std::vector<char> bank = chunkOf (synth, false);
    bank[paramVolume * slotBytes + 8] = 74; // a learned controller
    bank[programsAt + 17 * 176] = 'X';
    put (bank, paramShowKeys * slotBytes + 4, 0.4f);

    HostedSynth other;
    EXPECT_EQ (load (other, bank, false), 1);
    EXPECT_EQ (chunkOf (other, false), bank);
    EXPECT_EQ (other.call (effGetProgram), 0); // the current program stays
    EXPECT_EQ (other.get (paramVoices), 0.2f);
    EXPECT_EQ (other.get (paramShowKeys), 0.4f);
    other.call (effSetProgram, 0, 9);
    EXPECT_EQ (other.get (paramFilterFreq), 0.123f);

    // The binding works: controller 74 turns the volume.
    EventList list ({ { 0, 0xB0, 74, 127 }, { 1, 0xB0, 74, 64 } });
    other.call (effProcessEvents, 0, 0, list.get ());
    other.effect->processReplacing (other.effect, nullptr, nullptr, 16);
    EXPECT_EQ (other.get (paramVolume), 64.0f / 127.0f);
}

TEST (ChunkTest, AProgramReplacesTheCurrentOneAlone)
{
    HostedSynth synth;
    synth.call (effSetProgram, 0, 60);
    const std::vector<char> preset = chunkOf (synth, true);
    synth.call (effSetProgram, 0, 3);
    const std::vector<char> before = chunkOf (synth, false);
    EXPECT_EQ (load (synth, preset, true), 1);
    std::vector<char> expected = before;
    std::copy (preset.begin (), preset.end (), expected.begin () + programsAt + 3 * 176);
    EXPECT_EQ (chunkOf (synth, false), expected);
    HostedSynth reference;
    reference.call (effSetProgram, 0, 60);
    EXPECT_EQ (synth.play (), reference.play ()); // and it sounds
}

TEST (ChunkTest, TooLongIsAnErrorAndTooShortIsNot)
{
    struct Row
    {
        std::size_t size;
        bool isPreset;
        const char* message;
    };
    for (const Row& row :
         { Row{ 23897, false, "Can't load bank, wrong file size!" },
           Row{ 177, true, "Can't load preset, wrong file size!" },
           Row{ 1000000, true, "Can't load preset, wrong file size!" }, Row{ 100, false, nullptr },
           Row{ 30, true, nullptr }, Row{ 1, false, nullptr }, Row{ 0, true, nullptr } })
    {
        HostedSynth synth;
        std::vector<char> expected = chunkOf (synth, row.isPreset);
        std::vector<char> chunk (row.size, 0);
        for (std::size_t n = 0; n < chunk.size () && n < expected.size (); ++n)
            chunk[n] = expected[n];
        if (row.size > 20 && row.isPreset)
            chunk[1] = 'Q';
        if (row.message == nullptr)
            std::copy (chunk.begin (), chunk.end (), expected.begin ());
        chunk.reserve (chunk.size () + 1); // never a null pointer
        EXPECT_EQ (
            synth.call (effSetChunk, row.isPreset ? 1 : 0, static_cast<VstIntPtr> (row.size), chunk.data ()),
            1);
        EXPECT_EQ (chunkOf (synth, row.isPreset), expected) << row.size;
        std::vector<FakeHost::Message> messages;
        if (row.message != nullptr)
            messages.push_back ({ row.message, "Error!", platform::Buttons::ok });
        EXPECT_EQ (synth.host.messages, messages) << row.size;
    }
    HostedSynth synth;
    char byte = 0;
    EXPECT_EQ (synth.call (effSetChunk, 0, -1, &byte), 1);
    EXPECT_EQ (synth.host.messages.size (), 1u);
}

TEST (ChunkTest, DamagedValuesAreNotPlayed)
{
    const float values[] = { std::numeric_limits<float>::quiet_NaN (),
                             std::numeric_limits<float>::infinity (),
                             -std::numeric_limits<float>::infinity (),
                             1e38f,
                             -1e38f,
                             55.0f };
    for (const float value : values)
    {
        HostedSynth synth;
        std::vector<char> bank = chunkOf (synth, false);
        for (std::size_t index = 0; index < 38; ++index)
            put (bank, index * slotBytes + 4, value);
        for (std::size_t at = programsAt; at < bank.size (); at += 176)
        {
            for (std::size_t index = 0; index < 38; ++index)
                put (bank, at + 24 + index * 4, value);
        }
        load (synth, bank, false);
        for (int block = 0; block < 10; ++block)
        {
            for (const float sample : synth.play (500))
                ASSERT_TRUE (std::isfinite (sample)) << value;
        }
        synth.call (effSetProgram, 0, 1);
        synth.set (paramVolume, 0.5f);
        EXPECT_EQ (synth.get (paramVolume), 0.5f);
    }
}

TEST (ChunkTest, GarbageDoesNoHarm)
{
    std::mt19937 random (77);
    HostedSynth synth;
    for (int round = 0; round < 60; ++round)
    {
        std::vector<char> bank (static_cast<std::size_t> (bankBytes));
        for (char& byte : bank)
            byte = static_cast<char> (random ());
        if (round % 3 == 0) // names without an end, flags of all kinds
            std::fill (bank.begin (), bank.end (), static_cast<char> (0xFF - round));
        load (synth, bank, false);
        for (VstInt32 index = 0; index < 38; ++index)
        {
            EXPECT_LT (synth.text (effGetParamName, index).size (), 24u);
            EXPECT_LT (synth.text (effGetParamDisplay, index).size (), 24u);
        }
        for (VstInt32 program = 0; program < 128; program += 13)
        {
            EXPECT_LE (synth.text (effGetProgramNameIndexed, program).size (), 24u);
            synth.call (effSetProgram, 0, program);
            EventList list ({ { 0, 0x90, 60, 100 }, { 5, 0xB0, 74, 100 }, { 30, 0xE0, 0, 3 } });
            synth.call (effProcessEvents, 0, 0, list.get ());
            for (const float sample : synth.play (100))
                ASSERT_TRUE (std::isfinite (sample)) << round;
        }
        EXPECT_EQ (chunkOf (synth, false).size (), bank.size ());
    }
    EXPECT_TRUE (synth.host.messages.empty ());
}
