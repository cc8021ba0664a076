// What parameters do to voices and LFO.
#include <limits>

#include "tests/engine/RampTest.h"
#include "tests/support/Signals.h"

using namespace engine;
using namespace parameters;

namespace
{
// The envelope as it is set, in the given state of a full note.
Envelope inState (Envelope e, State state)
{
    e.kill ();
    e.trigger (127);
    while (e.state () < std::min (state, State::sustain))
        e.tick ();
    if (state == State::release)
        e.release ();
    return e;
}

// Seconds that it stays there.
double secondsIn (const Envelope& set, State state, float rate = 44100.0f)
{
    Envelope e = inState (set, state);
    int n = 0;
    for (; e.state () == state && n < 10000000; ++n)
        e.tick ();
    return n / static_cast<double> (rate);
}

class MappingTest : public RampTest
{
protected:
    Voice& last () { return synth.voice (16); } // the spare one follows, too
    static double pitch (const Oscillator& oscillator) { return hzOf (oscillator, 44100.0f); }
};
}

// Every change of the voice mode ends what sounds and says so; the same value again does neither.
TEST_F (MappingTest, GlideMonoAndVoicesShareTheVoiceCount)
{
    using Row = std::tuple<int, float, int, bool, std::size_t>;
    for (const auto& [index, value, voices, ends, told] :
         { Row{ paramVoices, 0.3f, 6, true, 1 }, Row{ paramVoices, 0.3f, 6, false, 0 },
           Row{ paramGlideMono, 0.2f, 1, true, 1 }, Row{ paramGlideMono, 0.3f, 1, false, 0 },
           Row{ paramVoices, 0.5f, 1, false, 1 }, // mono, but it is remembered
           Row{ paramGlideMono, 0.0f, 8, true, 1 }, Row{ paramGlideMono, 0.1f, 1, true, 1 },
           Row{ paramVoices, 5.0f, 1, false, 1 }, // names no count
           Row{ paramGlideMono, 0.0f, 1, true, 1 } })
    {
        synth.block (64, { noteOn (0) });
        synth.keys.clear ();
        synth.set (index, value);
        EXPECT_EQ (synth.engine.voicesInUse (), voices) << index << " " << value;
        for (const Envelope& envelope : { synth.voice (0).ampEnv, synth.voice (0).filterEnv })
            EXPECT_EQ (envelope.isIdle (), ends) << index << " " << value;
        EXPECT_EQ (synth.keys, (std::vector<std::pair<char, int>> (told, { '0', 0 })));
    }
    for (const auto& [value, voices] :
         { std::pair{ 0.0f, 2 }, std::pair{ 1.0f, 16 }, std::pair{ 0.13f, 2 }, std::pair{ 0.14f, 4 },
           std::pair{ 0.5f, 8 }, std::pair{ 0.94f, 16 }, std::pair{ 0.93f, 14 }, std::pair{ 3.0f, 14 },
           std::pair{ -1.0f, 14 } }) // the last two name no count
    {
        synth.set (paramVoices, value);
        EXPECT_EQ (synth.engine.voicesInUse (), voices) << value;
    }
    synth.set (paramVoices, 1.0f);
    synth.set (paramGlideMono, -0.5f); // the switch looks at the value as given, the store limits it to 0
    EXPECT_EQ (synth.value (paramGlideMono), 0.0f);
    EXPECT_EQ (synth.engine.voicesInUse (), 16);
}

TEST_F (MappingTest, EnvelopeKnobs)
{
    synth.set (param1Sustain, 0.0f);
    for (const double v : { 0.0, 0.25, 0.6, 1.0 })
    {
        for (const int index : { param1Attack, param1Decay, param2Attack, param2Decay })
            synth.set (index, static_cast<float> (v));
        const double attack = (v * v + 0.009) * (v * v + 0.009);
        const double decay = (v * v + 0.006) * (v * v + 0.006); // one knob for decay and release
        const double second = v * v * v * v;
        const auto expect = [v] (const Envelope& e, State state, double seconds)
        { EXPECT_NEAR (secondsIn (e, state), seconds, 1e-4 + seconds * 0.01) << v; };
        expect (last ().ampEnv, State::attack, attack * 10.0);
        expect (last ().ampEnv, State::decay, decay * 10.0);
        expect (last ().filterEnv, State::attack, second * 10.0);
        expect (last ().filterEnv, State::decay, second * 10.0);
        last ().ampEnv.setSustain (1.0f); // so that there is something to release
        last ().filterEnv.setSustain (1.0f);
        expect (last ().ampEnv, State::release, decay * 14.0);
        expect (last ().filterEnv, State::release, second * 14.0);
        last ().filterEnv.setSustain (0.0f);
        synth.set (param1Sustain, 0.0f);
    }
    synth.set (param1Sustain, 0.5f);
    EXPECT_NEAR (inState (last ().ampEnv, State::sustain).level (), 0.25f, 1e-3);
    using Row = std::tuple<float, State>;
    for (const auto& [delay, after] : { Row{ 0.0f, State::attack }, Row{ 0.1f, State::sustain } })
    {
        synth.set (param2Delay, delay); // envelope 2 cycles, but not behind a delay
        Envelope e = inState (last ().filterEnv, State::decay);
        while (e.state () == State::decay)
            e.tick ();
        EXPECT_EQ (e.state (), after) << delay;
    }
}

TEST_F (MappingTest, VelocityShapesItsEnvelope)
{
    synth.set (paramVelocityAmp, 1.0f);
    synth.set (paramVelocityFilter, 0.5f);
    for (Envelope* e : { &last ().ampEnv, &last ().filterEnv })
    {
        e->setAttack (0.0f);
        e->trigger (64);
    }
    EXPECT_NEAR (last ().ampEnv.tick (), 0.2547f, 1e-3);
    EXPECT_NEAR (last ().filterEnv.tick (), 0.6270f, 1e-3);
}

TEST_F (MappingTest, LfoRateByKnobOrTempo)
{
    const double half = 6.0 / (599.0 / 8.0 + 1.0); // cubed: an eighth of the way
    using Row = std::tuple<int, float, double>;
    for (const auto& [index, value, seconds] :
         { Row{ paramLfoRate, 0.0f, 6.0 }, Row{ paramLfoRate, 1.0f, 0.01 }, Row{ paramLfoRate, 0.5f, half },
           Row{ paramLfoBmpSync, 1.0f, half },
           Row{ paramLfoRate, 0.0f, half }, // the knob leaves the rate now
           Row{ paramLfoBmpSync, 0.0f, 6.0 } })
    {
        synth.set (index, value);
        EXPECT_NEAR (synth.lfo ().cycleSamples (), seconds * 44100.0, seconds * 4.41)
            << index << " " << value;
    }
    // A program is applied as a whole: its rate comes before its sync, and already sees it.
    TestEngine::Program synced = plainProgram ();
    synced[paramLfoRate] = 1.0f;
    synced[paramLfoBmpSync] = 1.0f;
    synth.load (synced);
    EXPECT_NEAR (synth.lfo ().cycleSamples (), 6.0 * 44100.0, 30.0);
}

TEST_F (MappingTest, LfoWaveSelectsTheShape)
{
    using Row = std::tuple<float, Lfo::Shape>;
    for (const auto& [value, shape] :
         { Row{ 0.0f, Lfo::roundedTriangle }, Row{ 0.19f, Lfo::roundedTriangle }, Row{ 0.2f, Lfo::risingSaw },
           Row{ 0.4f, Lfo::fallingSaw }, Row{ 0.6f, Lfo::square }, Row{ 0.8f, Lfo::noise },
           Row{ 0.99f, Lfo::noise }, Row{ 1.0f, Lfo::sampleAndHold } })
    {
        synth.set (paramLfoWave, value);
        Lfo set = synth.lfo ();
        Lfo expected = set;
        expected.setShape (shape);
        for (Lfo* lfo : { &set, &expected })
        {
            lfo->setRateHz (3000.0f);
            lfo->resetPhase ();
        }
        for (int n = 0; n < 50; ++n)
            ASSERT_EQ (set.tick (), expected.tick ()) << value;
    }
}

TEST_F (MappingTest, PitchKnobs)
{
    // A fresh oscillator starts one increment in, with the tuning of the first program.
    Oscillator fresh = synth.voice (0).osc1;
    fresh.setHighQuality (true);
    EXPECT_NEAR (fresh.tick (), keyHz (1) * saw * (4045.476 / 12.0) / 44100.0, 1e-4);
    synth.block (1, { noteOn (0) });
    // Pitch of the oscillators, times that of key 61: the tables sound a key lower.
    using Row = std::tuple<int, float, double, double>;
    for (const auto& [index, value, first, second] :
         { Row{ paramMasterP, 1.0f, saw * (1 + 1 / c0), saw * (1 + 1 / c0) },
           Row{ paramMasterP, 0.0f, saw * (1 - 1 / c0), saw * (1 - 1 / c0) },
           Row{ paramMasterP, 0.5f, saw, saw }, Row{ paramOsc2Fine, 0.5f, saw, saw + 0.125 }, // cubed
           Row{ paramOsc2Fine, 1.0f, saw, saw + 1.0 }, Row{ paramOsc2Fine, 0.0f, saw, saw },
           Row{ paramOsc1Range, 0.25f, saw / 2, saw }, Row{ paramOsc2Range, 0.75f, saw / 2, saw * 2 },
           Row{ paramOsc1Wave, 1.0f, pulse / 2, saw * 2 }, Row{ paramOsc2Wave, 1.0f, pulse / 2, pulse * 2 },
           Row{ paramOsc1Range, 1.0f, pulse * 4, pulse * 2 },
           Row{ paramOsc1Range, 0.99f, pulse * 2, pulse * 2 },
           Row{ paramOsc2Range, 0.0f, pulse * 2, pulse / 4 }, Row{ paramOsc1Wave, 0.99f, saw * 2, pulse / 4 },
           Row{ paramOsc2Wave, 0.5f, saw * 2, saw / 4 }, Row{ paramOsc2Wave, 0.49f, saw * 2, saw / 4 } })
    {
        synth.set (index, value);
        EXPECT_NEAR (pitch (synth.voice (0).osc1), keyHz (61) * first, 0.01) << index << " " << value;
        EXPECT_NEAR (pitch (synth.voice (0).osc2), keyHz (61) * second, 0.01) << index << " " << value;
        EXPECT_NEAR (pitch (synth.voice (0).noise), keyHz (60), 0.01) << "the noise has a note of its own";
    }
}

// On the ramp the pulse's offset can be read: 732 samples a cycle.
TEST_F (MappingTest, PulseWidthSelectsACycleOfOscillator1)
{
    synth.set (paramHighQuality, 0.0f);
    const auto cycle = [] (Oscillator oscillator)
    { return std::floor (oscillator.tickFull () / static_cast<float> (pulseCycleLength)); };
    using Row = std::tuple<float, float>;
    for (const auto& [width, expected] :
         { Row{ 0.0f, 200.0f }, Row{ 1.0f, 0.0f }, Row{ 0.5f, 100.0f }, Row{ 0.377f, 124.0f } })
    {
        synth.set (paramOsc1Wave, 0.5f);
        synth.set (paramOsc1PW, width); // kept for when the pulse comes
        for (const int wave : { paramOsc1Wave, paramOsc2Wave })
            synth.set (wave, 1.0f);
        EXPECT_EQ (cycle (last ().osc1), expected) << width;
        synth.set (paramOsc1PW, 0.25f);
        EXPECT_EQ (cycle (last ().osc1), 150.0f);
        EXPECT_EQ (cycle (last ().osc2), 0.0f); // always the first
    }
}

// The filter that a parameter sets sounds like one that is set by hand, and not like the one before.
TEST_F (MappingTest, FilterSwitches)
{
    const auto sound = [] (Filter f)
    {
        std::vector<float> out;
        f.setKey (127);
        f.setCutoff (0.2f);
        for (int n = 0; n < 500; ++n)
            out.push_back (f.process (n % 7 < 3 ? 1.0f : -1.0f));
        return out;
    };
    using Row = std::tuple<int, float, void (*) (Filter&)>;
    for (const auto& [index, value, byHand] :
         { Row{ paramFilterType, 0.5f, [] (Filter& f) { f.setType (filterCore::bandPass); } },
           Row{ paramFilterType, 1.0f, [] (Filter& f) { f.setType (filterCore::highPass); } },
           Row{ paramFilterType, 0.99f, [] (Filter& f) { f.setType (filterCore::bandPass); } },
           Row{ paramFilterType, 0.49f, [] (Filter& f) { f.setType (filterCore::lowPass); } },
           Row{ paramSmothFilt, 0.01f, [] (Filter& f) { f.setSmooth (true); } },
           Row{ paramSmothFilt, 0.0f, [] (Filter& f) { f.setSmooth (false); } },
           Row{ paramFilterRez, 0.75f, [] (Filter& f) { f.setResonance (0.75f); } },
           Row{ paramFilterKeyTrak, 0.3f, [] (Filter& f) { f.setKeyTrack (true); } },
           Row{ paramFilterKeyTrak, 0.0f, [] (Filter& f) { f.setKeyTrack (false); } } })
    {
        Filter expected = last ().filter;
        const std::vector<float> before = sound (expected);
        byHand (expected);
        synth.set (index, value);
        EXPECT_EQ (sound (last ().filter), sound (expected)) << index << " " << value;
        EXPECT_NE (sound (last ().filter), before) << index << " " << value;
    }
}

// 0 is on, 1 is off, and half way nothing changes.
TEST_F (MappingTest, HighQualityIsInterpolationAndDrive)
{
    synth.set (paramFilterType, 1.0f);
    using Row = std::tuple<float, bool>;
    for (const auto& [value, on] :
         { Row{ 0.0f, true }, Row{ 0.5f, true }, Row{ 1.0f, false }, Row{ 0.5f, false } })
    {
        synth.set (paramHighQuality, value);
        Voice copy = last ();
        EXPECT_EQ (copy.filter.process (100.0f) < 50.0f, on) << value;
        for (Oscillator* oscillator : { &copy.osc1, &copy.osc2 })
        {
            const float read = oscillator->tick () + oscillator->tick ();
            EXPECT_EQ (read != std::floor (read), on) << value;
        }
    }
}

TEST_F (MappingTest, ANewSampleRateReachesEverything)
{
    for (const int index : { param1Attack, param2Attack, paramLfoRate })
        synth.set (index, 0.5f);
    synth.block (10, { noteOn (1) });
    const auto figures = [this] // in seconds and Hz
    {
        const auto rate = static_cast<double> (synth.rate);
        Voice voice = synth.voice (0);
        voice.filter.setCutoff (0.3f);
        return std::array{ hzOf (voice.osc1, synth.rate),
                           hzOf (voice.osc2, synth.rate),
                           hzOf (voice.noise, synth.rate),
                           secondsIn (voice.ampEnv, State::attack, synth.rate),
                           secondsIn (voice.filterEnv, State::attack, synth.rate),
                           static_cast<double> (synth.lfo ().cycleSamples ()) / rate,
                           static_cast<double> (voice.filter.coefficient ()) * rate };
    };
    const auto before = figures ();
    for (const float rate : { 96000.0f, 22050.0f })
    {
        synth.rate = rate;
        synth.block (200);
        for (std::size_t n = 0; n < before.size (); ++n)
            EXPECT_NEAR (figures ()[n], before[n], before[n] * 2e-3) << n << " at " << rate;
    }
}

// No value of any parameter, in any order, may bring in a NaN or an infinity.
TEST_F (MappingTest, StrangeValuesDoNoHarm)
{
    constexpr float infinity = std::numeric_limits<float>::infinity ();
    TestEngine real;
    for (int index = -2; index < 60; ++index)
    {
        for (const float value : { infinity, -infinity, 1e38f, -1e38f, 1e-45f, -0.0f, 2.0f, -1.0f, 0.5f })
        {
            real.engine.parameterChange (index, value, index % 2 == 0);
            const int key = 30 + index % 60;
            EXPECT_LT (peakOf (real.block (40, { noteOn (0, key), midi (20, 0xE0, 0, key) })), 1000.0f)
                << index;
        }
    }
}
