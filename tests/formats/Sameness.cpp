#include <algorithm>
#include <cmath>
#include <optional>
#include <random>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/formats/Vst24Host.h"
#include "tests/support/Events.h"
#include "tests/support/PresetBytes.h"
#include "tests/support/Signals.h"

using namespace formats;
using engine::Event;

namespace
{
constexpr int longestBlock = 700; // frames
constexpr int scoreBlocks = 90;

struct Block
{
    int frames = 0;
    std::vector<Event> events; // offsets within the block
    std::optional<engine::Transport> song;
};

using Dice = std::linear_congruential_engine<std::uint32_t, 1664525u, 1013904223u, 0u>;

int below (Dice& dice, int end)
{
    return static_cast<int> (dice () >> 8) % end;
}

Event anyMidi (Dice& dice, int offset)
{
    const auto data = [&dice] { return below (dice, 128); };
    switch (below (dice, 12))
    {
    case 0:
        return midi (offset, 0xE0, 127, 127); // full bend
    case 1:
        return midi (offset, 0xE1, 0, 0);
    case 2:
        return midi (offset, 0xE0, data (), data ());
    case 3:
        return midi (offset, 0xB0, 11, 60 + data () / 2);
    case 4:
        return midi (offset, 0xB0, 74, data ()); // bound to the cutoff below
    case 5:
        return below (dice, 8) == 0 ? midi (offset, 0xB0, 123, 0) : midi (offset, 0xB0, 1, data ());
    case 6:
        return below (dice, 6) == 0 ? midi (offset, 0xC0, data (), 0) : midi (offset, 0xD0, data (), 0);
    case 7:
    case 8:
        return noteOff (offset, 36 + below (dice, 40));
    default:
        return noteOn (offset, 36 + below (dice, 40), 1 + data () % 127);
    }
}

Event anyParameter (Dice& dice, int offset)
{
    constexpr std::int32_t moved[] = { paramFilterFreq, paramFilterRez, paramOsc1Wave, paramOsc2Range,
                                       param2ToFilter,  paramMasterP,   paramLfoRate,  paramLfoPitch,
                                       paramGlideMono,  paramVoices,    paramVolType,  paramSmothFilt,
                                       paramOsc1PW,     paramVolume,    paramLfoWave,  paramHighQuality };
    const std::int32_t index = moved[below (dice, static_cast<int> (std::size (moved)))];
    return parameterAt (offset, index,
                        shownLimited (index, below (dice, 1001) / 1000.0 * shownHighest (index)));
}

// Blocks of odd lengths with events in order. A parameter has the frames around it to itself, so that the
// library without timed parameters can be given a new block there.
std::vector<Block> music (bool withParameters)
{
    // A start without what two formats cannot tell: VST3 the order of events at one sample, LV2 a value that
    // its port has had before a program has changed it.
    Dice dice (24);
    std::vector<Block> result (scoreBlocks);
    for (Block& block : result)
    {
        block.frames = 1 + below (dice, longestBlock);
        for (int offset = below (dice, 40); offset < block.frames; offset += below (dice, 90))
        {
            if (!withParameters || below (dice, 3) != 0)
            {
                block.events.push_back (anyMidi (dice, offset));
                continue;
            }
            offset += 3;
            block.events.push_back (anyParameter (dice, offset));
            offset += 3;
        }
        std::erase_if (block.events, [&block] (const Event& event) { return event.offset >= block.frames; });
    }
    return result;
}

// Synced to a song that plays, jumps back and stands still. Formats tell beats in steps of 2^-31 or finer.
std::vector<Block> song ()
{
    constexpr double steps = 2147483648.0;
    constexpr double tempo = 133.0;
    std::vector<Block> result = music (false);
    double position = 44100.0;
    for (std::size_t n = 0; n < result.size (); ++n)
    {
        Block& block = result[n];
        std::erase_if (block.events, [] (const Event& event) { return (event.status & 0xF0) == 0xC0; });
        if (n == 40)
            position = 1234.0;
        const double quarters = std::round (position * tempo / 60.0 / 44100.0 * steps) / steps;
        block.song = engine::Transport{ position, tempo, quarters };
        if (n < 60)
            position += block.frames;
    }
    return result;
}

// Left and right of each block after those of the one before.
std::vector<float> soundOf (FormatHost& instance, const std::vector<Block>& score)
{
    instance.start (44100.0, longestBlock);
    std::vector<float> sound;
    for (const Block& block : score)
    {
        std::vector<float> left (static_cast<std::size_t> (block.frames), 9.0f), right = left;
        instance.render (block.events, block.song ? &*block.song : nullptr, left.data (), right.data (),
                         block.frames);
        sound.insert (sound.end (), left.begin (), left.end ());
        sound.insert (sound.end (), right.begin (), right.end ());
    }
    instance.stop ();
    return sound;
}

// Bit for bit, at odd offsets, and however blocks are cut: VST 2.4 has another one begin at each parameter,
// which others take in their midst. Banks travel there and back.
TEST (Formats, SoundLikeVst24)
{
    const std::tuple<const char*, std::vector<Block>, bool> cases[] = {
        { "MIDI", music (false), false },
        { "MIDI and parameters", music (true), false },
        { "song", song (), true },
    };
    for (const auto& [name, score, isSynced] : cases)
    {
        for (const int program : { 0, 31, 60, 90, 103, 127 })
        {
            SCOPED_TRACE (name + std::string (", program ") + std::to_string (program));
            Vst24Host reference;
            reference.set (shownProgram, program);
            reference.set (paramLfoBmpSync, isSynced ? 1.0 : 0.0);
            instrument::BankImage image = reference.bank ();
            image.slots[paramFilterFreq].midiController = 74;
            const auto content = std::as_bytes (std::span (&image, 1));
            reference.load (reference.songOf (content));
            const auto host = makeHost ();
            host->load (host->songOf (content));
            EXPECT_EQ (bytes (host->bank ()), bytes (image));
            const auto expected = soundOf (reference, score);
            EXPECT_GT (peakOf (expected), 0.01f);
            const auto sound = soundOf (*host, score);
            ASSERT_EQ (sound.size (), expected.size ());
            const auto parts = std::ranges::mismatch (sound, expected).in1 - sound.begin ();
            EXPECT_EQ (parts, std::ssize (sound)) << "where the sounds part";
        }
    }
}
}
