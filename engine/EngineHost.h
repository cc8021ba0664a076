#pragma once

#include <cstdint>

struct VstTimeInfo;

namespace engine
{
// What the engine asks of the plug-in object around it. Called on the thread that called the engine.
class EngineHost
{
public:
    // Current value of a parameter, finite and as the engine may use it.
    virtual float parameterValue (std::int32_t index) const = 0;

    // The audio host's time record with tempo, musical and bar position; null when it has none.
    virtual VstTimeInfo* timeInfo () = 0;

    virtual float hostSampleRate () const = 0; // Hz

    virtual void reselectProgram () = 0;          // re-apply every parameter
    virtual void programChange (int program) = 0; // MIDI program change, 0..127
    virtual void controllerReceived (std::uint32_t controller,
                                     float value) = 0; // any MIDI controller, value 0..1
    virtual void notifyEditor (std::int32_t index, float value) = 0;

protected:
    ~EngineHost () = default;
};
}
