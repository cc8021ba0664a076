#include "midi/Writer.h"

#include "midi/MetaType.h"

#include <algorithm>
#include <bit>
#include <span>
#include <string_view>

namespace midi
{
namespace
{
using Bytes = std::vector<std::uint8_t>;

void appendNumber (Bytes& bytes, std::uint32_t value, int count)
{
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back (static_cast<std::uint8_t> (value >> shift));
}

// Seven bits a byte, the highest first; all but the last carry the eighth bit.
void appendVariableLength (Bytes& bytes, std::uint64_t value)
{
    for (int shift = 21; shift > 0; shift -= 7)
    {
        if (value >> shift != 0)
            bytes.push_back (static_cast<std::uint8_t> (0x80 | ((value >> shift) & 0x7F)));
    }
    bytes.push_back (static_cast<std::uint8_t> (value & 0x7F));
}

void appendChunk (Bytes& bytes, std::string_view type, const Bytes& content)
{
    bytes.insert (bytes.end (), type.begin (), type.end ());
    appendNumber (bytes, static_cast<std::uint32_t> (content.size ()), 4);
    bytes.insert (bytes.end (), content.begin (), content.end ());
}

// An event of the one track, before its time became a distance from the event before.
struct Event
{
    std::uint64_t tick;
    Bytes bytes;
};

Event meta (std::uint64_t tick, MetaType type, const Bytes& content)
{
    Event event{ tick, { 0xFF, type } };
    appendVariableLength (event.bytes, content.size ());
    event.bytes.insert (event.bytes.end (), content.begin (), content.end ());
    return event;
}

Event tempo (const TempoChange& change)
{
    Bytes content;
    appendNumber (content, change.microsecondsPerQuarter, 3);
    return meta (change.tick, metaTempo, content);
}

Event timeSignature (const TimeSignature& signature)
{
    constexpr std::uint8_t clocksPerBeat = 24;  // of a metronome
    constexpr std::uint8_t notesPerQuarter = 8; // thirty-second notes
    const auto power = std::countr_zero (static_cast<unsigned> (signature.denominator));
    return meta (signature.tick, metaTimeSignature,
                 { static_cast<std::uint8_t> (signature.numerator), static_cast<std::uint8_t> (power),
                   clocksPerBeat, notesPerQuarter });
}

// At one tick tempo and time signature come before the messages.
std::vector<Event> eventsOf (const Song& song)
{
    std::vector<Event> events;
    if (!song.title.empty ())
        events.push_back (meta (0, metaTrackName, Bytes (song.title.begin (), song.title.end ())));
    for (const TempoChange& change : song.tempoChanges)
        events.push_back (tempo (change));
    for (const TimeSignature& signature : song.timeSignatures)
        events.push_back (timeSignature (signature));
    for (const Message& message : song.messages)
        events.push_back (
            { message.tick, Bytes (message.bytes.begin (), message.bytes.begin () + message.length) });
    std::ranges::stable_sort (events, {}, &Event::tick);
    events.push_back (meta (song.endTick, metaEndOfTrack, {}));
    return events;
}
}

std::vector<std::uint8_t> fileBytes (const Song& song)
{
    Bytes track;
    std::uint64_t now = 0;
    for (const Event& event : eventsOf (song))
    {
        appendVariableLength (track, event.tick - now);
        track.insert (track.end (), event.bytes.begin (), event.bytes.end ());
        now = event.tick;
    }

    Bytes header;
    appendNumber (header, 0, 2); // format 0
    appendNumber (header, 1, 2); // of one track
    appendNumber (header, static_cast<std::uint32_t> (song.ticksPerQuarter), 2);
    Bytes file;
    appendChunk (file, "MThd", header);
    appendChunk (file, "MTrk", track);
    return file;
}
}
