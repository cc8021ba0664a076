#include "formats/clap/BlockEvents.h"

#include <algorithm>
#include <cmath>

namespace clap
{
namespace
{
constexpr std::uint8_t statusNoteOff = 0x80;
constexpr std::uint8_t statusNoteOn = 0x90;
constexpr std::uint8_t statusController = 0xB0;
constexpr std::uint8_t controllerAllNotesOff = 123;
constexpr int highestNote = 127;
constexpr double highestVelocity = 127.0;

template <typename Event>
const Event& as (const clap_event_header_t& header)
{
    return reinterpret_cast<const Event&> (header); // the header is each event's beginning
}

engine::Event midi (std::int32_t offset, std::uint8_t status, std::uint8_t data1, std::uint8_t data2)
{
    engine::Event event;
    event.offset = offset;
    event.kind = engine::Event::Kind::midi;
    event.status = status;
    event.data1 = data1;
    event.data2 = data2;
    return event;
}

// Velocity 0 is a note here, the softest one; in MIDI it would end one.
engine::Event noteOn (std::int32_t offset, const clap_event_note_t& note)
{
    if (note.key < 0 || note.key > highestNote)
        return formats::silentEvent (offset);
    const double velocity = std::isnan (note.velocity) ? 1.0 : std::clamp (note.velocity, 0.0, 1.0);
    const auto data2 = static_cast<std::uint8_t> (std::lround (velocity * highestVelocity));
    return midi (offset, statusNoteOn, static_cast<std::uint8_t> (note.key),
                 std::max<std::uint8_t> (data2, 1));
}

// A key below 0 means all of them. A choked note ends as a released one does.
engine::Event noteOff (std::int32_t offset, const clap_event_note_t& note)
{
    if (note.key < 0)
        return midi (offset, statusController, controllerAllNotesOff, 0);
    if (note.key > highestNote)
        return formats::silentEvent (offset);
    return midi (offset, statusNoteOff, static_cast<std::uint8_t> (note.key), 0);
}
}

const engine::EventList* BlockEvents::show (const clap_input_events_t* hostList)
{
    list = hostList;
    return list != nullptr && list->size (list) > 0 ? this : nullptr;
}

engine::Event BlockEvents::at (std::int32_t n) const
{
    const clap_event_header_t* header = list->get (list, static_cast<std::uint32_t> (n));
    if (header == nullptr)
        return formats::silentEvent (0);
    const auto offset = static_cast<std::int32_t> (header->time);
    if (header->space_id != CLAP_CORE_EVENT_SPACE_ID)
        return formats::silentEvent (offset);
    switch (header->type)
    {
    case CLAP_EVENT_NOTE_ON:
        return noteOn (offset, as<clap_event_note_t> (*header));
    case CLAP_EVENT_NOTE_OFF:
    case CLAP_EVENT_NOTE_CHOKE:
        return noteOff (offset, as<clap_event_note_t> (*header));
    case CLAP_EVENT_MIDI:
    {
        const std::uint8_t* data = as<clap_event_midi_t> (*header).data;
        return midi (offset, data[0], data[1], data[2]);
    }
    case CLAP_EVENT_PARAM_VALUE:
    {
        const auto& change = as<clap_event_param_value_t> (*header);
        return synth.eventFor (offset, static_cast<std::int32_t> (change.param_id), change.value);
    }
    default:
        return formats::silentEvent (offset);
    }
}

const clap_event_param_value_t* asParameterValue (const clap_event_header_t* event)
{
    const bool is = event != nullptr && event->space_id == CLAP_CORE_EVENT_SPACE_ID &&
                    event->type == CLAP_EVENT_PARAM_VALUE;
    return is ? &as<clap_event_param_value_t> (*event) : nullptr;
}
}
