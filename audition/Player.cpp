#include "audition/Player.h"

#include "examples/Score.h"
#include "host/BlockEvents.h"
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
    const midi::Song song = examples::songOf (piece, names);
    const double samplesPerTick = sampleRate * 60.0 / piece.beatsPerMinute () / song.ticksPerQuarter;
    const auto sampleAt = [samplesPerTick] (std::uint64_t tick)
    { return static_cast<std::size_t> (std::lround (static_cast<double> (tick) * samplesPerTick)); };

    moveTransport (0.0, piece.beatsPerMinute ());
    VstSynth synth (hostCallback, isolatedServices ());
    synth.setSampleRate (sampleRate);
    synth.setBlockSize (blockFrames);
    loadPrograms (synth, records);
    synth.resume ();

    const std::size_t end = sampleAt (song.endTick) + static_cast<std::size_t> (tail * sampleRate);
    Audio left (end + blockFrames);
    Audio right (left.size ());
    auto next = song.messages.begin ();
    for (std::size_t start = 0; start < end; start += blockFrames)
    {
        moveTransport (static_cast<double> (start), piece.beatsPerMinute ());
        host::BlockEvents block;
        for (; next != song.messages.end () && sampleAt (next->tick) < start + blockFrames; ++next)
            block.add (static_cast<VstInt32> (sampleAt (next->tick) - start), next->bytes);
        synth.processEvents (&block.record ());
        float* outputs[] = { left.data () + start, right.data () + start };
        synth.processReplacing (nullptr, outputs, blockFrames);
    }
    left.resize (end);
    return left;
}
}
