#pragma once

#include <cstdint>
#include <optional>

#include "engine/Additions.h"
#include "engine/EngineHost.h"
#include "engine/EventIntake.h"
#include "engine/Lfo.h"
#include "engine/LfoSync.h"
#include "engine/ParameterMapping.h"
#include "engine/PedalAndWheel.h"
#include "engine/Renderer.h"
#include "engine/Voices.h"
#include "engine/WaveTable.h"

namespace engine
{
// The synthesis engine: turns parameters and MIDI into audio. It belongs to one thread at a time, the audio
// thread once there is one: nothing in it is safe to call from two. After construction nothing allocates.
//
// ParameterMapping applies parameters, EventIntake hands out a block's events, Voices plays notes, and
// Renderer makes the samples; this class leads them through a block.
class Engine
{
public:
    // Every voice at its start state, asleep. `owner` is asked for its sample rate at once and outlives this.
    Engine (WaveTables waveTables, EngineHost& owner, const VoiceKernel& kernel = preferredKernel ());
    Engine (const Engine&) = delete;
    Engine& operator= (const Engine&) = delete;

    // As ParameterMapping::change and select.
    void parameterChange (std::int32_t index, float value, bool unclamped);
    void selectProgram (const ParameterValues& values, std::uint64_t unclamped);
    float parameterValue (std::int32_t index) const { return mapping.value (index); }

    // Switched off, pedal, wheel and volume are at rest.
    void setAdditions (const Additions& wanted);

    // The on-screen keyboard: `value` x 128 is the note to hold instead of the last one, -1 releases it.
    void playKeyboard (float value);

    // Takes the events of the next block. The list is read in place and must outlive the next renderBlock.
    void processEvents (const EventList* events);

    // Writes the next frames into both outputs (null ones are left out) and applies the pending events.
    void renderBlock (float* left, float* right, std::int32_t frames);

    // A key goes down or up; notes outside 0..127 are ignored.
    void noteEvent (int note, std::uint32_t velocity, bool isNoteOn);

    // Ends every voice at once and forgets the held keys; controllers stay as they are.
    void silence ();

    // Applies the current cutoff setting to every voice's filter.
    void refreshVoiceFilters ();

    bool isAsleep () const { return renderer.isAsleep (); }
    int voicesInUse () const { return voices.count (); }

private:
    friend class EngineProbe; // the tests' sample-by-sample renderer works on the same state

    void beginBlock ();
    void takeParameters ();
    void followSampleRate ();
    void applyEvents (std::int32_t n);
    void apply (const Event& event);
    void wake ();
    void applyController (std::uint32_t controller, std::uint32_t data);
    void applyPedalOrWheel (std::uint32_t controller, std::uint32_t data);
    void bendPitch ();
    void endVibratoSince (float depthBefore);
    void endKeptKeys ();
    void endAllNotes ();
    bool endNote (int note); // false when it was not held
    void endStrokes (int note, int strokes);

    Voices voices;
    EngineHost& host;
    const WaveTables tables;
    Lfo lfo;
    ParameterMapping mapping{ voices, lfo, tables, host };
    LfoSync lfoSync{ lfo };
    EventIntake intake;
    Renderer renderer;

    double sampleRate = 44100.0; // Hz, as last taken over from the host
    float expression = 1.0f;     // controller 11, 0..1
    Additions additions;
    PedalAndWheel pedalAndWheel;
    std::optional<int> bendPosition;  // of the pitch wheel, -8192..8191; empty until it has moved
    std::int32_t samplesRendered = 0; // of the block

    // Held through the on-screen keyboard, -1: none. It starts at 0, so that the first key pressed ends note
    // 0 first, which sounds only if MIDI holds that note.
    std::int32_t keyboardNote = 0;
};
}
