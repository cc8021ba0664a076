// The user default bank beside the library, and the one for all formats.
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

// A file's time is set by hand where the order counts: two files may be written within one tick of the disk's
// clock.
TEST_F (UserBankTest, TheOneThatWasWrittenLastIsRead)
{
    const auto beside = folder / "Brimvale.bnk";
    system.userBankPath = folder / "config" / "corvanex" / "Brimvale.bnk";
    save ();
    EXPECT_TRUE (equal (contentOf (beside), contentOf (system.userBankPath))) << "both are written";

    system.banksBesideLibrary = false;
    TestInstrument other (system); // of a format without a file beside its library
    other.core.setProgramName ("Of all formats");
    other.set (commandMainMenu, menuSaveDefaultBank);
    EXPECT_NE (contentOf (beside).programs[0].nameView (), "Of all formats");
    system.banksBesideLibrary = true;
    const auto firstProgram = [&] { return TestInstrument (system).core.programName (0); };
    const auto time = std::filesystem::last_write_time (beside);
    for (const auto& [seconds, name] :
         { std::pair{ 10, "Of all formats" }, std::pair{ -10, "Bass One" }, std::pair{ 0, "Bass One" } })
    {
        std::filesystem::last_write_time (system.userBankPath, time + std::chrono::seconds (seconds));
        EXPECT_EQ (firstProgram (), name) << seconds;
    }
    std::filesystem::remove (beside);
    EXPECT_EQ (firstProgram (), "Of all formats");
    system.banksBesideLibrary = false;
    EXPECT_EQ (firstProgram (), "Of all formats");
    synth.core.setProgramName ("Newer");
    save ();
    EXPECT_EQ (firstProgram (), "Newer");
    EXPECT_EQ (system.messages.size (), 3u) << "the questions and nothing else";
}

TEST_F (UserBankTest, ThatCannotBeWrittenAnywhereIsTold)
{
    std::ofstream (folder / "file") << "content";
    const auto good = folder / "Brimvale.bnk";
    const auto bad = folder / "file" / "Brimvale.bnk";
    const std::filesystem::path unknown;
    struct Case
    {
        bool banksBesideLibrary;
        std::filesystem::path library, user;
        std::string told;
    };
    for (const Case& row :
         { Case{ true, bad, good, "" }, Case{ true, unknown, good, "" }, Case{ true, good, bad, "" },
           Case{ true, bad, bad, "Could not save the user default bank!" },
           Case{ true, unknown, bad, "Could not find proper VST DLL location!" },
           Case{ true, unknown, unknown, "Could not find proper VST DLL location!" },
           Case{ false, good, bad, "Could not save the user default bank!" },
           Case{ false, good, unknown, "Could not save the user default bank!" } })
    {
        system.banksBesideLibrary = row.banksBesideLibrary;
        system.libraryPath = row.library;
        system.userBankPath = row.user;
        TestInstrument saving (system);
        system.messages.clear ();
        saving.set (commandMainMenu, menuSaveDefaultBank);
        ASSERT_EQ (system.messages.size (), row.told.empty () ? 1u : 2u) << row.library << row.user;
        EXPECT_EQ (system.messages.back ().text == row.told, !row.told.empty ()) << row.library << row.user;
        EXPECT_EQ (std::filesystem::remove (good), row.told.empty ());
    }
}
