// Plays a song into an instrument, block by block, and hands on what it gives.
#pragma once

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

class Renderer
{
public:
    using Sink = std::function<void (std::span<const float> stereo)>; // left and right in turn
    using Progress = std::function<void (double secondsDone, double secondsOfSong)>;

    Renderer (Plugin& plugin, const Sequence& sequence, const TempoMap& tempos,
              const RenderSettings& settings);

    RenderReport render (const Sink& sink, const Progress& progress);

private:
    void collectEvents (); // those that fall into the block at position
    VstTimeInfo timeNow () const;
    void renderBlock (const Sink& sink);
    bool finished () const;

    Plugin& plugin;
    const Sequence& sequence;
    const TempoMap& tempos;
    RenderSettings settings;

    std::uint64_t position = 0;     // frames rendered so far
    std::uint64_t songFrames;       // up to the last message and the end of the song
    std::uint64_t silentFrames = 0; // since the last sound
    std::size_t nextMessage = 0;
    double processSeconds = 0.0;
    BlockEvents events; // of the block
    std::vector<float> stereo;
};
}
