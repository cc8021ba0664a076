#pragma once

#include <filesystem>
#include <memory>

#include "platform/MessageBox.h"
#include "platform/SettingsStore.h"

namespace instrument
{
// What the instrument needs of the system around it; tests and tools bring their own. User-interface thread.
struct Services
{
    std::unique_ptr<platform::SettingsStore> settings; // never null
    platform::Answer (*showMessage) (const char* text, const char* title, platform::Buttons buttons);

    // Where the user default bank lies. It is written to both places and read from the one that was written
    // last. Null: no such place in this format; an empty path: the system does not tell.
    std::filesystem::path (*libraryPath) ();            // beside this library, under its name
    std::filesystem::path (*userBankPath) () = nullptr; // one file for all formats
};

// The places of a format's user default bank. VST 2.4 alone looks beside its library, where its file has
// always been; the libraries of other formats lie in bundles or have names of their own.
enum class BankPlaces
{
    besideLibraryAndPerUser,
    perUser
};

// The system's own.
Services systemServices (BankPlaces places);
}
