// The instrument as its host reaches it: the record, the opcodes, and bad calls of every kind.
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/Signals.h"
#include "tests/support/TestSynth.h"

using namespace parameters;

namespace
{
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN ();

// Writes down what reaches it.
class RecordingEditor final : public AEffEditor
{
public:
    bool getRect (ERect** to) override { return said ("rect", *to = &rect); }
    bool open (void* parent) override { return said ("open", parent); }
    void close () override { said ("close", nullptr); }
    void idle () override { said ("idle", nullptr); }
    bool onKeyDown (VstKeyCode& code) override { return said ("down", &(key = code)); }
    bool onKeyUp (VstKeyCode& code) override { return said ("up", &(key = code)); }
    bool onWheel (float distance) override { return said ("wheel", nullptr) && distance == 2.5f; }
    bool setKnobMode (VstInt32 mode) override { return said ("mode", nullptr) && mode == 2; }

    std::vector<std::string> calls;
    void* last = nullptr;
    VstKeyCode key = {};
    ERect rect = {};

private:
    bool said (const char* what, void* with)
    {
        calls.emplace_back (what);
        last = with;
        return true;
    }
};
}

// What a host with a version gets is seen from outside; here, what another one gets.
TEST (DispatcherTest, WithoutAHostItIsAnEffectOfNoKind)
{
    FakeHost system;
    VstSynth hostless (nullptr, system.services ());
    AEffect* effect = hostless.getAeffect ();
    EXPECT_EQ (effect->magic, 0x56737450);    // "VstP"
    EXPECT_EQ (effect->uniqueID, 0x4E6F4566); // "NoEf", the default
    EXPECT_EQ (effect->numInputs, 1);
    EXPECT_EQ (effect->flags, (1 << 4) | (1 << 5)); // replacing, program chunks; no synth
    EXPECT_EQ (effect->dispatcher (effect, effGetPlugCategory, 0, 0, nullptr, 0.0f), kPlugCategUnknown);
}

TEST (DispatcherTest, TextsAbilitiesAndPins)
{
    HostedSynth synth;
    synth.set (paramVoices, 3e38f);
    EXPECT_EQ (synth.call (effVendorSpecific), 0);
    EXPECT_EQ (synth.call (effOpen), 0);
    using Row = std::tuple<VstInt32, VstInt32, const char*>;
    for (const auto& [opcode, index, text] :
         { Row{ effGetParamName, 32, "VelocityFilter" }, Row{ effGetParamName, -1, "" },
           Row{ effGetParamName, 38, "" }, Row{ effGetParamDisplay, 38, "" },
           Row{ effGetParamDisplay, -2147483647 - 1, "" }, Row{ effGetParamLabel, 2147483647, "" } })
        EXPECT_EQ (synth.text (opcode, index, -1), text) << opcode << " " << index;
    EXPECT_LT (synth.text (effGetParamDisplay, paramVoices).size (), 24u);
    for (const auto& [question, answer] :
         { std::pair{ "receiveVstEvents", 1 }, std::pair{ "receiveVstMidiEvent", 1 },
           std::pair{ "sendVstMidiEvent", -1 }, std::pair{ "", -1 },
           std::pair{ "receiveVstMidiEvents", -1 } })
        EXPECT_EQ (synth.call (effCanDo, 0, 0, const_cast<char*> (question)), answer) << question;
    for (const VstInt32 pin : { 0, 1, -1, 2, 1000000 })
    {
        VstPinProperties properties;
        std::memset (&properties, 0x55, sizeof properties);
        const bool exists = pin == 0 || pin == 1;
        EXPECT_EQ (synth.call (effGetOutputProperties, pin, 0, &properties), exists ? 1 : 0);
        EXPECT_EQ (properties.flags, exists ? 3 : 0x55555555); // active, stereo
        EXPECT_EQ (properties.arrangementType, 0x55555555);    // the rest is the host's
        EXPECT_TRUE (!exists || std::string (properties.label) == (pin == 0 ? "Brimvale 1" : "Brimvale 2"));
    }
}

TEST (DispatcherTest, ProgramsAndChunks)
{
    HostedSynth synth;
    synth.call (effSetProgram, 0, 5);
    synth.call (effSetProgram, 0, std::numeric_limits<VstIntPtr>::max ());
    EXPECT_EQ (synth.call (effGetProgram), 5);
    const std::string unterminated = "123456789012345678901234"; // fills its field
    auto field = std::make_unique<char[]> (24);
    unterminated.copy (field.get (), 24);
    synth.call (effSetProgramName, 0, 0, field.get ());
    EXPECT_EQ (synth.text (effGetProgramName), unterminated);
    char kept[] = "kept";
    for (const VstInt32 program : { -1, 128, 1000000 })
    {
        EXPECT_EQ (synth.call (effGetProgramNameIndexed, program, 0, kept), 0) << program;
        EXPECT_EQ (synth.call (effCopyProgram, program), 0) << program;
    }
    EXPECT_STREQ (kept, "kept");
    EXPECT_EQ (synth.call (effCopyProgram, 9), 1);
    EXPECT_EQ (synth.text (effGetProgramNameIndexed, 9), unterminated);

    std::vector<char> chunk (24000);
    EXPECT_EQ (synth.call (effSetChunk, 0, 24000, chunk.data ()), 1) << "1 after an error, too";
    EXPECT_EQ (synth.host.messages.size (), 1u);
}

TEST (DispatcherTest, RateAndBlockSizeAreTaken)
{
    HostedSynth synth;
    for (const auto& [opcode, rate, size] :
         { std::tuple{ effSetSampleRate, 96000.0f, 1024 }, std::tuple{ effSetBlockSize, 96000.0f, 64 },
           std::tuple{ effSetBlockSizeAndSampleRate, 22050.0f, 128 } })
    {
        synth.call (opcode, 0, size, nullptr, rate);
        EXPECT_EQ (synth.object ().getSampleRate (), rate);
        EXPECT_EQ (synth.object ().getBlockSize (), size);
    }
    HostedSynth plain;
    HostedSynth limited; // the announced size limits nothing
    limited.call (effSetBlockSize, 0, 16);
    EXPECT_EQ (limited.play (5000), plain.play (5000));
}

TEST (DispatcherTest, CallsTheHostWhereItShould)
{
    HostedSynth synth;
    synth.host.hasTime = true;
    synth.host.calls.clear ();
    synth.call (effMainsChanged, 0, 0);
    EXPECT_EQ (synth.host.countCalls (audioMasterWantMidi), 0);
    synth.call (effMainsChanged, 0, 1);
    ASSERT_EQ (synth.host.countCalls (audioMasterWantMidi), 1);
    EXPECT_EQ (synth.host.callsOf (audioMasterWantMidi)[0].value, 1);

    synth.object ().setParameterAutomated (paramVolume, 0.25f);
    ASSERT_EQ (synth.host.countCalls (audioMasterAutomate), 1);
    EXPECT_EQ (synth.host.calls.back ().index, paramVolume);
    EXPECT_EQ (synth.host.calls.back ().opt, 0.25f);
    EXPECT_EQ (synth.get (paramVolume), 0.25f);
    for (const VstInt32 index : { 38, 45, 46, 49, 54, -1 }) // the panel's own: no host has them in its table
        synth.object ().setParameterAutomated (index, 0.5f);
    EXPECT_EQ (synth.host.countCalls (audioMasterAutomate), 1);
    EXPECT_GT (peakOf (synth.play (5000, false)), 0.0f) << "the panel's key was played all the same";

    EXPECT_EQ (synth.host.countCalls (audioMasterGetTime), 0) << "only where a tempo is wanted";
    synth.set (paramLfoBmpSync, 1.0f);
    synth.play (400);
    ASSERT_GT (synth.host.countCalls (audioMasterGetTime), 0);
    EXPECT_EQ (synth.host.callsOf (audioMasterGetTime)[0].value, 0xE00); // tempo, musical and bar position
}

// Tempo and musical position count where the flags say that they are valid. A position of 0 would hold the
// LFO.
TEST (DispatcherTest, TimeIsTakenAsItsFlagsSay)
{
    std::vector<std::vector<float>> sounds;
    for (const VstInt32 flags : { 0, kVstTempoValid + 0, kVstTempoValid | kVstPpqPosValid })
    {
        HostedSynth synth;
        for (const auto& [index, value] :
             { std::pair{ paramLfoBmpSync, 1.0f }, std::pair{ paramLfoFilter, 1.0f },
               std::pair{ paramLfoRate, 0.9f }, std::pair{ paramFilterFreq, 0.1f } })
            synth.set (index, value);
        synth.host.hasTime = true;
        synth.host.time.flags = flags;
        synth.host.time.tempo = 200.0;
        std::vector<float> sound;
        for (int block = 0; block < 20; ++block)
        {
            synth.host.time.samplePos = 1000.0 + block * 500.0;
            const auto more = synth.play (500, block == 0);
            sound.insert (sound.end (), more.begin (), more.end ());
        }
        sounds.push_back (sound);
    }
    EXPECT_NE (sounds[0], sounds[1]);
    EXPECT_NE (sounds[1], sounds[2]);
    EXPECT_NE (sounds[2], sounds[0]);
}

TEST (DispatcherTest, TheEditorIsReached)
{
    RecordingEditor editor;
    HostedSynth synth;
    int window = 0;
    ERect* rect = nullptr;
    const VstInt32 stCA = 0x73744341;
    const VstIntPtr whee = 0x57686565;
    synth.object ().setEditor (&editor);
    EXPECT_EQ (synth.effect->flags & effFlagsHasEditor, effFlagsHasEditor);
    EXPECT_EQ (synth.call (effEditGetRect, 0, 0, nullptr), 0);
    EXPECT_EQ (synth.call (effEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ (rect, &editor.rect);
    EXPECT_EQ (synth.call (effEditOpen, 0, 0, &window), 1);
    EXPECT_EQ (editor.last, &window);
    synth.call (effEditIdle);
    for (const VstInt32 opcode : { effEditKeyDown, effEditKeyUp })
    {
        EXPECT_EQ (synth.call (opcode, 'a', 7, nullptr, 3.0f), 1);
        EXPECT_TRUE (editor.key.character == 'a' && editor.key.virt == 7 && editor.key.modifier == 3);
    }
    EXPECT_EQ (synth.call (effSetEditKnobMode, 0, 2), 1);
    EXPECT_EQ (synth.call (effVendorSpecific, stCA, whee, nullptr, 2.5f), 1);
    EXPECT_EQ (synth.call (effVendorSpecific, stCA, whee, nullptr, 1.0f), 0);
    EXPECT_EQ (synth.call (effVendorSpecific, stCA, whee + 1), 0);
    EXPECT_EQ (synth.call (effVendorSpecific, stCA + 1, whee), 0);
    synth.call (effEditClose);
    EXPECT_EQ (editor.calls, (std::vector<std::string>{ "rect", "open", "idle", "down", "up", "mode", "wheel",
                                                        "wheel", "close" }));
    for (const float modifiers : { notANumber, 1e30f, -1e30f, -1.0f }) // none that a host could mean
        EXPECT_EQ (synth.call (effEditKeyDown, 'a', 0, nullptr, modifiers), 1);
    synth.object ().setEditor (nullptr);
    EXPECT_EQ (synth.call (effEditKeyDown, 'a') + synth.call (effVendorSpecific, stCA, whee, nullptr, 2.5f),
               0);
}

TEST (DispatcherTest, UnknownAndEmptyCallsAnswerNothing)
{
    HostedSynth plain;
    HostedSynth synth;
    for (VstInt32 opcode = -5; opcode < 200; ++opcode)
    {
        for (const VstInt32 index : { 0, -1, 38, 2147483647, -2147483647 - 1 })
            EXPECT_TRUE (opcode == effClose || synth.call (opcode, index, 0, nullptr, notANumber) == 0 ||
                         opcode <= effGetNumMidiOutputChannels)
                << opcode;
    }
    AEffect never = *synth.effect; // a record that belongs to nobody, and none at all
    never.object = nullptr;
    for (AEffect* record : { &never, static_cast<AEffect*> (nullptr) })
    {
        EXPECT_EQ (never.dispatcher (record, effGetVstVersion, 0, 0, nullptr, 0.0f), 0);
        never.process (record, nullptr, nullptr, 1);
        never.processReplacing (record, nullptr, nullptr, 1);
        never.processDoubleReplacing (record, nullptr, nullptr, 1);
        never.setParameter (record, 0, 0.5f);
        EXPECT_EQ (never.getParameter (record, 0), 0.0f);
    }
    synth.effect->processReplacing (synth.effect, nullptr, nullptr, 100);
    float* none[] = { nullptr, nullptr };
    synth.effect->process (synth.effect, nullptr, none, -100);
    double doubles[] = { 7.0 }; // not announced, not served
    double* outputs[] = { doubles, doubles };
    synth.effect->processDoubleReplacing (synth.effect, nullptr, outputs, 1);
    EXPECT_EQ (doubles[0], 7.0);
    std::array<char, sizeof (VstEvents)> holes = {};
    auto* list = reinterpret_cast<VstEvents*> (holes.data ());
    for (const VstInt32 count : { 2, -5, 0 })
    {
        list->numEvents = count;
        EXPECT_EQ (synth.call (effProcessEvents, 0, 0, list), 1);
        synth.effect->processReplacing (synth.effect, nullptr, none, 0);
    }
    EXPECT_EQ (synth.play (400), plain.play (400)); // the next valid call works as ever
}
