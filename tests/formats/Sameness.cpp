#include "tests/formats/Sameness.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <gtest/gtest.h>

#include "formats/shared/ShownParameters.h"
#include "host/Plugin.h"
#include "instrument/Bank.h"
#include "tests/support/Events.h"
#include "tests/support/Signals.h"

using namespace formats;
using engine::Event;

namespace
{
constexpr int longestBlock = 700; // frames
constexpr int blocks = 90;

struct Block
{
    int frames = 0;
    std::vector<Event> events; // offsets within the block
    std::optional<engine::Transport> song;
};

Event timed (int offset, std::int32_t index, double shown)
{
    Event event;
    event.offset = offset;
    event.kind = Event::Kind::parameter;
    event.index = index;
    event.value = static_cast<float> (shown);
    return event;
}

class Dice
{
public:
    unsigned below (unsigned end)
    {
        state = state * 1664525u + 1013904223u;
        return (state >> 8) % end;
    }

private:
    unsigned state = 7;
};

Event anyMidi (Dice& dice, int offset)
{
    const auto data = [&dice] { return static_cast<int> (dice.below (128)); };
    switch (dice.below (12))
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
        return dice.below (8) == 0 ? midi (offset, 0xB0, 123, 0) : midi (offset, 0xB0, 1, data ());
    case 6:
        return dice.below (6) == 0 ? midi (offset, 0xC0, data (), 0) : midi (offset, 0xD0, data (), 0);
    case 7:
    case 8:
        return noteOff (offset, 36 + static_cast<int> (dice.below (40)));
    default:
        return noteOn (offset, 36 + static_cast<int> (dice.below (40)), 1 + data () % 127);
    }
}

Event anyParameter (Dice& dice, int offset)
{
    constexpr std::int32_t moved[] = { paramFilterFreq, paramFilterRez, paramOsc1Wave, paramOsc2Range,
                                       param2ToFilter,  paramMasterP,   paramLfoRate,  paramLfoPitch,
                                       paramGlideMono,  paramVoices,    paramVolType,  paramSmothFilt,
                                       paramOsc1PW,     paramVolume,    paramLfoWave,  paramHighQuality };
    const std::int32_t index = moved[dice.below (std::size (moved))];
    const double shown = dice.below (1001) / 1000.0 * shownHighest (index);
    return timed (offset, index, shownLimited (index, shown));
}

// Blocks of odd lengths with events in order. A parameter has the frames around it to itself, so that the
// library without timed parameters can be given a new block there.
std::vector<Block> music (bool withParameters)
{
    Dice dice;
    std::vector<Block> result (blocks);
    for (Block& block : result)
    {
        block.frames = 1 + static_cast<int> (dice.below (longestBlock));
        for (int offset = static_cast<int> (dice.below (40)); offset < block.frames;
             offset += static_cast<int> (dice.below (90)))
        {
            if (!withParameters || dice.below (3) != 0)
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

using Sound = std::vector<float>;

// The library that the others are measured by. It has no timed parameters: a block ends where one acts, which
// is one sample ahead of its offset as for every event, and the next begins with the value set.
class Reference
{
public:
    Reference () : plugin (BRIMVALE_LIBRARY) {}

    void choose (int program, bool synced)
    {
        plugin.selectProgram (program);
        plugin.setParameter (paramLfoBmpSync, synced ? 1.0f : 0.0f);
        auto image = bank ();
        image.slots[paramFilterFreq].midiController = 74;
        plugin.call (effSetChunk, 0, sizeof image, &image);
    }

    instrument::BankImage bank ()
    {
        void* data = nullptr;
        EXPECT_EQ (plugin.call (effGetChunk, 0, 0, &data), sizeof (instrument::BankImage));
        return *static_cast<const instrument::BankImage*> (data);
    }

    Sound render (const std::vector<Block>& score)
    {
        plugin.start (44100, longestBlock);
        Sound sound;
        for (const Block& block : score)
        {
            tell (block.song);
            render (block, sound);
        }
        plugin.stop ();
        return sound;
    }

private:
    void tell (const std::optional<engine::Transport>& transport)
    {
        if (!transport)
            return;
        VstTimeInfo time = {};
        time.samplePos = transport->samplePosition;
        time.sampleRate = 44100.0;
        time.tempo = *transport->tempo;
        time.ppqPos = *transport->quarterPosition;
        time.flags = kVstTempoValid | kVstPpqPosValid;
        plugin.setTime (time);
    }

    void render (const Block& block, Sound& sound)
    {
        host::BlockEvents waiting;
        int begin = 0;
        for (const Event& event : block.events)
        {
            const int acts = std::max (event.offset - 1, 0);
            if (event.kind == Event::Kind::midi)
            {
                const int offset = acts == begin ? 0 : acts - begin + 1;
                waiting.add (offset, { event.status, event.data1, event.data2 });
                isEmpty = false;
                continue;
            }
            play (waiting, acts - begin, sound);
            begin = acts;
            const float stored = plugin.parameter (event.index);
            const float wanted = storedValue (event.index, static_cast<double> (event.value), stored);
            if (wanted != stored) // not every format can tell what is there already
                plugin.setParameter (event.index, wanted);
        }
        play (waiting, block.frames - begin, sound);
    }

    void play (host::BlockEvents& events, int frames, Sound& sound)
    {
        if (frames == 0)
            return;
        if (!isEmpty)
            plugin.sendEvents (events);
        plugin.process (frames);
        sound.insert (sound.end (), plugin.left (), plugin.left () + frames);
        sound.insert (sound.end (), plugin.right (), plugin.right () + frames);
        events.clear ();
        isEmpty = true;
    }

    host::Plugin plugin;
    bool isEmpty = true; // the list of events that wait
};

// In the reference's order: pieces of left and right as its blocks are cut.
Sound renderIn (FormatInstance& instance, const std::vector<Block>& score)
{
    instance.start (44100.0, longestBlock);
    Sound sound;
    for (const Block& block : score)
    {
        Sound left (static_cast<std::size_t> (block.frames), 9.0f);
        Sound right = left;
        instance.render (block.events, block.song ? &*block.song : nullptr, left.data (), right.data (),
                         block.frames);
        int begin = 0;
        const auto take = [&] (int end)
        {
            sound.insert (sound.end (), left.begin () + begin, left.begin () + end);
            sound.insert (sound.end (), right.begin () + begin, right.begin () + end);
            begin = end;
        };
        for (const Event& event : block.events)
        {
            if (event.kind == Event::Kind::parameter)
                take (std::max (event.offset - 1, 0));
        }
        take (block.frames);
    }
    instance.stop ();
    return sound;
}

// Where the sounds part, or nothing.
std::optional<std::size_t> difference (const Sound& a, const Sound& b)
{
    const auto found = std::ranges::mismatch (a, b);
    const bool same = found.in1 == a.end () && found.in2 == b.end ();
    return same ? std::nullopt : std::optional (static_cast<std::size_t> (found.in1 - a.begin ()));
}
}

void expectTheSameSound (const MakeInstance& make)
{
    struct Case
    {
        const char* name;
        std::vector<Block> score;
        bool synced = false;
    };
    const Case cases[] = { { "MIDI", music (false) },
                           { "MIDI and parameters", music (true) },
                           { "song", song (), true } };
    for (const Case& row : cases)
    {
        for (const int program : { 0, 31, 60, 90, 103, 127 })
        {
            SCOPED_TRACE (std::string (row.name) + ", program " + std::to_string (program));
            Reference reference;
            reference.choose (program, row.synced);
            const instrument::BankImage bank = reference.bank ();
            const auto image = std::as_bytes (std::span (&bank, 1));

            const auto instance = make ();
            ASSERT_TRUE (instance->loadBank (image));
            EXPECT_TRUE (std::ranges::equal (instance->saveBank (), image));
            const Sound expected = reference.render (row.score);
            EXPECT_GT (peakOf (expected), 0.01f);
            EXPECT_EQ (difference (renderIn (*instance, row.score), expected), std::nullopt);
        }
    }
}
