#pragma once

#include <cstdint>
#include <span>

namespace engine
{
// Something that happens at a sample of the next block.
struct Event
{
    enum class Kind : std::uint8_t
    {
        midi,      // `status`, `data1` and `data2` of a short message
        parameter, // `index` changes to `value`
        foreign,   // anything else a VST 2.4 host may put into its list
        none       // nothing happens
    };

    std::int32_t offset = 0; // samples from the start of the block
    Kind kind = Kind::foreign;
    std::uint8_t status = 0; // with the channel, which is ignored
    std::uint8_t data1 = 0;  // 0..127; a higher bit is ignored
    std::uint8_t data2 = 0;
    std::int32_t index = 0; // of a parameter
    float value = 0.0f;     // as setParameter takes it
};

// A block's events, read in place in whatever form the host passes them: sorted by offset, of any number.
class EventList
{
public:
    virtual std::int32_t size () const = 0;
    virtual Event at (std::int32_t n) const = 0; // 0..size () - 1

protected:
    ~EventList () = default;
};

// Events that are held in an array.
class EventSpan final : public EventList
{
public:
    explicit EventSpan (std::span<const Event> held = {}) : events (held) {}
    std::int32_t size () const override { return static_cast<std::int32_t> (events.size ()); }
    Event at (std::int32_t n) const override { return events[static_cast<std::size_t> (n)]; }

private:
    std::span<const Event> events;
};
}
