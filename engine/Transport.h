#pragma once

#include <optional>

namespace engine
{
// Where the host's song stands, as far as the engine asks.
struct Transport
{
    double samplePosition = 0.0;           // samples from the start of the song; negative in a pre-roll
    std::optional<double> tempo;           // beats per minute; empty when the host does not tell
    std::optional<double> quarterPosition; // musical position in quarter notes; negative in a pre-roll
};
}
