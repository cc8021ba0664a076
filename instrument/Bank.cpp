#include "instrument/Bank.h"

#include <algorithm>

namespace instrument
{
namespace
{
template <std::size_t size>
std::string_view textIn (const char (&field)[size])
{
    return { field, static_cast<std::size_t> (std::find (field, field + size, '\0') - field) };
}

// Copies at most `longest` characters and clears the rest of the field.
template <std::size_t size>
void copyText (char (&field)[size], std::string_view text, std::size_t longest)
{
    std::memset (field, 0, size);
    text.copy (field, std::min (longest, text.size ()));
}
}

void ParameterSlot::setName (std::string_view text)
{
    copyText (name, text, longestName);
}
std::string_view ParameterSlot::nameView () const
{
    return textIn (name);
}

void ProgramRecord::setName (std::string_view text)
{
    copyText (name, text, nameBytes);
}
std::string_view ProgramRecord::nameView () const
{
    return textIn (name);
}

void resetToInitialValues (BankImage& bank)
{
    for (std::size_t i = 0; i < paramTable.size (); ++i)
    {
        const ParamRow& row = paramTable[i];
        ParameterSlot& slot = bank.slots[i];
        slot.perProgram = row.scope == Scope::program ? 1 : 0;
        slot.unclamped = row.unclamped ? 1 : 0;
        slot.keptAsDefault = row.keptAsDefault ? 1 : 0;
        slot.value = row.initial;
        slot.setName (row.name);
        for (ProgramRecord& program : bank.programs)
            program.values[i] = row.initial;
    }
}
}
