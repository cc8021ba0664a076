#include "audition/Player.h"

#include "examples/Events.h"
#include "plugin/VstSynth.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace audition
{
namespace
{
constexpr VstInt32 blockFrames = 256;

// What the plug-in object sees of its host; one piece is played at a time.
VstTimeInfo transport;

VstIntPtr hostCallback (AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float)
{
    switch (opcode)
    {
    case audioMasterVersion:
        return kVstVersion;
    case audioMasterGetTime:
        return reinterpret_cast<VstIntPtr> (&transport);
    default:
        return 0;
    }
}

class NoSettings final : public platform::SettingsStore
{
public:
    std::uint32_t read (std::string_view, std::string_view) const override { return 0; }
    bool write (std::string_view, std::string_view, std::uint32_t) override { return false; }
    bool commit () override { return false; }
};

// Nothing of this machine's user gets in: no settings, no default bank.
instrument::Services isolatedServices ()
{
    return { std::make_unique<NoSettings> (),
             [] (const char*, const char*, platform::Buttons) { return platform::Answer::none; },
             [] { return std::filesystem::path (); } };
}

void moveTransport (double sample, double beatsPerMinute)
{
    transport = {};
    transport.samplePos = sample;
    transport.sampleRate = sampleRate;
    transport.tempo = beatsPerMinute;
    transport.ppqPos = sample / sampleRate * beatsPerMinute / 60.0;
    transport.barStartPos = std::floor (transport.ppqPos / 4.0) * 4.0;
    transport.timeSigNumerator = 4;
    transport.timeSigDenominator = 4;
    transport.flags =
        kVstTransportPlaying | kVstTempoValid | kVstPpqPosValid | kVstBarsValid | kVstTimeSigValid;
}

// The event list of one block, in the shape that the plug-in interface wants: two words of head, then as many
// pointers as there are events.
class BlockEvents
{
public:
    void add (const std::vector<unsigned char>& message, VstInt32 offset)
    {
        VstMidiEvent event = {};
        event.type = kVstMidiType;
        event.byteSize = sizeof (VstMidiEvent);
        event.deltaFrames = offset;
        std::memcpy (event.midiData, message.data (), message.size ());
        events.push_back (event);
    }

    VstEvents* list ()
    {
        words.assign (offsetof (VstEvents, events) / sizeof (VstIntPtr), 0);
        for (VstMidiEvent& event : events)
            words.push_back (reinterpret_cast<VstIntPtr> (&event));
        auto* result = reinterpret_cast<VstEvents*> (words.data ());
        result->numEvents = static_cast<VstInt32> (events.size ());
        return result;
    }

private:
    std::vector<VstMidiEvent> events;
    std::vector<VstIntPtr> words;
};

// The bank as the host of a session would hand it over: a chunk with the instrument's own descriptors.
void loadPrograms (VstSynth& synth, const std::vector<ProgramRecord>& records)
{
    void* chunk = nullptr;
    const VstInt32 bytes = synth.getChunk (&chunk, false);
    BankImage bank;
    if (static_cast<std::size_t> (bytes) != sizeof bank)
        throw std::logic_error ("the instrument's bank chunk has another size");
    std::memcpy (&bank, chunk, sizeof bank);
    std::ranges::copy (records, bank.programs.begin ());
    synth.setChunk (&bank, sizeof bank, false);
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
    const std::vector<examples::Event> events = examples::eventsOf (piece, names);
    const double samplesPerTick = sampleRate * 60.0 / piece.beatsPerMinute () / examples::ticksPerQuarter;
    const auto sampleOf = [samplesPerTick] (const examples::Event& event)
    { return static_cast<std::size_t> (std::lround (event.tick * samplesPerTick)); };

    moveTransport (0.0, piece.beatsPerMinute ());
    VstSynth synth (hostCallback, isolatedServices ());
    synth.setSampleRate (sampleRate);
    synth.setBlockSize (blockFrames);
    loadPrograms (synth, records);
    synth.resume ();

    const std::size_t end =
        (events.empty () ? 0 : sampleOf (events.back ())) + static_cast<std::size_t> (tail * sampleRate);
    Audio left (end + blockFrames);
    Audio right (left.size ());
    auto next = events.begin ();
    for (std::size_t start = 0; start < end; start += blockFrames)
    {
        moveTransport (static_cast<double> (start), piece.beatsPerMinute ());
        BlockEvents block;
        for (; next != events.end () && sampleOf (*next) < start + blockFrames; ++next)
            block.add (next->message, static_cast<VstInt32> (sampleOf (*next) - start));
        synth.processEvents (block.list ());
        float* outputs[] = { left.data () + start, right.data () + start };
        synth.processReplacing (nullptr, outputs, blockFrames);
    }
    left.resize (end);
    return left;
}
}
