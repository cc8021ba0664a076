// The built library with the system's own settings store, real files and real message boxes: what one
// instance leaves reaches the next one.
#include <cstring>

#include <gtest/gtest.h>

#include "host/Plugin.h"
#include "instrument/Bank.h"
#include "parameters/Parameters.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/library/Surroundings.h"

using namespace instrument;
using namespace parameters;

namespace
{
using Boxes = std::vector<std::string>;

// Chooses an entry of the main menu; answers the message boxes that it showed.
Boxes command (host::Plugin& synth, int entry)
{
    return boxesDuring (Press::firstButton,
                        [&] { synth.setParameter (commandMainMenu, static_cast<float> (entry)); });
}

BankImage bankOf (host::Plugin& synth)
{
    void* data = nullptr;
    if (synth.call (effGetChunk, 0, 0, &data) != sizeof (BankImage))
        throw std::runtime_error ("a bank of another size");
    return *static_cast<const BankImage*> (data);
}

void bind (host::Plugin& synth, std::size_t parameter, std::uint32_t controller)
{
    BankImage image = bankOf (synth);
    image.slots[parameter].midiController = controller;
    synth.call (effSetChunk, 0, sizeof image, &image);
}

TEST (Library, SettingsAndTheUserBankReachTheNextInstance)
{
    clearStoredSettings ();
    // A copy of the library to write beside, where a path in the system's code page would go wrong.
    const TemporaryFolder folder;
    const auto place = folder / std::filesystem::path (u8"Meine Klänge für später ☃");
    const auto library = place / std::filesystem::path (BRIMVALE_LIBRARY).filename ();
    std::filesystem::create_directories (place);
    std::filesystem::copy_file (BRIMVALE_LIBRARY, library);

    host::Plugin first (library);
    EXPECT_TRUE (storedNumbers ().empty ());
    first.setParameter (paramVoices, 3.0f);
    bind (first, paramVolume, 7);
    bind (first, paramNonUsed, 119);
    EXPECT_EQ (command (first, menuSaveControllerPresets),
               (Boxes{ "Warning! Save Actual Values as Defaults?", "Ok! Default Values Saved!" }));
    std::map<std::string, std::uint32_t> expected = { { "Glide-Auto", 10001 }, { "Voices    ", 30001 },
                                                      { "VolType   ", 10001 }, { "PitchBend ", 5001 },
                                                      { "ShowKeys  ", 10001 }, { "HighQuality", 1 } };
    for (const ParamRow& row : paramTable)
        expected[std::string ("MidiCC-") + row.name] = 1;
    expected["MidiCC-Volume    "] = 8;
    expected["MidiCC-NonUsed  "] = 120;
    EXPECT_EQ (storedNumbers (), expected);
    {
        host::Plugin second (library);
        EXPECT_EQ (bankOf (second).slots[paramVolume].midiController, 7u);
        EXPECT_EQ (bankOf (second).slots[paramNonUsed].midiController, 119u);
        EXPECT_EQ (storedNumbers (), expected) << "reading changes nothing";
    }

    char name[] = "The last one";
    first.call (effSetProgram, 0, 127);
    first.call (effSetProgramName, 0, 0, name);
    bind (first, paramFilterRez, 74);
    const BankImage saved = bankOf (first);
    EXPECT_EQ (command (first, menuSaveDefaultBank),
               Boxes{ "Warning! Save Current Presets as User-Default Bank?" });
    {
        host::Plugin second (library);
        second.call (effSetProgram, 0, 127);
        const BankImage found = bankOf (second);
        EXPECT_EQ (std::memcmp (&found, &saved, sizeof saved), 0);
    }
    // The file that other formats share holds the same.
    EXPECT_TRUE (std::filesystem::remove (std::filesystem::path (library).replace_extension (".bnk")));
    host::Plugin third (library);
    EXPECT_EQ (bankOf (third).programs[127].nameView (), "The last one");
}
}

int main (int argc, char** argv)
{
    testing::InitGoogleTest (&argc, argv);
    keepAwayFromTheUsersSettings ();
    return RUN_ALL_TESTS ();
}
