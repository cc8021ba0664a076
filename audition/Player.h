// Plays pieces on the instrument itself, offline, with a host around it that answers with a moving transport.
#pragma once

#include "examples/Piece.h"
#include "resources/bank/BankSource.h"

#include <string>
#include <vector>

namespace audition
{
inline constexpr int sampleRate = 44100;

using Audio = std::vector<float>; // mono, as both outputs carry the same

class Player
{
public:
    explicit Player (const std::vector<bank::SourceProgram>& programs);

    // The whole piece and `tail` seconds more, on a fresh instance for each of its channels, mixed at their
    // volumes (controller 7).
    Audio play (const examples::Piece& piece, double tail) const;

    const std::vector<std::string>& programNames () const { return names; }

private:
    std::vector<ProgramRecord> records;
    std::vector<std::string> names;
};
}
