#pragma once

#include <array>
#include <atomic>

#include <clap/events.h>

#include "formats/shared/HostedInstrument.h"

namespace clap
{
// Tells the host the values that it does not know: what the panel, a program change or a learned controller
// moved. It compares what the host was told last with what holds, so that nothing gets lost and nothing
// piles up, and it frames what a hand on the panel moves as gestures. Those are to be recorded; the rest
// follows from what the host plays or loads, and recording it would play it twice.
class Reporter
{
public:
    explicit Reporter (const formats::HostedInstrument& instrument);

    // Main thread
    void beginEdit (std::int32_t index); // a hand takes hold of a parameter, and lets go of it
    void endEdit (std::int32_t index);
    void settle (); // the host reads all values by itself
    bool hasNews () const;

    // The thread of the process or flush call
    void hostSets (const clap_input_events_t* list);
    void tell (const clap_output_events_t* list);

    // Any thread: whether texts have changed their meaning since the last question.
    bool hasNewTexts () const { return newTexts.load (std::memory_order_relaxed); }
    bool takeNewTexts () { return newTexts.exchange (false, std::memory_order_relaxed); }

private:
    struct Told
    {
        std::atomic<double> value;             // as the host knows it
        std::atomic<std::uint32_t> grips{ 0 }; // how often it was taken hold of and let go; odd: held
        std::uint32_t gripsTold = 0;           // of the telling thread
    };

    Told& at (std::int32_t index) { return told[static_cast<std::size_t> (index)]; }
    void know (std::int32_t index, double value);

    const formats::HostedInstrument& synth;
    std::array<Told, formats::shownCount> told;
    std::atomic<bool> newTexts = false;
};
}
