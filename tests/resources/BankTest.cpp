#include "resources/bank/ParameterUnits.h"
#include "tests/resources/Files.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <sstream>

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

TEST (Bank, UsesTheWholeInstrument)
{
    const std::vector<SourceProgram> programs = factoryPrograms ();
    const auto heard = [] (const SourceProgram& p, Param wave, Param level)
    { return p.value (wave) >= 0.5f && p.value (level) > 0.1f; };
    const auto lfoMoves = [] (const SourceProgram& p)
    { return p.value (paramLfoPitch) > 0.0f || p.value (paramLfoFilter) != 0.5f; };
    const auto lfoIs = [lfoMoves] (int position)
    {
        return [=] (const SourceProgram& p)
        { return lfoMoves (p) && static_cast<int> (p.value (paramLfoWave) * 5.0f) == position; };
    };
    const auto filterIs = [] (int type)
    {
        return [=] (const SourceProgram& p)
        { return static_cast<int> (p.value (paramFilterType) * 2.0f) == type; };
    };
    const auto env2Moves = [] (const SourceProgram& p) { return p.value (param2ToFilter) != 0.5f; };

    const std::pair<const char*, std::function<bool (const SourceProgram&)>> uses[] = {
        { "oscillator 1 saw", [&] (auto& p)
          { return heard (p, paramOsc1Wave, paramOsc1Vol) && p.value (paramOsc1Wave) < 1.0f; } },
        { "oscillator 1 pulse", [&] (auto& p)
          { return heard (p, paramOsc1Wave, paramOsc1Vol) && p.value (paramOsc1Wave) == 1.0f; } },
        { "pulse width",
          [] (auto& p) { return p.value (paramOsc1Wave) == 1.0f && p.value (paramOsc1PW) < 0.9f; } },
        { "oscillator 2 saw", [&] (auto& p)
          { return heard (p, paramOsc2Wave, paramOsc2Vol) && p.value (paramOsc2Wave) < 1.0f; } },
        { "oscillator 2 pulse", [&] (auto& p)
          { return heard (p, paramOsc2Wave, paramOsc2Vol) && p.value (paramOsc2Wave) == 1.0f; } },
        { "detune", [] (auto& p) { return p.value (paramOsc2Fine) > 0.0f; } },
        { "noise", [] (auto& p) { return p.value (paramNoise) > 0.1f; } },
        { "LFO triangle", lfoIs (0) },
        { "LFO rising", lfoIs (1) },
        { "LFO falling", lfoIs (2) },
        { "LFO square", lfoIs (3) },
        { "LFO noise", lfoIs (4) },
        { "LFO random", lfoIs (5) },
        { "low-pass", filterIs (0) },
        { "band-pass", filterIs (1) },
        { "high-pass", filterIs (2) },
        { "tempo sync", [&] (auto& p) { return lfoMoves (p) && p.value (paramLfoBmpSync) != 0.0f; } },
        { "mono with glide", [] (auto& p) { return p.value (paramGlideMono) > 0.1f; } },
        { "envelope 2 delay", [&] (auto& p) { return env2Moves (p) && p.value (param2Delay) > 0.1f; } },
        { "looped envelope 1", [] (auto& p) { return p.value (param1Sustain) == 0.0f; } },
        { "looped envelope 2", [&] (auto& p) { return env2Moves (p) && p.value (param2Delay) == 0.0f; } },
        { "smoothing pole",
          [] (auto& p) { return p.value (paramSmothFilt) > 0.0f && p.value (paramFilterType) < 0.5f; } },
        { "drive",
          [&] (auto& p)
          {
              return heard (p, paramOsc1Wave, paramOsc1Vol) && heard (p, paramOsc2Wave, paramOsc2Vol) &&
                     p.value (paramOsc1Vol) + p.value (paramOsc2Vol) > 1.9f;
          } },
        { "key tracking", [] (auto& p) { return p.value (paramFilterKeyTrak) != 0.0f; } },
        { "no key tracking", [] (auto& p) { return p.value (paramFilterKeyTrak) == 0.0f; } },
    };
    for (const auto& [what, isUsed] : uses)
        EXPECT_GE (std::ranges::count_if (programs, isUsed), 3) << what;

    for (const SourceProgram& program : programs)
    {
        const std::string name = program.name ();
        if (name.find ("Sync") != std::string::npos)
        {
            EXPECT_TRUE (program.value (paramLfoBmpSync) != 0.0f && lfoMoves (program)) << name;
        }
    }
}

// The engine's laws, written down here on their own: what a position does, in the unit that the source uses.
TEST (BankSource, UnitsMeanWhatTheEngineDoes)
{
    struct Law
    {
        Param parameter;
        const char* written;
        double expected;
        double (*unit) (double position);
    };
    const Law laws[] = {
        { param1Attack, "250ms", 0.25, [] (double v) { return std::pow (v * v + 0.009, 2.0) * 10.0; } },
        { param1Decay, "1.5s", 1.5, [] (double v) { return std::pow (v * v + 0.006, 2.0) * 10.0; } },
        { param2Attack, "40ms", 0.04, [] (double v) { return std::pow (v, 4.0) * 10.0; } },
        { param2Delay, "330ms", 0.33, [] (double v) { return v; } },
        { param1Sustain, "40%", 0.4, [] (double v) { return v * v; } },
        { param2ToFilter, "-30%", -0.3, [] (double v) { return 2.0 * v - 1.0; } },
        { paramFilterFreq, "800Hz", 800.0, [] (double v) { return v * v * 6460.0 + 100.0; } },
        { paramLfoRate, "5Hz", 5.0, [] (double v) { return (599.0 * v * v * v + 1.0) / 6.0; } },
        { paramLfoRate, "1/16", 14.0, [] (double v) { return std::floor (v * 17.0); } },
        { paramLfoRate, "1/36", 17.0, [] (double v) { return std::floor (v * 17.0); } },
        { paramLfoPitch, "20ct", 20.0,
          [] (double v) { return 1200.0 * std::log2 (1.0 + 2.0 * v * v * v / 16.351598); } },
        { paramOsc2Fine, "702ct", 702.0,
          [] (double v) { return 1200.0 * std::log2 (1.0 + v * v * v / 1.02697); } },
        { paramOsc1Range, "-1oct", 1.0, [] (double v) { return std::floor (v * 4.0); } },
        { paramOsc2Range, "+2oct", 4.0, [] (double v) { return std::floor (v * 4.0); } },
        { paramGlideMono, "90ms", 0.09, [] (double v) { return v * v; } },
        { paramFilterType, "bandpass", 1.0, [] (double v) { return std::floor (v * 2.0); } },
        { paramFilterType, "highpass", 2.0, [] (double v) { return std::floor (v * 2.0); } },
        { paramLfoWave, "square", 3.0, [] (double v) { return std::floor (v * 5.0); } },
        { paramLfoWave, "random", 5.0, [] (double v) { return std::floor (v * 5.0); } },
        { paramOsc1Wave, "saw", 1.0, [] (double v) { return std::floor (v * 2.0); } },
    };
    for (const Law& law : laws)
    {
        const auto position = bank::knobPosition (law.parameter, law.written);
        ASSERT_TRUE (position) << law.written;
        EXPECT_NEAR (law.unit (static_cast<double> (*position)), law.expected,
                     1e-4 * (1.0 + std::abs (law.expected)))
            << law.written;
    }
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
        { "[0 A]\nVolume = loud\n", "line 2: Volume cannot be \"loud\"." },
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
        try
        {
            bank::readBankSource (source);
            ADD_FAILURE () << text;
        }
        catch (const bank::SourceError& error)
        {
            EXPECT_STREQ (error.what (), message);
        }
    }
}
}
