#pragma once

#include <filesystem>

#include "instrument/Bank.h"
#include "instrument/Services.h"

namespace instrument
{
// The user default bank: the file beside the library that a new instance starts with. User-interface thread.
class UserBank
{
public:
    explicit UserBank (const Services& surroundings) : services (surroundings) {}

    // True when there is such a file and it was taken, even if its size was wrong and nothing was read: the
    // factory bank stays away then, so that a damaged file is noticed. `askUser`: a question decides first.
    bool read (BankImage& image, bool askUser) const;

    // A folder that cannot be written is no error: nothing happens, and an older file stays as it was.
    void save (const BankImage& image) const;

private:
    std::filesystem::path path () const;

    const Services& services;
};
}
