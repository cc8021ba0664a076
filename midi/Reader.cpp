#include "midi/Reader.h"

#include "midi/MetaType.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>
#include <string_view>

namespace midi
{
namespace
{
constexpr std::size_t chunkHeaderBytes = 8;
constexpr std::size_t headerChunkBytes = 6;
constexpr std::uintmax_t largestFile = 64u << 20; // bytes; far above any song, so memory is safe

// Walks over bytes and refuses to walk past their end.
class ByteReader
{
public:
    explicit ByteReader (std::span<const std::uint8_t> newBytes) : bytes (newBytes) {}

    bool atEnd () const { return position == bytes.size (); }
    std::size_t left () const { return bytes.size () - position; }
    std::uint8_t peek () const { return atEnd () ? throw cutOff () : bytes[position]; }

    std::uint8_t byte ()
    {
        const std::uint8_t value = peek ();
        ++position;
        return value;
    }

    std::uint32_t bigEndian (int count)
    {
        std::uint32_t value = 0;
        for (int i = 0; i < count; ++i)
            value = (value << 8) | byte ();
        return value;
    }

    // Seven bits per byte, the highest bit announces another; four bytes at most.
    std::uint32_t variableLength ()
    {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i)
        {
            const std::uint8_t part = byte ();
            value = (value << 7) | (part & 0x7Fu);
            if ((part & 0x80u) == 0)
                return value;
        }
        throw ReadError ("a number in it is longer than four bytes");
    }

    std::span<const std::uint8_t> block (std::size_t count)
    {
        if (count > left ())
            throw cutOff ();
        const auto part = bytes.subspan (position, count);
        position += count;
        return part;
    }

    bool take (std::string_view id)
    {
        if (left () < id.size () ||
            !std::equal (id.begin (), id.end (), bytes.begin () + static_cast<std::ptrdiff_t> (position)))
            return false;
        position += id.size ();
        return true;
    }

private:
    static ReadError cutOff () { return ReadError ("it ends in the middle of its data"); }

    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
};

int dataBytes (std::uint8_t status)
{
    const int kind = status & 0xF0;
    return kind == 0xC0 || kind == 0xD0 ? 1 : 2; // program change and channel pressure carry one
}

// Reads the events of one track chunk into the song.
class TrackReader
{
public:
    TrackReader (std::span<const std::uint8_t> bytes, Song& newSong) : in (bytes), song (newSong) {}

    void read ()
    {
        while (!in.atEnd () && !ended)
        {
            tick += in.variableLength ();
            readEvent ();
        }
        song.endTick = std::max (song.endTick, tick);
    }

private:
    void readEvent ()
    {
        const std::uint8_t first = in.peek ();
        if (first == 0xFF)
            readMeta ();
        else if (first == 0xF0 || first == 0xF7)
            skipSystemExclusive ();
        else if (first > 0xF0)
            throw ReadError ("it holds a system message that no file may hold");
        else
            readChannelMessage ();
    }

    void skipSystemExclusive ()
    {
        in.byte ();
        in.block (in.variableLength ());
    }

    void readMeta ()
    {
        in.byte ();
        const std::uint8_t type = in.byte ();
        const auto data = in.block (in.variableLength ());
        if (type == metaEndOfTrack)
            ended = true;
        else if (type == metaTrackName && song.title.empty ())
            song.title.assign (data.begin (), data.end ());
        else if (type == metaTempo && data.size () == 3)
            addTempo (ByteReader (data).bigEndian (3));
        else if (type == metaTimeSignature && data.size () >= 2)
            addTimeSignature (data[0], data[1]);
    }

    void addTempo (std::uint32_t microseconds)
    {
        if (microseconds == 0)
            throw ReadError ("it sets an endless tempo");
        song.tempoChanges.push_back ({ tick, microseconds });
    }

    // Only shown to the plug-in, so a senseless one is left out and the song still plays.
    void addTimeSignature (int numerator, int denominatorPower)
    {
        constexpr int largestPower = 7;
        if (numerator > 0 && denominatorPower <= largestPower)
            song.timeSignatures.push_back ({ tick, numerator, 1 << denominatorPower });
    }

    // The running status outlives meta events here: old sequencers wrote such files.
    void readChannelMessage ()
    {
        if ((in.peek () & 0x80u) != 0)
            status = in.byte ();
        else if (status == 0)
            throw ReadError ("a track starts with data that belongs to no message");

        Message message;
        message.tick = tick;
        message.length = 1 + dataBytes (status);
        message.bytes[0] = status;
        for (int i = 1; i < message.length; ++i)
        {
            const std::uint8_t data = in.byte ();
            if (data > 127)
                throw ReadError ("a message breaks off before the next one starts");
            message.bytes[static_cast<std::size_t> (i)] = data;
        }
        song.messages.push_back (message);
    }

    ByteReader in;
    Song& song;
    std::uint64_t tick = 0;
    std::uint8_t status = 0; // running status, 0 before the first message
    bool ended = false;
};

// Bit 15 clear: ticks per quarter note. Set: minus the frames per second, then ticks per frame.
void setDivision (Song& song, std::uint32_t division)
{
    if ((division & 0x8000u) == 0)
    {
        song.ticksPerQuarter = static_cast<int> (division);
        if (division == 0)
            throw ReadError ("it has no ticks per quarter note");
        return;
    }
    const int frameCode = 256 - static_cast<int> (division >> 8);
    const bool known = frameCode == 24 || frameCode == 25 || frameCode == 29 || frameCode == 30;
    const auto ticksPerFrame = static_cast<double> (division & 0xFFu);
    if (!known || ticksPerFrame == 0.0)
        throw ReadError ("its time code is none that exists");
    const double framesPerSecond = frameCode == 29 ? 30000.0 / 1001.0 : frameCode; // 29 means drop frame
    song.ticksPerSecond = framesPerSecond * ticksPerFrame;
}

// Chunk contents after its name; says which chunk promises more than there is.
std::span<const std::uint8_t> chunk (ByteReader& in, const std::string& name)
{
    const std::uint32_t size = in.bigEndian (4);
    if (size > in.left ())
        throw ReadError (name + " should hold " + std::to_string (size) + " bytes, but only " +
                         std::to_string (in.left ()) + " are there");
    return in.block (size);
}

void readTracks (ByteReader& in, std::uint32_t trackCount, Song& song)
{
    for (std::uint32_t track = 1; track <= trackCount;)
    {
        const std::string name = "track " + std::to_string (track);
        if (in.left () < chunkHeaderBytes)
            throw ReadError (name + " of " + std::to_string (trackCount) + " is missing");
        const bool isTrack = in.take ("MTrk");
        if (!isTrack)
            in.block (4); // a chunk of another kind; the format asks readers to pass over those
        const auto contents = chunk (in, name);
        if (isTrack)
        {
            TrackReader (contents, song).read ();
            ++track;
        }
    }
}

template <typename Row>
void sortByTick (std::vector<Row>& rows)
{
    std::stable_sort (rows.begin (), rows.end (),
                      [] (const Row& a, const Row& b) { return a.tick < b.tick; });
}
}

Song parse (std::span<const std::uint8_t> bytes)
{
    ByteReader in (bytes);
    if (in.take ("RIFF"))
    {
        in.block (std::min<std::size_t> (4, in.left ())); // size, repeated in the inner chunks
        if (!in.take ("RMIDdata"))
            throw ReadError ("it is not a MIDI file");
        in.block (std::min<std::size_t> (4, in.left ()));
    }
    if (!in.take ("MThd"))
        throw ReadError ("it is not a MIDI file");

    const auto headerBytes = chunk (in, "the header");
    if (headerBytes.size () < headerChunkBytes)
        throw ReadError ("its header is too short");
    ByteReader header (headerBytes);
    const std::uint32_t format = header.bigEndian (2);
    const std::uint32_t trackCount = header.bigEndian (2);
    if (format > 1)
        throw ReadError ("it is of format " + std::to_string (format) +
                         ", and only 0 and 1 can be played as one song");
    if (trackCount == 0)
        throw ReadError ("it has no tracks");

    Song song;
    setDivision (song, header.bigEndian (2));
    readTracks (in, trackCount, song);
    sortByTick (song.messages);
    sortByTick (song.tempoChanges);
    sortByTick (song.timeSignatures);
    return song;
}

Song read (const std::filesystem::path& file)
{
    std::error_code error;
    if (!std::filesystem::exists (file, error))
        throw ReadError ("there is no such file");
    if (!std::filesystem::is_regular_file (file, error))
        throw ReadError ("it is not a file");
    if (std::filesystem::file_size (file, error) > largestFile)
        throw ReadError ("it is too large for a MIDI file");

    std::ifstream in (file, std::ios::binary);
    std::vector<char> text{ std::istreambuf_iterator<char> (in), std::istreambuf_iterator<char> () };
    if (!in)
        throw ReadError ("it cannot be read");
    return parse ({ reinterpret_cast<const std::uint8_t*> (text.data ()), text.size () });
}
}
