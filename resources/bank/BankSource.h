// The factory bank as a musician writes it (resources/bank/factorybank.txt), read and turned into the
// bytes that the library carries.
#pragma once

#include "instrument/Bank.h"

#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace instrument;

namespace bank
{
// What a program is for; also picks the phrase that it is auditioned with.
enum class Kind
{
    bass,
    lead,
    pad,
    pluck,
    keys,
    effect,
    sequence,
};

std::string_view kindName (Kind kind);

struct SourceProgram
{
    ProgramRecord record; // name and values
    Kind kind = Kind::bass;
    std::string about; // a sentence or two for the sound list

    std::string name () const { return std::string (record.nameView ()); }
    float value (Param parameter) const { return record.values[static_cast<std::size_t> (parameter)]; }
};

// Told to the user as it stands: one sentence with the line number.
struct SourceError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// Reads all 128 programs. Throws SourceError at the first line that is not understood, and when
// programs are missing, out of order, named twice or without a kind or a description.
std::vector<SourceProgram> readBankSource (std::istream& source);

// The 22528 bytes of the bank resource: 128 records of the name and 38 little-endian floats.
std::vector<char> bankBytes (const std::vector<SourceProgram>& programs);
}
