#include "engine/Envelope.h"

#include <tuple>

#include <gtest/gtest.h>

using namespace engine;

namespace
{
using State = Envelope::State;

Envelope envelope (float attack, float decay, float sustain)
{
    Envelope e;
    e.setAttack (attack);
    e.setDecay (decay);
    e.setSustain (sustain);
    e.setRelease (attack);
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

TEST (EnvelopeTest, ARetriggerFadesOutFirstUnlessTheAttackIsFast)
{
    Envelope e = envelope (0.2f, 0.0f, 1.0f);
    e.trigger (127);
    EXPECT_EQ (e.state (), State::attack); // silent: nothing to fade
    ticksUntil (e, State::sustain);
    e.trigger (127);
    ASSERT_EQ (e.state (), State::fadeOut);
    EXPECT_NEAR (e.tick (), 0.99f, 1e-6);
    EXPECT_NEAR (ticksUntil (e, State::attack), 99, 1);
    EXPECT_EQ (e.level (), 0.0f);
    e.trigger (127);
    e.release (); // before the first step
    EXPECT_TRUE (e.isIdle ());

    Envelope fast = envelope (0.0f, 0.0f, 1.0f);
    fast.setVelocitySensitivity (1.0f);
    fast.trigger (127);
    EXPECT_FLOAT_EQ (fast.tick (), 1.0f); // no time is one sample
    fast.setSustain (0.2f);               // waits for the next note
    ticksUntil (fast, State::sustain);
    EXPECT_FLOAT_EQ (fast.tick (), 1.0f);
    fast.trigger (64); // a lower peak: reached at once, from above
    ASSERT_EQ (fast.state (), State::attack);
    EXPECT_NEAR (fast.tick (), 0.2547f, 1e-3);
    EXPECT_NEAR (fast.tick (), 0.2547f * 0.2f, 1e-3);
}

TEST (EnvelopeTest, LoopsOnlyAtASustainOfExactlyZero)
{
    using Row = std::tuple<bool, float, State, float>;
    for (const auto& [loop, sustain, after, level] :
         { Row{ true, 0.0f, State::attack, 0.0f }, Row{ true, 0.0005f, State::sustain, 0.0005f },
           Row{ false, 0.0f, State::sustain, 0.0f }, Row{ false, 0.0005f, State::sustain, 0.0f } })
    {
        Envelope e = envelope (0.0f, 0.1f, 1.0f);
        e.setVelocitySensitivity (1.0f);
        e.setLoop (loop);
        e.setSustain (sustain); // below 0.001 it counts as 0 where nothing loops
        e.trigger (127);
        ticksUntil (e, State::decay);
        while (e.state () == State::decay)
            e.tick ();
        EXPECT_EQ (e.state (), after) << loop << " " << sustain;
        EXPECT_FLOAT_EQ (e.level (), level) << loop << " " << sustain;
    }
}
