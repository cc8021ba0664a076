#include "platform/SharedLibrary.h"

#include <stdexcept>
#include <system_error>
#include <windows.h>

namespace platform
{
SharedLibrary::SharedLibrary (const std::filesystem::path& file)
{
    handle = LoadLibraryW (std::filesystem::absolute (file).c_str ());
    if (handle == nullptr)
    {
        const auto code = static_cast<int> (GetLastError ());
        std::string reason = std::system_category ().message (code);
        reason.erase (reason.find_last_not_of (" .\r\n") + 1); // Windows ends its texts with ".\r\n"
        throw std::runtime_error (reason + " (error " + std::to_string (code) + ")");
    }
}

SharedLibrary::~SharedLibrary ()
{
    FreeLibrary (static_cast<HMODULE> (handle));
}

void* SharedLibrary::symbol (const char* name) const
{
    return reinterpret_cast<void*> (GetProcAddress (static_cast<HMODULE> (handle), name));
}
}
