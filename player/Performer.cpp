#include "player/Performer.h"

#include <algorithm>

namespace player
{
namespace
{
constexpr ShortMessage endOfAllNotes = { 0xB0, 123, 0 };

engine::Event eventOf (const ShortMessage& message, std::uint64_t offset)
{
    engine::Event event;
    event.offset = static_cast<std::int32_t> (offset);
    event.kind = engine::Event::Kind::midi;
    event.status = message[0];
    event.data1 = message[1];
    event.data2 = message[2];
    return event;
}
}

Performer::Performer (instrument::Services services, instrument::Additions additions)
    : core (std::move (services), *this, additions),
      left (mostFrames),
      right (mostFrames)
{
}

void Performer::render (float* stereo, std::uint32_t frames)
{
    while (frames > 0)
    {
        const std::uint32_t part = std::min (frames, mostFrames);
        renderBlock (stereo, part);
        stereo += 2 * static_cast<std::size_t> (part);
        frames -= part;
    }
}

void Performer::renderBlock (float* stereo, std::uint32_t frames)
{
    takeLiveEvents ();
    song.beginBlock (frames);
    core.processEvents (size () > 0 ? this : nullptr);
    core.render (left.data (), right.data (), static_cast<std::int32_t> (frames));
    song.endBlock ();
    for (std::size_t frame = 0; frame < frames; ++frame)
    {
        stereo[2 * frame] = left[frame];
        stereo[2 * frame + 1] = right[frame];
    }
}

void Performer::takeLiveEvents ()
{
    handPlayedCount = 0;
    while (handPlayedCount < LiveEvents::capacity && live.next (handPlayed[handPlayedCount]))
        ++handPlayedCount;
    if (live.takeOverflow ())
        handPlayed[handPlayedCount++] = endOfAllNotes;
}

std::int32_t Performer::size () const
{
    return static_cast<std::int32_t> (song.interjectionCount () + handPlayedCount + song.messages ().size ());
}

engine::Event Performer::at (std::int32_t n) const
{
    auto place = static_cast<std::size_t> (n);
    if (place < song.interjectionCount ())
        return eventOf (song.interjection (place), 0);
    place -= song.interjectionCount ();
    if (place < handPlayedCount)
        return eventOf (handPlayed[place], 0);
    const host::TimedMessage& message = song.messages ()[place - handPlayedCount];
    return eventOf (message.bytes, message.sample - song.blockStart ());
}
}
