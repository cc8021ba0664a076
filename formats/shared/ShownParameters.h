#pragma once

#include <cstdint>
#include <string>

#include "parameters/Parameters.h"

// The parameters as hosts of every format but VST 2.4 are shown them: switches as switches, steps as steps,
// and the program as one parameter more. What a host sees and sends is a `shown` value, what the instrument
// keeps a `stored` one.
namespace formats
{
using namespace parameters;

inline constexpr std::int32_t shownProgram = parameterCount; // the program's index, behind the parameters
inline constexpr std::int32_t shownCount = parameterCount + 1;

struct ShownParameter
{
    const char* group; // heading under which hosts list it
    // 0: continuous, shown as 0..1. Else shown as a whole number, 0..positions - 1; 2 positions are a switch
    // that is on at 1.
    std::int32_t positions = 0;
    bool automated = true; // false: nobody should automate it; hosts shall hide it
};

constexpr bool isShown (std::int32_t index)
{
    return index >= 0 && index < shownCount;
}

// `index` must be shown in all that follows. Any thread, but for name and default: those allocate and read.
const ShownParameter& shownParameter (std::int32_t index);
std::string shownName (std::int32_t index); // without trailing blanks
double shownDefault (std::int32_t index);   // that of the factory bank's first program

double shownHighest (std::int32_t index);               // the lowest is 0
double shownLimited (std::int32_t index, double shown); // within the range, whole where it has positions

// A parameter's stored value as it is shown. `index` is not the program's.
double shownValue (std::int32_t index, float stored);

// What to store for a shown value while `current` is stored: `current` itself where that is shown so already.
// A host that only repeats what it was told thereby leaves a knob between two steps where it stands.
float storedValue (std::int32_t index, double shown, float current);
}
