#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "engine/Event.h"
#include "engine/Transport.h"

// One instrument of some format, driven as its hosts drive it.
class FormatInstance
{
public:
    virtual ~FormatInstance () = default;

    // A bare bank image, as VST 2.4 songs hold it.
    virtual bool loadBank (std::span<const std::byte> image) = 0;
    virtual std::vector<std::byte> saveBank () = 0; // the bank image within what a song keeps

    virtual void start (double sampleRate, int longestBlock) = 0; // Hz, frames
    virtual void stop () = 0;

    // One block from the events of that block; a parameter's value is a shown one. Without a song the host
    // tells none.
    virtual void render (std::span<const engine::Event> events, const engine::Transport* song, float* left,
                         float* right, int frames) = 0;
};

using MakeInstance = std::function<std::unique_ptr<FormatInstance> ()>;

// Fails unless the format's library renders the samples of the VST 2.4 library, bit for bit: notes,
// controllers, full bends, program changes and timed parameters, at odd offsets and in odd blocks, and with
// the LFO synced to a song that moves, jumps and stands still. Banks travel there and back.
void expectTheSameSound (const MakeInstance& make);
