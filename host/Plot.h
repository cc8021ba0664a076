// A picture of rendered sound: its wave above its spectrogram.
#pragma once

#include <filesystem>
#include <memory>
#include <span>

namespace host
{
bool canPlot (); // whether this build can draw

class Plot
{
public:
    // Null where canPlot() is false. Throws std::runtime_error, as one sentence, when no file can be there.
    static std::unique_ptr<Plot> make (const std::filesystem::path& file, int sampleRate); // Hz
    virtual ~Plot () = default;

    // Left and right in turn. However long the sound is, no more is kept than the picture needs.
    virtual void add (std::span<const float> stereo) = 0;

    // Draws it and gives the PNG file its name. Without that nothing is left behind. Throws as make() does.
    virtual void finish () = 0;
};
}
