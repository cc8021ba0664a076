#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace platform
{
// Per-user numbers that outlive an instance, by name, below one group named `subkey`. 0 means that nothing is
// stored. User-interface thread only.
class SettingsStore
{
public:
    virtual ~SettingsStore () = default;

    // The number stored now, by whichever process; 0 when there is none or it cannot be read.
    virtual std::uint32_t read (std::string_view subkey, std::string_view name) const = 0;

    // False when the number could not be stored. A store may hold numbers back until commit.
    virtual bool write (std::string_view subkey, std::string_view name, std::uint32_t number) = 0;

    // Makes the numbers written since the last commit permanent, all of them or none. False on failure.
    virtual bool commit () = 0;
};

// The system's own store: the registry below HKEY_CURRENT_USER "Software\Corvanex\", or one text file
// in the user's configuration folder.
std::unique_ptr<SettingsStore> makeSettingsStore ();
}
