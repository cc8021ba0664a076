#include "examples/MidiFile.h"

#include "examples/Events.h"

#include <cmath>
#include <string_view>

namespace examples
{
namespace
{
using Bytes = std::vector<unsigned char>;

void appendNumber (Bytes& bytes, unsigned value, int count)
{
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back (static_cast<unsigned char> ((value >> shift) & 0xFF));
}

// Seven bits a byte, the highest first; all but the last carry the eighth bit.
void appendVariableLength (Bytes& bytes, unsigned value)
{
    for (int shift = 21; shift > 0; shift -= 7)
    {
        if (value >> shift != 0)
            bytes.push_back (static_cast<unsigned char> (0x80 | ((value >> shift) & 0x7F)));
    }
    bytes.push_back (static_cast<unsigned char> (value & 0x7F));
}

void appendChunk (Bytes& bytes, std::string_view type, const Bytes& content)
{
    bytes.insert (bytes.end (), type.begin (), type.end ());
    appendNumber (bytes, static_cast<unsigned> (content.size ()), 4);
    bytes.insert (bytes.end (), content.begin (), content.end ());
}

void appendMeta (Bytes& track, unsigned char type, const Bytes& content)
{
    track.insert (track.end (), { 0x00, 0xFF, type });
    appendVariableLength (track, static_cast<unsigned> (content.size ()));
    track.insert (track.end (), content.begin (), content.end ());
}
}

std::vector<unsigned char> midiFile (const Piece& piece, const std::vector<std::string>& programNames)
{
    Bytes track;
    appendMeta (track, 0x03, Bytes (piece.title ().begin (), piece.title ().end ()));
    Bytes tempo;
    appendNumber (tempo, static_cast<unsigned> (std::lround (60e6 / piece.beatsPerMinute ())),
                  3); // microseconds per quarter
    appendMeta (track, 0x51, tempo);
    appendMeta (track, 0x58, { 4, 2, 24, 8 }); // 4/4

    int now = 0;
    for (const Event& event : eventsOf (piece, programNames))
    {
        appendVariableLength (track, static_cast<unsigned> (event.tick - now));
        track.insert (track.end (), event.message.begin (), event.message.end ());
        now = event.tick;
    }
    appendMeta (track, 0x2F, {});

    Bytes header;
    appendNumber (header, 0, 2); // format 0: one track
    appendNumber (header, 1, 2);
    appendNumber (header, ticksPerQuarter, 2);
    Bytes file;
    appendChunk (file, "MThd", header);
    appendChunk (file, "MTrk", track);
    return file;
}
}
