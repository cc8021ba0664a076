#pragma once

#include <array>
#include <vector>

#include "engine/Event.h"
#include "instrument/Instrument.h"
#include "player/LiveEvents.h"
#include "player/SongPlayer.h"

namespace player
{
// Gives sound, as somebody asks for it. Audio thread.
class AudioSource
{
public:
    // Left and right in turn.
    virtual void render (float* stereo, std::uint32_t frames) = 0;

protected:
    ~AudioSource () = default;
};

// The instrument with everything that plays it: hands (by keyboards) and a song.
class Performer final : public AudioSource, private instrument::FormatHost, private engine::EventList
{
public:
    Performer (instrument::Services services, instrument::Additions additions);

    instrument::Instrument& instrument () { return core; } // any thread, as it says itself
    LiveEvents& liveEvents () { return live; }             // any thread
    SongPlayer& songPlayer () { return song; }             // user-interface thread

    void render (float* stereo, std::uint32_t frames) override;

private:
    static constexpr std::uint32_t mostFrames = 1024; // of a block

    void renderBlock (float* stereo, std::uint32_t frames);
    void takeLiveEvents ();

    // FormatHost
    std::optional<engine::Transport> transport () override { return song.transport (); }

    // EventList: what interrupts the song, what hands play, what the song says
    std::int32_t size () const override;
    engine::Event at (std::int32_t n) const override;

    LiveEvents live;
    SongPlayer song;
    instrument::Instrument core;

    // Audio thread
    std::array<ShortMessage, LiveEvents::capacity + 1> handPlayed = {}; // in this block
    std::size_t handPlayedCount = 0;
    std::vector<float> left;
    std::vector<float> right;
};
}
