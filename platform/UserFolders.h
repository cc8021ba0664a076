#pragma once

#include <filesystem>

// Folders of the user who runs this process; empty when the system does not tell. Any thread.
namespace platform
{
// For what all of the user's instruments keep: "corvanex" in the configuration folder, "Corvanex" in that of
// application data on Windows. It need not exist yet.
std::filesystem::path settingsFolder ();

std::filesystem::path homeFolder ();
}
