// The user default bank beside the library, and the one for all formats.
#include <gtest/gtest.h>

#include "tests/host/TemporaryFolder.h"
#include "tests/instrument/TestInstrument.h"
#include "tests/support/PresetBytes.h"

using namespace instrument;

namespace
{
class UserBankTest : public testing::Test
{
protected:
    UserBankTest () { system.libraryPath = folder / "Brimvale.dll"; }

    void save () { synth.set (commandMainMenu, menuSaveDefaultBank); }

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
    // Something that differs from the factory in every part.
    synth.set (paramVoices, 3.0f);
    synth.learn (1, 21, 64);
    synth.core.setProgram (127);
    synth.set (paramVolume, 0.25f);
    synth.core.setProgramName ("The last one");
    synth.core.setProgram (9);
    save ();
    BankImage saved = synth.bank ();
    EXPECT_EQ (system.messages.size (), 2u) << "success needs no box";
    saved.slots[0].spare = 0;
    EXPECT_EQ (contentOf (folder / "Brimvale.bnk"), bytes (saved));
    TestInstrument second (system);
    EXPECT_TRUE (equal (second.bank (), saved));
    EXPECT_EQ (second.core.midiController (0), 0u);
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
        folder.write ("Brimvale.bnk", std::string (size, 'x'));
        TestInstrument fresh (system);
        for (const std::int32_t program : { 0, 64, 127 })
            EXPECT_EQ (fresh.core.programName (program), "Init") << size;
        for (const ParamRow& row : paramTable)
            EXPECT_EQ (fresh.get (row.index), row.initial) << size << " " << row.name;
    }
    EXPECT_TRUE (system.messages.empty ());
}

// A file's time is set by hand where the order counts: two files may be written within one tick of the disk's
// clock.
TEST_F (UserBankTest, TheOneThatWasWrittenLastIsRead)
{
    const auto beside = folder / "Brimvale.bnk";
    system.userBankPath = folder / "config" / "corvanex" / "Brimvale.bnk";
    save ();
    const std::string first = contentOf (beside);
    EXPECT_EQ (contentOf (system.userBankPath), first) << "both are written";

    system.banksBesideLibrary = false;
    TestInstrument other (system); // of a format without a file beside its library
    other.core.setProgramName ("Of all formats");
    other.set (commandMainMenu, menuSaveDefaultBank);
    EXPECT_EQ (contentOf (beside), first);
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

// What no user may write to is simulated by a folder that is a file, and by a folder in the bank's place.
TEST_F (UserBankTest, ThatCannotBeWrittenIsToldAndDisturbsNothing)
{
    std::ofstream (folder / "file") << "content";
    std::filesystem::create_directories (folder / "folder.bnk" / "inner");
    const auto good = folder / "good.bnk";
    const auto bad = folder / "file" / "a.bnk";
    const auto taken = folder / "folder.bnk";
    const std::filesystem::path none;
    const std::string noPlace = "Could not find proper VST DLL location!";
    const std::string notSaved = "Could not save the user default bank!";
    struct Row
    {
        bool banksBesideLibrary;
        std::filesystem::path library, user;
        std::string told;
        bool written = false;
    };
    for (const Row& row :
         { Row{ true, bad, good, "", true }, Row{ true, none, good, "", true },
           Row{ true, good, bad, "", true }, Row{ true, bad, none, "" },
           Row{ true, folder / "none" / "a.bnk", none, "" }, Row{ true, taken, none, "" },
           Row{ true, bad, bad, notSaved }, Row{ true, none, bad, noPlace }, Row{ true, none, none, noPlace },
           Row{ false, good, bad, notSaved }, Row{ false, good, none, notSaved } })
    {
        system.banksBesideLibrary = row.banksBesideLibrary;
        system.libraryPath = row.library;
        system.userBankPath = row.user;
        TestInstrument saving (system);
        system.messages.clear ();
        saving.set (commandMainMenu, menuSaveDefaultBank);
        ASSERT_EQ (system.messages.size (), row.told.empty () ? 1u : 2u) << row.library << row.user;
        EXPECT_EQ (system.messages.back ().text == row.told, !row.told.empty ()) << row.library << row.user;
        EXPECT_EQ (std::filesystem::remove (good), row.written) << row.library << row.user;
        EXPECT_EQ (filesIn (folder.folder ()), (std::set<std::string>{ "file", "folder.bnk" }));
    }
    EXPECT_EQ (contentOf (folder / "file"), "content");
    EXPECT_TRUE (std::filesystem::exists (taken / "inner"));
}
