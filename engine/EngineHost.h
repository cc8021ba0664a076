#pragma once

#include <cstdint>
#include <optional>

#include "engine/Transport.h"

namespace engine
{
// What the engine asks and tells the object around it, on the audio thread and in the middle of a block. The
// three requests may lead back into the engine's own parameterChange and selectProgram.
class EngineHost
{
public:
    virtual std::optional<Transport> transport () = 0; // empty when the host has no song
    virtual float sampleRate () const = 0;             // Hz

    // A MIDI program change, 0..127; any MIDI controller with its value 0..1, true when it is bound to a
    // parameter; a timed parameter change.
    virtual void programChange (int program) = 0;
    virtual bool controllerReceived (std::uint32_t controller, float value) = 0;
    virtual void parameterReceived (std::int32_t index, float value) = 0;

    virtual void keyStarted (int note) = 0;
    virtual void keyEnded (int note) = 0;
    virtual void allKeysEnded () = 0; // the voice mode changed, or all notes were told to end

protected:
    ~EngineHost () = default;
};
}
