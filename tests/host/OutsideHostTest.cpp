// The built library as a host meets it that shares no source with it: the interface comes from another
// project's headers, the library from its file, and nothing of ours is linked. What the calls do is decided
// elsewhere; here they have to be where the interface has them.
#include "tests/host/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <map>
#include <pluginterfaces/fst/aeffectx.h>
#include <vector>

namespace
{
using EntryPoint = AEffect* (*)(audioMasterCallback);
using Sound = std::vector<float>;

constexpr int blockSize = 512;
constexpr int length = 8 * blockSize; // of what is rendered
constexpr int copyProgram = 30;       // these two were withdrawn; some hosts still call them
constexpr int setBlockSizeAndSampleRate = 43;

// What the library asks its host, and how often.
t_fstPtrInt hostVersion = kVstVersion;
std::map<int, int> questions;

t_fstPtrInt answer (AEffect*, int opcode, int, t_fstPtrInt, void* const, float)
{
    ++questions[opcode];
    return opcode == audioMasterVersion ? hostVersion : 0;
}

// The library is loaded from a folder of its own, where no bank of the user's lies beside it. It finds none
// of the user's settings, and no screen for a message box that would wait for somebody.
EntryPoint entry (const char* name)
{
    static const TemporaryFolder folder;
    static void* const library = []
    {
        setenv ("XDG_CONFIG_HOME", folder.folder ().c_str (), 1);
        unsetenv ("DISPLAY");
        std::filesystem::copy_file (BRIMVALE_LIBRARY, folder / "Brimvale.so");
        return dlopen ((folder / "Brimvale.so").c_str (), RTLD_NOW | RTLD_LOCAL);
    }();
    return reinterpret_cast<EntryPoint> (dlsym (library, name));
}

// One instance between effOpen and effClose.
class Instance
{
public:
    explicit Instance (const char* name = "VSTPluginMain") : effect (entry (name) (&answer))
    {
        call (effOpen);
    }
    ~Instance () { EXPECT_EQ (call (effClose), 1); }
    Instance (const Instance&) = delete;
    Instance& operator= (const Instance&) = delete;

    t_fstPtrInt call (int opcode, int index = 0, t_fstPtrInt value = 0, void* ptr = nullptr, float opt = 0.0f)
    {
        return effect->dispatcher (effect, opcode, index, value, ptr, opt);
    }

    // A note; the left channel, and the right one must be the same.
    Sound play (bool byTheOldEntry)
    {
        call (effMainsChanged, 0, 1);
        t_fstMidiEvent event = {};
        event.type = kVstMidiType;
        event.byteSize = sizeof event;
        std::ranges::copy (std::array{ '\x90', '\x3C', '\x64' }, event.midiData);
        std::array<void*, 4> listWords = {};
        auto* list = reinterpret_cast<t_fstEvents*> (listWords.data ());
        list->numEvents = 1;
        list->events[0] = reinterpret_cast<t_fstEvent*> (&event);
        call (effProcessEvents, 0, 0, list);

        Sound left (length, 99.0f);
        Sound right = left;
        const auto process = byTheOldEntry ? effect->process : effect->processReplacing;
        for (int first = 0; first < length; first += blockSize)
        {
            float* outputs[] = { left.data () + first, right.data () + first };
            process (effect, nullptr, outputs, blockSize);
        }
        EXPECT_EQ (left, right);
        return left;
    }

    AEffect* effect;
};

TEST (OutsideHost, EveryEntryPointMakesAnInstanceAndRefusesAHostWithoutAVersion)
{
    for (const char* name : { "VSTPluginMain", "main", "MAIN" })
    {
        ASSERT_NE (entry (name), nullptr) << name;
        hostVersion = 0;
        EXPECT_EQ (entry (name) (&answer), nullptr) << name;
        hostVersion = kVstVersion;
        EXPECT_EQ (Instance (name).effect->magic, kEffectMagic) << name;
    }
}

TEST (OutsideHost, RecordTextsNumbersAndChunksAreWhereTheyShouldBe)
{
    constexpr int parameter = 3;
    Instance instance;
    const AEffect& record = *instance.effect;
    EXPECT_EQ (
        (std::array<long, 7>{ record.numPrograms, record.numParams, record.numInputs, record.numOutputs,
                              record.uniqueID, record.version, record.flags & ~effFlagsHasEditor }),
        (std::array<long, 7>{ 128, 38, 0, 2, CCONST ('Q', 'n', 'r', 'k'), 1,
                              effFlagsCanReplacing | effFlagsProgramChunks | effFlagsIsSynth }));
    EXPECT_EQ (record.float1, 1.0f);

    char ability[] = "receiveVstMidiEvent";
    char name[] = "A name";
    std::array<char, 256> room = {}; // the published record is larger than these headers know
    auto* pin = reinterpret_cast<t_fstPinProperties*> (room.data ());
    std::array<short, 4>* edges = nullptr; // top, left, bottom, right
    instance.call (effSetProgram, 0, 5);
    instance.call (effSetProgramName, 0, 0, name);
    instance.effect->setParameter (instance.effect, parameter, 0.25f);
    using Row = std::tuple<int, int, void*, int>;
    for (const auto& [opcode, index, ptr, expected] :
         { Row{ effGetVendorVersion, 0, nullptr, 1 }, Row{ effGetVstVersion, 0, nullptr, kVstVersion },
           Row{ effGetPlugCategory, 0, nullptr, kPlugCategSynth },
           Row{ effIdentify, 0, nullptr, CCONST ('N', 'v', 'E', 'f') },
           Row{ effCanBeAutomated, 0, nullptr, 1 }, Row{ effCanDo, 0, ability, 1 },
           Row{ effGetOutputProperties, 0, pin, 1 }, Row{ effEditGetRect, 0, &edges, 1 },
           Row{ effGetProgram, 0, nullptr, 5 }, Row{ copyProgram, 127, nullptr, 1 } })
        ASSERT_EQ (instance.call (opcode, index, 0, ptr), expected) << opcode;
    EXPECT_STREQ (pin->label, "Brimvale 1");
    EXPECT_EQ (pin->flags, 3) << "active, stereo";
    EXPECT_TRUE ((*edges)[2] > (*edges)[0] && (*edges)[3] > (*edges)[1]);
    using Row2 = std::tuple<int, int, const char*>;
    for (const auto& [opcode, index, expected] :
         { Row2{ effGetEffectName, 0, "Brimvale" }, Row2{ effGetProductString, 0, "Brimvale" },
           Row2{ effGetVendorString, 0, "corvanex.com" }, Row2{ effGetProgramName, 0, name },
           Row2{ effGetProgramNameIndexed, 127, name }, Row2{ effGetParamName, 37, "NonUsed  " },
           Row2{ effGetParamDisplay, parameter, "0.250" }, Row2{ effGetParamLabel, parameter, "" } })
    {
        std::array<char, 256> text;
        text.fill ('#');
        text.back () = '\0';
        instance.call (opcode, index, -1, text.data ());
        EXPECT_STREQ (text.data (), expected) << opcode;
    }
    for (const auto& [isProgram, size] : { std::pair{ 0, 23896 }, std::pair{ 1, 176 } })
    {
        void* data = nullptr;
        ASSERT_EQ (instance.call (effGetChunk, isProgram, 0, &data), size);
        const auto* bytes = static_cast<const char*> (data);
        std::vector<char> chunk (bytes, bytes + size);
        instance.effect->setParameter (instance.effect, parameter, 0.75f);
        instance.call (effSetChunk, isProgram, size, chunk.data ());
        EXPECT_EQ (instance.effect->getParameter (instance.effect, parameter), 0.25f) << isProgram;
    }
}

TEST (OutsideHost, NotesSoundThroughBothEntriesAndAtTheRateThatIsSet)
{
    const auto play = [] (int setRate, float rate, bool byTheOldEntry = false)
    {
        Instance instance;
        instance.call (setRate, 0, blockSize, nullptr, rate);
        questions.clear ();
        const Sound sound = instance.play (byTheOldEntry);
        EXPECT_EQ (questions[audioMasterWantMidi], 1);
        return sound;
    };
    const Sound atOnce = play (effSetSampleRate, 48000.0f);
    EXPECT_GT (std::ranges::max (atOnce), 0.01f);
    EXPECT_EQ (play (effSetSampleRate, 48000.0f, true), atOnce);
    EXPECT_EQ (play (setBlockSizeAndSampleRate, 48000.0f), atOnce);
    EXPECT_NE (play (effSetSampleRate, 96000.0f), atOnce) << "the same pitch needs twice as many samples";
}
}
