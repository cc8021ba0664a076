// Sounds as files of VST 2 hosts, laid out here byte by byte.
#include <gtest/gtest.h>

#include "instrument/SoundFile.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/instrument/TestInstrument.h"
#include "tests/support/PresetBytes.h"

using namespace instrument;

namespace
{
const std::string ours = "Qnrk" + number (1);
const std::string reserved (124, '\x7F');

std::string preset (const std::string& name, float value, std::size_t count = 38)
{
    return presetOf (ours, name, std::vector<float> (count, value));
}

class SoundFile : public testing::Test
{
protected:
    std::string load (const std::string& content)
    {
        folder.write ("file", content);
        return loadFrom (folder / "file");
    }
    // The sentence that refused it; empty: none.
    std::string loadFrom (const std::filesystem::path& file)
    {
        try
        {
            loadSounds (synth.core, file);
        }
        catch (const std::exception& error)
        {
            return error.what ();
        }
        return {};
    }
    // What the song decides rather than the file, as another instance left it.
    BankImage otherBank ()
    {
        BankImage bank = synth.bank ();
        bank.slots[0].spare = 9;
        bank.slots[1].spare = bank.slots[2].spare = 1;
        bank.slots[paramFilterFreq].midiController = 21;
        bank.slots[paramVoices].value = 3.0f;
        bank.programs[9].setName ("Ninth");
        bank.programs[9].values[paramFilterFreq] = 0.25f;
        return bank;
    }

    TemporaryFolder folder;
    FakeSystem system;
    TestInstrument synth{ system };
};
}

TEST_F (SoundFile, HoldsWhatHostsExpect)
{
    synth.core.setProgram (5);
    synth.core.setProgramName ("Twenty-four characters !");
    const std::string record = bytes (synth.bank ().programs[5]);
    saveProgram (synth.core, folder / "one.fxp");
    EXPECT_EQ (contentOf (folder / "one.fxp"),
               fileOf (ours, "FPCh", 1, 38, field ("Twenty-four characters !") + chunk (record)));
    saveBank (synth.core, folder / "all.fxb");
    EXPECT_EQ (
        contentOf (folder / "all.fxb"),
        fileOf (ours, "FBCh", 2, 128, number (5) + std::string (124, '\0') + chunk (bytes (synth.bank ()))));
    BankImage plain = synth.bank ();
    plain.slots[0].spare = 0;
    saveBank (synth.core, folder / "all.bnk");
    EXPECT_EQ (contentOf (folder / "all.bnk"), bytes (plain));

    TestInstrument other (system);
    for (const char* file : { "all.fxb", "all.bnk" })
    {
        other.core.reloadFactoryBank ();
        other.core.setProgram (5);
        loadSounds (other.core, folder / file);
        EXPECT_TRUE (equal (other.bank (), synth.bank ())) << file;
    }
    other.core.setProgram (77);
    loadSounds (other.core, folder / "one.fxp");
    EXPECT_EQ (bytes (other.bank ().programs[77]), record);
    for (const char* file : { "none/a.fxp", "." })
        EXPECT_ANY_THROW (saveProgram (synth.core, folder / file)) << file;
    EXPECT_EQ (filesIn (folder.folder ()), (std::set<std::string>{ "all.bnk", "all.fxb", "one.fxp" }));
}

TEST_F (SoundFile, OfOtherHostsIsTaken)
{
    const BankImage bank = otherBank ();
    const BankImage before = synth.bank ();
    const std::pair<std::string, std::int32_t> banks[] = {
        // the chunk tells the program, then the header; bytes behind the end; a wrong size in the header
        { fileOf (ours, "FBCh", 1, 128, number (7) + reserved + chunk (bytes (bank)) + "rest"), 9 },
        { fileOf (ours, "FBCh", 2, 128, number (0) + reserved + chunk (bytes (bank))), 9 },
        { fileOf (ours, "FBCh", 2, 0, number (7) + reserved + chunk (bytes (before))), 7 },
        { fileOf (ours, "FBCh", 2, 128) + number (128) + reserved + chunk (bytes (before)), 3 },
    };
    for (const auto& [content, program] : banks)
    {
        synth.load (before);
        synth.core.setProgram (3);
        EXPECT_EQ (load (content), "");
        EXPECT_EQ (synth.core.getProgram (), program);
        const bool other = content.find ("Ninth") != std::string::npos;
        EXPECT_EQ (synth.core.programName (9), other ? "Ninth" : before.programs[9].nameView ());
        EXPECT_EQ (synth.core.midiController (paramFilterFreq), other ? 21u : 0u);
        EXPECT_EQ (synth.get (paramVoices), other ? 3.0f : before.slots[paramVoices].value);
        for (const std::size_t slot : { 1u, 2u })
            EXPECT_EQ (synth.bank ().slots[slot].spare, before.slots[slot].spare)
                << "an addition was switched";
    }

    synth.load (otherBank ());
    std::string programs = fileOf (ours, "FxBk", 2, 128, number (127) + reserved);
    for (int n = 0; n < 128; ++n)
        programs += preset ("Program " + std::to_string (n), static_cast<float> (n) / 254.0f);
    EXPECT_EQ (load (programs), "");
    EXPECT_EQ (synth.core.getProgram (), 127);
    EXPECT_EQ (synth.core.programName (64), "Program 64");
    EXPECT_EQ (synth.bank ().programs[64].values[paramFilterFreq], 64.0f / 254.0f);
    EXPECT_EQ (synth.get (paramPitchBend), 0.5f) << "the selected one's";
    EXPECT_EQ (synth.core.midiController (paramFilterFreq), 21u) << "a file of values has no bindings";

    EXPECT_EQ (load (preset ("Plain", 0.75f)), "");
    EXPECT_EQ (synth.core.programName (127), "Plain");
    EXPECT_EQ (synth.get (paramFilterFreq), 0.75f);
    EXPECT_EQ (synth.get (paramPitchBend), 0.5f) << "belongs to no program";
    EXPECT_TRUE (system.messages.empty ());
}

// qtractor 0.9.31 wrote them with this instrument: the preset after its cutoff had been turned up, the bank
// after that preset had become its first program ("again"). Its headers hold sizes of its own, the plug-in
// interface's version in place of the plug-in's, and the first version of the bank format.
TEST_F (SoundFile, OfARealHostIsTakenAndWrittenAgain)
{
    const std::filesystem::path folderOfFiles = SOURCE_FOLDER "/tests/instrument";
    const std::string preset = contentOf (folderOfFiles / "qtractor.fxp");
    const std::string bank = contentOf (folderOfFiles / "qtractor.fxb");
    const auto fromVersions = [] (const std::string& file) { return file.substr (24); };
    EXPECT_EQ (load (bank), "");
    EXPECT_EQ (synth.core.programName (0), "again");
    EXPECT_EQ (synth.core.programName (127), "Retro Pad 64");
    saveBank (synth.core, folder / "again.fxb");
    EXPECT_EQ (fromVersions (contentOf (folder / "again.fxb")), fromVersions (bank));

    synth.core.setProgram (3);
    EXPECT_EQ (load (preset), "");
    EXPECT_EQ (synth.core.programName (3), "host");
    EXPECT_EQ (synth.get (paramFilterFreq), 1.0f);
    EXPECT_EQ (synth.get (paramFilterRez), 0.82f);
    saveProgram (synth.core, folder / "again.fxp");
    EXPECT_EQ (fromVersions (contentOf (folder / "again.fxp")), fromVersions (preset));
}

TEST_F (SoundFile, DamagedOnesAreRefusedWithASentenceAndNothingChanges)
{
    const std::string record = bytes (synth.bank ().programs[5]);
    const std::string image = bytes (otherBank ());
    const std::string name = field ("Name");
    const std::string start = number (0) + reserved;
    const std::string oneProgram = start + preset ("Name", 0.5f);
    const std::string ends = "it ends in the middle of its data";
    std::string notANumber = preset ("Name", 0.5f);
    notANumber.replace (notANumber.size () - 4, 4, number (0x7FC00000));
    std::string nested = fileOf (ours, "FxBk", 1, 128, start);
    for (int depth = 0; depth < 100000; ++depth)
        nested += fileOf (ours, "FxBk", 1, 1, start);
    const BankImage before = synth.bank ();
    for (const auto& [content, sentence] : std::initializer_list<std::pair<std::string, std::string>>{
             { "", "it is no preset or bank file" },
             { image.substr (1), "it is no preset or bank file" },
             { "CcnK", ends },
             { fileOf (ours, "FPCh", 1, 38, name + number (176) + record.substr (1)), ends },
             { fileOf (ours, "FPCh", 1, 38, name + number (0xFFFFFFFF) + record), ends },
             { fileOf (ours, "FPCh", 1, 38, name + chunk (record + "x")),
               "it should hold 176 bytes of sounds, but 177 are there" },
             { fileOf (ours, "FBCh", 2, 128, start + chunk (image.substr (1))),
               "it should hold 23896 bytes of sounds, but 23895 are there" },
             { presetOf ("Abc\x01" + number (1), "Name", {}), "it belongs to another plug-in, \"Abc?\"" },
             { fileOf (ours, "FPCh", 3, 38), "it is of version 3 of its format, and only 1 and 2 are known" },
             { fileOf (ours, "FXxx", 1, 38), "it is neither a preset nor a bank" },
             { preset ("Name", 0.5f, 37), "it should hold 38 values in each program, but 37 are there" },
             { fileOf (ours, "FxCk", 1, 0xFFFFFFFF, name + record), ends },
             { notANumber, "a value in it is no number" },
             { fileOf (ours, "FxBk", 1, 1, oneProgram), "it should hold 128 programs, but 1 are there" },
             { fileOf (ours, "FxBk", 1, 128, oneProgram), ends },
             { nested, "one of its programs is something else" },
         })
    {
        EXPECT_EQ (load (content), sentence) << content.substr (0, 60);
        EXPECT_TRUE (equal (synth.bank (), before)) << sentence;
    }
    EXPECT_EQ (loadFrom (folder / "none"), "there is no such file");
    EXPECT_EQ (loadFrom (folder.folder ()), "it is not a file");
    std::filesystem::resize_file (folder / "file", (64 << 20) + 1);
    EXPECT_EQ (loadFrom (folder / "file"), "it is too large for a preset or bank file");
    EXPECT_TRUE (system.messages.empty ());
}

TEST_F (SoundFile, IsNamedLikeTheProgram)
{
    EXPECT_EQ (fileNameOf ("Bass One"), "Bass One");
    EXPECT_EQ (fileNameOf ("A/B\\C:\"?*<>|\x01\xE9. ."), "A_B_C_________");
    EXPECT_EQ (fileNameOf (" . "), "Program");
}
