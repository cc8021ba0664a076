#pragma once

#include <cstdint>
#include <memory>

class VstSynth;

// What the synth tells its editor. Any of it may come on the audio thread (a learned controller, a program
// change): an implementation only leaves the news where its idle call picks them up.
class SynthEditor
{
public:
    virtual ~SynthEditor () = default;

    // A parameter or a command index (Command) has a new value.
    virtual void setParameter (std::int32_t index, float value) = 0;

    // The MIDI bindings changed.
    virtual void refreshLearnMenus () = 0;

    // The text of one program menu entry, 0..127, changed ("001 Init").
    virtual void setProgramEntry (std::int32_t program, const char* text) = 0;

    // Another program is current.
    virtual void markCurrentProgram () = 0;
};

// Makes the editor of one synth; null when that failed, and then the library refuses to load.
using EditorFactory = std::unique_ptr<SynthEditor> (*) (VstSynth&);
