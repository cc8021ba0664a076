// Plays a song into one instrument or several, block by block, mixes them and hands on what they give.
#pragma once

#include "host/ChannelStrip.h"
#include "host/Plugin.h"
#include "host/Sequence.h"
#include "host/TempoMap.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace host
{
struct RenderSettings
{
    int sampleRate = 44100;      // Hz
    int blockSize = 512;         // frames
    double tailLimit = 30.0;     // seconds that the sound may ring on after the song
    std::uint64_t maxFrames = 0; // never more than this
};

struct RenderReport
{
    std::uint64_t frames = 0;
    double processSeconds = 0.0; // time inside the instrument's process calls alone
};

// An instrument and what it plays.
struct Part
{
    Plugin& plugin;
    const Sequence& sequence;
};

class Renderer
{
public:
    // Left and right in turn, one block at a time; of the mix, and of each part as it goes into the mix.
    using Sink = std::function<void (std::span<const float> stereo)>;
    using PartSink = std::function<void (std::size_t part, std::span<const float> stereo)>;
    using Progress = std::function<void (double secondsDone, double secondsOfSong)>;

    // What the parts refer to must outlive the renderer. Of several parts each has a channel strip in the
    // mix; a single one is handed on as it is.
    Renderer (const std::vector<Part>& parts, const TempoMap& tempos, const RenderSettings& settings);

    RenderReport render (const Sink& sink, const Progress& progress, const PartSink& partSink = {});

private:
    struct StripMove
    {
        std::size_t frame; // of the block
        std::array<std::uint8_t, 3> message;
    };
    struct Player
    {
        Plugin& plugin;
        const Sequence& sequence;
        std::size_t nextMessage = 0;
        BlockEvents events = {};           // of the block
        std::vector<StripMove> moves = {}; // of the block, in ascending order
        ChannelStrip strip = {};
        std::vector<float> stereo = {};
    };

    void collectEvents (Player& player) const; // those that fall into the block at position
    void renderPart (Player& player, const VstTimeInfo& now);
    void renderBlock (const Sink& sink, const PartSink& partSink);
    VstTimeInfo timeNow () const;
    bool finished () const;

    std::vector<Player> players;
    const TempoMap& tempos;
    RenderSettings settings;

    std::uint64_t position = 0; // frames rendered so far
    double songSeconds = 0.0;
    std::uint64_t songFrames = 0;   // up to the last message and the end of the song
    std::uint64_t silentFrames = 0; // since the last sound
    double processSeconds = 0.0;
    std::vector<float> mix;
};
}
