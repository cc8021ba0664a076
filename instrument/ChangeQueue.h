#pragma once

#include <cstdint>

#include "engine/ParameterMapping.h"
#include "instrument/MessageQueue.h"

namespace instrument
{
// Something that another thread wants of the engine.
struct Change
{
    enum class Kind : std::uint8_t
    {
        parameter,
        selection,
        keyboard,
        refreshFilters
    };

    Kind kind = Kind::parameter;
    std::int32_t index = 0;              // parameter
    std::int32_t program = 0;            // whose value changes, -1: of all; or the one selected
    std::uint64_t unclamped = 0;         // bit n: the store rule does not limit parameter n
    float value = 0.0f;                  // as sent; the keyboard's too
    engine::ParameterValues values = {}; // of a selection
};

// More than hosts and hands send between two blocks.
using ChangeQueue = MessageQueue<Change, 512>;
}
