#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace platform
{
// Per-user numbers that outlive an instance, by name, below one group named `subkey`. 0 means that nothing is
// stored. User-interface thread only.
//
// What a save that is interrupted or meets another process leaves behind depends on the system. The registry
// takes every number by itself when it is written: each one is then that of one process or the other. The
// settings file takes the numbers of a commit all at once or not at all.
class SettingsStore
{
public:
    virtual ~SettingsStore () = default;

    // The number stored now, by whichever process; 0 when there is none or it cannot be read.
    virtual std::uint32_t read (std::string_view subkey, std::string_view name) const = 0;

    // False when the number could not be stored: the registry refused it, or the name cannot stand in a line
    // of the file. The file's numbers wait for the commit.
    virtual bool write (std::string_view subkey, std::string_view name, std::uint32_t number) = 0;

    // The file: stores the numbers that wait, or none of them and answers false; none waits any longer. The
    // registry has them already, so it answers true.
    virtual bool commit () = 0;
};

// The system's own store: the registry below HKEY_CURRENT_USER "Software\Corvanex\", or one text file
// in the user's configuration folder.
std::unique_ptr<SettingsStore> makeSettingsStore ();
}
