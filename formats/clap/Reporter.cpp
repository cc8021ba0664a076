#include "formats/clap/Reporter.h"

#include "formats/clap/BlockEvents.h"

namespace clap
{
using namespace formats;

namespace
{
constexpr auto relaxed = std::memory_order_relaxed;

bool isHeld (std::uint32_t grips)
{
    return grips % 2 != 0;
}

template <typename Event>
Event newEvent (std::uint16_t type, std::int32_t index)
{
    Event event = {};
    event.header.size = sizeof event;
    event.header.space_id = CLAP_CORE_EVENT_SPACE_ID;
    event.header.type = type;
    event.param_id = static_cast<clap_id> (index);
    return event;
}

bool push (const clap_output_events_t& list, const clap_event_header_t& event)
{
    return list.try_push (&list, &event);
}

bool pushGesture (const clap_output_events_t& list, std::uint16_t type, std::int32_t index)
{
    return push (list, newEvent<clap_event_param_gesture_t> (type, index).header);
}

bool pushValue (const clap_output_events_t& list, std::int32_t index, double value, bool recorded)
{
    auto event = newEvent<clap_event_param_value_t> (CLAP_EVENT_PARAM_VALUE, index);
    event.header.flags = recorded ? 0 : CLAP_EVENT_DONT_RECORD;
    event.note_id = -1; // of all notes, everywhere
    event.port_index = -1;
    event.channel = -1;
    event.key = -1;
    event.value = value;
    return push (list, event.header);
}

// The LFO's rate is told in divisions while it is synced, the cutoff for middle C while it follows the keys.
bool changesTexts (std::int32_t index)
{
    return index == paramLfoBmpSync || index == paramFilterKeyTrak || index == shownProgram;
}
}

Reporter::Reporter (const HostedInstrument& instrument) : synth (instrument)
{
    settle ();
}

void Reporter::beginEdit (std::int32_t index)
{
    if (auto& grips = at (index).grips; !isHeld (grips.load (relaxed)))
        grips.fetch_add (1, relaxed);
}

// The value that the edit left is there before its end is seen.
void Reporter::endEdit (std::int32_t index)
{
    if (auto& grips = at (index).grips; isHeld (grips.load (relaxed)))
        grips.fetch_add (1, std::memory_order_release);
}

void Reporter::settle ()
{
    for (std::int32_t index = 0; index < shownCount; ++index)
        at (index).value.store (synth.value (index), relaxed);
}

bool Reporter::hasNews () const
{
    for (std::int32_t index = 0; index < shownCount; ++index)
    {
        if (told[static_cast<std::size_t> (index)].value.load (relaxed) != synth.value (index))
            return true;
    }
    return false;
}

void Reporter::know (std::int32_t index, double value)
{
    const bool isNews = at (index).value.exchange (value, relaxed) != value;
    if (isNews && changesTexts (index))
        newTexts.store (true, relaxed);
}

// Known is what will come of it: were the store rule's correction told at once, the host would take that for
// a hand that fights its automation.
void Reporter::hostSets (const clap_input_events_t* list)
{
    const std::uint32_t size = list != nullptr ? list->size (list) : 0;
    for (std::uint32_t n = 0; n < size; ++n)
    {
        const auto* change = asParameterValue (list->get (list, n));
        if (change != nullptr && change->param_id < shownCount)
        {
            const auto index = static_cast<std::int32_t> (change->param_id);
            know (index, HostedInstrument::valueAfter (index, change->value));
        }
    }
}

// What the host has no room for now is told the next time.
void Reporter::tell (const clap_output_events_t* list)
{
    if (list == nullptr)
        return;
    for (std::int32_t index = 0; index < shownCount; ++index)
    {
        Told& last = at (index);
        const std::uint32_t grips = last.grips.load (std::memory_order_acquire);
        const bool isGripped = grips != last.gripsTold || isHeld (grips);
        if (grips != last.gripsTold && !isHeld (last.gripsTold))
        {
            if (!pushGesture (*list, CLAP_EVENT_PARAM_GESTURE_BEGIN, index))
                return;
            ++last.gripsTold;
        }
        const double value = synth.value (index);
        if (last.value.load (relaxed) != value)
        {
            if (!pushValue (*list, index, value, isGripped))
                return;
            know (index, value);
        }
        if (isHeld (last.gripsTold) && !isHeld (grips))
        {
            if (!pushGesture (*list, CLAP_EVENT_PARAM_GESTURE_END, index))
                return;
        }
        last.gripsTold = grips;
    }
}
}
