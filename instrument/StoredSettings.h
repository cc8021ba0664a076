#pragma once

#include <string_view>

#include "instrument/BankStore.h"
#include "instrument/Services.h"

namespace instrument
{
// Settings that belong to the user and to no bank: defaults of the plug-in-wide parameters and the MIDI
// bindings, by parameter name. User-interface thread.
class StoredSettings
{
public:
    StoredSettings (const Services& surroundings, BankStore& bankStore)
        : services (surroundings),
          store (bankStore)
    {
    }

    // Takes the bindings over into the store. The stored values are not: a new instance plays as its bank
    // says, and the numbers are kept for other programs that read them.
    void readStoredDefaults ();

    // Stores values and bindings, and says so. Each failure has a message of its own and the rest goes on.
    void save ();

private:
    bool writeRegistryDword (std::string_view name, std::uint32_t number);
    void showError (const char* text) const;

    const Services& services;
    BankStore& store;
};
}
