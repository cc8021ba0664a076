// The parameter store: names, texts, limits, detents, and where a value lives.
#include <cmath>

#include <gtest/gtest.h>

#include "tests/plugin/HostedSynth.h"

namespace
{
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN ();
constexpr float infinity = std::numeric_limits<float>::infinity ();
}

// Hosts know parameters by these, misspellings and blanks included.
TEST (ParameterTest, NamesAsHostsKnowThem)
{
    const char* names[] = { "Volume    ",    "Osc1-Vol  ",  "Osc1-Wave ",     "Osc1-PW   ", "Osc1-Range",
                            "Osc2-Vol  ",    "Osc2-Wave ",  "Osc2-Fine ",     "Osc2-Range", "MasterP   ",
                            "Noise     ",    "1-Attack  ",  "1-Sustain ",     "1-Decay   ", "2-Attack  ",
                            "2-Decay   ",    "2-Delay   ",  "2-ToFilter",     "FilterFreq", "FilterRez ",
                            "FilterType",    "LfoRate   ",  "LfoWave   ",     "LfoPitch  ", "LfoFilter ",
                            "Glide-Mono",    "Glide-Auto",  "Voices    ",     "VolType   ", "PitchBend ",
                            "ShowKeys  ",    "VelocityAmp", "VelocityFilter", "SmothFilt ", "HighQuality",
                            "FilterKeyTrak", "LfoBmpSync",  "NonUsed  " };
    HostedSynth synth;
    for (VstInt32 index = 0; index < 38; ++index)
        EXPECT_EQ (synth.text (effGetParamName, index), names[index]) << index;
}

TEST (ParameterTest, StoreRule)
{
    struct Row
    {
        VstInt32 index;
        float set;
        float stored;
    };
    const Row rows[] = {
        { paramVolume, 0.3f, 0.3f },
        { paramVolume, 3.0f, 1.0f },
        { paramVolume, -0.1f, 0.0f },
        { paramVolume, infinity, 1.0f },
        { paramVolume, -infinity, 0.0f },
        { paramVoices, 3.0f, 3.0f }, // unclamped
        { paramVolType, 2.0f, 2.0f },
        { paramGlideAuto, -4.0f, -4.0f },
        { paramShowKeys, 7.5f, 7.5f },
        { paramPitchBend, 2.0f, 1.0f }, // plug-in wide, but clamped
        { paramHighQuality, 2.0f, 1.0f },
        { param2ToFilter, 0.48f, 0.48f },
        { param2ToFilter, std::nextafter (0.48f, 1.0f), 0.5f },
        { param2ToFilter, 0.49f, 0.5f },
        { param2ToFilter, 0.52f, 0.52f },
        { param2ToFilter, std::nextafter (0.52f, 0.0f), 0.5f },
        { paramLfoFilter, 0.49f, 0.5f },
        { paramLfoFilter, 0.52f, 0.52f },
        { paramLfoFilter, 1.2f, 1.0f },
        { paramFilterFreq, 0.49f, 0.49f }, // no detent
        { paramNonUsed, 0.7f, 0.7f },
    };
    HostedSynth synth;
    for (const Row& row : rows)
    {
        synth.set (row.index, row.set);
        EXPECT_EQ (synth.get (row.index), row.stored) << row.index << " to " << row.set;
    }
}

TEST (ParameterTest, NaNIsIgnored)
{
    HostedSynth synth;
    for (VstInt32 index = -1; index < 60; ++index)
    {
        const float before = synth.get (index);
        synth.set (index, notANumber);
        EXPECT_EQ (synth.get (index), before) << index;
    }
    EXPECT_EQ (synth.play (), HostedSynth ().play ());
}

TEST (ParameterTest, IndicesOutsideStoreNothing)
{
    HostedSynth synth;
    const std::vector<char> before = [&synth]
    {
        void* data = nullptr;
        const auto size = static_cast<std::size_t> (synth.call (effGetChunk, 0, 0, &data));
        return std::vector<char> (static_cast<char*> (data), static_cast<char*> (data) + size);
    }();
    for (const VstInt32 index : { -1, -1000000, 38, 39, 47, 55, 1000000, 2147483647, -2147483647 - 1 })
        synth.set (index, 0.77f);
    void* data = nullptr;
    synth.call (effGetChunk, 0, 0, &data);
    EXPECT_EQ (std::memcmp (data, before.data (), before.size ()), 0);
}

TEST (ParameterTest, PluginWideValuesOutliveAProgramChange)
{
    HostedSynth synth;
    for (VstInt32 index = 0; index < 38; ++index)
    {
        synth.call (effSetProgram, 0, 5);
        const float inFive = synth.get (index);
        synth.call (effSetProgram, 0, 4);
        const float other = synth.get (index) == 0.25f ? 0.3125f : 0.25f;
        synth.set (index, other);
        synth.call (effSetProgram, 0, 5);
        const bool isWide = (index >= 26 && index <= 30) || index == 34;
        EXPECT_EQ (synth.get (index), isWide ? other : inFive) << index;
        synth.call (effSetProgram, 0, 4);
        EXPECT_EQ (synth.get (index), other) << index;
    }
}

TEST (ParameterTest, DisplayShowsTheStoredValue)
{
    HostedSynth synth;
    for (const auto& [value, text] :
         { std::pair{ 1.0f, "1.000" }, std::pair{ 0.0f, "0.000" }, std::pair{ 0.12345f, "0.123" } })
    {
        synth.set (paramVolume, value);
        EXPECT_EQ (synth.text (effGetParamDisplay, paramVolume), text);
    }
    synth.set (paramVoices, 3.0f);
    EXPECT_EQ (synth.text (effGetParamDisplay, paramVoices), "3.000");
    synth.set (paramVoices, 3e38f);
    EXPECT_LT (synth.text (effGetParamDisplay, paramVoices).size (), 24u);
    for (VstInt32 index = 0; index < 38; ++index)
        EXPECT_EQ (synth.text (effGetParamLabel, index), "");
}

// Glide-Mono's switch looks at the value as given, the store at the limited one. A negative value therefore
// stores 0 and stays mono until the next change.
TEST (ParameterTest, GlideMonoSwitchesBeforeItIsLimited)
{
    HostedSynth synth;
    synth.set (paramGlideMono, 0.5f);
    synth.set (paramGlideMono, -0.5f);
    EXPECT_EQ (synth.get (paramGlideMono), 0.0f);
}

TEST (ParameterTest, TruncationSaturates)
{
    for (const auto& [value, expected] :
         { std::pair{ 2.9f, 2 }, std::pair{ -2.9f, -2 }, std::pair{ notANumber, 0 },
           std::pair{ infinity, 2147483647 }, std::pair{ -infinity, -2147483647 - 1 },
           std::pair{ 3e9f, 2147483647 }, std::pair{ 2147483648.0f, 2147483647 },
           std::pair{ -2147483648.0f, -2147483647 - 1 } })
        EXPECT_EQ (truncateToInt (value), expected) << value;
}
