#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace editor
{
// What the user did on the panel, step by step, so that it can be taken back and done again. Holds the steps
// only; who takes them back applies them. User-interface thread only.
class History
{
public:
    struct Change
    {
        std::int32_t index; // parameter
        float before, after;
    };

    using Bank = std::vector<std::byte>; // a whole bank, as a chunk

    struct Step
    {
        std::int32_t program = 0;      // that it was made in
        std::vector<Change> changes;   // empty where the bank was replaced
        Bank before = {}, after = {};  // empty but where the bank was replaced
        std::int32_t programAfter = 0; // that a replaced bank left selected
        bool recorded = false;         // the host was told of the changes and is told of their undoing
    };

    static constexpr std::size_t mostSteps = 64; // the oldest go

    // A new step; what was taken back before it is gone. One that changes nothing is dropped.
    void add (Step step);

    bool canUndo () const { return done > 0; }
    bool canRedo () const { return done < steps.size (); }

    // The step to take back or to do again; only while there is one.
    const Step& undo () { return steps[--done]; }
    const Step& redo () { return steps[done++]; }

private:
    std::vector<Step> steps;
    std::size_t done = 0; // steps that stand; the others were taken back
};
}
