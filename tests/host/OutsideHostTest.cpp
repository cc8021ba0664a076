// The built library as a host meets it that shares no source with it: the interface comes from another
// project's headers, the library from its file, and nothing of ours is linked.
#include "tests/host/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <memory>
#include <pluginterfaces/fst/aeffectx.h>
#include <string>
#include <vector>

namespace
{
using EntryPoint = AEffect* (*)(audioMasterCallback);

constexpr int programs = 128;
constexpr int parameters = 38;
constexpr int programBytes = 176; // name of 24 characters, 38 values
constexpr int bankBytes = 23896;
constexpr int firstProgramByte = bankBytes - programs * programBytes; // behind the parameters' descriptors
constexpr int blockSize = 512;

// What the library asked its host, and what the host answers.
struct HostSide
{
    t_fstPtrInt version = kVstVersion;
    int wantMidi = 0;
    int timeQuestions = 0;
    t_fstTimeInfo time = {};
};
HostSide hostSide;

t_fstPtrInt answer (AEffect*, int opcode, int, t_fstPtrInt, void* const, float)
{
    switch (opcode)
    {
    case audioMasterVersion:
        return hostSide.version;
    case audioMasterWantMidi:
        ++hostSide.wantMidi;
        return 1;
    case audioMasterGetTime:
        ++hostSide.timeQuestions;
        return reinterpret_cast<t_fstPtrInt> (&hostSide.time);
    default:
        return 0;
    }
}

// The events of one block in the interface's layout: a count, padding, pointers.
class Events
{
public:
    void add (int deltaFrames, std::array<unsigned char, 3> bytes)
    {
        auto event = std::make_unique<t_fstMidiEvent> ();
        event->type = kVstMidiType;
        event->byteSize = sizeof (t_fstMidiEvent);
        event->deltaFrames = deltaFrames;
        std::copy (bytes.begin (), bytes.end (), event->midiData);
        events.push_back (std::move (event));
    }

    t_fstEvents* record ()
    {
        storage.assign (sizeof (t_fstEvents) / sizeof (void*) + events.size (), nullptr);
        auto* list = reinterpret_cast<t_fstEvents*> (storage.data ());
        list->numEvents = static_cast<int> (events.size ());
        for (std::size_t i = 0; i < events.size (); ++i)
            list->events[i] = reinterpret_cast<t_fstEvent*> (events[i].get ());
        return list;
    }

private:
    std::vector<std::unique_ptr<t_fstMidiEvent>> events;
    std::vector<void*> storage;
};

struct Stereo
{
    std::vector<float> left;
    std::vector<float> right;
};

// One instance between effOpen and effClose.
class Instance
{
public:
    explicit Instance (EntryPoint entry) : effect (entry (&answer))
    {
        if (effect == nullptr)
            throw std::runtime_error ("no instance");
        call (effOpen);
    }
    ~Instance () { call (effClose); }
    Instance (const Instance&) = delete;
    Instance& operator= (const Instance&) = delete;

    t_fstPtrInt call (int opcode, int index = 0, t_fstPtrInt value = 0, void* ptr = nullptr, float opt = 0.0f)
    {
        return effect->dispatcher (effect, opcode, index, value, ptr, opt);
    }

    std::string text (int opcode, int index = 0, t_fstPtrInt value = 0)
    {
        std::array<char, 256> buffer;
        buffer.fill ('#');
        call (opcode, index, value, buffer.data ());
        const auto end = std::find (buffer.begin (), buffer.end (), '\0');
        EXPECT_NE (end, buffer.end ()) << "no end of text, opcode " << opcode;
        return { buffer.begin (), end };
    }

    std::vector<unsigned char> chunk (int isProgram)
    {
        void* data = nullptr;
        const auto size = call (effGetChunk, isProgram, 0, &data);
        const auto* first = static_cast<const unsigned char*> (data);
        return { first, first + size };
    }

    void start (float rate)
    {
        call (effSetSampleRate, 0, 0, nullptr, rate);
        call (effSetBlockSize, 0, blockSize);
        call (effMainsChanged, 0, 1);
    }

    Stereo render (int blocks)
    {
        Stereo sound;
        std::array<float, blockSize> left;
        std::array<float, blockSize> right;
        float* outputs[] = { left.data (), right.data () };
        for (int i = 0; i < blocks; ++i)
        {
            left.fill (99.0f);
            right.fill (99.0f);
            effect->processReplacing (effect, nullptr, outputs, blockSize);
            sound.left.insert (sound.left.end (), left.begin (), left.end ());
            sound.right.insert (sound.right.end (), right.begin (), right.end ());
        }
        return sound;
    }

    AEffect* effect;
};

float peak (const std::vector<float>& samples, std::size_t first, std::size_t last)
{
    float largest = 0.0f;
    for (std::size_t i = first; i < last; ++i)
        largest = std::max (largest, std::abs (samples[i]));
    return largest;
}

// The library is loaded from a folder of its own, where no bank of the user's lies beside it. It finds none
// of the user's settings, and no screen for a message box that would wait for somebody.
class OutsideHost : public testing::Test
{
protected:
    static void SetUpTestSuite ()
    {
        folder = std::make_unique<TemporaryFolder> ();
        setenv ("XDG_CONFIG_HOME", folder->folder ().c_str (), 1);
        unsetenv ("DISPLAY");
        const auto copy = *folder / "Brimvale.so";
        std::filesystem::copy_file (BRIMVALE_LIBRARY, copy);
        library = dlopen (copy.c_str (), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE (library, nullptr) << dlerror ();
    }
    static void TearDownTestSuite ()
    {
        if (library != nullptr)
            dlclose (library);
        folder.reset ();
    }
    void SetUp () override { hostSide = HostSide (); }

    static EntryPoint entry (const char* name = "VSTPluginMain")
    {
        return reinterpret_cast<EntryPoint> (dlsym (library, name));
    }

    static inline std::unique_ptr<TemporaryFolder> folder;
    static inline void* library = nullptr;
};

TEST_F (OutsideHost, EveryEntryPointMakesAnInstanceAndRefusesAHostWithoutAVersion)
{
    for (const char* name : { "VSTPluginMain", "main", "MAIN" })
    {
        ASSERT_NE (entry (name), nullptr) << name;
        hostSide.version = 0;
        EXPECT_EQ (entry (name) (&answer), nullptr) << name;
        hostSide.version = kVstVersion;
        AEffect* effect = entry (name) (&answer);
        ASSERT_NE (effect, nullptr) << name;
        EXPECT_EQ (effect->dispatcher (effect, effClose, 0, 0, nullptr, 0.0f), 1) << name;
    }
}

TEST_F (OutsideHost, TheRecordTellsWhatTheInstrumentIs)
{
    const Instance instance (entry ());
    const AEffect& record = *instance.effect;
    EXPECT_EQ (record.magic, kEffectMagic);
    EXPECT_EQ (record.numPrograms, programs);
    EXPECT_EQ (record.numParams, parameters);
    EXPECT_EQ (record.numInputs, 0);
    EXPECT_EQ (record.numOutputs, 2);
    EXPECT_EQ (record.uniqueID, CCONST ('Q', 'n', 'r', 'k'));
    EXPECT_EQ (record.version, 1);
    EXPECT_EQ (record.initialDelay, 0);
    EXPECT_EQ (record.float1, 1.0f);
    EXPECT_NE (record.object, nullptr);
    for (const auto function : { record.process, record.processReplacing })
        EXPECT_NE (function, nullptr);
    EXPECT_NE (record.setParameter, nullptr);
    EXPECT_NE (record.getParameter, nullptr);

    const auto flags = static_cast<std::uint32_t> (record.flags); // the interface's flags have 32 bits
    constexpr std::uint32_t needed = effFlagsCanReplacing | effFlagsProgramChunks | effFlagsIsSynth;
    EXPECT_EQ (flags & ~static_cast<std::uint32_t> (effFlagsHasEditor), needed)
        << "and no other but the editor's";
}

TEST_F (OutsideHost, AnswersWhoItIsAndWhatItCanDo)
{
    Instance instance (entry ());
    EXPECT_EQ (instance.text (effGetEffectName), "Brimvale");
    EXPECT_EQ (instance.text (effGetProductString), "Brimvale");
    EXPECT_EQ (instance.text (effGetVendorString), "corvanex.com");
    EXPECT_EQ (instance.call (effGetVendorVersion), 1);
    EXPECT_EQ (instance.call (effGetVstVersion), kVstVersion);
    EXPECT_EQ (instance.call (effGetPlugCategory), kPlugCategSynth);
    EXPECT_EQ (instance.call (effIdentify), CCONST ('N', 'v', 'E', 'f'));
    const std::vector<std::pair<std::string, int>> abilities = {
        { "receiveVstEvents", 1 },    { "receiveVstMidiEvent", 1 }, { "sendVstMidiEvent", -1 },
        { "receiveVstTimeInfo", -1 }, { "ReceiveVstEvents", -1 },   { "", -1 }
    };
    for (auto [ability, expected] : abilities)
        EXPECT_EQ (instance.call (effCanDo, 0, 0, ability.data ()), expected) << ability;
}

TEST_F (OutsideHost, DescribesItsTwoOutputsAndNothingElse)
{
    Instance instance (entry ());
    for (int pin = 0; pin < 2; ++pin)
    {
        // The published record is larger than these headers know, so there is room behind it.
        std::array<unsigned char, 256> room;
        room.fill (0x5A);
        auto* properties = reinterpret_cast<t_fstPinProperties*> (room.data ());
        EXPECT_EQ (instance.call (effGetOutputProperties, pin, 0, properties), 1);
        EXPECT_STREQ (properties->label, pin == 0 ? "Brimvale 1" : "Brimvale 2");
        EXPECT_EQ (properties->flags, 3) << "active, stereo";
        EXPECT_EQ (properties->arrangementType, 0x5A5A5A5A) << "left as it was";
        EXPECT_TRUE (std::all_of (room.begin () + sizeof (t_fstPinProperties), room.end (),
                                  [] (int b) { return b == 0x5A; }));
    }
    t_fstPinProperties properties = {};
    EXPECT_EQ (instance.call (effGetOutputProperties, 2, 0, &properties), 0);
    EXPECT_EQ (instance.call (effGetOutputProperties, -1, 0, &properties), 0);
}

TEST_F (OutsideHost, ProgramsHaveNamesThatCanBeReadAndChanged)
{
    Instance instance (entry ());
    EXPECT_EQ (instance.call (effGetProgram), 0);
    for (int program = 0; program < programs; ++program)
    {
        instance.call (effSetProgram, 0, program);
        EXPECT_EQ (instance.call (effGetProgram), program);
        const std::string name = instance.text (effGetProgramName);
        EXPECT_FALSE (name.empty ()) << program;
        EXPECT_LE (name.size (), 24u) << program;
        EXPECT_EQ (instance.text (effGetProgramNameIndexed, program, -1), name) << program;
    }
    instance.call (effSetProgram, 0, programs);
    EXPECT_EQ (instance.call (effGetProgram), programs - 1) << "there is no such program";
    std::array<char, 64> untouched = { 'x' };
    EXPECT_EQ (instance.call (effGetProgramNameIndexed, programs, -1, untouched.data ()), 0);
    EXPECT_EQ (untouched[0], 'x');

    char longName[] = "A name of twenty-four ch and more";
    instance.call (effSetProgramName, 0, 0, longName);
    EXPECT_EQ (instance.text (effGetProgramName), "A name of twenty-four ch");
}

TEST_F (OutsideHost, ParametersHaveShortTextsAndKeepTheirValues)
{
    Instance instance (entry ());
    for (int index = 0; index < parameters; ++index)
    {
        const std::string name = instance.text (effGetParamName, index);
        EXPECT_FALSE (name.empty ()) << index;
        for (const int opcode : { effGetParamName, effGetParamLabel, effGetParamDisplay })
            EXPECT_LE (instance.text (opcode, index).size (), 24u) << index;
        EXPECT_EQ (instance.call (effCanBeAutomated, index), 1) << index;
        for (const float value : { 0.0f, 0.25f, 1.0f })
        {
            instance.effect->setParameter (instance.effect, index, value);
            EXPECT_EQ (instance.effect->getParameter (instance.effect, index), value) << index;
        }
    }
    EXPECT_EQ (instance.effect->getParameter (instance.effect, parameters), 0.0f);
    EXPECT_EQ (instance.effect->getParameter (instance.effect, -1), 0.0f);
}

TEST_F (OutsideHost, ChunksHoldNamesAndValuesAndBringThemBack)
{
    Instance instance (entry ());
    constexpr int program = 5;
    constexpr int parameter = 3;
    instance.call (effSetProgram, 0, program);
    const auto bank = instance.chunk (0);
    const auto single = instance.chunk (1);
    ASSERT_EQ (bank.size (), static_cast<std::size_t> (bankBytes));
    ASSERT_EQ (single.size (), static_cast<std::size_t> (programBytes));
    const auto* record = bank.data () + firstProgramByte + program * programBytes;
    EXPECT_EQ (std::memcmp (record, single.data (), single.size ()), 0);
    const std::string name = instance.text (effGetProgramName);
    EXPECT_EQ (std::string (reinterpret_cast<const char*> (single.data ()), name.size ()), name);
    float value = -1.0f;
    std::memcpy (&value, single.data () + 24 + parameter * sizeof value, sizeof value);
    EXPECT_EQ (instance.effect->getParameter (instance.effect, parameter), value);

    const float changed = value < 0.5f ? 0.75f : 0.25f;
    for (const int isProgram : { 0, 1 })
    {
        auto stored = isProgram == 1 ? single : bank;
        char otherName[] = "Changed";
        instance.call (effSetProgramName, 0, 0, otherName);
        instance.effect->setParameter (instance.effect, parameter, changed);
        EXPECT_EQ (instance.text (effGetProgramName), "Changed");
        EXPECT_EQ (
            instance.call (effSetChunk, isProgram, static_cast<t_fstPtrInt> (stored.size ()), stored.data ()),
            1);
        EXPECT_EQ (instance.text (effGetProgramName), name);
        EXPECT_EQ (instance.effect->getParameter (instance.effect, parameter), value);
        EXPECT_EQ (instance.chunk (0), bank);

        stored.resize (stored.size () + 1, 0x11);
        std::fill (stored.begin (), stored.end (), static_cast<unsigned char> (0x11));
        EXPECT_EQ (
            instance.call (effSetChunk, isProgram, static_cast<t_fstPtrInt> (stored.size ()), stored.data ()),
            1);
        EXPECT_EQ (instance.chunk (0), bank) << "a chunk that is too large changes nothing";
    }
}

// Quirk: a stamp above 0 acts one sample before its place, so that stamps 0 and 1 fall together. Songs
// rendered before sound the same only if this stays.
TEST_F (OutsideHost, ANoteSoundsFromItsOwnSampleOnBothOutputs)
{
    const auto noteAt = [] (int stamp)
    {
        Instance instance (entry ());
        instance.start (48000.0f);
        EXPECT_EQ (hostSide.wantMidi, 1) << "asked for MIDI when it was switched on";
        hostSide.wantMidi = 0;
        Events events;
        events.add (stamp, { 0x90, 60, 100 });
        instance.call (effProcessEvents, 0, 0, events.record ());
        Stereo sound = instance.render (8);
        EXPECT_EQ (sound.left, sound.right);
        return sound.left;
    };
    const std::vector<float> atOnce = noteAt (0);
    EXPECT_NE (atOnce[0], 0.0f);
    EXPECT_GT (peak (atOnce, 0, atOnce.size ()), 0.01f);
    for (const int stamp : { 1, 2, 100, blockSize - 1 })
    {
        const std::vector<float> later = noteAt (stamp);
        const auto start = later.begin () + (stamp - 1);
        EXPECT_TRUE (std::all_of (later.begin (), start, [] (float sample) { return sample == 0.0f; }))
            << stamp;
        EXPECT_TRUE (std::equal (start, later.end (), atOnce.begin ())) << stamp;
    }
}

TEST_F (OutsideHost, ANoteEndsAfterItsRelease)
{
    Instance instance (entry ());
    instance.start (44100.0f);
    Events on;
    on.add (0, { 0x90, 60, 100 });
    instance.call (effProcessEvents, 0, 0, on.record ());
    EXPECT_GT (peak (instance.render (4).left, 0, 4 * blockSize), 0.01f);
    Events off;
    off.add (0, { 0x80, 60, 0 });
    instance.call (effProcessEvents, 0, 0, off.record ());
    instance.render (44100 * 30 / blockSize);
    const Stereo after = instance.render (4);
    EXPECT_EQ (peak (after.left, 0, after.left.size ()), 0.0f);
}

TEST_F (OutsideHost, TwoInstancesDoNotDisturbEachOther)
{
    Instance one (entry ());
    Instance two (entry ());
    const auto bank = two.chunk (0);
    one.start (44100.0f);
    two.start (96000.0f);
    one.call (effSetProgram, 0, 7);
    one.effect->setParameter (one.effect, 3, 0.123f);
    Events on;
    on.add (0, { 0x90, 60, 100 });
    one.call (effProcessEvents, 0, 0, on.record ());
    EXPECT_GT (peak (one.render (8).left, 0, 8 * blockSize), 0.001f);
    EXPECT_EQ (peak (two.render (8).left, 0, 8 * blockSize), 0.0f);
    EXPECT_EQ (two.call (effGetProgram), 0);
    EXPECT_EQ (two.chunk (0), bank);
}
}
