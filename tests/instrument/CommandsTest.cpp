// The command channel and its message boxes.
#include "tests/support/TestSynth.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace engine;
using namespace instrument;
using namespace parameters;

void PrintTo (const FakeHost::Message& message, std::ostream* out)
{
    *out << message.title << " " << message.text;
}

namespace
{
using platform::Answer;
using platform::Buttons;
using Messages = std::vector<FakeHost::Message>;

const FakeHost::Message askSaveDefaults = { "Save Actual Values as Defaults?", "Warning!",
                                            Buttons::okCancel };
const FakeHost::Message askForget = { "Forget Learned MidiCC?", "Warning!", Buttons::okCancel };
const FakeHost::Message askFactory = { "Reload Factory Presets?", "Warning!", Buttons::okCancel };
const FakeHost::Message askSaveBank = { "Save Current Presets as User-Default Bank?", "Warning!",
                                        Buttons::okCancel };
const FakeHost::Message defaultsSaved = { "Default Values Saved!", "Ok!", Buttons::ok };
const FakeHost::Message settingFailed = { "Error saving registery!", "Error!", Buttons::ok };
const FakeHost::Message bindingFailed = { "Error saving Midi-CC registery!", "Error!", Buttons::ok };
const FakeHost::Message noLibraryPath = { "Could not find proper VST DLL location!", "Error!", Buttons::ok };

class Commands : public testing::Test
{
protected:
    std::unique_ptr<VstSynth> makeSynth ()
    {
        return std::make_unique<VstSynth> (&FakeHost::callback, host.services ());
    }
    static BankImage bankOf (VstSynth& synth)
    {
        void* data = nullptr;
        EXPECT_EQ (synth.getChunk (&data, false), 23896);
        BankImage image;
        std::memcpy (&image, data, sizeof image);
        return image;
    }
    static bool equal (const BankImage& a, const BankImage& b) { return std::memcmp (&a, &b, sizeof a) == 0; }
    void bind (VstSynth& synth, std::size_t parameter, std::uint32_t controller)
    {
        BankImage image = bankOf (synth);
        image.slots[parameter].midiController = controller;
        synth.setChunk (&image, sizeof image, false);
    }

    FakeHost host;
};

TEST_F (Commands, AskInTheseWords)
{
    const std::pair<float, Messages> cases[] = {
        { 0.0f, { askSaveBank, noLibraryPath } }, // this test's host does not tell the path
        { 1.0f, { askFactory } },
        { 3.0f, { askSaveDefaults, defaultsSaved } },
        { 4.0f, { askForget } },
    };
    const auto synth = makeSynth ();
    for (const auto& [value, messages] : cases)
    {
        host.messages.clear ();
        synth->setParameter (45, value);
        EXPECT_EQ (host.messages, messages) << value;
    }
}

TEST_F (Commands, OtherValuesAndIndicesDoNothing)
{
    const auto synth = makeSynth ();
    bind (*synth, 3, 7);
    const BankImage before = bankOf (*synth);
    for (const float value : { 2.0f, 5.0f, -1.0f, 0.5f, 1e-30f, std::nextafter (3.0f, 4.0f),
                               std::nextafter (4.0f, 3.0f), 1e30f, std::nanf (""), HUGE_VALF })
        synth->setParameter (45, value);
    for (const VstInt32 index : { 38, 39, 43, 47, 48, 55, 1000, -1, -45 })
    {
        for (const float value : { 0.0f, 1.0f, 3.0f, 4.0f })
            synth->setParameter (index, value);
    }
    EXPECT_EQ (host.messages, Messages ());
    EXPECT_TRUE (host.stored->empty ());
    EXPECT_TRUE (equal (bankOf (*synth), before));
    EXPECT_EQ (synth->getParameter (45), 0.0f);
}

// Whatever is pressed, the command goes ahead; that is meant. Only a box that could not be shown stops it.
TEST_F (Commands, CancelDoesNotCancel)
{
    const std::pair<Answer, bool> cases[] = { { Answer::ok, true },
                                              { Answer::cancel, true },
                                              { Answer::none, false } };
    for (const auto& [answer, goesAhead] : cases)
    {
        host.answer = answer;
        host.stored->clear ();
        const auto synth = makeSynth ();
        bind (*synth, 3, 7);
        synth->setParameter (45, 3.0f);
        EXPECT_EQ (!host.stored->empty (), goesAhead);
        synth->setParameter (45, 4.0f);
        EXPECT_EQ (synth->midiController (3) == 0, goesAhead);
        synth->setProgramName ("Mine");
        synth->setParameter (45, 1.0f);
        EXPECT_EQ (synth->programName (0) == "Bass One", goesAhead);
    }
}

TEST_F (Commands, FactoryReloadKeepsWhatIsNoProgram)
{
    const auto synth = makeSynth ();
    const BankImage factory = bankOf (*synth);
    synth->setParameter (paramVoices, 3.0f);
    synth->setParameter (paramPitchBend, 0.25f);
    bind (*synth, 3, 7);
    synth->setProgram (5);
    synth->setParameter (paramVolume, 0.125f);
    synth->setProgramName ("Mine");

    synth->setParameter (45, 1.0f);
    const BankImage after = bankOf (*synth);
    EXPECT_EQ (std::memcmp (after.programs.data (), factory.programs.data (), sizeof factory.programs), 0);
    EXPECT_EQ (synth->getProgram (), 5);
    EXPECT_EQ (synth->getParameter (paramVolume), factory.programs[5].values[paramVolume]);
    EXPECT_EQ (synth->getParameter (paramVoices), 3.0f);
    EXPECT_EQ (synth->getParameter (paramPitchBend), 0.25f);
    EXPECT_EQ (synth->midiController (3), 7u);
}

TEST_F (Commands, StoredNumbers)
{
    const auto synth = makeSynth ();
    const std::pair<VstInt32, float> settings[] = {
        { paramGlideAuto, 0.0f }, { paramVoices, 3.0f },        { paramVolType, -0.00019f },
        { paramPitchBend, 0.5f }, { paramShowKeys, 0.123456f }, { paramHighQuality, 1.0f }
    };
    for (const auto& [index, value] : settings)
        synth->setParameter (index, value);
    bind (*synth, 0, 7);
    bind (*synth, 37, 127);
    host.messages.clear ();
    synth->setParameter (45, 3.0f);

    EXPECT_EQ (host.stored->size (), 6u + 38u);
    const std::pair<const char*, std::uint32_t> expected[] = {
        { "Glide-Auto", 1 },         { "Voices    ", 30001 },
        { "VolType   ", 0 }, // -1.9 becomes -1, and -1 + 1 says that nothing is stored
        { "PitchBend ", 5001 },      { "ShowKeys  ", 1235 },
        { "HighQuality", 10001 },    { "MidiCC-Volume    ", 8 },
        { "MidiCC-Osc1-Vol  ", 1 },  { "MidiCC-VelocityFilter", 1 },
        { "MidiCC-NonUsed  ", 128 },
    };
    for (const auto& [name, number] : expected)
    {
        const auto found = host.stored->find (std::string ("Brimvale\\") + name);
        ASSERT_NE (found, host.stored->end ()) << name;
        EXPECT_EQ (found->second, number) << name;
    }
}

// An unclamped parameter takes any number, and a damaged bank holds any bits.
TEST_F (Commands, NumbersThatFitNowhereAreLimited)
{
    const std::tuple<float, std::uint32_t> cases[] = {
        { 1e30f, 0x80000000u }, { HUGE_VALF, 1u }, { -1e30f, 0x80000001u }, { -1.0f, 0xFFFFD8F1u }
    };
    const auto synth = makeSynth ();
    for (const auto& [value, number] : cases)
    {
        BankImage image = bankOf (*synth);
        image.slots[paramVoices].value = value;
        synth->setChunk (&image, sizeof image, false);
        synth->setParameter (45, 3.0f);
        EXPECT_EQ ((*host.stored)["Brimvale\\Voices    "], number) << value;
    }
}

TEST_F (Commands, EveryFailedWriteHasItsBoxAndTheLoopGoesOn)
{
    host.storeFails = true;
    const auto synth = makeSynth ();
    bind (*synth, 3, 7);
    host.messages.clear ();
    synth->setParameter (45, 3.0f);

    Messages expected = { askSaveDefaults };
    for (const ParamRow& row : paramTable)
    {
        if (row.keptAsDefault)
            expected.push_back (settingFailed);
        expected.push_back (bindingFailed);
    }
    expected.push_back (defaultsSaved); // shown all the same; that is meant
    EXPECT_EQ (host.messages, expected);
    EXPECT_EQ (synth->midiController (3), 7u);
}

TEST_F (Commands, AStoreThatCannotBeWrittenHasOneBox)
{
    Services services = host.services ();
    auto store = std::make_unique<MemoryStore> ();
    store->failsCommit = true;
    services.settings = std::move (store);
    VstSynth synth (&FakeHost::callback, std::move (services));
    synth.setParameter (45, 3.0f);
    EXPECT_EQ (host.messages, (Messages{ askSaveDefaults, settingFailed, defaultsSaved }));
}

TEST_F (Commands, StoredBindingsComeBackAndStoredValuesDoNot)
{
    {
        const auto synth = makeSynth ();
        for (const VstInt32 index : { paramGlideAuto, paramVoices, paramVolType, paramShowKeys })
            synth->setParameter (index, 3.0f);
        synth->setParameter (paramPitchBend, 0.0f);
        synth->setParameter (paramHighQuality, 1.0f);
        bind (*synth, 0, 7);
        bind (*synth, 20, 7);
        bind (*synth, 37, 127);
        synth->setParameter (45, 3.0f);
    }
    (*host.stored)["Brimvale\\MidiCC-Noise     "] = 0;
    host.stored->erase ("Brimvale\\MidiCC-MasterP   ");
    const auto synth = makeSynth ();
    for (VstInt32 index = 0; index < parameterCount; ++index)
    {
        const std::uint32_t bound = index == 0 || index == 20 ? 7 : index == 37 ? 127 : 0;
        EXPECT_EQ (synth->midiController (index), bound) << index;
    }
    // The parameters' own start values: the stored ones arrive while parameter traffic is held off.
    for (const VstInt32 index : { paramGlideAuto, paramVoices, paramVolType, paramShowKeys })
        EXPECT_EQ (synth->getParameter (index), 1.0f) << index;
    EXPECT_EQ (synth->getParameter (paramPitchBend), 0.5f);
    EXPECT_EQ (synth->getParameter (paramHighQuality), 0.0f);
}

TEST_F (Commands, ChunksThatAreTooLongAreRefusedInTheseWords)
{
    const auto synth = makeSynth ();
    const BankImage before = bankOf (*synth);
    const std::vector<char> large (23897, 'x');
    EXPECT_EQ (synth->setChunk (large.data (), 23897, false), 1);
    EXPECT_EQ (synth->setChunk (large.data (), 177, true), 1);
    EXPECT_EQ (host.messages, (Messages{ { "Can't load bank, wrong file size!", "Error!", Buttons::ok },
                                         { "Can't load preset, wrong file size!", "Error!", Buttons::ok } }));
    EXPECT_TRUE (equal (bankOf (*synth), before));
}
}
