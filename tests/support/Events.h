#pragma once

#include "engine/Event.h"

// A short MIDI message at a sample of a block.
inline engine::Event midi (int offset, int status, int data1, int data2)
{
    engine::Event event;
    event.offset = offset;
    event.kind = engine::Event::Kind::midi;
    event.status = static_cast<std::uint8_t> (status);
    event.data1 = static_cast<std::uint8_t> (data1);
    event.data2 = static_cast<std::uint8_t> (data2);
    return event;
}

// A value of a parameter, from a sample on.
inline engine::Event parameterAt (int offset, std::int32_t index, double value)
{
    engine::Event event;
    event.offset = offset;
    event.kind = engine::Event::Kind::parameter;
    event.index = index;
    event.value = static_cast<float> (value);
    return event;
}

inline engine::Event noteOn (int offset, int key = 60, int velocity = 100)
{
    return midi (offset, 0x90, key, velocity);
}
inline engine::Event noteOff (int offset, int key = 60)
{
    return midi (offset, 0x80, key, 64);
}
