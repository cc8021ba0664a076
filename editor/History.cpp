#include "editor/History.h"

#include <utility>

namespace editor
{
void History::add (Step step)
{
    std::erase_if (step.changes, [] (const Change& change) { return change.before == change.after; });
    if (step.changes.empty () && step.before == step.after)
        return;
    steps.resize (done);
    if (steps.size () == mostSteps)
        steps.erase (steps.begin ());
    steps.push_back (std::move (step));
    done = steps.size ();
}
}
