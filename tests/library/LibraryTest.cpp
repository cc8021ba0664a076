// The built library with the system's own settings store, real files and real message boxes: what one
// instance leaves reaches the next one.
#include <fstream>
#include <gtest/gtest.h>

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

constexpr float saveBank = 0.0f;
constexpr float loadFactoryBank = 1.0f;
constexpr float saveDefaults = 3.0f;
constexpr float forgetAll = 4.0f;

// Chooses an entry of the main menu; answers the message boxes that it showed.
Boxes command (LoadedSynth& synth, float value, Press answer = Press::firstButton)
{
    BoxWatcher watcher (answer);
    synth.setParameter (commandMainMenu, value);
    return watcher.boxes ();
}

void bind (LoadedSynth& synth, std::size_t parameter, std::uint32_t controller)
{
    BankImage image = synth.bank ();
    image.slots[parameter].midiController = controller;
    synth.setBank (image);
}

std::string bytesOf (const BankImage& bank)
{
    return { reinterpret_cast<const char*> (&bank), sizeof bank };
}

class Library : public testing::Test
{
protected:
    // A copy of the library to write beside, where a path in the system's code page would go wrong.
    void SetUp () override
    {
        clearStoredSettings ();
        const auto place = folder / std::filesystem::path (u8"Meine Klänge für später ☃");
        const std::filesystem::path original (BRIMVALE_LIBRARY);
        library = place / original.filename ();
        std::filesystem::create_directories (place);
        std::filesystem::copy_file (original, library);
    }

    TemporaryFolder folder;
    std::filesystem::path library;
};

TEST_F (Library, StoredSettingsReachTheNextInstance)
{
    {
        LoadedSynth first (library);
        EXPECT_TRUE (storedNumbers ().empty ());
        first.setParameter (paramVoices, 3.0f);
        first.setParameter (paramHighQuality, 1.0f);
        bind (first, paramVolume, 7);
        bind (first, paramNonUsed, 119);
        EXPECT_EQ (command (first, saveDefaults), (Boxes{ { "Warning!", "Save Actual Values as Defaults?" },
                                                          { "Ok!", "Default Values Saved!" } }));
    }
    std::map<std::string, std::uint32_t> expected = { { "Glide-Auto", 10001 }, { "Voices    ", 30001 },
                                                      { "VolType   ", 10001 }, { "PitchBend ", 5001 },
                                                      { "ShowKeys  ", 10001 }, { "HighQuality", 10001 } };
    for (const ParamRow& row : paramTable)
        expected[std::string ("MidiCC-") + row.name] = 1;
    expected["MidiCC-Volume    "] = 8;
    expected["MidiCC-NonUsed  "] = 120;
    EXPECT_EQ (storedNumbers (), expected);

    LoadedSynth second (library);
    for (const ParamRow& row : paramTable)
    {
        const auto slot = static_cast<std::size_t> (row.index);
        EXPECT_EQ (second.bank ().slots[slot].midiController,
                   expected[std::string ("MidiCC-") + row.name] - 1)
            << row.name;
    }
    EXPECT_EQ (storedNumbers (), expected) << "reading changes nothing";
}

// The questions announce a command and do not hold it up, whichever button is pressed.
TEST_F (Library, TheUserBankReachesTheNextInstanceWhateverIsAnswered)
{
    for (const Press answer : { Press::firstButton, Press::lastButton, Press::close })
    {
        LoadedSynth first (library);
        EXPECT_EQ (first.bank ().programs[127].nameView (), "Retro Pad 64");
        std::string name = "The last one";
        first.call (effSetProgram, 0, 127);
        first.call (effSetProgramName, 0, 0, name.data ());
        bind (first, paramFilterRez, 74);
        const std::string saved = bytesOf (first.bank ());
        EXPECT_EQ (command (first, saveBank, answer),
                   (Boxes{ { "Warning!", "Save Current Presets as User-Default Bank?" } }));
        {
            LoadedSynth second (library);
            second.call (effSetProgram, 0, 127);
            EXPECT_EQ (bytesOf (second.bank ()), saved);
        }
        EXPECT_EQ (command (first, forgetAll, answer), (Boxes{ { "Warning!", "Forget Learned MidiCC?" } }));
        EXPECT_EQ (first.bank ().slots[paramFilterRez].midiController, 0u);
        EXPECT_EQ (command (first, loadFactoryBank, answer),
                   (Boxes{ { "Warning!", "Reload Factory Presets?" } }));
        EXPECT_EQ (first.bank ().programs[127].nameView (), "Retro Pad 64");
        EXPECT_TRUE (std::filesystem::remove (std::filesystem::path (library).replace_extension (".bnk")));
    }
}
}

int main (int argc, char** argv)
{
    testing::InitGoogleTest (&argc, argv);
    keepAwayFromTheUsersSettings ();
    return RUN_ALL_TESTS ();
}
