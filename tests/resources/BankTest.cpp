#include "resources/bank/ParameterUnits.h"
#include "tests/resources/Files.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <sstream>
#include <tuple>

namespace
{
using bank::Kind;
using bank::SourceProgram;

TEST (Bank, IsWhatItsSourceSays)
{
    const std::string bytes = asString (bank::bankBytes (factoryPrograms ()));
    EXPECT_EQ (bytes.size (), 22528u);
    EXPECT_TRUE (bytes == bytesOf ("resources/bank/factorybank.bin")) << "run makeBank";
}

TEST (Bank, BeginsWithBassOne)
{
    constexpr float expected[] = { 0.865f,  1.0f,    0.5013f, 0.5636f, 0.5307f, 1.0f,    1.0f,    0.183f,
                                   0.502f,  0.5f,    0.0f,    0.0f,    0.2869f, 0.418f,  0.0f,    0.4145f,
                                   0.0f,    0.6335f, 0.284f,  0.82f,   0.1f,    0.0091f, 0.1822f, 0.0f,
                                   0.5268f, 0.0f,    1.0f,    1.0f,    1.0f,    0.5f,    1.0f,    0.4457f,
                                   0.1191f, 1.0f,    0.0f,    0.0f,    0.0f,    0.0f };
    const SourceProgram program = factoryPrograms ().front ();
    EXPECT_EQ (program.name (), "Bass One");
    ASSERT_EQ (std::size (expected), program.record.values.size ());
    for (std::size_t n = 0; n < std::size (expected); ++n)
        EXPECT_EQ (program.record.values[n], expected[n]) << n;
}

TEST (Bank, NamesItsSoundsAndGroupsThemByKind)
{
    const std::vector<SourceProgram> programs = factoryPrograms ();
    const std::pair<std::size_t, const char*> fixed[] = {
        { 0, "Bass One" },  { 24, "Simple Lead" }, { 45, "Super Vimble" },      { 53, "MidiSyncLFO" },
        { 54, "Low Pads" }, { 84, "Space Pads" },  { 85, "Overdriven Vimble" }, { 127, "Retro Pad 64" }
    };
    for (const auto& [index, name] : fixed)
        EXPECT_EQ (programs[index].name (), name);
    std::set<std::string> names;
    for (std::size_t n = 0; n < programs.size (); ++n)
    {
        EXPECT_LE (programs[n].name ().size (), 24u);
        EXPECT_TRUE (names.insert (programs[n].name ()).second) << programs[n].name ();
        if (n < 85)
        {
            EXPECT_EQ (programs[n].kind, n < 24 ? Kind::bass : n < 54 ? Kind::lead : Kind::pad) << n;
        }
    }
    for (const char* name : { "Bass Two", "Fun Bass", "Sub Bass" })
        EXPECT_TRUE (names.contains (name)) << name;
}

// Each choice and each special value of the instrument is heard in three programs or more.
TEST (Bank, UsesTheWholeInstrument)
{
    const std::vector<SourceProgram> programs = factoryPrograms ();
    const auto lfoMoves = [] (const SourceProgram& p)
    { return p.value (paramLfoPitch) > 0.0f || p.value (paramLfoFilter) != 0.5f; };
    const auto env2Moves = [] (const SourceProgram& p) { return p.value (param2ToFilter) != 0.5f; };
    std::vector<std::pair<std::string, std::function<bool (const SourceProgram&)>>> uses = {
        { "noise", [] (auto& p) { return p.value (paramNoise) > 0.1f; } },
        { "tempo sync", [&] (auto& p) { return lfoMoves (p) && p.value (paramLfoBmpSync) != 0.0f; } },
        { "mono with glide", [] (auto& p) { return p.value (paramGlideMono) > 0.1f; } },
        { "envelope 2 delay", [&] (auto& p) { return env2Moves (p) && p.value (param2Delay) > 0.1f; } },
        { "looped envelope 1", [] (auto& p) { return p.value (param1Sustain) == 0.0f; } },
        { "looped envelope 2", [&] (auto& p) { return env2Moves (p) && p.value (param2Delay) == 0.0f; } },
    };
    for (int shape = 0; shape < 6; ++shape)
        uses.emplace_back (
            "LFO shape " + std::to_string (shape), [=] (auto& p)
            { return lfoMoves (p) && static_cast<int> (p.value (paramLfoWave) * 5.0f) == shape; });
    for (int type = 0; type < 3; ++type)
        uses.emplace_back ("filter type " + std::to_string (type), [=] (auto& p)
                           { return static_cast<int> (p.value (paramFilterType) * 2.0f) == type; });
    for (const auto& [what, isUsed] : uses)
        EXPECT_GE (std::ranges::count_if (programs, isUsed), 3) << what;

    for (const SourceProgram& program : programs)
    {
        if (program.name ().find ("Sync") != std::string::npos)
        {
            EXPECT_TRUE (program.value (paramLfoBmpSync) != 0.0f && lfoMoves (program)) << program.name ();
        }
    }
}

TEST (BankSource, ValuesOutsideOrInForeignUnitsAreNone)
{
    for (const auto& [parameter, written] :
         { std::pair (paramFilterFreq, "9000Hz"), std::pair (paramFilterFreq, "800ms"),
           std::pair (paramVolume, "1.5"), std::pair (paramOsc1Wave, "sine"), std::pair (paramLfoRate, "1/5"),
           std::pair (paramVolume, "") })
        EXPECT_FALSE (bank::knobPosition (parameter, written)) << written;
}

TEST (BankSource, ErrorsNameTheirLine)
{
    const std::pair<const char*, const char*> faults[] = {
        { "[0 A]\nkind = bass\nabout = x\nVolum = 1\n", "line 4: there is no parameter \"Volum\"." },
        { "[1 A]\n", "line 1: program 0 comes next." },
        { "[0 A]\nkind = bass\nabout = x\n[1 A]\n", "line 4: the name \"A\" is already taken." },
        { "[0 A name of far too many letters]\n", "line 1: a name has 1 to 24 characters." },
        { "[0 A]\nkind = tuba\n", "line 2: there is no kind \"tuba\"." },
        { "[0 A]\nkind = bass\n[1 B]\n", "line 3: \"A\" lacks its kind or its description." },
        { "[0 A\n", "line 1: a block's head ends with ]." },
        { "Volume\n", "line 1: a line reads parameter = value." },
        { "[0 A]\nkind = bass\nabout = x\n", "line 3: the bank has 1 programs, not 128." },
    };
    for (const auto& [text, message] : faults)
    {
        std::istringstream source (text);
        EXPECT_EQ (errorOf<bank::SourceError> ([&] { bank::readBankSource (source); }), message) << text;
    }
}
}
