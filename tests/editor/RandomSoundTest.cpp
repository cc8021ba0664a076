#include "editor/RandomSound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "parameters/Parameters.h"

using namespace parameters;
using namespace editor;

namespace
{
using Values = std::map<std::int32_t, float>;

Values make (RandomSound& generator, std::int32_t category)
{
    Values values;
    generator.generate (category, [&] (std::int32_t index, float value) { values[index] = value; });
    return values;
}

struct Range
{
    float low, high;
};
constexpr Range any = { 0.0f, 1.0f };
constexpr Range none = { 0.0f, 0.0f };
constexpr Range full = { 1.0f, 1.0f };

// What every parameter may become, bass, pad, lead, effect; the others are left alone.
struct Expectation
{
    Param parameter;
    Range ranges[RandomSound::categoryCount];
};
constexpr Expectation expectations[] = {
    { paramOsc1Vol, { full, full, full, full } },
    { paramOsc1Wave, { { 0.5f, 1.0f }, { 0.5f, 1.0f }, { 0.5f, 1.0f }, { 0.5f, 1.0f } } }, // never mute
    { paramOsc1PW, { any, any, any, any } },
    { paramOsc1Range, { { 0.45f, 0.55f }, { 0.4f, 0.6f }, { 0.45f, 0.55f }, any } },
    { paramOsc2Vol, { full, { 0.4f, 1.0f }, { 0.4f, 1.0f }, { 0.4f, 1.0f } } },
    { paramOsc2Wave, { { 0.5f, 1.0f }, { 0.5f, 1.0f }, { 0.5f, 1.0f }, { 0.5f, 1.0f } } },
    { paramOsc2Fine, { { 0.0f, 0.1f }, { 0.0f, 0.1f }, { 0.0f, 0.1f }, any } },
    { paramOsc2Range, { { 0.45f, 0.55f }, { 0.45f, 0.55f }, { 0.45f, 0.55f }, any } },
    { paramNoise, { none, none, none, any } },
    { param1Attack, { none, any, none, none } },
    { param1Sustain, { { 0.0f, 0.001f }, any, any, any } },
    { param1Decay, { { 0.3f, 0.4f }, { 0.3f, 1.0f }, { 0.3f, 1.0f }, { 0.3f, 1.0f } } },
    { param2Attack, { none, any, any, any } },
    { param2Decay, { { 0.3f, 0.4f }, { 0.3f, 1.0f }, { 0.3f, 1.0f }, { 0.3f, 1.0f } } },
    { param2Delay, { none, any, any, any } },
    { param2ToFilter, { any, { 0.0f, 0.4f }, { 0.0f, 0.4f }, any } },
    { paramFilterFreq, { any, any, any, any } },
    { paramFilterRez, { any, any, any, any } },
    { paramFilterType, { { 0.1f, 0.1f }, { 0.1f, 1.0f }, { 0.1f, 0.7f }, { 0.1f, 1.0f } } },
    { paramLfoRate, { { 0.0f, 0.1f }, { 0.0f, 0.4f }, { 0.0f, 0.4f }, any } },
    { paramLfoWave, { { 0.0f, 0.5f }, any, any, any } },
    { paramLfoPitch, { none, none, { 0.0f, 0.1f }, any } },
    { paramLfoFilter, { { 0.4f, 0.6f }, { 0.4f, 0.6f }, { 0.4f, 0.6f }, any } },
    { paramGlideMono, { none, none, { 0.0f, 0.8f }, none } },
    { paramVelocityAmp, { any, any, any, any } },
    { paramVelocityFilter, { any, any, any, any } },
};

// Over many sounds every value comes close to both ends of its range and never leaves it.
TEST (RandomSound, FillsItsRangesAndStaysInside)
{
    constexpr float near = 0.01f;
    RandomSound generator (12345);
    for (int category = 0; category < RandomSound::categoryCount; ++category)
    {
        std::map<std::int32_t, Range> seen;
        for (int sound = 0; sound < 2000; ++sound)
        {
            for (const auto& [index, value] : make (generator, category))
            {
                Range& range = seen.try_emplace (index, Range{ value, value }).first->second;
                range = { std::min (range.low, value), std::max (range.high, value) };
            }
        }
        EXPECT_EQ (seen.size (), std::size (expectations)) << "the rest is left alone";
        for (const Expectation& row : expectations)
        {
            SCOPED_TRACE (testing::Message () << "category " << category << " parameter " << row.parameter);
            const Range expected = row.ranges[category];
            const Range found = seen.at (row.parameter);
            EXPECT_NEAR (found.low, expected.low, near);
            EXPECT_NEAR (found.high, expected.high, near);
            EXPECT_GE (found.low, expected.low - 1e-6f);
            EXPECT_LE (found.high, expected.high + 1e-6f);
        }
    }
}

TEST (RandomSound, SameSeedSameSoundOtherSeedAnotherOtherCategoryNone)
{
    RandomSound one (99);
    RandomSound same (99);
    RandomSound other (100);
    const Values first = make (one, RandomSound::lead);
    for (const std::int32_t category : { -1, 4, 5, 1000 })
        EXPECT_TRUE (make (same, category).empty ()) << category;
    EXPECT_EQ (first, make (same, RandomSound::lead));
    EXPECT_NE (first, make (other, RandomSound::lead));
    EXPECT_NE (first, make (one, RandomSound::lead)) << "the next sound is a new one";
}
}
