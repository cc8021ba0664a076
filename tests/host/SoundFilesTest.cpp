// Presets and banks on the command line, of instruments of either kind and of our own.
#include "tests/host/Command.h"

#include "tests/support/PresetBytes.h"

namespace
{
const std::string probe = "Prob" + number (7);

std::string chunkOf (const std::vector<float>& values)
{
    return chunk (
        std::string (reinterpret_cast<const char*> (values.data ()), values.size () * sizeof (float)));
}
std::string bank (const std::string& kind, std::uint32_t program, const std::string& content)
{
    return fileOf (probe, kind, 2, 3, number (program) + std::string (124, '\0') + content);
}

class SoundFiles : public Command
{
protected:
    void SetUp () override
    {
        Command::SetUp ();
        std::filesystem::copy_file (CHUNKS_LIBRARY, temporary / "chunks.so");
        temporary.write ("mine.fxp", presetOf (probe, "Mine", { 0.5f, 1.0f }));
        temporary.write ("chunk.fxp",
                         fileOf (probe, "FPCh", 1, 2, field ("Mine") + chunkOf ({ 0.5f, 1.0f })));
        temporary.write ("foreign.fxp", presetOf ("Else" + number (7), "Mine", { 0.5f, 1.0f }));
    }
    void run (const std::string& arguments)
    {
        const Outcome outcome = host (arguments);
        EXPECT_EQ (outcome.status, 0) << arguments << "\n" << outcome.output;
    }
};

TEST_F (SoundFiles, GoThroughTheInstrumentWithItsOwnIdentity)
{
    run ("probe.so -p 2 --load mine.fxp --save-program one.fxp --save-bank all.fxb");
    EXPECT_EQ (content ("one.fxp"), content ("mine.fxp"));
    const std::string all =
        bank ("FxBk", 1,
              presetOf (probe, "Clicks", { 0.0f, 0.125f }) + presetOf (probe, "Mine", { 0.5f, 1.0f }) +
                  presetOf (probe, "Tempo", { 0.5f, 0.625f }));
    EXPECT_EQ (content ("all.fxb"), all);
    run ("probe.so --load all.fxb --save-bank again.fxb");
    EXPECT_EQ (content ("again.fxb"), all);
    EXPECT_EQ (host ("probe.so --load all.fxb --list-programs").output, "001 Clicks\n002 Mine\n003 Tempo\n");

    run ("chunks.so -p 3 --load chunk.fxp --save-program one.fxp --save-bank all.bnk");
    EXPECT_EQ (content ("one.fxp"), fileOf (probe, "FPCh", 1, 2, field ("Tempo") + chunkOf ({ 0.5f, 1.0f })));
    const std::string chunks = chunkOf ({ 0.0f, 0.125f, 0.25f, 0.375f, 0.5f, 1.0f });
    EXPECT_EQ (content ("all.bnk"), chunks.substr (4));
    run ("chunks.so --load all.bnk -p 3 --save-bank all.fxb");
    EXPECT_EQ (content ("all.fxb"), bank ("FBCh", 2, chunks));
    run ("chunks.so --load all.fxb --save-bank again.fxb");
    EXPECT_EQ (content ("again.fxb"), content ("all.fxb"));
}

TEST_F (SoundFiles, AreHeardInTheSong)
{
    EXPECT_TRUE (host ("probe.so song.mid --tail 0.5 --load mine.fxp")
                     .output.starts_with ("Program:   001 Mine\nLength"))
        << "a preset plays the whole song";
    temporary.write ("all.fxb",
                     bank ("FxBk", 1,
                           presetOf (probe, "A", { 0.0f, 0.0f }) + presetOf (probe, "B", { 0.0f, 0.0f }) +
                               presetOf (probe, "C", { 0.0f, 0.0f })));
    EXPECT_TRUE (host ("probe.so song.mid --tail 0.5 --load all.fxb")
                     .output.starts_with ("Program:   001 A\nProgram:   003 C\n"));
    EXPECT_TRUE (host ("probe.so song.mid --tail 0.5 --load all.fxb -p B --save-bank b.fxb")
                     .output.starts_with ("Written:   b.fxb\nProgram:   002 B\nLength"));
}

TEST_F (SoundFiles, ThatDoNotFitAreRefused)
{
    temporary.write ("three.fxp", presetOf (probe, "Mine", { 0.5f, 1.0f, 0.0f }));
    temporary.write ("one.fxb", fileOf (probe, "FxBk", 2, 1, std::string (128, '\0') + content ("mine.fxp")));
    temporary.write ("bare.bnk", std::string ("anything"));
    for (const auto& [arguments, sentence] : std::initializer_list<std::pair<std::string, const char*>>{
             { "probe.so --load none.fxp -l", "cannot load none.fxp: there is no such file." },
             { "probe.so --load song.mid -l", "cannot load song.mid: it is no preset or bank file." },
             { "probe.so --load foreign.fxp -l",
               "cannot load foreign.fxp: it belongs to another plug-in, \"Else\"." },
             { "probe.so --load chunk.fxp -l", "cannot load chunk.fxp: the instrument takes no chunks." },
             { "probe.so --load bare.bnk -l", "cannot load bare.bnk: the instrument takes no chunks." },
             { "probe.so --load three.fxp -l",
               "the instrument has another number of parameters or programs." },
             { "probe.so --load one.fxb -l", "the instrument has another number of parameters or programs." },
             { "probe.so --load mine.fxp song.mid -o mine.fxp",
               "mine.fxp would overwrite the loaded sounds" },
             { "probe.so --save-bank none/a.fxb", "cannot write none/a.fxb: its folder does not exist." },
             { "probe.so --save-program probe.so", "probe.so would overwrite the library" },
             { "probe.so --save-bank ''", "--save-bank: it needs the name of a file" },
             { "probe.so --plot a.png -l", "SONG" },
             { "probe.so song.mid --plot none/a.png", "its folder does not exist." },
         })
        expectRefusal (HOST_PROGRAM " " + arguments, sentence);
}

// Our own: the user default bank to a bank file and back, through the library as it is built.
TEST_F (SoundFiles, TheUserDefaultBankIsConvertedAndBack)
{
    ::setenv ("XDG_CONFIG_HOME", (temporary / "config").c_str (), 1);
    std::filesystem::copy_file (BRIMVALE_LIBRARY, temporary / "Brimvale.so");
    run ("Brimvale.so --save-bank factory.bnk");
    std::string image = content ("factory.bnk");
    ASSERT_EQ (image.size (), 23896u);
    image.replace (1368 + 5 * 176, 5, "Sixth"); // the name of a program
    temporary.write ("Brimvale.bnk", image);    // beside the library
    run ("Brimvale.so -p 6 --save-bank mine.fxb --save-program sixth.fxp");
    EXPECT_TRUE (content ("sixth.fxp").substr (28).starts_with ("Sixth"));
    std::filesystem::remove (temporary / "Brimvale.bnk");
    run ("Brimvale.so --load mine.fxb --save-bank Brimvale.bnk");
    EXPECT_EQ (content ("Brimvale.bnk"), image);
    ::unsetenv ("XDG_CONFIG_HOME");
}
}
