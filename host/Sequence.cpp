#include "host/Sequence.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>

namespace host
{
namespace
{
constexpr int noteOff = 0x80;
constexpr int noteOn = 0x90;
constexpr int programChange = 0xC0;

// The keys that are down after the messages so far, as channel and key.
class HeldKeys
{
public:
    void follow (const std::array<std::uint8_t, 3>& bytes)
    {
        const int kind = bytes[0] & 0xF0;
        const std::pair<int, int> key{ bytes[0] & 0x0F, bytes[1] };
        if (kind == noteOn && bytes[2] > 0)
            held.insert (key);
        else if (kind == noteOn || kind == noteOff)
            held.erase (key);
    }

    std::vector<TimedMessage> releasesAt (std::uint64_t sample) const
    {
        std::vector<TimedMessage> releases;
        for (const auto& [channel, key] : held)
        {
            const auto status = static_cast<std::uint8_t> (noteOff | channel);
            releases.push_back ({ sample, { status, static_cast<std::uint8_t> (key), 0 } });
        }
        return releases;
    }

private:
    std::set<std::pair<int, int>> held;
};
}

Sequence makeSequence (const midi::Song& song, const TempoMap& tempos, double sampleRate,
                       bool withProgramChanges)
{
    const auto sampleAt = [&] (std::uint64_t tick)
    { return static_cast<std::uint64_t> (std::llround (tempos.secondsAt (tick) * sampleRate)); };

    Sequence sequence;
    sequence.seconds = tempos.secondsAt (song.endTick);
    HeldKeys keys;
    for (const midi::Message& message : song.messages)
    {
        if (!withProgramChanges && (message.bytes[0] & 0xF0) == programChange)
            continue;
        sequence.messages.push_back ({ sampleAt (message.tick), message.bytes });
        keys.follow (message.bytes);
    }
    const auto releases = keys.releasesAt (sampleAt (song.endTick));
    sequence.messages.insert (sequence.messages.end (), releases.begin (), releases.end ());
    return sequence;
}

std::vector<Sequence> splitByChannel (const Sequence& sequence)
{
    std::set<int> playing;
    for (const TimedMessage& message : sequence.messages)
    {
        if ((message.bytes[0] & 0xF0) == noteOn && message.bytes[2] > 0)
            playing.insert (message.bytes[0] & 0x0F);
    }
    if (playing.size () <= 1)
        return { sequence };
    std::vector<Sequence> channels;
    for (const int channel : playing)
    {
        Sequence& part = channels.emplace_back ();
        part.seconds = sequence.seconds;
        std::ranges::copy_if (sequence.messages, std::back_inserter (part.messages),
                              [channel] (const TimedMessage& message)
                              { return (message.bytes[0] & 0x0F) == channel; });
    }
    return channels;
}
}
