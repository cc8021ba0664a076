// The built library as a host meets it that shares no source with it: the interface comes from another
// project's headers, the library from its file, and nothing of ours is linked. What the calls do is decided
// elsewhere; here they have to be where the interface has them.
#include "tests/host/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <pluginterfaces/fst/aeffectx.h>
#include <string>
#include <vector>

namespace
{
using EntryPoint = AEffect* (*)(audioMasterCallback);
using Sound = std::vector<float>;

constexpr int blockSize = 512;
constexpr int copyProgram = 30; // these two were withdrawn; some hosts still call them
constexpr int setBlockSizeAndSampleRate = 43;

// What the library asks its host, and how often.
t_fstPtrInt hostVersion = kVstVersion;
std::map<int, int> questions;
t_fstTimeInfo now = {};

t_fstPtrInt answer (AEffect*, int opcode, int, t_fstPtrInt, void* const, float)
{
    ++questions[opcode];
    if (opcode == audioMasterVersion)
        return hostVersion;
    return opcode == audioMasterGetTime ? reinterpret_cast<t_fstPtrInt> (&now) : 0;
}

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
    ~Instance () { EXPECT_EQ (call (effClose), 1); }
    Instance (const Instance&) = delete;
    Instance& operator= (const Instance&) = delete;

    t_fstPtrInt call (int opcode, int index = 0, t_fstPtrInt value = 0, void* ptr = nullptr, float opt = 0.0f)
    {
        return effect->dispatcher (effect, opcode, index, value, ptr, opt);
    }
    std::string text (int opcode, int index)
    {
        std::array<char, 256> buffer;
        buffer.fill ('#');
        call (opcode, index, -1, buffer.data ());
        return { buffer.begin (), std::find (buffer.begin (), buffer.end (), '\0') };
    }
    void set (int index, float value) { effect->setParameter (effect, index, value); }
    float get (int index) { return effect->getParameter (effect, index); }
    void send (int deltaFrames, std::array<char, 3> bytes)
    {
        event = {};
        event.type = kVstMidiType;
        event.byteSize = sizeof event;
        event.deltaFrames = deltaFrames;
        std::copy (bytes.begin (), bytes.end (), event.midiData);
        auto* list = reinterpret_cast<t_fstEvents*> (listWords.data ());
        list->numEvents = 1;
        list->events[0] = reinterpret_cast<t_fstEvent*> (&event);
        call (effProcessEvents, 0, 0, list);
    }
    // The left channel, and the right one must be the same.
    Sound render (int blocks, bool byTheOldEntry)
    {
        Sound left (static_cast<std::size_t> (blocks * blockSize), 99.0f);
        Sound right = left;
        const auto process = byTheOldEntry ? effect->process : effect->processReplacing;
        for (int first = 0; first < blocks * blockSize; first += blockSize)
        {
            float* outputs[] = { left.data () + first, right.data () + first };
            process (effect, nullptr, outputs, blockSize);
        }
        EXPECT_EQ (left, right);
        return left;
    }

    AEffect* effect;

private:
    t_fstMidiEvent event = {}; // both live until the block that they are for has been rendered
    std::array<void*, 4> listWords = {};
};

float peak (const Sound& sound)
{
    return std::abs (*std::ranges::max_element (sound, {}, [] (float sample) { return std::abs (sample); }));
}

// The library is loaded from a folder of its own, where no bank of the user's lies beside it. It finds none
// of the user's settings, and no screen for a message box that would wait for somebody.
class OutsideHost : public testing::Test
{
protected:
    static void SetUpTestSuite ()
    {
        setenv ("XDG_CONFIG_HOME", folder.folder ().c_str (), 1);
        unsetenv ("DISPLAY");
        const auto copy = folder / "Brimvale.so";
        std::filesystem::copy_file (BRIMVALE_LIBRARY, copy);
        library = dlopen (copy.c_str (), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE (library, nullptr) << dlerror ();
    }
    static EntryPoint entry (const char* name = "VSTPluginMain")
    {
        return reinterpret_cast<EntryPoint> (dlsym (library, name));
    }

    static inline const TemporaryFolder folder;
    static inline void* library = nullptr;
    static constexpr char noteOn = static_cast<char> (0x90);
};

TEST_F (OutsideHost, EveryEntryPointMakesAnInstanceAndRefusesAHostWithoutAVersion)
{
    for (const char* name : { "VSTPluginMain", "main", "MAIN" })
    {
        ASSERT_NE (entry (name), nullptr) << name;
        hostVersion = 0;
        EXPECT_EQ (entry (name) (&answer), nullptr) << name;
        hostVersion = kVstVersion;
        const Instance instance (entry (name));
        EXPECT_EQ (instance.effect->magic, kEffectMagic) << name;
    }
}

TEST_F (OutsideHost, SaysWhatItIs)
{
    Instance instance (entry ());
    const AEffect& record = *instance.effect;
    EXPECT_EQ (record.numPrograms, 128);
    EXPECT_EQ (record.numParams, 38);
    EXPECT_EQ (record.numInputs, 0);
    EXPECT_EQ (record.numOutputs, 2);
    EXPECT_EQ (record.uniqueID, CCONST ('Q', 'n', 'r', 'k'));
    EXPECT_EQ (record.version, 1);
    EXPECT_EQ (record.float1, 1.0f);
    EXPECT_EQ (record.flags & ~effFlagsHasEditor,
               effFlagsCanReplacing | effFlagsProgramChunks | effFlagsIsSynth);

    char ability[] = "receiveVstMidiEvent";
    const std::tuple<int, void*, int> answers[] = { { effGetVendorVersion, nullptr, 1 },
                                                    { effGetVstVersion, nullptr, kVstVersion },
                                                    { effGetPlugCategory, nullptr, kPlugCategSynth },
                                                    { effIdentify, nullptr, CCONST ('N', 'v', 'E', 'f') },
                                                    { effCanBeAutomated, nullptr, 1 },
                                                    { effCanDo, ability, 1 } };
    for (const auto& [opcode, ptr, expected] : answers)
        EXPECT_EQ (instance.call (opcode, 0, 0, ptr), expected) << opcode;

    std::array<char, 256> room = {}; // the published record is larger than these headers know
    auto* pin = reinterpret_cast<t_fstPinProperties*> (room.data ());
    EXPECT_EQ (instance.call (effGetOutputProperties, 1, 0, pin), 1);
    EXPECT_STREQ (pin->label, "Brimvale 2");
    EXPECT_EQ (pin->flags, 3) << "active, stereo";
    std::array<short, 4>* edges = nullptr; // top, left, bottom, right
    ASSERT_EQ (instance.call (effEditGetRect, 0, 0, &edges), 1);
    EXPECT_GT ((*edges)[2], (*edges)[0]);
    EXPECT_GT ((*edges)[3], (*edges)[1]);
}

TEST_F (OutsideHost, ProgramsParametersAndChunksAreReached)
{
    constexpr int program = 5;
    constexpr int parameter = 3;
    constexpr std::size_t programBytes = 176;
    Instance instance (entry ());
    instance.call (effSetProgram, 0, program);
    char name[] = "A name of twenty-four ch and more";
    instance.call (effSetProgramName, 0, 0, name);
    instance.set (parameter, 0.25f);
    const std::tuple<int, int, const char*> texts[] = { { effGetEffectName, 0, "Brimvale" },
                                                        { effGetProductString, 0, "Brimvale" },
                                                        { effGetVendorString, 0, "corvanex.com" },
                                                        { effGetProgramName, 0, "A name of twenty-four ch" },
                                                        { effGetProgramNameIndexed, program,
                                                          "A name of twenty-four ch" },
                                                        { effGetParamName, 37, "NonUsed  " },
                                                        { effGetParamDisplay, parameter, "0.250" },
                                                        { effGetParamLabel, parameter, "" } };
    for (const auto& [opcode, index, expected] : texts)
        EXPECT_EQ (instance.text (opcode, index), expected) << opcode;
    EXPECT_EQ (instance.call (copyProgram, 127), 1);
    EXPECT_EQ (instance.call (effGetProgram), program);

    for (const int isProgram : { 0, 1 })
    {
        void* data = nullptr;
        const auto size = static_cast<std::size_t> (instance.call (effGetChunk, isProgram, 0, &data));
        ASSERT_EQ (size, isProgram == 1 ? programBytes : 23896u);
        const auto* bytes = static_cast<const char*> (data);
        std::vector<char> chunk (bytes, bytes + size);
        EXPECT_EQ (std::memcmp (chunk.data () + size - programBytes, name, 24), 0)
            << "the only program, or the last";
        instance.set (parameter, 0.75f);
        EXPECT_EQ (instance.get (parameter), 0.75f);
        instance.call (effSetChunk, isProgram, static_cast<t_fstPtrInt> (size), chunk.data ());
        EXPECT_EQ (instance.get (parameter), 0.25f) << isProgram;
    }
}

TEST_F (OutsideHost, NotesSoundAtTheirPlaceAndAtTheRateThatIsSet)
{
    const auto play = [] (int setRate, float rate, int stamp, bool byTheOldEntry)
    {
        Instance instance (entry ());
        instance.call (setRate, 0, blockSize, nullptr, rate);
        questions.clear ();
        instance.call (effMainsChanged, 0, 1);
        EXPECT_EQ (questions[audioMasterWantMidi], 1);
        instance.send (stamp, { noteOn, 60, 100 });
        return instance.render (8, byTheOldEntry);
    };
    const Sound atOnce = play (effSetSampleRate, 48000.0f, 0, false);
    EXPECT_GT (peak (atOnce), 0.01f);
    EXPECT_EQ (play (effSetSampleRate, 48000.0f, 0, true), atOnce);
    EXPECT_EQ (play (setBlockSizeAndSampleRate, 48000.0f, 0, false), atOnce);
    EXPECT_NE (play (effSetSampleRate, 96000.0f, 0, false), atOnce)
        << "the same pitch needs twice as many samples";
    // An event acts one sample before its stamp; songs keep their timing to the sample.
    const Sound later = play (effSetSampleRate, 48000.0f, blockSize - 1, false);
    EXPECT_EQ (peak (Sound (later.begin (), later.begin () + blockSize - 2)), 0.0f);
    EXPECT_TRUE (std::equal (later.begin () + blockSize - 2, later.end (), atOnce.begin ()));

    Instance synced (entry ());
    int sync = 0;
    while (synced.text (effGetParamName, sync) != "LfoBmpSync" && sync < synced.effect->numParams)
        ++sync;
    synced.set (sync, 1.0f);
    synced.call (effMainsChanged, 0, 1);
    synced.send (0, { noteOn, 60, 100 });
    questions.clear ();
    synced.render (1, false);
    EXPECT_GT (questions[audioMasterGetTime], 0);
}
}
