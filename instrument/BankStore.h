#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>

#include "instrument/Bank.h"

namespace instrument
{
// The live bank: parameter slots and programs as one contiguous image of 32-bit words, each read and written
// whole and relaxed, so that any thread may use it at any time without waiting. What a reader sees of several
// words at once may be from before and after a write. `program` is 0..127, `index` a parameter.
class BankStore
{
public:
    // Where the value of a parameter lives, as the image's own flags say (a loaded bank may differ from the
    // table).
    bool isPerProgram (std::int32_t index) const { return (flags (index) & 0xFFu) != 0; }
    bool isUnclamped (std::int32_t index) const { return ((flags (index) >> 8) & 0xFFu) != 0; }
    bool isKeptAsDefault (std::int32_t index) const { return ((flags (index) >> 16) & 0xFFu) != 0; }

    // The value as stored: it may be anything that a chunk held.
    float value (std::int32_t program, std::int32_t index) const;
    void setValue (std::int32_t program, std::int32_t index, float value);

    // Puts `wanted` in the place of `found` in a program's record, unless the value has changed meanwhile.
    void amendRecord (std::int32_t program, std::int32_t index, float found, float wanted);

    float slotValue (std::int32_t index) const;
    std::uint32_t midiController (std::int32_t index) const { return slotWord (index, 2).load (relaxed); }
    void setMidiController (std::int32_t index, std::uint32_t controller)
    {
        slotWord (index, 2).store (controller, relaxed);
    }
    std::string parameterName (std::int32_t index) const;
    std::string programName (std::int32_t program) const;
    void setProgramName (std::int32_t program, std::string_view name);
    void copyProgram (std::int32_t from, std::int32_t to);

    // Copies out and in, word by word. `bytes` may be fewer than the whole; then the rest stays.
    void read (BankImage& image) const;
    void write (const void* image, std::size_t bytes);
    void readProgram (std::int32_t program, ProgramRecord& record) const;
    void writeProgram (std::int32_t program, const void* record, std::size_t bytes);

private:
    using Word = std::atomic<std::uint32_t>;
    static constexpr auto relaxed = std::memory_order_relaxed;
    static constexpr std::size_t slotWords = sizeof (ParameterSlot) / sizeof (std::uint32_t);
    static constexpr std::size_t recordWords = sizeof (ProgramRecord) / sizeof (std::uint32_t);
    static constexpr std::size_t nameWords = ProgramRecord::nameBytes / sizeof (std::uint32_t);
    static constexpr std::size_t firstRecord = slotWords * parameters::parameterCount;
    static_assert (sizeof (Word) == sizeof (std::uint32_t) && Word::is_always_lock_free);

    static std::size_t recordAt (std::int32_t program)
    {
        return firstRecord + recordWords * static_cast<std::size_t> (program);
    }
    Word& slotWord (std::int32_t index, std::size_t n)
    {
        return words[slotWords * static_cast<std::size_t> (index) + n];
    }
    const Word& slotWord (std::int32_t index, std::size_t n) const
    {
        return words[slotWords * static_cast<std::size_t> (index) + n];
    }
    std::uint32_t flags (std::int32_t index) const { return slotWord (index, 0).load (relaxed); }
    std::size_t valueAt (std::int32_t program, std::int32_t index) const;
    void readWords (std::size_t first, void* to, std::size_t bytes) const;
    void writeWords (std::size_t first, const void* from, std::size_t bytes);

    std::array<Word, sizeof (BankImage) / sizeof (std::uint32_t)> words = {};
};
}
