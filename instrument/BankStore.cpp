#include "instrument/BankStore.h"

#include <bit>

namespace instrument
{
static_assert (std::endian::native == std::endian::little,
               "the image is little-endian, and so are its words");

// Index of the word that holds a parameter's value.
std::size_t BankStore::valueAt (std::int32_t program, std::int32_t index) const
{
    if (isPerProgram (index))
        return recordAt (program) + nameWords + static_cast<std::size_t> (index);
    return slotWords * static_cast<std::size_t> (index) + 1;
}

float BankStore::value (std::int32_t program, std::int32_t index) const
{
    return std::bit_cast<float> (words[valueAt (program, index)].load (relaxed));
}

void BankStore::setValue (std::int32_t program, std::int32_t index, float value)
{
    words[valueAt (program, index)].store (std::bit_cast<std::uint32_t> (value), relaxed);
}

void BankStore::amendRecord (std::int32_t program, std::int32_t index, float found, float wanted)
{
    auto expected = std::bit_cast<std::uint32_t> (found);
    words[recordAt (program) + nameWords + static_cast<std::size_t> (index)].compare_exchange_strong (
        expected, std::bit_cast<std::uint32_t> (wanted), relaxed);
}

float BankStore::slotValue (std::int32_t index) const
{
    return std::bit_cast<float> (slotWord (index, 1).load (relaxed));
}

std::string BankStore::parameterName (std::int32_t index) const
{
    ParameterSlot slot;
    readWords (slotWords * static_cast<std::size_t> (index), &slot, sizeof slot);
    return std::string (slot.nameView ());
}

std::string BankStore::programName (std::int32_t program) const
{
    ProgramRecord record;
    readWords (recordAt (program), record.name, sizeof record.name);
    return std::string (record.nameView ());
}

void BankStore::setProgramName (std::int32_t program, std::string_view name)
{
    ProgramRecord record;
    record.setName (name);
    writeWords (recordAt (program), record.name, sizeof record.name);
}

void BankStore::copyProgram (std::int32_t from, std::int32_t to)
{
    ProgramRecord record;
    readProgram (from, record);
    writeProgram (to, &record, sizeof record);
}

void BankStore::read (BankImage& image) const
{
    readWords (0, &image, sizeof image);
}

void BankStore::write (const void* image, std::size_t bytes)
{
    writeWords (0, image, bytes);
}

void BankStore::readProgram (std::int32_t program, ProgramRecord& record) const
{
    readWords (recordAt (program), &record, sizeof record);
}

void BankStore::writeProgram (std::int32_t program, const void* record, std::size_t bytes)
{
    writeWords (recordAt (program), record, bytes);
}

void BankStore::readWords (std::size_t first, void* to, std::size_t bytes) const
{
    auto* out = static_cast<std::byte*> (to);
    for (std::size_t n = 0; n < bytes / sizeof (std::uint32_t); ++n)
    {
        const std::uint32_t word = words[first + n].load (relaxed);
        std::memcpy (out + n * sizeof word, &word, sizeof word);
    }
}

// The last word may be written in part; its other bytes stay what they are, whoever changes them meanwhile.
void BankStore::writeWords (std::size_t first, const void* from, std::size_t bytes)
{
    const auto* in = static_cast<const std::byte*> (from);
    for (; bytes >= sizeof (std::uint32_t); bytes -= sizeof (std::uint32_t))
    {
        std::uint32_t word = 0;
        std::memcpy (&word, in, sizeof word);
        words[first++].store (word, relaxed);
        in += sizeof word;
    }
    if (bytes == 0)
        return;
    std::uint32_t before = words[first].load (relaxed);
    std::uint32_t after = 0;
    do
    {
        after = before;
        std::memcpy (&after, in, bytes);
    } while (!words[first].compare_exchange_weak (before, after, relaxed));
}
}
