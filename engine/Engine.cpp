#include "engine/Engine.h"

#include "parameters/Parameters.h"

namespace engine
{
using namespace parameters;

namespace
{
constexpr float lfoFastestHz = 100.0f;
constexpr float lfoLongestPeriod = 6.0f; // seconds
constexpr float initialRelease = 0.2f;   // 0.56 s
constexpr int noiseNote = 60;            // reads the noise table at twice its own rate
}

void Engine::resetGlobals ()
{
    glideAuto = 0.0f;
    volTypeGain = 0.5f;
    voicesParam = 1.0f;
    sampleRate = static_cast<double> (host.hostSampleRate ());
    asleep = true;
    expression = 1.0f;
    nextEventIndex = -1;
    blockEvents = nullptr;
    voiceCount = mostVoices;
    osc1RangeSemis = 0.0f;
    osc2RangeSemis = 0.0f;
    keyboardNote = 0; // not -1: the first key pressed ends note 0 first. Harmless, and kept.
    silenceCounter = 0.0f;
    transportStopped = true;
    lastSamplePos = -1.0f;
}

void Engine::setSampleRateOfAll (float hz)
{
    lfo.setSampleRate (hz);
    for (Voice& voice : voices)
    {
        voice.osc1.setSampleRate (hz);
        voice.osc2.setSampleRate (hz);
        voice.noise.setSampleRate (hz);
        voice.ampEnv.setSampleRate (hz);
        voice.filterEnv.setSampleRate (hz);
        voice.filter.setSampleRate (hz);
    }
}

void Engine::initialise ()
{
    resetGlobals ();
    pulseTable = loadWaveTable (pulseWaveId);
    sawTable = loadWaveTable (sawWaveId);
    noiseTable = loadWaveTable (noiseWaveId);
    lfo.setShape (Lfo::triangle);
    lfo.setRateRange (lfoFastestHz, lfoLongestPeriod);
    voiceAllocator.setVoiceLimit (voiceCount);

    for (Voice& voice : voices)
    {
        for (Oscillator* oscillator : { &voice.osc1, &voice.osc2 })
        {
            oscillator->setTable (sawTable.samples.data (), sawTable.length, Oscillator::Mode::singleCycle,
                                  0);
            oscillator->setGlide (0.0f);
        }
        voice.noise.setTable (noiseTable.samples.data (), noiseTable.length, Oscillator::Mode::plain, 0);
        voice.noise.setGlide (0.0f);
        voice.noise.setNote (noiseNote, true);
        for (Envelope* envelope : { &voice.ampEnv, &voice.filterEnv })
        {
            envelope->setAttack (0.0f);
            envelope->setDecay (0.0f);
            envelope->setSustain (envelope == &voice.ampEnv ? 1.0f : 0.0f);
            envelope->setRelease (initialRelease);
            envelope->setLoop (true);
            envelope->release ();
        }
    }
    setSampleRateOfAll (host.hostSampleRate ());
}

void Engine::refreshVoiceFilters ()
{
    for (Voice& voice : voices)
        voice.filter.setCutoff (voice.filter.keyTrackedBase (host.parameterValue (paramFilterFreq)));
}
}
