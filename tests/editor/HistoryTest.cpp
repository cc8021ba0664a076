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
    EXPECT_FALSE (history.canUndo () || history.canRedo ());
    constexpr auto most = static_cast<std::int32_t> (History::mostSteps);
    for (std::int32_t step = 0; step < most + 5; ++step)
        history.add (moved (step, 0.0f, 1.0f));
    for (std::int32_t step = most + 4; step >= 5; --step) // the oldest are gone
    {
        ASSERT_TRUE (history.canUndo ()) << step;
        EXPECT_EQ (history.undo ().program, step);
    }
    EXPECT_FALSE (history.canUndo ());
    EXPECT_EQ (history.redo ().program, 5);
    EXPECT_EQ (history.redo ().program, 6);
    EXPECT_EQ (history.undo ().program, 6);
    history.add (moved (999, 0.0f, 1.0f)); // ends what was taken back
    EXPECT_FALSE (history.canRedo ());
    EXPECT_EQ (history.undo ().program, 999);
    EXPECT_EQ (history.undo ().program, 5);
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
}
