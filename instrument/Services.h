#pragma once

#include <filesystem>

#include "instrument/SynthEditor.h"
#include "platform/MessageBox.h"
#include "platform/SettingsStore.h"

// What the synth needs from its surroundings. The library uses systemServices() and adds its editor; tests
// bring their own.
struct Services
{
    std::unique_ptr<platform::SettingsStore> settings; // never null
    platform::Answer (*showMessage) (const char* text, const char* title, platform::Buttons buttons);
    std::filesystem::path (*libraryPath) ();
    EditorFactory createEditor; // null: the instrument has no editor
};

Services systemServices ();
