#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engine/Event.h"
#include "engine/Transport.h"
#include "formats/shared/State.h"
#include "instrument/Bank.h"

// The panel in one format, as its hosts open it.
class FormatPanel
{
public:
    virtual ~FormatPanel () = default;
    virtual std::pair<int, int> size () = 0; // pixels
    virtual bool open (void* window) = 0;    // X11 window id
    virtual void close () = 0;
    virtual void turn () = 0; // of the host's main loop

    std::function<void (int width, int height)> resized; // when the panel asks for another size
};

// One instrument of a format's library, as the smallest host of the format has it.
class FormatHost : public FormatPanel
{
public:
    virtual void start (double sampleRate, int longestBlock) = 0; // Hz, frames
    virtual void stop () = 0;

    // One block from the events of that block; a parameter's value is a shown one. Without a song the host
    // tells none. The host itself allocates nothing here.
    virtual void render (std::span<const engine::Event> events, const engine::Transport* song, float* left,
                         float* right, int frames) = 0;

    // A value as it is shown: set with the next block, and as the host knows it.
    virtual void set (std::int32_t index, double shown) = 0;
    virtual double value (std::int32_t index) = 0;

    virtual std::string save () = 0; // a song's state
    virtual void load (const std::string& state) = 0;
    instrument::BankImage bank () // within the song's state
    {
        const auto state = stateOf (save ());
        instrument::BankImage image;
        std::memcpy (&image, formats::readState (state).value ().bank.data (), sizeof image);
        return image;
    }

    // What the format keeps a state in, there and back; the state itself, where nothing else is said.
    virtual std::string songOf (std::span<const std::byte> state) const
    {
        return { reinterpret_cast<const char*> (state.data ()), state.size () };
    }
    virtual std::vector<std::byte> stateOf (const std::string& song) const
    {
        const auto bytes = std::as_bytes (std::span (song));
        return { bytes.begin (), bytes.end () };
    }

    bool hearsChanges = true; // that the instrument made itself
    std::string edits;        // what the panel told: "begin 18;set 18;end 18;"

protected:
    static constexpr int longestBlock = 1024;
    static constexpr int beats = 7, beatType = 8; // of a bar
};

std::unique_ptr<FormatHost> makeHost (); // each format's test program has one

// A song's stream, which gives and takes only a piece at once.
struct SongStream
{
    std::size_t read (void* to, std::size_t most)
    {
        const std::size_t count = bytes.copy (static_cast<char*> (to), std::min (most, piece), done);
        done += count;
        return count;
    }
    std::size_t write (const void* from, std::size_t size)
    {
        bytes.append (static_cast<const char*> (from), std::min (size, piece));
        return std::min (size, piece);
    }
    static constexpr std::size_t piece = 100;
    std::string bytes;
    std::size_t done = 0;
};

// For hosts without timed parameters: a block ends where one acts, which is one sample ahead of its offset as
// for every event, and the next begins with the value set.
template <typename AddMidi, typename Set, typename Run>
void inPieces (std::span<const engine::Event> events, int frames, const AddMidi& addMidi, const Set& set,
               const Run& run)
{
    int begin = 0;
    for (const engine::Event& event : events)
    {
        const int acts = std::max (event.offset - 1, 0);
        if (event.kind == engine::Event::Kind::midi)
        {
            addMidi (event, acts == begin ? 0 : acts - begin + 1);
            continue;
        }
        if (acts > begin)
            run (begin, acts);
        begin = acts;
        set (event.index, static_cast<double> (event.value));
    }
    run (begin, frames);
}
