#include "engine/Envelope.h"

#include <gtest/gtest.h>

using namespace engine;

namespace
{
using State = Envelope::State;

Envelope envelope (float attack, float decay, float sustain, float release, float rate = 44100.0f)
{
    Envelope e;
    e.setSampleRate (rate);
    e.setAttack (attack);
    e.setDecay (decay);
    e.setSustain (sustain);
    e.setRelease (release);
    e.trigger (127);
    return e;
}

int ticksUntil (Envelope& e, State state)
{
    int n = 0;
    for (; e.state () != state && n < 20000000; ++n)
        e.tick ();
    return n;
}
}

TEST (EnvelopeTest, SegmentsTakeTheirTimesAtEveryVelocityAndRate)
{
    struct Row
    {
        float x;
        float rate;
        std::uint32_t velocity;
    };
    for (const Row& row : { Row{ 0.1f, 44100, 127 }, Row{ 0.3f, 44100, 20 }, Row{ 0.5f, 8000, 100 },
                            Row{ 0.2f, 192000, 127 }, Row{ 1.0f, 1000, 90 } })
    {
        Envelope e = envelope (row.x, row.x, 0.0f, row.x, row.rate);
        e.trigger (row.velocity);
        const double unit = static_cast<double> (row.x * row.x * row.rate); // samples per nominal second
        const double tolerance = 2.0 + unit * 0.01;                         // the levels are 32-bit sums
        EXPECT_NEAR (ticksUntil (e, State::decay), 10.0 * unit, tolerance) << row.x << " " << row.rate;
        EXPECT_NEAR (ticksUntil (e, State::sustain), 10.0 * unit, tolerance) << row.x << " " << row.rate;
        e.setSustain (1.0f);
        e.trigger (row.velocity);
        ticksUntil (e, State::sustain);
        const double share = 1.0 - 0.001 / static_cast<double> (e.level ()); // it ends at 0.001
        e.release ();
        EXPECT_NEAR (ticksUntil (e, State::idle), 14.0 * unit * share, tolerance) << row.x << " " << row.rate;
        EXPECT_EQ (e.level (), 0.0f);
    }
    Envelope e = envelope (0.0f, 0.3f, 0.75f, 0.0f);
    EXPECT_EQ (ticksUntil (e, State::decay), 1);                            // no time is one sample
    EXPECT_NEAR (ticksUntil (e, State::sustain), 0.25 * 0.9 * 44100, 50.0); // a quarter of the way down
    EXPECT_FLOAT_EQ (e.tick (), 0.75f);
}

TEST (EnvelopeTest, VelocityIsSquaredByItsSensitivity)
{
    struct Row
    {
        float amount;
        std::uint32_t velocity;
        double peak;
    };
    constexpr double half = 64.0 * 64.0 / (127.0 * 127.0);
    for (const Row& row : { Row{ 1.0f, 64, 0.999 * half + 0.001 }, Row{ 1.0f, 127, 1.0 },
                            Row{ 1.0f, 0, 0.001 }, Row{ 0.0f, 1, 0.999 }, Row{ 0.5f, 64, 0.5 * half + 0.5 } })
    {
        Envelope e = envelope (0.0f, 0.0f, 1.0f, 0.1f);
        e.kill ();
        e.setVelocitySensitivity (row.amount);
        e.trigger (row.velocity);
        EXPECT_NEAR (e.tick (), row.peak, 1e-5) << row.amount << " " << row.velocity;
    }
}

TEST (EnvelopeTest, ARetriggerFadesOutFirstUnlessTheAttackIsFast)
{
    Envelope e = envelope (0.2f, 0.0f, 1.0f, 0.5f);
    EXPECT_EQ (e.state (), State::attack); // silent: nothing to fade
    ticksUntil (e, State::sustain);
    e.trigger (127);
    ASSERT_EQ (e.state (), State::fadeOut);
    EXPECT_NEAR (e.tick (), 0.99f, 1e-6);
    EXPECT_NEAR (ticksUntil (e, State::attack), 99, 1);
    EXPECT_EQ (e.level (), 0.0f);

    Envelope fast = envelope (0.0f, 0.0f, 1.0f, 0.5f);
    ticksUntil (fast, State::sustain);
    fast.setVelocitySensitivity (1.0f);
    fast.trigger (64); // a lower peak: reached at once, from above
    ASSERT_EQ (fast.state (), State::attack);
    EXPECT_NEAR (fast.tick (), 0.2547f, 1e-3);
}

TEST (EnvelopeTest, ReleaseLeavesFromTheLevelReached)
{
    Envelope e = envelope (0.3f, 0.0f, 1.0f, 0.1f);
    for (int n = 0; n < 10000; ++n)
        e.tick ();
    EXPECT_NEAR (e.level (), 10000.0 / (0.9 * 44100.0), 1e-3);
    const double samples = 14.0 * 0.01 * 44100.0 * static_cast<double> (e.level () - 0.001f);
    e.release ();
    EXPECT_NEAR (ticksUntil (e, State::idle), samples, 10.0);
    e.trigger (127);
    e.release (); // before the first step
    EXPECT_TRUE (e.isIdle ());
}

TEST (EnvelopeTest, LoopsOnlyAtASustainOfExactlyZero)
{
    struct Row
    {
        bool loop;
        float sustain;
        State after;
        float level;
    };
    for (const Row& row :
         { Row{ true, 0.0f, State::attack, 0.0f }, Row{ true, 0.0005f, State::sustain, 0.0005f },
           Row{ false, 0.0f, State::sustain, 0.0f }, Row{ false, 0.0005f, State::sustain, 0.0f } })
    {
        Envelope e = envelope (0.0f, 0.1f, 1.0f, 0.1f);
        e.kill ();
        e.setLoop (row.loop);
        e.setSustain (row.sustain); // below 0.001 it counts as 0 where nothing loops
        e.trigger (127);
        ticksUntil (e, State::decay);
        while (e.state () == State::decay)
            e.tick ();
        EXPECT_EQ (e.state (), row.after) << row.loop << " " << row.sustain;
        EXPECT_FLOAT_EQ (e.level (), row.level) << row.loop << " " << row.sustain;
    }
}

// The steps belong to the note: a new sustain level waits for the next one.
TEST (EnvelopeTest, SustainActsFromTheNextNote)
{
    Envelope e = envelope (0.0f, 0.0f, 0.8f, 0.1f);
    e.setSustain (0.2f);
    for (const float level : { 0.8f, 0.2f })
    {
        ticksUntil (e, State::sustain);
        EXPECT_NEAR (e.level (), level, 1e-5);
        e.trigger (127);
    }
}
