#pragma once

namespace player
{
// What sound servers, MIDI systems and the window's title call the program.
inline constexpr char programName[] = "Brimvale";
}
