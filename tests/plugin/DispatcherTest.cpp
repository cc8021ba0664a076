// The instrument as its host reaches it: the record, the opcodes, and bad calls of every kind.
#include <cmath>

#include <gtest/gtest.h>

#include "tests/plugin/HostedSynth.h"

namespace
{
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN ();
constexpr float infinity = std::numeric_limits<float>::infinity ();
}

TEST (DispatcherTest, RecordTellsWhatTheInstrumentIs)
{
    HostedSynth synth;
    const AEffect& record = *synth.effect;
    EXPECT_EQ (record.magic, 0x56737450);    // "VstP"
    EXPECT_EQ (record.uniqueID, 0x516E726B); // "Qnrk"
    EXPECT_EQ (record.numPrograms, 128);
    EXPECT_EQ (record.numParams, 38);
    EXPECT_EQ (record.numInputs, 0);
    EXPECT_EQ (record.numOutputs, 2);
    EXPECT_EQ (record.version, 1);
    EXPECT_EQ (record.ioRatio, 1.0f);
    EXPECT_EQ (record.flags,
               (1 << 4) | (1 << 5) | (1 << 8)); // replacing, program chunks, synth; no editor here
    EXPECT_NE (record.process, nullptr);
    EXPECT_NE (record.processReplacing, nullptr);
    EXPECT_NE (record.processDoubleReplacing, nullptr);
}

TEST (DispatcherTest, WithoutAHostTheRecordKeepsItsDefaults)
{
    FakeHost host;
    VstSynth synth (nullptr, host.services ());
    const AEffect& record = *synth.getAeffect ();
    EXPECT_EQ (record.numInputs, 1);
    EXPECT_EQ (record.uniqueID, 0x4E6F4566); // "NoEf"
    EXPECT_EQ (record.flags, (1 << 4) | (1 << 5));
    EXPECT_EQ (synth.getPlugCategory (), kPlugCategUnknown);
    EXPECT_EQ (render (synth, 100, 100).size (), 100u);
}

TEST (DispatcherTest, Properties)
{
    HostedSynth synth;
    EXPECT_EQ (synth.text (effGetEffectName), "Brimvale");
    EXPECT_EQ (synth.text (effGetProductString), "Brimvale");
    EXPECT_EQ (synth.text (effGetVendorString), "corvanex.com");
    struct Row
    {
        VstInt32 opcode;
        VstIntPtr answer;
    };
    for (const Row& row :
         { Row{ effGetVstVersion, 2400 }, Row{ effGetPlugCategory, 2 }, Row{ effGetVendorVersion, 1 },
           Row{ effCanBeAutomated, 1 }, Row{ effGetProgram, 0 }, Row{ effVendorSpecific, 0 } })
        EXPECT_EQ (synth.call (row.opcode), row.answer) << row.opcode;
    for (const auto& [question, answer] :
         { std::pair{ "receiveVstEvents", 1 }, std::pair{ "receiveVstMidiEvent", 1 },
           std::pair{ "sendVstMidiEvent", -1 }, std::pair{ "", -1 },
           std::pair{ "receiveVstMidiEvents", -1 } })
    {
        std::string text = question;
        EXPECT_EQ (synth.call (effCanDo, 0, 0, text.data ()), answer) << question;
    }
}

TEST (DispatcherTest, OutputPins)
{
    HostedSynth synth;
    for (const int pin : { 0, 1 })
    {
        VstPinProperties properties;
        std::memset (&properties, 0x55, sizeof properties);
        EXPECT_EQ (synth.call (effGetOutputProperties, pin, 0, &properties), 1);
        EXPECT_STREQ (properties.label, pin == 0 ? "Brimvale 1" : "Brimvale 2");
        EXPECT_EQ (properties.flags, 3);                    // active, stereo
        EXPECT_EQ (properties.arrangementType, 0x55555555); // the rest is the host's
    }
    VstPinProperties untouched = {};
    for (const int pin : { -1, 2, 1000000 })
        EXPECT_EQ (synth.call (effGetOutputProperties, pin, 0, &untouched), 0) << pin;
    EXPECT_EQ (untouched.flags, 0);
}

TEST (DispatcherTest, ResumeAsksForMidi)
{
    HostedSynth synth;
    synth.host.calls.clear ();
    synth.call (effMainsChanged, 0, 0);
    EXPECT_EQ (synth.host.countCalls (audioMasterWantMidi), 0);
    synth.call (effMainsChanged, 0, 1);
    ASSERT_EQ (synth.host.countCalls (audioMasterWantMidi), 1);
    EXPECT_EQ (synth.host.calls.back ().value, 1);
}

TEST (DispatcherTest, AutomatedChangesAreTold)
{
    FakeHost host;
    VstSynth synth (FakeHost::callback, host.services ());
    host.calls.clear ();
    synth.setParameterAutomated (paramVolume, 0.25f);
    ASSERT_EQ (host.countCalls (audioMasterAutomate), 1);
    EXPECT_EQ (host.calls.back ().index, paramVolume);
    EXPECT_EQ (host.calls.back ().opt, 0.25f);
    EXPECT_EQ (synth.getParameter (paramVolume), 0.25f);
}

// Tempo, musical and bar position, and only where a tempo is wanted.
TEST (DispatcherTest, TimeIsAskedForOnlyWhenSynced)
{
    HostedSynth synth;
    synth.host.calls.clear ();
    synth.play ();
    EXPECT_EQ (synth.host.countCalls (audioMasterGetTime), 0);
    synth.set (paramLfoBmpSync, 1.0f);
    synth.play ();
    ASSERT_GT (synth.host.countCalls (audioMasterGetTime), 0);
    for (const FakeHost::Call& call : synth.host.calls)
    {
        if (call.opcode == audioMasterGetTime)
        {
            EXPECT_EQ (call.value, 0xE00);
        }
    }
}

TEST (DispatcherTest, UnknownAndEmptyCallsAnswerNothing)
{
    HostedSynth synth;
    const std::vector<float> before = HostedSynth ().play ();
    for (VstInt32 opcode = -5; opcode < 200; ++opcode)
    {
        if (opcode == effClose)
            continue;
        for (const VstInt32 index : { 0, -1, 38, 2147483647, -2147483647 - 1 })
            synth.call (opcode, index, 0, nullptr, notANumber);
        if (opcode > effGetNumMidiOutputChannels)
        {
            EXPECT_EQ (synth.call (opcode), 0) << opcode;
        }
    }
    for (const VstIntPtr value : { VstIntPtr (-1), VstIntPtr (128), std::numeric_limits<VstIntPtr>::max () })
    {
        synth.call (effSetProgram, 0, value);
        EXPECT_EQ (synth.call (effGetProgram), 0) << value;
    }
    EXPECT_EQ (synth.effect->dispatcher (nullptr, effGetVstVersion, 0, 0, nullptr, 0.0f), 0);
    EXPECT_EQ (synth.play (), before); // the next valid call works as ever
}

TEST (DispatcherTest, TextsOfNoParameterOrProgramAreEmpty)
{
    HostedSynth synth;
    for (const VstInt32 index : { -1, 38, 39, 128, 2147483647, -2147483647 - 1 })
    {
        EXPECT_EQ (synth.text (effGetParamName, index), "") << index;
        EXPECT_EQ (synth.text (effGetParamDisplay, index), "") << index;
        EXPECT_EQ (synth.text (effGetParamLabel, index), "") << index;
        EXPECT_EQ (synth.get (index), 0.0f) << index;
    }
    char name[64] = "kept";
    for (const VstInt32 index : { -1, 128, 1000000 })
        EXPECT_EQ (synth.call (effGetProgramNameIndexed, index, 0, name), 0) << index;
    EXPECT_STREQ (name, "kept");
}

TEST (DispatcherTest, AbsurdRatesAreIgnored)
{
    HostedSynth synth;
    const std::vector<float> reference = HostedSynth ().play ();
    for (const float rate : { 0.0f, -44100.0f, 999.0f, 1000001.0f, 1e30f, notANumber, infinity, -infinity })
    {
        synth.call (effSetSampleRate, 0, 0, nullptr, rate);
        synth.call (effSetBlockSizeAndSampleRate, 0, 64, nullptr, rate);
    }
    EXPECT_EQ (synth.play (), reference);
    for (const float rate : { 1000.0f, 1000000.0f })
    {
        synth.call (effSetSampleRate, 0, 0, nullptr, rate);
        for (const float sample : synth.play (3000))
            ASSERT_TRUE (std::isfinite (sample)) << rate;
    }
}

TEST (DispatcherTest, TheAnnouncedBlockSizeLimitsNothing)
{
    HostedSynth synth;
    const std::vector<float> reference = HostedSynth ().play (5000);
    for (const VstIntPtr size : { VstIntPtr (16), VstIntPtr (-3), VstIntPtr (0) })
        synth.call (effSetBlockSize, 0, size);
    EXPECT_EQ (synth.play (5000), reference);
}

TEST (DispatcherTest, MissingBuffersAndListsAreLeftOut)
{
    HostedSynth synth;
    EXPECT_EQ (synth.call (effProcessEvents, 0, 0, nullptr), 0);
    synth.effect->processReplacing (synth.effect, nullptr, nullptr, 100);
    float* none[] = { nullptr, nullptr };
    synth.effect->processReplacing (synth.effect, nullptr, none, 100);
    synth.effect->process (synth.effect, nullptr, none, -100);
    std::vector<double> doubles (10, 7.0);
    double* outputs[] = { doubles.data (), doubles.data () };
    synth.effect->processDoubleReplacing (synth.effect, nullptr, outputs, 10);
    EXPECT_EQ (doubles, std::vector<double> (10, 7.0)); // not announced, not served
}

TEST (DispatcherTest, KeysReachTheEditor)
{
    class KeyEditor final : public AEffEditor
    {
    public:
        bool onKeyDown (VstKeyCode& keyCode) override
        {
            down = keyCode;
            return true;
        }
        VstKeyCode down = {};
    };
    KeyEditor editor;
    HostedSynth synth;
    synth.object ().setEditor (&editor);
    EXPECT_EQ (synth.call (effEditKeyDown, 'a', 7, nullptr, 3.0f), 1);
    EXPECT_EQ (editor.down.character, 'a');
    EXPECT_EQ (editor.down.virt, 7);
    EXPECT_EQ (editor.down.modifier, 3);
    for (const float modifiers : { notANumber, 1e30f, -1e30f, -1.0f }) // none that a host could mean
        EXPECT_EQ (synth.call (effEditKeyDown, 'a', 0, nullptr, modifiers), 1);
    synth.object ().setEditor (nullptr);
    EXPECT_EQ (synth.call (effEditKeyDown, 'a'), 0);
}
