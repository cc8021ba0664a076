#include "instrument/ValueText.h"

#include <gtest/gtest.h>

#include <cmath>

#include "parameters/Parameters.h"

using namespace parameters;
using namespace instrument;

namespace
{
constexpr ValueContext plain = {};
constexpr ValueContext synced = { true, false };
constexpr ValueContext tracked = { false, true };

struct Text
{
    std::int32_t parameter;
    float value;
    const char* text;
    ValueContext context = plain;
};

TEST (ValueText, SpeaksTheFieldsWords)
{
    const Text texts[] = {
        { paramVolume, 0.5f, "-6.0 dB" },
        { paramNoise, 0.1f, "-20.0 dB" },
        { param1Sustain, 0.5f, "-12.0 dB" }, // its level is the square
        { param1Sustain, 0.0f, "none, repeats" },
        { paramOsc1Wave, 0.49f, "off" },
        { paramOsc1Wave, 0.5f, "saw" },
        { paramOsc2Wave, 0.99f, "saw" },
        { paramOsc2Wave, 1.0f, "pulse" },
        { paramOsc1Range, 0.0f, "-24 semitones" },
        { paramOsc2Range, 1.0f, "+24 semitones" },
        { paramOsc2Fine, 0.0f, "+0.0 cents" },
        { paramOsc2Fine, 1.0f, "+1177 cents" }, // an octave beside the saw's correction
        { paramMasterP, 0.5f, "+0.0 cents" },
        { paramMasterP, 1.0f, "+103 cents" }, // 1 + 1 / 16.35
        { paramLfoPitch, 1.0f,
          "\xC2\xB1"
          "200 cents" },
        { paramFilterType, 0.0f, "low-pass" },
        { paramFilterType, 0.5f, "band-pass" },
        { paramLfoWave, 0.0f, "triangle" },
        { paramLfoWave, 0.6f, "square" },
        { paramLfoWave, 1.0f, "sample and hold" },
        { paramVoices, 0.0f, "2" },
        { paramVoices, 0.93f, "14" },
        { paramVoices, 0.94f, "16" },
        { param2ToFilter, 0.5f, "off" },
        { paramLfoFilter, 0.75f, "+50 %" },
        { param1Attack, 0.0f, "0.8 ms" }, // 0.009^2 x 10 s
        { param1Decay, 1.0f, "10.12 s" }, // 1.006^2 x 10 s
        { param2Attack, 0.5f, "625 ms" }, // 0.5^4 x 10 s
        { param2Delay, 0.25f, "250 ms" },
        { paramGlideMono, 0.0f, "off, polyphonic" },
        { paramGlideMono, 0.5f, "250 ms" },
        { paramFilterFreq, 0.0f, "100 Hz" },
        { paramFilterFreq, 0.5f, "1715 Hz" },
        { paramFilterFreq, 1.0f, "6500 Hz" }, // where the filter stops
        { paramFilterFreq, 1.0f, "6465 Hz at middle C", tracked },
        { paramFilterFreq, 0.0f, "127 Hz at middle C", tracked },
        { paramSmothFilt, 0.2f, "on" },
        { paramLfoBmpSync, 0.0f, "off" },
        { paramLfoRate, 0.0f, "0.17 Hz" }, // one cycle in 6 s
        { paramLfoRate, 1.0f, "1/36", synced },
    };
    for (const Text& expected : texts)
        EXPECT_EQ (valueText (expected.parameter, expected.value, expected.context), expected.text)
            << expected.parameter << " at " << expected.value;
}

TEST (ValueText, TypedTextIsUnderstood)
{
    struct Typed
    {
        std::int32_t parameter;
        const char* text;
        float value;
        ValueContext context = plain;
    };
    const Typed rows[] = {
        { paramVolume, "-6.0206", 0.5f },
        { paramVolume, "-6,0206 dB", 0.5f },
        { paramVolume, "+20 dB", 1.0f }, // beyond the travel
        { paramOsc1Wave, " PULSE ", 1.0f },
        { paramOsc1Range, "-12", 0.25f },
        { param1Attack, "2.5 s", 0.70073f }, // sqrt (0.5 - 0.009)
        { param2Attack, "625ms", 0.5f },
        { paramFilterFreq, "1.715k", 0.5f },
        { param2ToFilter, "-50 %", 0.25f },
        { paramVoices, "8", 3.0f / 7.0f },
        { paramLfoRate, "1/8", 11.5f / 17.0f, synced },
    };
    for (const Typed& row : rows)
    {
        const auto value = valueFromText (row.parameter, row.text, row.context);
        ASSERT_TRUE (value.has_value ()) << row.text;
        EXPECT_NEAR (*value, row.value, 1e-4f) << row.text;
    }
    for (const char* nonsense : { "", "  ", "loud", "dB", "nan", "1e999" })
        EXPECT_FALSE (valueFromText (paramVolume, nonsense, plain).has_value ()) << nonsense;
    EXPECT_FALSE (valueFromText (paramLfoRate, "1/7", synced).has_value ());
    EXPECT_FALSE (valueFromText (paramVoices, "1", plain).has_value ()) << "ten is not one";
}

// What a field shows when it opens is taken back as the value that it came from.
TEST (ValueText, EveryTextLeadsBack)
{
    for (std::int32_t parameter = 0; parameter < parameterCount; ++parameter)
    {
        for (const ValueContext& context : { plain, synced, tracked })
        {
            for (int n = 0; n <= 127; ++n)
            {
                const float value = static_cast<float> (n) / 127.0f;
                const std::string text = valueText (parameter, value, context);
                const auto back = valueFromText (parameter, text, context);
                ASSERT_TRUE (back.has_value ()) << parameter << ": " << text;
                EXPECT_EQ (valueText (parameter, *back, context), text) << parameter << " at " << value;
            }
        }
    }
}

// The panel's room for it is six characters of its font.
TEST (ValueText, RateDisplayIsShort)
{
    std::string text;
    for (int step = 0; step <= 1000; ++step)
    {
        for (const bool isSynced : { false, true })
        {
            ASSERT_TRUE (lfoRateText (static_cast<float> (step) / 1000.0f, isSynced, text));
            EXPECT_LE (text.size (), 5u) << text;
            EXPECT_TRUE (isSynced || step % 1000 != 0 || text == (step == 0 ? "0.2Hz" : "100Hz")) << text;
        }
    }
    EXPECT_TRUE (lfoRateText (0.5f, true, text));
    EXPECT_FALSE (lfoRateText (1.1f, true, text));
    EXPECT_EQ (text, "3/4") << "beyond the last division the text stays";
}
}
