// What a host does on two threads at once. Built with the thread sanitizer, which reports every access to
// memory that is not ordered; the tests themselves look at what must still be true afterwards.
#include <atomic>
#include <cmath>
#include <cstring>
#include <random>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "platform/HostWindow.h"
#include "plugin/EditorFactory.h"
#include "tests/support/TestSynth.h"

using namespace parameters;
using instrument::BankImage;
using instrument::programCount;

namespace
{
using Clock = std::chrono::steady_clock;

// What the interface thread sets. No two parameters share a value, so a value that went astray is recognised.
float turned (int index, unsigned step)
{
    return (static_cast<float> (index) + static_cast<float> (step % 8u) / 8.0f) / 40.0f;
}

class Threads : public testing::Test
{
protected:
    Threads ()
    {
        synth.host.recordsCalls = false; // two threads call
        synth.host.hasTime = true;
    }

    static constexpr int blockFrames = 64;

    BankImage bank ()
    {
        void* data = nullptr;
        synth.call (effGetChunk, 0, 0, &data);
        BankImage image;
        std::memcpy (&image, data, sizeof image);
        return image;
    }

    // With the next block; the list lives until the next call.
    void play (std::initializer_list<std::array<int, 3>> messages)
    {
        list.clear ();
        const auto byte = [] (int value) { return static_cast<std::uint8_t> (value); };
        for (const auto& [status, data1, data2] : messages)
            list.add (0, { byte (status), byte (data1), byte (data2) });
        synth.call (effProcessEvents, 0, 0, &list.record ());
    }

    float render ()
    {
        std::array<float, blockFrames> left;
        std::array<float, blockFrames> right;
        float* outputs[] = { left.data (), right.data () };
        synth.effect->processReplacing (synth.effect, nullptr, outputs, blockFrames);
        synth.host.time.samplePos += blockFrames;
        synth.host.time.ppqPos += 0.003;
        float peak = 0.0f;
        for (const float sample : left)
            peak = std::max (peak, std::abs (sample));
        return peak;
    }

    // `onAudio` before every block on a thread of its own, `onInterface` again and again on this one.
    template <typename OnAudio, typename OnInterface>
    void race (std::chrono::seconds time, OnAudio onAudio, OnInterface onInterface)
    {
        std::atomic<bool> running = true;
        std::thread audio (
            [&]
            {
                std::mt19937 random (7);
                while (running)
                {
                    onAudio (random);
                    ASSERT_TRUE (std::isfinite (render ()));
                }
            });
        std::mt19937 random (11);
        for (const auto end = Clock::now () + time; Clock::now () < end;)
            onInterface (random);
        running = false;
        audio.join ();
    }

    host::BlockEvents list;
    HostedSynth synth{ editorFactory () };
};

bool oneIn (std::mt19937& random, unsigned n)
{
    return random () % n == 0;
}

// As a program is stored once it has been selected.
float settled (int index, float value)
{
    return storableValue (index, usableValue (index, value), false);
}
}

// A menu, MIDI and a new sample rate choose programs at the same time: none of them is changed by that.
TEST_F (Threads, SelectingDamagesNoProgram)
{
    const BankImage before = bank ();
    race (
        std::chrono::seconds (5),
        [this] (std::mt19937& random) {
            play ({ { 0xC0, static_cast<int> (random () % 128u), 0 }, { 0x90, 60, 90 }, { 0x80, 60, 0 } });
        },
        [this] (std::mt19937& random)
        {
            synth.call (effSetProgram, 0, static_cast<VstIntPtr> (random () % 128u));
            if (oneIn (random, 16))
                synth.call (effSetSampleRate, 0, 0, nullptr, oneIn (random, 2) ? 48000.0f : 44100.0f);
        });
    const BankImage after = bank ();
    for (std::size_t program = 0; program < programCount; ++program)
    {
        EXPECT_EQ (std::memcmp (before.programs[program].name, after.programs[program].name, 24), 0);
        for (std::size_t index = 0; index < parameterCount; ++index)
        {
            const float loaded = before.programs[program].values[index];
            const float now = after.programs[program].values[index];
            EXPECT_TRUE (now == loaded || now == settled (static_cast<int> (index), loaded))
                << "program " << program << ", parameter " << index << ": " << loaded << " became " << now;
        }
    }
}

// Everything that the two threads of a host can do.
TEST_F (Threads, EverythingAtOnce)
{
    const auto window = platform::HostWindow::make (1000, 700);
    ASSERT_NE (window, nullptr) << "no display";
    const BankImage factory = bank ();
    synth.host.time.tempo = 120.0;
    synth.host.time.flags = kVstTempoValid | kVstPpqPosValid;

    int held = 30; // the audio thread's
    const auto onAudio = [&] (std::mt19937& random)
    {
        const int note = static_cast<int> (30 + random () % 60u);
        const int controller = static_cast<int> (random () % 119u);
        const int program =
            oneIn (random, 20) ? static_cast<int> (random () % 128u) : synth.object ().getProgram ();
        play ({ { 0x80, held, 0 },
                { 0xB0, controller, static_cast<int> (random () % 128u) },
                { 0xC0, program, 0 },
                { 0x90, note, 100 },
                { 0xE0, 0, static_cast<int> (random () % 128u) } });
        held = note;
        if (oneIn (random, 30))
            synth.set (static_cast<VstInt32> (random () % parameterCount), 0.5f);
    };
    unsigned turn = 0;
    const auto onInterface = [&] (std::mt19937& random)
    {
        ++turn;
        for (int index = 0; index < parameterCount; ++index)
            synth.set (index, turned (index, turn));
        synth.set (commandKeyboard,
                   static_cast<float> (1u + random () % 127u) / 128.0f); // note 0 is no note
        if (oneIn (random, 4))
            synth.set (commandKeyboard, -1.0f);
        synth.set (commandLearn, static_cast<float> (random () % parameterCount));
        if (oneIn (random, 8))
            synth.set (commandLearn, static_cast<float> (1000u + random () % parameterCount));
        synth.call (effSetProgram, 0, static_cast<VstIntPtr> (random () % 128u));
        if (oneIn (random, 16))
        {
            void* data = nullptr;
            const VstIntPtr bytes = synth.call (effGetChunk, 0, 0, &data);
            synth.call (effSetChunk, 0, bytes, data);
        }
        if (oneIn (random, 8))
            synth.object ().instrument ().setAdditions ({ oneIn (random, 2), oneIn (random, 2) });
        if (oneIn (random, 16))
            synth.call (effCopyProgram, static_cast<VstInt32> (random () % 128u));
        if (oneIn (random, 32))
            synth.call (effSetSampleRate, 0, 0, nullptr, oneIn (random, 2) ? 48000.0f : 44100.0f);
        if (turn % 128u == 1)
        {
            ASSERT_EQ (synth.call (effEditOpen, 0, 0, window->handle ()), 1);
        }
        synth.call (effEditIdle);
        if (turn % 128u == 0)
            synth.call (effEditClose);
    };
    race (std::chrono::seconds (15), onAudio, onInterface);
    synth.call (effEditClose);

    const BankImage now = bank ();
    for (std::size_t program = 0; program < programCount; ++program)
    {
        for (int index = 0; index < parameterCount; ++index)
        {
            const auto i = static_cast<std::size_t> (index);
            const float value = now.programs[program].values[i];
            std::set<float> possible = { 0.5f };        // from the audio thread, and a detent
            for (const auto& record : factory.programs) // copied about
                possible.insert ({ record.values[i], settled (index, record.values[i]) });
            for (unsigned step = 0; step < 8; ++step)
                possible.insert (turned (index, step));
            for (int data = 0; data < 128; ++data)
                possible.insert (static_cast<float> (data) / 127.0f);
            EXPECT_TRUE (possible.contains (value))
                << "program " << program << ", parameter " << index << " holds " << value;
        }
    }

    // Whoever pressed a key has let it go, and the pedal goes up; so everything fades out.
    synth.object ().instrument ().setAdditions ({});
    synth.set (commandKeyboard, -1.0f);
    synth.set (paramVolume, 1.0f);
    play ({ { 0x80, held, 0 } });
    constexpr int longestFade = 20 * 48000 / blockFrames;
    for (int block = 0; block < longestFade; ++block)
        render ();
    EXPECT_EQ (render (), 0.0f) << "a note goes on";
}
