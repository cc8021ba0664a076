#pragma once

#include <array>
#include <cstdint>

#include "formats/shared/HostedInstrument.h"

namespace dpf
{
// What happens in the block that is rendered next, gathered from wherever the format keeps it. Audio thread;
// allocates nothing. What comes when it is full is dropped.
class BlockEvents final : public engine::EventList
{
public:
    explicit BlockEvents (const formats::HostedInstrument& owner) : synth (owner) {}

    void clear () { count = 0; }
    void addMidi (std::int32_t offset, std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    void addValue (std::int32_t offset, std::int32_t index, float shown);

    // Into the order of their offsets and none beyond the block, for formats that keep notes, controllers and
    // parameters apart. Of what comes at one sample values and programs go first, then controllers, then
    // notes, so that a note finds what is meant for it.
    void sortFor (std::int32_t frames);

    // EventList
    std::int32_t size () const override { return count; }
    engine::Event at (std::int32_t n) const override;

private:
    struct Held
    {
        std::int32_t offset;
        std::int32_t arrival;
        std::int32_t index; // that is set to `shown`; -1: a MIDI message
        float shown;
        std::uint8_t status, data1, data2;
    };
    void add (Held event);
    static int rank (const Held& event);

    const formats::HostedInstrument& synth;
    std::array<Held, 4096> held;
    std::int32_t count = 0;
};
}
