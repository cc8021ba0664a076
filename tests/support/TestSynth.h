#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "plugin/VstSynth.h"

// Settings in memory. Copies share one content, so that it outlives the instances that use it.
class MemoryStore final : public platform::SettingsStore
{
public:
    using Content = std::map<std::string, std::uint32_t>;

    explicit MemoryStore (std::shared_ptr<Content> shared = std::make_shared<Content> ())
        : content (std::move (shared))
    {
    }
    std::uint32_t read (std::string_view subkey, std::string_view name) const override;
    bool write (std::string_view subkey, std::string_view name, std::uint32_t number) override;
    bool commit () override { return !failsCommit; }

    std::shared_ptr<Content> content;
    bool failsWrites = false;
    bool failsCommit = false;
};

// What a synth under test is surrounded with, and what it did to it. One host at a time is the current one;
// the callbacks of the plug-in interface reach it through a static pointer.
class FakeHost
{
public:
    FakeHost ();
    ~FakeHost ();
    FakeHost (const FakeHost&) = delete;
    FakeHost& operator= (const FakeHost&) = delete;

    static VstIntPtr callback (AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                               float opt);
    instrument::Services services (); // an in-memory store, recorded messages, the library path below

    struct Call
    {
        VstInt32 opcode;
        VstInt32 index;
        VstIntPtr value;
        float opt;
    };
    struct Message
    {
        std::string text;
        std::string title;
        platform::Buttons buttons;
        bool operator== (const Message&) const = default;
    };

    VstIntPtr version = kVstVersion;
    bool hasTime = false;
    VstTimeInfo time = {};
    bool recordsCalls = true; // off while a test counts allocations
    std::vector<Call> calls;
    std::vector<Message> messages;
    platform::Answer answer = platform::Answer::ok;
    std::filesystem::path libraryPath;
    std::shared_ptr<MemoryStore::Content> stored = std::make_shared<MemoryStore::Content> ();
    bool storeFails = false;
    EditorFactory createEditor = nullptr;

    int countCalls (VstInt32 opcode) const;
};

struct TimedMidi
{
    VstInt32 offset; // samples from the start
    unsigned char status;
    unsigned char data1;
    unsigned char data2;
    VstInt32 type = kVstMidiType;
};

// The events of one block in the form that a host passes.
class EventList
{
public:
    explicit EventList (const std::vector<TimedMidi>& midi);
    VstEvents* get () { return reinterpret_cast<VstEvents*> (storage.data ()); }

private:
    std::vector<VstMidiEvent> events;
    std::vector<VstIntPtr> storage; // a VstEvents with as many pointers as there are events
};

// Renders `frames` samples in blocks, the events at their places; answers the left channel. `offset` counts
// from the start of the call. The deltaFrames of an event is its place in its block.
std::vector<float> render (VstSynth& synth, int frames, int blockSize,
                           const std::vector<TimedMidi>& midi = {});

// Largest magnitude and mean square.
float peakOf (const std::vector<float>& samples);
double powerOf (const std::vector<float>& samples);
