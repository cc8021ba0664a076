// The command channel with its message boxes, and the settings it stores.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/instrument/TestInstrument.h"

using namespace instrument;

void PrintTo (const FakeSystem::Message& message, std::ostream* out)
{
    *out << message.title << " " << message.text;
}

namespace
{
using platform::Answer;
using platform::Buttons;
using Messages = std::vector<FakeSystem::Message>;

const FakeSystem::Message askSave = { "Save Actual Values as Defaults?", "Warning!", Buttons::okCancel };
const FakeSystem::Message saved = { "Default Values Saved!", "Ok!", Buttons::ok };
const FakeSystem::Message settingFailed = { "Error saving registery!", "Error!", Buttons::ok };
const FakeSystem::Message bindingFailed = { "Error saving Midi-CC registery!", "Error!", Buttons::ok };

class CommandsTest : public testing::Test
{
protected:
    static void command (TestInstrument& synth, float value) { synth.set (commandMainMenu, value); }

    FakeSystem system;
};
}

TEST_F (CommandsTest, AskInTheseWords)
{
    const std::pair<float, Messages> rows[] = {
        { 0.0f,
          { { "Save Current Presets as User-Default Bank?", "Warning!", Buttons::okCancel },
            { "Could not find proper VST DLL location!", "Error!", Buttons::ok } } }, // no path here
        { 1.0f, { { "Reload Factory Presets?", "Warning!", Buttons::okCancel } } },
        { 3.0f, { askSave, saved } },
        { 4.0f, { { "Forget Learned MidiCC?", "Warning!", Buttons::okCancel } } },
    };
    TestInstrument synth (system);
    for (const auto& [value, messages] : rows)
    {
        system.messages.clear ();
        command (synth, value);
        EXPECT_EQ (system.messages, messages) << value;
    }
}

TEST_F (CommandsTest, OtherValuesAndIndicesDoNothing)
{
    TestInstrument synth (system);
    synth.learn (3, 7);
    const BankImage before = synth.bank ();
    for (const float value : { 2.0f, 5.0f, -1.0f, 0.5f, 1e-30f, std::nextafter (3.0f, 4.0f),
                               std::nextafter (4.0f, 3.0f), 1e30f, std::nanf (""), HUGE_VALF })
        command (synth, value);
    for (const std::int32_t index : { 38, 39, 43, 47, 48, 55, 1000, -1, -45 })
    {
        for (const float value : { 0.0f, 1.0f, 3.0f, 4.0f })
            synth.set (index, value);
    }
    EXPECT_TRUE (system.messages.empty () && system.stored->empty ());
    EXPECT_TRUE (equal (synth.bank (), before));
}

// Whatever is pressed, the command goes ahead: the boxes tell rather than ask. Only one that could not be
// shown stops it.
TEST_F (CommandsTest, CancelDoesNotCancel)
{
    for (const auto& [answer, goesAhead] : { std::pair{ Answer::ok, true }, std::pair{ Answer::cancel, true },
                                             std::pair{ Answer::none, false } })
    {
        system.answer = answer;
        system.stored->clear ();
        TestInstrument synth (system);
        synth.learn (3, 7);
        command (synth, 3.0f);
        EXPECT_EQ (!system.stored->empty (), goesAhead);
        command (synth, 4.0f);
        EXPECT_EQ (synth.core.midiController (3) == 0, goesAhead);
        synth.core.setProgramName ("Mine");
        command (synth, 1.0f);
        EXPECT_EQ (synth.core.programName (0) == "Bass One", goesAhead);
    }
}

TEST_F (CommandsTest, FactoryReloadKeepsWhatIsNoProgram)
{
    TestInstrument synth (system);
    const BankImage factory = synth.bank ();
    synth.set (paramVoices, 3.0f);
    synth.learn (3, 7);
    synth.core.setProgram (5);
    synth.set (paramVolume, 0.125f);
    synth.core.setProgramName ("Mine");
    const BankImage before = synth.bank ();
    command (synth, 1.0f);
    const BankImage after = synth.bank ();
    EXPECT_EQ (std::memcmp (after.programs.data (), factory.programs.data (), sizeof factory.programs), 0);
    EXPECT_EQ (std::memcmp (after.slots.data (), before.slots.data (), sizeof before.slots), 0);
    EXPECT_EQ (synth.core.getProgram (), 5);
    EXPECT_EQ (synth.entries[5], "006 " + synth.core.programName (5));
    // The program was selected anew: news of all parameters but Voices, and of the command itself.
    EXPECT_EQ (synth.told[synth.told.size () - 38], std::pair (0, factory.programs[5].values[paramVolume]));
}

TEST_F (CommandsTest, NumbersAsTheyAreStored)
{
    TestInstrument synth (system);
    for (const auto& [index, value] :
         { std::pair{ paramGlideAuto, 0.0f }, std::pair{ paramVolType, -0.00019f },
           std::pair{ paramPitchBend, 0.5f }, std::pair{ paramShowKeys, 0.123456f },
           std::pair{ paramHighQuality, 1.0f } })
        synth.set (index, value);
    synth.learn (0, 7);
    synth.learn (37, 119);
    // An unclamped parameter takes any number, and a damaged bank holds any bits.
    for (const auto& [voices, number] :
         { std::pair{ 1e30f, 0x80000000u }, std::pair{ HUGE_VALF, 1u }, std::pair{ -1e30f, 0x80000001u },
           std::pair{ -1.0f, 0xFFFFD8F1u }, std::pair{ 3.0f, 30001u } })
    {
        BankImage image = synth.bank ();
        image.slots[paramVoices].value = voices;
        synth.load (image);
        command (synth, 3.0f);
        EXPECT_EQ ((*system.stored)["Brimvale\\Voices    "], number) << voices;
    }
    EXPECT_EQ (system.stored->size (), 6u + 38u);
    for (const auto& [name, number] :
         { std::pair{ "Glide-Auto", 1u },
           std::pair{ "VolType   ", 0u }, // -1.9 becomes -1, and -1 + 1 is "none"
           std::pair{ "PitchBend ", 5001u }, std::pair{ "ShowKeys  ", 1235u },
           std::pair{ "HighQuality", 10001u }, std::pair{ "MidiCC-Volume    ", 8u },
           std::pair{ "MidiCC-VelocityFilter", 1u }, std::pair{ "MidiCC-NonUsed  ", 120u } })
        EXPECT_EQ (system.stored->at (std::string ("Brimvale\\") + name), number) << name;
}

TEST_F (CommandsTest, EveryFailedWriteHasItsBoxAndTheRestGoesOn)
{
    for (const bool onCommit : { false, true })
    {
        system.storeFails = !onCommit;
        system.commitFails = onCommit;
        system.messages.clear ();
        TestInstrument synth (system);
        command (synth, 3.0f);
        EXPECT_EQ (std::ranges::count (system.messages, settingFailed), onCommit ? 1 : 6);
        EXPECT_EQ (std::ranges::count (system.messages, bindingFailed), onCommit ? 0 : 38);
        EXPECT_EQ (system.messages.front (), askSave);
        EXPECT_EQ (system.messages.back (), saved) << "shown all the same";
    }
}

TEST_F (CommandsTest, StoredBindingsComeBackAndStoredValuesDoNot)
{
    for (const auto& [name, number] :
         { std::pair{ "MidiCC-Volume    ", 8u }, std::pair{ "MidiCC-FilterType", 8u },
           std::pair{ "MidiCC-NonUsed  ", 128u }, std::pair{ "MidiCC-Noise     ", 0u },
           std::pair{ "MidiCC-1-Attack  ", 1u }, std::pair{ "Voices    ", 30001u },
           std::pair{ "HighQuality", 1u } })
        (*system.stored)[std::string ("Brimvale\\") + name] = number;
    TestInstrument synth (system);
    for (const ParamRow& row : paramTable)
    {
        const std::uint32_t bound = row.index == 0 || row.index == 20 ? 7 : row.index == 37 ? 127 : 0;
        EXPECT_EQ (synth.core.midiController (row.index), bound) << row.index;
        EXPECT_TRUE (!row.keptAsDefault || synth.get (row.index) == row.initial) << row.name;
    }
}
