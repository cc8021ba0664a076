#pragma once

#include <filesystem>

namespace platform
{
// Full path of the file that this code was loaded from; empty when the system does not tell, or tells more
// than 1024 characters on Windows. A relative path is completed with the folder that was current at loading.
// Any thread.
std::filesystem::path ownLibraryPath ();
}
