#pragma once

namespace engine
{
// Where the host's song stands, as far as the engine asks.
struct Transport
{
    double samplePosition = 0.0;  // samples from the start of the song; negative in a pre-roll
    double tempo = 0.0;           // beats per minute
    double quarterPosition = 0.0; // musical position in quarter notes
};
}
