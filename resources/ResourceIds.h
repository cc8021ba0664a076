#pragma once

// Ids of the resources that code asks for by name; resources.txt lists all of them with their files. The
// wave tables' ids are in engine/WaveTable.h, the bitmaps' in the panel's tables.
inline constexpr int factoryBankId = 174;
