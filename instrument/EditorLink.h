#pragma once

#include <cstdint>

namespace instrument
{
// What the instrument tells its editor. Any of it may come on any thread (a learned controller, a program
// change): an implementation only leaves the news where its idle call picks them up.
class EditorLink
{
public:
    virtual ~EditorLink () = default;

    // A parameter or a command index (parameters::Command) has a new value.
    virtual void setParameter (std::int32_t index, float value) = 0;

    // The MIDI bindings changed.
    virtual void refreshLearnMenus () = 0;

    // The text of one program menu entry, 0..127, changed ("001 Init").
    virtual void setProgramEntry (std::int32_t program, const char* text) = 0;

    // Another program is current.
    virtual void markCurrentProgram () = 0;
};
}
