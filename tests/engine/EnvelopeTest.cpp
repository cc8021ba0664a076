#include "engine/Envelope.h"

#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

using namespace engine;

namespace
{
using State = Envelope::State;

Envelope envelope (float attack, float decay, float sustain, float release, float rate = 44100.0f)
{
    Envelope e;
    e.setSampleRate (rate);
    e.setVelocitySensitivity (1.0f);
    e.setAttack (attack);
    e.setDecay (decay);
    e.setSustain (sustain);
    e.setRelease (release);
    return e;
}

// Ticks until the envelope is in `state`; how many it took, at most a minute's worth.
int ticksUntil (Envelope& e, State state)
{
    int n = 0;
    while (e.state () != state && n < 60000000)
    {
        e.tick ();
        ++n;
    }
    return n;
}
}

TEST (EnvelopeTest, SegmentsTakeTheirTimes)
{
    struct Row
    {
        float x;
        float rate;
        std::uint32_t velocity;
    };
    for (const Row& row : { Row{ 0.1f, 44100, 127 }, Row{ 0.3f, 44100, 64 }, Row{ 0.3f, 44100, 20 },
                            Row{ 0.5f, 8000, 100 }, Row{ 0.2f, 192000, 127 }, Row{ 1.0f, 1000, 90 } })
    {
        Envelope e = envelope (row.x, row.x, 0.0f, row.x, row.rate);
        e.trigger (row.velocity);
        const double unit = static_cast<double> (row.x * row.x * row.rate); // samples per nominal second
        const double tolerance = 2.0 + unit * 0.01;                         // the steps are 32-bit sums
        EXPECT_NEAR (ticksUntil (e, State::decay), 10.0 * unit, tolerance) << row.x << " " << row.rate;
        EXPECT_NEAR (ticksUntil (e, State::sustain), 10.0 * unit, tolerance) << row.x << " " << row.rate;

        e.setSustain (1.0f);
        e.trigger (row.velocity);
        ticksUntil (e, State::sustain);
        const double share = 1.0 - 0.001 / static_cast<double> (e.level ()); // ends at 0.001
        e.release ();
        EXPECT_NEAR (ticksUntil (e, State::idle), 14.0 * unit * share, tolerance) << row.x << " " << row.rate;
        EXPECT_EQ (e.level (), 0.0f);
    }
}

TEST (EnvelopeTest, ADecayToAHighSustainIsShorter)
{
    Envelope e = envelope (0.0f, 0.3f, 0.75f, 0.0f);
    e.trigger (127);
    ticksUntil (e, State::decay);
    EXPECT_NEAR (ticksUntil (e, State::sustain), 0.9 * 44100.0 * 0.25, 50.0);
    EXPECT_FLOAT_EQ (e.tick (), 0.75f * (0.998f + 0.001f + 0.001f));
}

TEST (EnvelopeTest, VelocitySquaredByItsSensitivity)
{
    struct Row
    {
        float amount;
        std::uint32_t velocity;
        double peak;
    };
    for (const Row& row : { Row{ 1.0f, 64, 0.999 * 64.0 * 64.0 / (127.0 * 127.0) + 0.001 },
                            Row{ 1.0f, 127, 1.0 }, Row{ 1.0f, 0, 0.001 }, Row{ 0.0f, 1, 0.999 },
                            Row{ 0.5f, 64, 0.5 * 64.0 * 64.0 / (127.0 * 127.0) + 0.5 } })
    {
        Envelope e = envelope (0.0f, 0.0f, 1.0f, 0.1f);
        e.setVelocitySensitivity (row.amount);
        e.trigger (row.velocity);
        EXPECT_NEAR (e.tick (), row.peak, 1e-5) << row.amount << " " << row.velocity;
    }
}

TEST (EnvelopeTest, AnAttackOfZeroTakesOneSample)
{
    Envelope e = envelope (0.0f, 0.1f, 0.5f, 0.1f);
    EXPECT_EQ (e.tick (), 0.0f);
    EXPECT_TRUE (e.isIdle ());
    e.trigger (127);
    EXPECT_EQ (e.state (), State::attack);
    EXPECT_NEAR (e.tick (), 1.0f, 1e-6);
    EXPECT_EQ (e.state (), State::decay);
}

TEST (EnvelopeTest, ARetriggerFadesOutFirstUnlessTheAttackIsFast)
{
    Envelope e = envelope (0.2f, 0.0f, 1.0f, 0.5f);
    e.trigger (127);
    ticksUntil (e, State::sustain);
    e.trigger (127);
    ASSERT_EQ (e.state (), State::fadeOut);
    EXPECT_NEAR (e.tick (), 0.99f, 1e-6);
    EXPECT_NEAR (ticksUntil (e, State::attack), 99, 1);
    EXPECT_EQ (e.level (), 0.0f);
    EXPECT_GT (e.tick (), 0.0f);

    Envelope fast = envelope (0.0f, 0.0f, 1.0f, 0.5f);
    fast.trigger (127);
    ticksUntil (fast, State::sustain);
    fast.trigger (64); // a lower peak: reached at once, from above
    ASSERT_EQ (fast.state (), State::attack);
    EXPECT_NEAR (fast.tick (), 0.2547f, 1e-3);

    Envelope fresh = envelope (0.2f, 0.0f, 1.0f, 0.5f); // silent: nothing to fade
    fresh.trigger (127);
    EXPECT_EQ (fresh.state (), State::attack);
}

TEST (EnvelopeTest, ReleaseLeavesFromTheLevelReached)
{
    Envelope e = envelope (0.3f, 0.0f, 1.0f, 0.1f);
    e.trigger (127);
    for (int n = 0; n < 10000; ++n)
        e.tick ();
    const float level = e.level ();
    EXPECT_NEAR (level, 10000.0 / (0.9 * 44100.0), 1e-3);
    e.release ();
    EXPECT_EQ (e.state (), State::release);
    EXPECT_LT (e.tick (), level);

    Envelope silent = envelope (0.3f, 0.0f, 1.0f, 0.1f);
    silent.trigger (127);
    silent.release (); // before the first step
    EXPECT_TRUE (silent.isIdle ());
}

TEST (EnvelopeTest, ReleaseEndsAtAThousandthOnOneSample)
{
    Envelope e = envelope (0.0f, 0.0f, 1.0f, 0.05f);
    e.trigger (127);
    e.tick ();
    e.release ();
    float last = 1.0f;
    while (!e.isIdle ())
    {
        last = e.level ();
        e.tick ();
    }
    EXPECT_GT (last, 0.001f);
    EXPECT_EQ (e.level (), 0.0f);
}

TEST (EnvelopeTest, LoopsOnlyAtASustainOfExactlyZero)
{
    struct Row
    {
        bool loop;
        float sustain;
        State after;
    };
    for (const Row& row : { Row{ true, 0.0f, State::attack }, Row{ true, 0.0005f, State::sustain },
                            Row{ false, 0.0f, State::sustain } })
    {
        Envelope e = envelope (0.0f, 0.1f, 1.0f, 0.1f);
        e.setLoop (row.loop);
        e.setSustain (row.sustain);
        e.trigger (127);
        ticksUntil (e, State::decay);
        while (e.state () == State::decay)
            e.tick ();
        EXPECT_EQ (e.state (), row.after) << row.loop << " " << row.sustain;
    }
    // Small sustain levels count as 0 where nothing loops.
    Envelope e = envelope (0.0f, 0.0f, 0.0005f, 0.1f);
    e.trigger (127);
    ticksUntil (e, State::sustain);
    EXPECT_EQ (e.level (), 0.0f);
}

// The steps belong to the note: a new sustain level waits for the next one.
TEST (EnvelopeTest, SustainActsFromTheNextNote)
{
    Envelope e = envelope (0.0f, 0.0f, 0.8f, 0.1f);
    e.trigger (127);
    e.setSustain (0.2f);
    ticksUntil (e, State::sustain);
    EXPECT_NEAR (e.level (), 0.8f, 1e-5);
    e.trigger (127);
    ticksUntil (e, State::sustain);
    EXPECT_NEAR (e.level (), 0.2f, 1e-5);
}

TEST (EnvelopeTest, RunsEqualTicks)
{
    std::mt19937 random (5);
    Envelope ticked = envelope (0.02f, 0.03f, 0.4f, 0.04f);
    Envelope run = ticked;
    for (int round = 0; round < 3000; ++round)
    {
        switch (random () % 6u)
        {
        case 0:
            ticked.release ();
            run.release ();
            break;
        case 1:
        {
            const auto velocity = static_cast<std::uint32_t> (random () % 128u);
            ticked.trigger (velocity);
            run.trigger (velocity);
            break;
        }
        case 2:
        {
            const float x = static_cast<float> (random () % 5u) / 20.0f;
            for (Envelope* e : { &ticked, &run })
            {
                e->setAttack (x);
                e->setDecay (x);
                e->setSustain (x * 2.0f);
                e->setLoop (x < 0.1f);
            }
            break;
        }
        default:
            break;
        }
        std::vector<float> out (1 + random () % 64u, -1.0f);
        const int samples = run.render (out.data (), static_cast<int> (out.size ()));
        for (std::size_t n = 0; n < out.size (); ++n)
        {
            ASSERT_EQ (!ticked.isIdle (), static_cast<int> (n) < samples) << round;
            if (ticked.isIdle ())
                break;
            ASSERT_EQ (out[n], ticked.tick ()) << round;
        }
        ASSERT_EQ (run.state (), ticked.state ());
    }
}
