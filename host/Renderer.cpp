#include "host/Renderer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>

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

Renderer::Renderer (const std::vector<Part>& parts, const TempoMap& newTempos,
                    const RenderSettings& newSettings)
    : tempos (newTempos),
      settings (newSettings),
      mix (2 * static_cast<std::size_t> (newSettings.blockSize))
{
    for (const Part& part : parts)
    {
        players.push_back ({ part.plugin, part.sequence });
        players.back ().stereo.resize (mix.size ());
        songSeconds = std::max (songSeconds, part.sequence.seconds);
    }
    songFrames = framesIn (songSeconds, settings.sampleRate);
}

RenderReport Renderer::render (const Sink& sink, const Progress& progress, const PartSink& partSink)
{
    for (Player& player : players)
        player.plugin.start (settings.sampleRate, settings.blockSize);
    while (!finished ())
    {
        renderBlock (sink, partSink);
        progress (static_cast<double> (position) / settings.sampleRate, songSeconds);
    }
    for (Player& player : players)
        player.plugin.stop ();
    return { position, processSeconds };
}

bool Renderer::finished () const
{
    if (position + static_cast<std::uint64_t> (settings.blockSize) > settings.maxFrames)
        return true;
    const auto hasMore = [] (const Player& player)
    { return player.nextMessage < player.sequence.messages.size (); };
    if (position < songFrames || std::ranges::any_of (players, hasMore))
        return false;
    return silentFrames >= framesIn (silentSeconds, settings.sampleRate) ||
           position >= songFrames + framesIn (settings.tailLimit, settings.sampleRate);
}

void Renderer::renderBlock (const Sink& sink, const PartSink& partSink)
{
    const VstTimeInfo now = timeNow ();
    std::ranges::fill (mix, 0.0f);
    for (std::size_t part = 0; part < players.size (); ++part)
    {
        renderPart (players[part], now);
        std::ranges::transform (mix, players[part].stereo, mix.begin (), std::plus<> ());
        if (partSink)
            partSink (part, players[part].stereo);
    }
    for (std::size_t n = 0; n < mix.size (); n += 2)
    {
        const bool silent = std::abs (mix[n]) < silence && std::abs (mix[n + 1]) < silence;
        silentFrames = silent ? silentFrames + 1 : 0;
    }
    sink (mix);
    position += static_cast<std::uint64_t> (settings.blockSize);
}

// A block without events gets an empty list, as from most hosts: instruments may take a list as the start of
// a block.
void Renderer::renderPart (Player& player, const VstTimeInfo& now)
{
    player.plugin.setTime (now);
    collectEvents (player);
    player.plugin.sendEvents (player.events);

    const auto start = std::chrono::steady_clock::now ();
    player.plugin.process (settings.blockSize);
    processSeconds += std::chrono::duration<double> (std::chrono::steady_clock::now () - start).count ();

    auto move = player.moves.begin ();
    const auto frames = static_cast<std::size_t> (settings.blockSize);
    for (std::size_t frame = 0; frame < frames; ++frame)
    {
        for (; move != player.moves.end () && move->frame == frame; ++move)
            player.strip.follow (move->message);
        player.stereo[2 * frame] = player.strip.left () * player.plugin.left ()[frame];
        player.stereo[2 * frame + 1] = player.strip.right () * player.plugin.right ()[frame];
    }
}

void Renderer::collectEvents (Player& player) const
{
    const std::uint64_t blockEnd = position + static_cast<std::uint64_t> (settings.blockSize);
    const bool mixed = players.size () > 1;
    const std::vector<TimedMessage>& messages = player.sequence.messages;
    player.events.clear ();
    player.moves.clear ();
    for (std::size_t& next = player.nextMessage; next < messages.size () && messages[next].sample < blockEnd;
         ++next)
    {
        const std::uint64_t offset = messages[next].sample - position;
        player.events.add (static_cast<VstInt32> (offset), messages[next].bytes);
        if (mixed)
            player.moves.push_back ({ static_cast<std::size_t> (offset), messages[next].bytes });
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
