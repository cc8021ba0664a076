// The user default bank beside the library.
#include <fstream>

#include <gtest/gtest.h>

#include "tests/host/TemporaryFolder.h"
#include "tests/instrument/TestInstrument.h"

using namespace instrument;

namespace
{
class UserBankTest : public testing::Test
{
protected:
    UserBankTest () { system.libraryPath = folder / "Brimvale.dll"; }

    void save () { synth.set (commandMainMenu, menuSaveDefaultBank); }
    static BankImage contentOf (const std::filesystem::path& path)
    {
        EXPECT_EQ (std::filesystem::file_size (path), 23896u);
        BankImage image;
        std::ifstream (path, std::ios::binary).read (reinterpret_cast<char*> (&image), sizeof image);
        return image;
    }
    // Something that differs from the factory in every part.
    void play ()
    {
        synth.set (paramVoices, 3.0f);
        synth.learn (1, 21, 64);
        synth.core.setProgram (127);
        synth.set (paramVolume, 0.25f);
        synth.core.setProgramName ("The last one");
        synth.core.setProgram (0);
    }

    TemporaryFolder folder;
    FakeSystem system;
    TestInstrument synth{ system };
};
}

TEST_F (UserBankTest, HasTheLibrarysNameWithAnotherEnd)
{
    for (const auto& [library, bank] :
         { std::pair{ "Brimvale.dll", "Brimvale.bnk" }, std::pair{ "Brimvale.so", "Brimvale.bnk" },
           std::pair{ "a.b.vst", "a.b.bnk" }, std::pair{ "My.so.dll", "My.so.bnk" } })
    {
        system.libraryPath = folder / library;
        save ();
        EXPECT_EQ (filesIn (folder.folder ()), std::set<std::string>{ bank });
        std::filesystem::remove (folder / bank);
    }
}

TEST_F (UserBankTest, ComesBackByteForByteAndItsBindingsTakeThePlaceOfTheStoredOnes)
{
    (*system.stored)["Brimvale\\MidiCC-Volume    "] = 8;
    EXPECT_EQ (TestInstrument (system).core.midiController (0), 7u) << "without a bank";
    save (); // saved over below; the file says nothing of the selected program
    play ();
    synth.core.setProgram (9);
    save ();
    BankImage saved = synth.bank ();
    EXPECT_EQ (system.messages.size (), 2u) << "success needs no box";
    saved.slots[0].spare = 0;
    EXPECT_TRUE (equal (contentOf (folder / "Brimvale.bnk"), saved));
    TestInstrument second (system);
    EXPECT_TRUE (equal (second.bank (), saved));
    EXPECT_EQ (second.core.midiController (0), 0u);
    EXPECT_EQ (second.core.midiController (1), 21u);
    EXPECT_EQ (second.get (paramVoices), 3.0f);
}

TEST_F (UserBankTest, WithoutOneTheFactoryBankPlays)
{
    std::filesystem::create_directory (folder / "Brimvale.bnk"); // a folder is no bank either
    for (const std::filesystem::path& path :
         { folder / "Brimvale.dll", std::filesystem::path (), std::filesystem::path ("so"),
           folder / "none" / "Brimvale.dll" })
    {
        system.libraryPath = path;
        EXPECT_EQ (TestInstrument (system).core.programName (0), "Bass One") << path;
    }
    EXPECT_TRUE (system.messages.empty ());
}

// A file of another size is taken as the user's wish for no factory bank, and read not at all.
TEST_F (UserBankTest, AWrongSizeLeavesTheProgramsFresh)
{
    for (const std::size_t size : { 0, 1, 22528, 23895, 23897 })
    {
        std::ofstream (folder / "Brimvale.bnk", std::ios::binary) << std::string (size, 'x');
        TestInstrument fresh (system);
        for (const std::int32_t program : { 0, 64, 127 })
            EXPECT_EQ (fresh.core.programName (program), "Init") << size;
        for (const ParamRow& row : paramTable)
            EXPECT_EQ (fresh.get (row.index), row.initial) << size << " " << row.name;
    }
    EXPECT_TRUE (system.messages.empty ());
}

// What no user may write to is simulated by a folder that is a file, and by a folder in the bank's place.
TEST_F (UserBankTest, WhereNothingCanBeWrittenNothingHappens)
{
    std::ofstream (folder / "file") << "content";
    std::filesystem::create_directories (folder / "Brimvale.bnk" / "inner");
    for (const std::filesystem::path& path :
         { folder / "file" / "Brimvale.dll", folder / "none" / "Brimvale.dll", folder / "Brimvale.dll" })
    {
        system.libraryPath = path;
        save ();
    }
    EXPECT_EQ (system.messages.size (), 3u) << "the questions and nothing else";
    EXPECT_EQ (std::filesystem::file_size (folder / "file"), 7u);
    EXPECT_TRUE (std::filesystem::exists (folder / "Brimvale.bnk" / "inner"));
    EXPECT_EQ (filesIn (folder.folder ()).size (), 2u) << "a temporary file was left";
}
