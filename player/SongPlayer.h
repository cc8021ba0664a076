#pragma once

#include <array>
#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "engine/Transport.h"
#include "host/Sequence.h"
#include "host/TempoMap.h"
#include "player/LiveEvents.h"

namespace player
{
// A song as it is played at one sample rate.
struct Song
{
    std::string name; // the file's, in UTF-8
    host::TempoMap tempos;
    host::Sequence sequence;
    double sampleRate = 0.0; // Hz
    std::uint64_t frames = 0;
};

// Throws midi::ReadError when the file cannot be read.
std::shared_ptr<const Song> readSong (const std::filesystem::path& file, double sampleRate,
                                      bool withProgramChanges);

// Where a song stands, and what it says in a block. The user-interface thread opens and moves it, the audio
// thread plays it. Neither waits for the other: a new place is handed over as a whole, and what the audio
// thread has left is taken away at the next move.
class SongPlayer
{
public:
    SongPlayer ();

    // User-interface thread

    void open (std::shared_ptr<const Song> newSong); // stands at its start and is not played
    const Song* song () const { return opened.get (); }

    // From where it stands; from the start when it has ended. Nothing without a song.
    void play ();
    void pause () { wanted.store (false, std::memory_order_release); }
    bool isPlaying () const;

    // To that many seconds after the start; further than either end is that end.
    void seek (double seconds);
    double seconds () const; // where it stands

    // Audio thread

    // Takes up what was asked for. Then `interjections` and `messages` are those of the next `frames`
    // samples.
    void beginBlock (std::uint32_t frames);

    // Due at the first sample: what makes the instrument let go after a stop or jump, and program and
    // controllers as the song has them where it goes on.
    std::size_t interjectionCount () const { return releaseCount + state.size (); }
    ShortMessage interjection (std::size_t n) const
    {
        return n < releaseCount ? releases[n] : state[n - releaseCount];
    }

    std::span<const host::TimedMessage> messages () const { return due; }
    std::uint64_t blockStart () const { return position; } // of the messages' samples

    // Of the block, while it is played.
    std::optional<engine::Transport> transport () const;

    void endBlock ();

private:
    // A place to play from.
    struct Cue
    {
        std::uint64_t number = 0; // counts from 1
        std::shared_ptr<const Song> song;
        std::uint64_t start = 0; // frames
        std::size_t firstMessage = 0;
        std::vector<ShortMessage> state; // what the song has set by then
    };

    // Something that a song leaves changed, and the message that brings it to rest.
    struct Lasting
    {
        ShortMessage rest;
        bool away = false;
    };

    void cueAt (std::uint64_t frame);
    std::uint64_t frame () const;

    void take (const Cue& next);
    void release (const ShortMessage& message) { releases[releaseCount++] = message; }
    void letGo (bool jumps, bool runs);
    void follow (const ShortMessage& message);

    // User-interface thread
    std::shared_ptr<const Song> opened;
    std::vector<std::unique_ptr<const Cue>> cues; // the last one counts; earlier ones may still be in use
    std::uint64_t lastNumber = 0;

    // From one to the other
    std::atomic<bool> wanted = false;
    std::atomic<const Cue*> newest = nullptr;
    std::atomic<std::uint64_t> inUse = 0;   // number of the cue, as the next one
    std::atomic<std::uint64_t> ended = 0;   // that was played to its end
    std::atomic<std::uint64_t> reached = 0; // frames, in the cue that is in use

    // Audio thread
    const Cue* cue = nullptr;
    bool running = false;
    std::uint64_t position = 0; // frames
    std::uint32_t blockFrames = 0;
    std::uint64_t framesAtRest = 0; // since it was played last
    std::size_t nextMessage = 0;
    bool keysMayBeDown = false;
    std::array<Lasting, 5> lasting; // the first is the pedal
    std::array<ShortMessage, 6> releases = {};
    std::size_t releaseCount = 0;
    std::span<const ShortMessage> state;
    std::span<const host::TimedMessage> due;
};
}
