#include "host/Renderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace host
{
namespace
{
constexpr float silence = 1.0e-5f;    // -100 dBFS
constexpr double silentSeconds = 0.5; // so long below it means that nothing comes any more

std::uint64_t framesIn (double seconds, int sampleRate)
{
    return static_cast<std::uint64_t> (std::ceil (seconds * sampleRate));
}
}

Renderer::Renderer (Plugin& newPlugin, const Sequence& newSequence, const TempoMap& newTempos,
                    const RenderSettings& newSettings)
    : plugin (newPlugin),
      sequence (newSequence),
      tempos (newTempos),
      settings (newSettings),
      songFrames (framesIn (newSequence.seconds, newSettings.sampleRate)),
      stereo (2 * static_cast<std::size_t> (newSettings.blockSize))
{
}

RenderReport Renderer::render (const Sink& sink, const Progress& progress)
{
    plugin.start (settings.sampleRate, settings.blockSize);
    while (!finished ())
    {
        renderBlock (sink);
        progress (static_cast<double> (position) / settings.sampleRate, sequence.seconds);
    }
    plugin.stop ();
    return { position, processSeconds };
}

bool Renderer::finished () const
{
    if (position + static_cast<std::uint64_t> (settings.blockSize) > settings.maxFrames)
        return true;
    if (position < songFrames || nextMessage < sequence.messages.size ())
        return false;
    return silentFrames >= framesIn (silentSeconds, settings.sampleRate) ||
           position >= songFrames + framesIn (settings.tailLimit, settings.sampleRate);
}

// A block without events gets an empty list, as from most hosts: instruments may take a list as the start of
// a block.
void Renderer::renderBlock (const Sink& sink)
{
    plugin.setTime (timeNow ());
    collectEvents ();
    plugin.sendEvents (events);

    const auto start = std::chrono::steady_clock::now ();
    plugin.process (settings.blockSize);
    processSeconds += std::chrono::duration<double> (std::chrono::steady_clock::now () - start).count ();

    const auto frames = static_cast<std::size_t> (settings.blockSize);
    for (std::size_t frame = 0; frame < frames; ++frame)
    {
        const float left = plugin.left ()[frame];
        const float right = plugin.right ()[frame];
        stereo[2 * frame] = left;
        stereo[2 * frame + 1] = right;
        const bool silent = std::abs (left) < silence && std::abs (right) < silence;
        silentFrames = silent ? silentFrames + 1 : 0;
    }
    sink (stereo);
    position += frames;
}

void Renderer::collectEvents ()
{
    const std::uint64_t blockEnd = position + static_cast<std::uint64_t> (settings.blockSize);
    events.clear ();
    for (; nextMessage < sequence.messages.size () && sequence.messages[nextMessage].sample < blockEnd;
         ++nextMessage)
    {
        const TimedMessage& message = sequence.messages[nextMessage];
        events.add (static_cast<VstInt32> (message.sample - position), message.bytes);
    }
}

VstTimeInfo Renderer::timeNow () const
{
    const double seconds = static_cast<double> (position) / settings.sampleRate;
    const MusicalTime music = tempos.at (seconds);
    VstTimeInfo time = {};
    time.samplePos = static_cast<double> (position);
    time.sampleRate = settings.sampleRate;
    time.ppqPos = music.quarters;
    time.tempo = music.tempo;
    time.barStartPos = music.barStartQuarters;
    time.timeSigNumerator = music.numerator;
    time.timeSigDenominator = music.denominator;
    time.flags = kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstTimeSigValid;
    if (position == 0)
        time.flags |= kVstTransportChanged;
    return time;
}
}
