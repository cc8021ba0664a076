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
    std::filesystem::path (*libraryPath) ();
};

// The system's own.
Services systemServices ();
}
