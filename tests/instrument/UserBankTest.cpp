// The user default bank beside the library.
#include "tests/host/TemporaryFolder.h"
#include "tests/support/TestSynth.h"

#include <fstream>
#include <gtest/gtest.h>

using namespace engine;
using namespace instrument;
using namespace parameters;

namespace
{
using platform::Answer;
using platform::Buttons;

class UserBank : public testing::Test
{
protected:
    void SetUp () override { host.libraryPath = folder / "Brimvale.dll"; }

    std::unique_ptr<VstSynth> makeSynth ()
    {
        return std::make_unique<VstSynth> (&FakeHost::callback, host.services ());
    }
    static std::string bankOf (VstSynth& synth)
    {
        void* data = nullptr;
        const VstInt32 size = synth.getChunk (&data, false);
        return { static_cast<const char*> (data), static_cast<std::size_t> (size) };
    }
    static std::string contentOf (const std::filesystem::path& path)
    {
        std::ifstream file (path, std::ios::binary);
        return { std::istreambuf_iterator<char> (file), {} };
    }
    static void write (const std::filesystem::path& path, const std::string& content)
    {
        std::ofstream (path, std::ios::binary) << content;
    }
    // A bank that differs from the factory's in every part.
    static void play (VstSynth& synth)
    {
        synth.setParameter (paramVoices, 3.0f);
        synth.setParameter (53, 1.0f);
        render (synth, 64, 64, { { 0, 0xB0, 21, 64 } });
        synth.setProgram (127);
        synth.setParameter (paramVolume, 0.25f);
        synth.setProgramName ("The last one");
        synth.setProgram (0);
        synth.setParameter (paramFilterFreq, 0.75f);
    }
    std::vector<std::string> filesInFolder () const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator (folder.folder ()))
            names.push_back (entry.path ().filename ().string ());
        return names;
    }

    TemporaryFolder folder;
    FakeHost host;
};

TEST_F (UserBank, HasTheLibrarysNameWithAnotherEnd)
{
    const std::pair<const char*, const char*> cases[] = {
        { "Brimvale.dll", "Brimvale.bnk" }, { "Brimvale.so", "Brimvale.bnk" }, { "a.b.vst", "a.b.bnk" },
        { "Brimvale.DLL", "Brimvale.bnk" }, { "My.so.dll", "My.so.bnk" },
    };
    for (const auto& [library, bank] : cases)
    {
        host.libraryPath = folder / library;
        makeSynth ()->setParameter (45, 0.0f);
        EXPECT_EQ (filesInFolder (), std::vector<std::string>{ bank });
        std::filesystem::remove (folder / bank);
    }
}

TEST_F (UserBank, ComesBackByteForByte)
{
    const auto first = makeSynth ();
    play (*first);
    first->setParameter (45, 0.0f);
    EXPECT_EQ (host.messages.size (), 1u) << "success needs no box";
    const std::string saved = contentOf (folder / "Brimvale.bnk");
    EXPECT_EQ (saved.size (), 23896u);
    EXPECT_EQ (saved, bankOf (*first));

    const auto second = makeSynth ();
    EXPECT_EQ (bankOf (*second), saved);
    EXPECT_EQ (second->midiController (1), 21u);
    EXPECT_EQ (second->getParameter (paramVoices), 3.0f);
    EXPECT_EQ (second->getParameter (paramFilterFreq), 0.75f);
    EXPECT_EQ (second->programName (127), "The last one");

    // Saved over an older one.
    second->setProgramName ("Newer");
    second->setParameter (45, 0.0f);
    EXPECT_EQ (contentOf (folder / "Brimvale.bnk"), bankOf (*second));
    EXPECT_EQ (filesInFolder ().size (), 1u);
}

TEST_F (UserBank, ItsBindingsTakeThePlaceOfTheStoredOnes)
{
    (*host.stored)["Brimvale\\MidiCC-Volume    "] = 8;
    EXPECT_EQ (makeSynth ()->midiController (0), 7u) << "without a bank";
    {
        FakeHost::Message none;
        const auto stored = std::exchange (host.stored, std::make_shared<MemoryStore::Content> ());
        const auto unbound = makeSynth ();
        play (*unbound);
        unbound->setParameter (45, 0.0f);
        host.stored = stored;
    }
    const auto synth = makeSynth ();
    EXPECT_EQ (synth->midiController (0), 0u);
    EXPECT_EQ (synth->midiController (1), 21u);
}

TEST_F (UserBank, WithoutOneTheFactoryBankPlays)
{
    EXPECT_EQ (makeSynth ()->programName (0), "Bass One");
    std::filesystem::create_directory (folder / "Brimvale.bnk"); // a folder is no bank either
    EXPECT_EQ (makeSynth ()->programName (0), "Bass One");
    host.libraryPath = "";
    EXPECT_EQ (makeSynth ()->programName (0), "Bass One");
    host.libraryPath = "so";
    EXPECT_EQ (makeSynth ()->programName (0), "Bass One");
    EXPECT_TRUE (host.messages.empty ());
}

// A file of another size is taken as the user's wish for no factory bank, and read not at all. That is meant.
TEST_F (UserBank, AWrongSizeLeavesTheProgramsFresh)
{
    for (const std::size_t size : { 0, 1, 22528, 23895, 23897 })
    {
        write (folder / "Brimvale.bnk", std::string (size, 'x'));
        const auto synth = makeSynth ();
        for (const VstInt32 program : { 0, 64, 127 })
            EXPECT_EQ (synth->programName (program), "Init") << size;
        for (const ParamRow& row : paramTable)
            EXPECT_EQ (synth->getParameter (row.index), row.initial) << size << " " << row.name;
        EXPECT_TRUE (host.messages.empty ()) << size;
    }
}

TEST_F (UserBank, AsksWhereThatIsWanted)
{
    const auto synth = makeSynth ();
    play (*synth);
    synth->setParameter (45, 0.0f);
    const std::pair<Answer, const char*> cases[] = { { Answer::yes, "The last one" },
                                                     { Answer::no, "Retro Pad 64" },
                                                     { Answer::none, "Retro Pad 64" } };
    for (const auto& [answer, lastProgram] : cases)
    {
        host.messages.clear ();
        host.answer = answer;
        synth->loadBank (174, true, true);
        ASSERT_EQ (host.messages.size (), 1u);
        EXPECT_TRUE ((host.messages[0] ==
                      FakeHost::Message{ "Reload from User-Default bank? (No = Loads Factory Bank)",
                                         "Warning!", Buttons::yesNo }));
        EXPECT_EQ (synth->programName (127), lastProgram);
    }
}

TEST_F (UserBank, SaysWhenTheLibraryCannotBeFound)
{
    host.libraryPath = "";
    makeSynth ()->setParameter (45, 0.0f);
    ASSERT_EQ (host.messages.size (), 2u);
    EXPECT_TRUE ((host.messages[1] ==
                  FakeHost::Message{ "Could not find proper VST DLL location!", "Error!", Buttons::ok }));
}

// What no user may write to is simulated by a folder that is a file, and by a folder in the bank's place.
TEST_F (UserBank, WhereNothingCanBeWrittenNothingHappens)
{
    const auto synth = makeSynth ();
    write (folder / "file", "content");
    host.libraryPath = folder / "file" / "Brimvale.dll";
    synth->setParameter (45, 0.0f);
    host.libraryPath = folder / "none" / "Brimvale.dll";
    synth->setParameter (45, 0.0f);
    std::filesystem::create_directories (folder / "Brimvale.bnk" / "inner");
    host.libraryPath = folder / "Brimvale.dll";
    synth->setParameter (45, 0.0f);
    EXPECT_EQ (host.messages.size (), 3u) << "the questions and nothing else";
    EXPECT_EQ (contentOf (folder / "file"), "content");
    EXPECT_TRUE (std::filesystem::exists (folder / "Brimvale.bnk" / "inner"));
    EXPECT_EQ (filesInFolder ().size (), 2u) << "a temporary file was left";
}

TEST_F (UserBank, PathsMayHoldBlanksAndAnyLetter)
{
    const std::filesystem::path place = folder / std::filesystem::path (u8"Meine Klänge für später ☃");
    std::filesystem::create_directory (place);
    host.libraryPath = place / std::filesystem::path (u8"Größe 2.dll");
    const auto first = makeSynth ();
    play (*first);
    first->setParameter (45, 0.0f);
    EXPECT_EQ (contentOf (place / std::filesystem::path (u8"Größe 2.bnk")), bankOf (*first));
    EXPECT_EQ (bankOf (*makeSynth ()), bankOf (*first));
}
}
