#include "tests/support/TestSynth.h"

#include <algorithm>
#include <cmath>

using namespace instrument;
using namespace parameters;

namespace
{
FakeHost* currentHost = nullptr;

std::string keyOf (std::string_view subkey, std::string_view name)
{
    return std::string (subkey) + "\\" + std::string (name);
}

platform::Answer recordMessage (const char* text, const char* title, platform::Buttons buttons)
{
    currentHost->messages.push_back ({ text, title, buttons });
    return currentHost->answer;
}

std::filesystem::path currentLibraryPath ()
{
    return currentHost->libraryPath;
}
}

std::uint32_t MemoryStore::read (std::string_view subkey, std::string_view name) const
{
    const auto found = content->find (keyOf (subkey, name));
    return found != content->end () ? found->second : 0;
}

bool MemoryStore::write (std::string_view subkey, std::string_view name, std::uint32_t number)
{
    if (failsWrites)
        return false;
    (*content)[keyOf (subkey, name)] = number;
    return true;
}

FakeHost::FakeHost ()
{
    currentHost = this;
}
FakeHost::~FakeHost ()
{
    currentHost = nullptr;
}

instrument::Services FakeHost::services ()
{
    auto store = std::make_unique<MemoryStore> (stored);
    store->failsWrites = storeFails;
    return { std::move (store), recordMessage, currentLibraryPath };
}

VstIntPtr FakeHost::callback (AEffect* /*effect*/, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                              void* /*ptr*/, float opt)
{
    if (currentHost->recordsCalls)
        currentHost->calls.push_back ({ opcode, index, value, opt });
    if (opcode == audioMasterVersion)
        return currentHost->version;
    if (opcode == audioMasterGetTime && currentHost->hasTime)
        return reinterpret_cast<VstIntPtr> (&currentHost->time);
    return 0;
}

int FakeHost::countCalls (VstInt32 opcode) const
{
    return static_cast<int> (std::count_if (calls.begin (), calls.end (),
                                            [opcode] (const Call& call) { return call.opcode == opcode; }));
}

EventList::EventList (const std::vector<TimedMidi>& midi)
{
    for (const TimedMidi& row : midi)
    {
        VstMidiEvent event = {};
        event.type = row.type;
        event.byteSize = sizeof (VstMidiEvent) - 2 * sizeof (VstInt32);
        event.deltaFrames = row.offset;
        event.midiData[0] = static_cast<char> (row.status);
        event.midiData[1] = static_cast<char> (row.data1);
        event.midiData[2] = static_cast<char> (row.data2);
        events.push_back (event);
    }
    storage.resize (offsetof (VstEvents, events) / sizeof (VstIntPtr) +
                    std::max<std::size_t> (events.size (), 2));
    VstEvents* list = get ();
    list->numEvents = static_cast<VstInt32> (events.size ());
    for (std::size_t n = 0; n < events.size (); ++n)
        storage[offsetof (VstEvents, events) / sizeof (VstIntPtr) + n] =
            reinterpret_cast<VstIntPtr> (&events[n]);
}

std::vector<float> render (VstSynth& synth, int frames, int blockSize, const std::vector<TimedMidi>& midi)
{
    std::vector<float> left (static_cast<std::size_t> (frames));
    std::vector<float> right (left.size ());
    for (int done = 0; done < frames;)
    {
        const int size = std::min (blockSize, frames - done);
        std::vector<TimedMidi> due;
        for (TimedMidi row : midi)
        {
            if (row.offset < done || row.offset >= done + size)
                continue;
            row.offset -= done;
            due.push_back (row);
        }
        EventList list (due);
        synth.processEvents (list.get ());
        float* outputs[] = { left.data () + done, right.data () + done };
        synth.processReplacing (nullptr, outputs, size);
        done += size;
    }
    return left;
}

float peakOf (const std::vector<float>& samples)
{
    float peak = 0.0f;
    for (const float sample : samples)
        peak = std::max (peak, std::abs (sample));
    return peak;
}

double powerOf (const std::vector<float>& samples)
{
    double sum = 0.0;
    for (const float sample : samples)
        sum += static_cast<double> (sample) * static_cast<double> (sample);
    return samples.empty () ? 0.0 : sum / static_cast<double> (samples.size ());
}
