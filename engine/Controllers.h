#pragma once

#include <cstdint>

namespace engine
{
// The MIDI controllers that the engine knows by itself. All but expression and "all notes off" act while the
// addition "pedal and wheel" is switched on (PedalAndWheel.h).
enum Controller : std::uint32_t
{
    controllerModulation = 1,
    controllerDataEntry = 6,
    controllerVolume = 7,
    controllerExpression = 11,
    controllerSustain = 64,
    controllerFirstParameterNumber = 98,
    controllerLastParameterNumber = 101,
    controllerAllSoundOff = 120,
    controllerReset = 121,
    controllerAllNotesOff = 123
};
}
