#include "editor/History.h"

#include <gtest/gtest.h>

using namespace editor;

namespace
{
History::Step moved (std::int32_t index, float before, float after)
{
    History::Step step;
    step.program = index; // told apart by it
    step.changes = { { index, before, after } };
    return step;
}

TEST (History, StepsGoBackAndForthInOrder)
{
    History history;
    EXPECT_FALSE (history.canUndo ());
    EXPECT_FALSE (history.canRedo ());
    for (std::int32_t step = 0; step < 20; ++step)
        history.add (moved (step, 0.0f, 1.0f));
    for (std::int32_t step = 19; step >= 0; --step)
    {
        ASSERT_TRUE (history.canUndo ()) << step;
        EXPECT_EQ (history.undo ().program, step);
    }
    EXPECT_FALSE (history.canUndo ());
    EXPECT_EQ (history.redo ().program, 0);
    EXPECT_EQ (history.redo ().program, 1);
    EXPECT_EQ (history.undo ().program, 1);
    EXPECT_EQ (history.redo ().program, 1);
}

TEST (History, NewStepEndsWhatWasTakenBack)
{
    History history;
    for (std::int32_t step = 0; step < 3; ++step)
        history.add (moved (step, 0.0f, 1.0f));
    history.undo ();
    history.undo ();
    history.add (moved (9, 0.0f, 1.0f));
    EXPECT_FALSE (history.canRedo ());
    EXPECT_EQ (history.undo ().program, 9);
    EXPECT_EQ (history.undo ().program, 0);
}

TEST (History, StepsThatChangeNothingAreNone)
{
    History history;
    history.add (moved (1, 0.5f, 0.5f));
    History::Step sameBank;
    sameBank.before = sameBank.after = { std::byte{ 1 } };
    history.add (sameBank);
    EXPECT_FALSE (history.canUndo ());
    sameBank.after = { std::byte{ 2 } };
    history.add (sameBank);
    EXPECT_TRUE (history.canUndo ());
}

TEST (History, OldestStepsGo)
{
    History history;
    const auto more = static_cast<std::int32_t> (History::mostSteps) + 5;
    for (std::int32_t step = 0; step < more; ++step)
        history.add (moved (step, 0.0f, 1.0f));
    std::int32_t last = -1;
    for (; history.canUndo ();)
        last = history.undo ().program;
    EXPECT_EQ (last, 5);
}
}
