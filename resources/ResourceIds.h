#pragma once

// Ids of the resources that code asks for by name; resources.txt lists all of them with their files. The
// bitmaps' are in the panel's tables.
inline constexpr int sawWaveId = 165; // raw signed 16-bit little-endian mono samples
inline constexpr int pulseWaveId = 166;
inline constexpr int noiseWaveId = 167;
inline constexpr int factoryBankId = 174;
