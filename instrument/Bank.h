#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "parameters/Parameters.h"

namespace instrument
{
using namespace parameters;

// The memory image that hosts, the user default bank and the factory bank share. Raw and little-endian,
// without header or version: every offset below is a file format.

inline constexpr int programCount = 128;

// What one parameter is, and its plug-in-wide value.
struct ParameterSlot
{
    static constexpr std::size_t nameBytes = 24;
    static constexpr std::size_t longestName = 16; // characters taken over by setName

    std::uint8_t perProgram = 1;    // 1: the value lives in the current program, 0: in `value`
    std::uint8_t unclamped = 0;     // 1: the store rule does not limit the value to 0..1
    std::uint8_t keptAsDefault = 0; // 1: saved to and read from the stored settings
    std::uint8_t spare = 0;         // in what hosts keep, see below; 0 in the bank itself
    float value = 1.0f;
    std::uint32_t midiController = 0; // bound controller number, 0: none
    char name[nameBytes] = { ' ' };   // zero-terminated

    void setName (std::string_view text);
    std::string_view nameView () const; // up to the terminator; a damaged name ends at its last byte
};
static_assert (sizeof (ParameterSlot) == 36 && offsetof (ParameterSlot, value) == 4 &&
               offsetof (ParameterSlot, midiController) == 8 && offsetof (ParameterSlot, name) == 12);

// Slots whose spare byte says more about a song: the number of the selected program, and which additions are
// on (0 off, 1 on).
inline constexpr std::size_t programSlot = 0;
inline constexpr std::size_t pedalAndWheelSlot = 1;
inline constexpr std::size_t songLockSlot = 2;

// One sound.
struct ProgramRecord
{
    static constexpr std::size_t nameBytes = 24;

    char name[nameBytes] = { 'I', 'n', 'i', 't' }; // not terminated when all 24 characters are used
    std::array<float, parameterCount> values = {}; // by parameter index, 0..1

    void setName (std::string_view text);
    std::string_view nameView () const;
};
static_assert (sizeof (ProgramRecord) == 176 && offsetof (ProgramRecord, values) == 24);

struct BankImage
{
    std::array<ParameterSlot, parameterCount> slots;
    std::array<ProgramRecord, programCount> programs;
};
static_assert (sizeof (BankImage) == 23896 && offsetof (BankImage, programs) == 1368);

inline constexpr std::size_t factoryBankBytes = sizeof (BankImage::programs);
static_assert (factoryBankBytes == 22528);

// Sets every slot from the parameter table and every program to the table's initial values.
void resetToInitialValues (BankImage& bank);
}
