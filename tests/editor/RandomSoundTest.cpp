#include "editor/RandomSound.h"

#include <gtest/gtest.h>

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

TEST (RandomSound, StaysInsideItsRanges)
{
    RandomSound generator (1);
    for (int category = 0; category < RandomSound::categoryCount; ++category)
    {
        Values lowest;
        Values highest;
        for (int sound = 0; sound < 2000; ++sound)
        {
            for (const auto& [index, value] : make (generator, category))
            {
                lowest.try_emplace (index, value);
                highest.try_emplace (index, value);
                lowest[index] = std::min (lowest[index], value);
                highest[index] = std::max (highest[index], value);
            }
        }
        EXPECT_EQ (lowest.size (), 26u);
        for (const auto& [index, value] : lowest)
        {
            EXPECT_GE (value, 0.0f) << "category " << category << " parameter " << index;
            EXPECT_LE (highest[index], 1.0f) << "category " << category << " parameter " << index;
        }
    }
}

// What a category must sound like, told apart from the table: lowest and highest value of a few parameters.
struct Expectation
{
    RandomSound::Category category;
    Param parameter;
    float low, high;
    bool reachesBoth; // over many sounds it comes close to both ends
};

TEST (RandomSound, CategoriesHaveTheirCharacter)
{
    const Expectation expectations[] = {
        { RandomSound::bass, paramOsc2Vol, 1.0f, 1.0f, true },    // a fixed one
        { RandomSound::bass, paramFilterType, 0.1f, 0.1f, true }, // fixed, its base does not count
        { RandomSound::bass, paramOsc1Wave, 0.5f, 1.0f, true },   // always sounding, half of them pulses
        { RandomSound::bass, param1Sustain, 0.0f, 0.001f, true },
        { RandomSound::bass, paramOsc1Range, 0.45f, 0.55f, true }, // around the middle
        { RandomSound::bass, param1Attack, 0.0f, 0.0f, true },
        { RandomSound::bass, param1Decay, 0.3f, 0.4f, true },
        { RandomSound::pad, param1Attack, 0.0f, 1.0f, true },
        { RandomSound::pad, paramOsc2Vol, 0.4f, 1.0f, true },
        { RandomSound::pad, paramOsc1Range, 0.4f, 0.6f, true },
        { RandomSound::pad, paramGlideMono, 0.0f, 0.0f, true },
        { RandomSound::lead, paramGlideMono, 0.0f, 0.8f, true },
        { RandomSound::lead, paramFilterType, 0.1f, 0.7f, true },
        { RandomSound::lead, paramNoise, 0.0f, 0.0f, true },
        { RandomSound::effect, paramNoise, 0.0f, 1.0f, true },
        { RandomSound::effect, paramOsc2Range, 0.0f, 1.0f, true },
        { RandomSound::effect, paramLfoFilter, 0.0f, 1.0f, true },
    };
    constexpr float near = 0.01f;
    RandomSound generator (12345);
    for (const Expectation& e : expectations)
    {
        float lowest = 2.0f;
        float highest = -1.0f;
        for (int sound = 0; sound < 1000; ++sound)
        {
            const float value = make (generator, e.category).at (e.parameter);
            lowest = std::min (lowest, value);
            highest = std::max (highest, value);
        }
        SCOPED_TRACE (testing::Message () << "category " << e.category << " parameter " << e.parameter);
        EXPECT_NEAR (lowest, e.low, near);
        EXPECT_NEAR (highest, e.high, near);
        EXPECT_GE (lowest, e.low - 1e-6f);
        EXPECT_LE (highest, e.high + 1e-6f);
    }
}

TEST (RandomSound, LeavesTheRestAlone)
{
    RandomSound generator (7);
    const Values values = make (generator, RandomSound::effect);
    for (const std::int32_t index : { paramVolume, paramMasterP, paramGlideAuto, paramVoices, paramVolType,
                                      paramPitchBend, paramShowKeys, paramSmothFilt, paramHighQuality,
                                      paramFilterKeyTrak, paramLfoBmpSync, paramNonUsed })
        EXPECT_FALSE (values.contains (index)) << index;
}

TEST (RandomSound, SameSeedSameSoundOtherSeedAnother)
{
    RandomSound one (99);
    RandomSound same (99);
    RandomSound other (100);
    const Values first = make (one, RandomSound::lead);
    EXPECT_EQ (first, make (same, RandomSound::lead));
    EXPECT_NE (first, make (other, RandomSound::lead));
    EXPECT_NE (first, make (one, RandomSound::lead)) << "the next sound is a new one";
}

TEST (RandomSound, OtherCategoriesMakeNothing)
{
    RandomSound generator (1);
    for (const std::int32_t category : { -1, 4, 5, 1000 })
        EXPECT_TRUE (make (generator, category).empty ()) << category;
}
}
