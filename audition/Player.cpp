#include "audition/Player.h"

#include "examples/Score.h"
#include "host/ChannelStrip.h"
#include "instrument/Instrument.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace audition
{
namespace
{
constexpr std::int32_t blockFrames = 256;

class NoSettings final : public platform::SettingsStore
{
public:
    std::uint32_t read (std::string_view, std::string_view) const override { return 0; }
    bool write (std::string_view, std::string_view, std::uint32_t) override { return false; }
    bool commit () override { return false; }
};

// Nothing of this machine's user gets in: no settings, no default bank.
Services isolatedServices ()
{
    return { std::make_unique<NoSettings> (),
             [] (const char*, const char*, platform::Buttons) { return platform::Answer::none; },
             [] { return std::filesystem::path (); } };
}

// A song that is playing.
class Song final : public FormatHost
{
public:
    explicit Song (double beatsPerMinute) : tempo (beatsPerMinute) {}
    void moveTo (double newSample) { sample = newSample; }

    std::optional<engine::Transport> transport () override
    {
        return engine::Transport{ sample, tempo, sample / sampleRate * tempo / 60.0 };
    }

private:
    double tempo;
    double sample = 0.0;
};

struct TimedMessage
{
    std::size_t sample;
    std::array<std::uint8_t, 3> bytes;
};

engine::Event blockEvent (const TimedMessage& message, std::size_t blockStart)
{
    engine::Event event;
    event.offset = static_cast<std::int32_t> (message.sample - blockStart);
    event.kind = engine::Event::Kind::midi;
    event.status = message.bytes[0];
    event.data1 = message.bytes[1];
    event.data2 = message.bytes[2];
    return event;
}

// The bank as the host of a session would hand it over: a chunk with the instrument's own descriptors.
void loadPrograms (Instrument& instrument, const std::vector<ProgramRecord>& records)
{
    const std::span<const std::byte> chunk = instrument.getChunk (false);
    BankImage bank;
    if (chunk.size () != sizeof bank)
        throw std::logic_error ("the instrument's bank chunk has another size");
    std::memcpy (&bank, chunk.data (), sizeof bank);
    std::ranges::copy (records, bank.programs.begin ());
    instrument.setChunk (&bank, sizeof bank, false);
}

// What one channel's instance plays, at the channel's volume.
void addChannel (Audio& mix, const std::vector<ProgramRecord>& records,
                 const std::vector<TimedMessage>& messages, double beatsPerMinute)
{
    Song song (beatsPerMinute);
    Instrument instrument (isolatedServices (), song);
    instrument.setSampleRate (sampleRate);
    loadPrograms (instrument, records);

    host::ChannelStrip strip;
    std::array<float, blockFrames> left;
    auto next = messages.begin ();
    for (std::size_t start = 0; start < mix.size (); start += blockFrames)
    {
        song.moveTo (static_cast<double> (start));
        std::vector<engine::Event> block;
        for (; next != messages.end () && next->sample < start + blockFrames; ++next)
        {
            strip.follow (next->bytes);
            block.push_back (blockEvent (*next, start));
        }
        const engine::EventSpan events (block);
        instrument.processEvents (&events);
        instrument.render (left.data (), nullptr, blockFrames);
        for (std::size_t n = 0; n < blockFrames && start + n < mix.size (); ++n)
            mix[start + n] += strip.left () * left[n];
    }
}
}

Player::Player (const std::vector<bank::SourceProgram>& programs)
{
    for (const bank::SourceProgram& program : programs)
    {
        records.push_back (program.record);
        names.push_back (program.name ());
    }
}

Audio Player::play (const examples::Piece& piece, double tail) const
{
    const midi::Song song = examples::songOf (piece, names);
    const double samplesPerTick = sampleRate * 60.0 / piece.beatsPerMinute () / song.ticksPerQuarter;
    const auto sampleAt = [samplesPerTick] (std::uint64_t tick)
    { return static_cast<std::size_t> (std::lround (static_cast<double> (tick) * samplesPerTick)); };

    Audio mix (sampleAt (song.endTick) + static_cast<std::size_t> (tail * sampleRate));
    for (int channel = 0; channel < 16; ++channel)
    {
        std::vector<TimedMessage> messages;
        for (const midi::Message& message : song.messages)
        {
            if ((message.bytes[0] & 0x0F) == channel)
                messages.push_back ({ sampleAt (message.tick), message.bytes });
        }
        if (!messages.empty ())
            addChannel (mix, records, messages, piece.beatsPerMinute ());
    }
    return mix;
}
}
