#pragma once

#include <filesystem>

#include "instrument/Bank.h"
#include "instrument/Services.h"

namespace instrument
{
// The user default bank: the file that a new instance starts with. VST 2.4 keeps one beside the library; a
// second one for the user is common to all formats. Both are written, and the newer one is read.
// User-interface thread.
class UserBank
{
public:
    explicit UserBank (const Services& surroundings) : services (surroundings) {}

    // True when there is such a file and it was taken, even if its size was wrong and nothing was read: the
    // factory bank stays away then, so that a damaged file is noticed. `askUser`: a question decides first.
    bool read (BankImage& image, bool askUser) const;

    // An older file that cannot be replaced stays as it was. That is no error while the other place could be
    // written, and none where a format has no other: players whose library lies in a folder of the system
    // have never been told.
    void save (const BankImage& image) const;

private:
    std::filesystem::path besideLibrary () const;
    std::filesystem::path ofUser () const;
    std::filesystem::path newest () const;

    const Services& services;
};
}
