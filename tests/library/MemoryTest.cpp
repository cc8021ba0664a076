// The built library, the system's own settings store, real files and real message boxes.
#include <atomic>
#include <chrono>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

#include "parameters/Parameters.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/library/LoadedSynth.h"
#include "tests/library/Surroundings.h"

using namespace parameters;

void PrintTo (const Box& box, std::ostream* out)
{
    *out << box.title << " " << box.text;
}

namespace
{
using Boxes = std::vector<Box>;

const Box askSaveDefaults = { "Warning!", "Save Actual Values as Defaults?" };
const Box askForget = { "Warning!", "Forget Learned MidiCC?" };
const Box askFactory = { "Warning!", "Reload Factory Presets?" };
const Box askSaveBank = { "Warning!", "Save Current Presets as User-Default Bank?" };
const Box defaultsSaved = { "Ok!", "Default Values Saved!" };
const Box bankTooLong = { "Error!", "Can't load bank, wrong file size!" };
const Box programTooLong = { "Error!", "Can't load preset, wrong file size!" };

constexpr float saveBank = 0.0f;
constexpr float loadFactoryBank = 1.0f;
constexpr float saveDefaults = 3.0f;
constexpr float forgetAll = 4.0f;

std::string contentOf (const std::filesystem::path& path)
{
    std::ifstream file (path, std::ios::binary);
    return { std::istreambuf_iterator<char> (file), {} };
}

std::string bytesOf (const BankImage& bank)
{
    return { reinterpret_cast<const char*> (&bank), sizeof bank };
}

class Memory : public testing::Test
{
protected:
    void SetUp () override
    {
        clearStoredSettings ();
        library = copyLibraryInto (folder.folder ());
    }

    // A copy of the library to write beside.
    static std::filesystem::path copyLibraryInto (const std::filesystem::path& place)
    {
        const std::filesystem::path original (BRIMVALE_LIBRARY);
        std::filesystem::create_directories (place);
        std::filesystem::copy_file (original, place / original.filename ());
        return place / original.filename ();
    }
    static std::filesystem::path bankBeside (const std::filesystem::path& file)
    {
        return std::filesystem::path (file).replace_extension (".bnk");
    }

    // Chooses an entry of the main menu; answers the message boxes that it showed.
    static Boxes command (LoadedSynth& synth, float value, Press answer = Press::firstButton)
    {
        BoxWatcher watcher (answer);
        synth.setParameter (commandMainMenu, value);
        return watcher.boxes ();
    }
    static void learn (LoadedSynth& synth, VstInt32 parameter, int controller)
    {
        synth.setParameter (commandLearn, static_cast<float> (parameter));
        synth.renderBlock (controller, 1);
    }
    // A bank that differs from the factory's in every part.
    static void play (LoadedSynth& synth)
    {
        synth.setParameter (paramVoices, 3.0f);
        synth.setParameter (paramFilterFreq, 0.75f);
        learn (synth, paramFilterRez, 74);
        std::string name = "The last one";
        synth.call (effSetProgram, 0, 127);
        synth.call (effSetProgramName, 0, 0, name.data ());
    }

    TemporaryFolder folder;
    std::filesystem::path library;
};

TEST_F (Memory, SettingsReachTheNextInstance)
{
    {
        LoadedSynth first (library);
        EXPECT_TRUE (storedNumbers ().empty ());
        first.setParameter (paramVoices, 3.0f);
        first.setParameter (paramGlideAuto, 0.0f);
        first.setParameter (paramHighQuality, 1.0f);
        learn (first, paramVolume, 7);
        learn (first, paramOsc1Wave, 7);
        learn (first, paramNonUsed, 127);
        EXPECT_EQ (command (first, saveDefaults), (Boxes{ askSaveDefaults, defaultsSaved }));
    }
    std::map<std::string, std::uint32_t> expected = { { "Glide-Auto", 1 },     { "Voices    ", 30001 },
                                                      { "VolType   ", 10001 }, { "PitchBend ", 5001 },
                                                      { "ShowKeys  ", 10001 }, { "HighQuality", 10001 } };
    for (const ParamRow& row : paramTable)
        expected[std::string ("MidiCC-") + row.name] = 1;
    expected["MidiCC-Volume    "] = 8;
    expected["MidiCC-Osc1-Wave "] = 8;
    expected["MidiCC-NonUsed  "] = 128;
    EXPECT_EQ (storedNumbers (), expected);

    LoadedSynth second (library);
    for (const ParamRow& row : paramTable)
    {
        const auto slot = static_cast<std::size_t> (row.index);
        EXPECT_EQ (second.bank ().slots[slot].midiController,
                   expected[std::string ("MidiCC-") + row.name] - 1)
            << row.name;
    }
    EXPECT_EQ (second.getParameter (paramVoices), 1.0f) << "stored values do not reach a new instance";
    EXPECT_EQ (storedNumbers (), expected) << "reading changes nothing";
}

TEST_F (Memory, EveryBoxShowsAndCancelDoesNotCancel)
{
    for (const Press answer : { Press::firstButton, Press::lastButton, Press::close })
    {
        LoadedSynth synth (library);
        play (synth);
        EXPECT_EQ (command (synth, saveBank, answer), Boxes{ askSaveBank });
        EXPECT_EQ (contentOf (bankBeside (library)), bytesOf (synth.bank ()));
        std::filesystem::remove (bankBeside (library));

        EXPECT_EQ (command (synth, forgetAll, answer), Boxes{ askForget });
        EXPECT_EQ (synth.bank ().slots[paramFilterRez].midiController, 0u);

        EXPECT_EQ (command (synth, loadFactoryBank, answer), Boxes{ askFactory });
        EXPECT_EQ (synth.bank ().programs[127].nameView (), "Retro Pad 64");
        EXPECT_EQ (synth.getParameter (paramVoices), 3.0f);
    }
}

TEST_F (Memory, ChunksThatAreTooLongAreRefused)
{
    LoadedSynth synth (library);
    const std::string before = bytesOf (synth.bank ());
    std::string tooLong (23897, 'x');
    BoxWatcher watcher;
    EXPECT_EQ (synth.call (effSetChunk, 0, 23897, tooLong.data ()), 1);
    EXPECT_EQ (synth.call (effSetChunk, 1, 177, tooLong.data ()), 1);
    EXPECT_EQ (watcher.boxes (), (Boxes{ bankTooLong, programTooLong }));
    EXPECT_EQ (bytesOf (synth.bank ()), before);
}

TEST_F (Memory, UserBankReachesTheNextInstanceByteForByte)
{
    std::string saved;
    {
        LoadedSynth first (library);
        EXPECT_EQ (first.bank ().programs[0].nameView (), "Bass One");
        play (first);
        command (first, saveBank);
        saved = bytesOf (first.bank ());
    }
    EXPECT_EQ (contentOf (bankBeside (library)), saved);
    {
        LoadedSynth second (library);
        EXPECT_EQ (bytesOf (second.bank ()), saved);
        EXPECT_EQ (second.getParameter (paramFilterFreq), 0.75f);
        second.renderBlock (74, 64);
        EXPECT_EQ (second.getParameter (paramFilterRez), 64.0f / 127.0f) << "the binding acts";
    }
    for (const std::size_t size : { 0, 23895, 23897 })
    {
        std::filesystem::resize_file (bankBeside (library), size);
        LoadedSynth synth (library);
        EXPECT_EQ (synth.bank ().programs[0].nameView (), "Init") << size;
        EXPECT_EQ (synth.bank ().programs[127].nameView (), "Init") << size;
    }
}

TEST_F (Memory, LibraryMayLieInAFolderWithBlanksAndAnyLetter)
{
    const auto place = folder / std::filesystem::path (u8"Meine Klänge für später ☃");
    const std::filesystem::path copy = copyLibraryInto (place);
    std::string saved;
    {
        LoadedSynth first (copy);
        play (first);
        EXPECT_EQ (command (first, saveBank), Boxes{ askSaveBank });
        saved = bytesOf (first.bank ());
    }
    EXPECT_EQ (contentOf (bankBeside (copy)), saved);
    LoadedSynth second (copy);
    EXPECT_EQ (bytesOf (second.bank ()), saved);
}

TEST_F (Memory, AnOlderBankThatCannotBeReplacedStays)
{
    // A folder that is not empty, where the bank should go: no user may replace it.
    std::filesystem::create_directories (bankBeside (library) / "inner");
    LoadedSynth synth (library);
    EXPECT_EQ (synth.bank ().programs[0].nameView (), "Bass One");
    EXPECT_EQ (command (synth, saveBank), Boxes{ askSaveBank });
    EXPECT_TRUE (std::filesystem::exists (bankBeside (library) / "inner"));
    int files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator (folder.folder ()))
        ++files;
    EXPECT_EQ (files, 2) << "the library, the folder and nothing left over";
}

TEST_F (Memory, LearnCompletesWhileAudioRenders)
{
    LoadedSynth synth (library);
    std::atomic<int> toSend = 0; // controller, once
    std::jthread audio (
        [&] (const std::stop_token& stop)
        {
            while (!stop.stop_requested ())
            {
                const int controller = toSend.exchange (0);
                synth.renderBlock (controller, 64 + controller % 64);
            }
        });
    const auto deadline = std::chrono::steady_clock::now () + std::chrono::seconds (60);
    for (VstInt32 index = 0; index < parameterCount; ++index)
    {
        const int controller = 20 + index;
        if (index == paramVoices || index == paramGlideMono)
            continue; // these restart every voice, which belongs to other tests
        synth.setParameter (commandLearn, static_cast<float> (index));
        toSend = controller;
        // The binding is written before the value, both by the audio thread.
        const float value = static_cast<float> (64 + controller % 64) / 127.0f;
        const bool centred =
            (index == param2ToFilter || index == paramLfoFilter) && value > 0.48f && value < 0.52f;
        while (synth.getParameter (index) != (centred ? 0.5f : value) &&
               std::chrono::steady_clock::now () < deadline)
            std::this_thread::yield ();
        EXPECT_EQ (synth.getParameter (index), centred ? 0.5f : value) << index;
        EXPECT_EQ (synth.bank ().slots[static_cast<std::size_t> (index)].midiController,
                   static_cast<std::uint32_t> (controller));
    }
}

// What the other process of the next test does: stores one of two states, again and again.
void storeAgainAndAgain (std::uint32_t controller)
{
    LoadedSynth synth{ std::filesystem::path (BRIMVALE_LIBRARY) };
    BankImage image = synth.bank ();
    for (ParameterSlot& slot : image.slots)
        slot.midiController = controller;
    synth.setBank (image);
    BoxWatcher watcher;
    for (int n = 0; n < 3; ++n)
        synth.setParameter (commandMainMenu, saveDefaults);
}
}

int main (int argc, char** argv)
{
    testing::InitGoogleTest (&argc, argv);
    keepAwayFromTheUsersSettings ();
    if (argc == 2)
    {
        storeAgainAndAgain (static_cast<std::uint32_t> (std::stoi (argv[1])));
        return 0;
    }
    return RUN_ALL_TESTS ();
}
