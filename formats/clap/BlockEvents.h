#pragma once

#include <clap/events.h>

#include "formats/shared/HostedInstrument.h"

namespace clap
{
// The host's event list in the form that the engine reads, without a copy. Notes and MIDI act at the same
// sample as in every other format. What the instrument does not know (note expressions, modulation, other
// spaces) becomes no event. Audio thread.
class BlockEvents final : public engine::EventList
{
public:
    explicit BlockEvents (const formats::HostedInstrument& instrument) : synth (instrument) {}

    const engine::EventList* show (const clap_input_events_t* hostList); // null for an empty one

    std::int32_t size () const override { return static_cast<std::int32_t> (list->size (list)); }
    engine::Event at (std::int32_t n) const override;

private:
    const formats::HostedInstrument& synth;
    const clap_input_events_t* list = nullptr;
};

// The event as a value that the host sets; null for any other.
const clap_event_param_value_t* asParameterValue (const clap_event_header_t* event);
}
