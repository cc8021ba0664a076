#pragma once

#include <filesystem>

namespace platform
{
// Where instruments of this maker keep files of the current user; it need not be there yet. Empty when the
// system does not tell. Any thread.
std::filesystem::path userFolder ();
}
