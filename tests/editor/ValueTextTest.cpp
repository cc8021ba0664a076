#include "editor/ValueText.h"

#include <gtest/gtest.h>

#include "parameters/Parameters.h"

using namespace parameters;
using namespace editor;

namespace
{
struct Text
{
    Param parameter;
    float value;
    const char* text;
};

TEST (ValueText, SpeaksTheFieldsWords)
{
    const Text texts[] = {
        { paramVolume, 0.5f, "50 %" },
        { paramOsc1Wave, 0.49f, "off" },
        { paramOsc1Wave, 0.5f, "saw" },
        { paramOsc2Wave, 0.99f, "saw" },
        { paramOsc2Wave, 1.0f, "pulse" },
        { paramOsc1Range, 0.0f, "-24 semitones" },
        { paramOsc1Range, 0.74f, "0 semitones" },
        { paramOsc2Range, 1.0f, "+24 semitones" },
        { paramFilterType, 0.0f, "low-pass" },
        { paramFilterType, 0.5f, "band-pass" },
        { paramFilterType, 1.0f, "high-pass" },
        { paramLfoWave, 0.0f, "triangle" },
        { paramLfoWave, 0.6f, "square" },
        { paramLfoWave, 1.0f, "sample and hold" },
        { paramVoices, 0.0f, "2" },
        { paramVoices, 0.5f, "8" },
        { paramVoices, 1.0f, "16" },
        { param2ToFilter, 0.5f, "off" },
        { param2ToFilter, 0.0f, "-100 %" },
        { paramLfoFilter, 0.75f, "+50 %" },
        { param1Attack, 0.0f, "0.8 ms" }, // 0.009^2 x 10 s
        { param1Decay, 1.0f, "10.12 s" }, // 1.006^2 x 10 s
        { param2Attack, 0.5f, "625 ms" }, // 0.5^4 x 10 s
        { paramGlideMono, 0.0f, "off, polyphonic" },
        { paramGlideMono, 0.5f, "250 ms" },
        { paramFilterFreq, 1.0f, "6560 Hz" },
        { paramSmothFilt, 1.0f, "on" },
        { paramLfoBmpSync, 0.0f, "off" },
    };
    for (const Text& expected : texts)
        EXPECT_EQ (valueText (expected.parameter, expected.value, false), expected.text)
            << expected.parameter << " at " << expected.value;
}

TEST (ValueText, LfoRate)
{
    std::string text;
    EXPECT_TRUE (lfoRateText (0.0f, false, text));
    EXPECT_EQ (text, "0.2Hz"); // one cycle in 6 s
    EXPECT_TRUE (lfoRateText (1.0f, false, text));
    EXPECT_EQ (text, "100Hz");
    EXPECT_TRUE (lfoRateText (0.0f, true, text));
    EXPECT_EQ (text, "32/4");
    EXPECT_TRUE (lfoRateText (0.5f, true, text)); // 8.5
    EXPECT_EQ (text, "3/4");
    EXPECT_TRUE (lfoRateText (1.0f, true, text));
    EXPECT_EQ (text, "1/36");
    EXPECT_EQ (valueText (paramLfoRate, 1.0f, true), "1/36");
    EXPECT_EQ (valueText (paramLfoRate, 0.0f, false), "0.17 Hz");
}

TEST (ValueText, RateBeyondTheLastDivisionLeavesTheTextAlone)
{
    std::string text = "4/4";
    EXPECT_FALSE (lfoRateText (1.1f, true, text));
    EXPECT_FALSE (lfoRateText (-0.1f, true, text));
    EXPECT_EQ (text, "4/4");
}

// No display is wider than the panel's room for it: six characters of its font.
TEST (ValueText, RateTextsAreShort)
{
    for (const bool synced : { false, true })
    {
        for (int step = 0; step <= 1000; ++step)
        {
            std::string text;
            ASSERT_TRUE (lfoRateText (static_cast<float> (step) / 1000.0f, synced, text));
            EXPECT_LE (text.size (), 5u) << text;
        }
    }
}
}
