#include "platform/NewFile.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace platform
{
// The C library's own exclusive mode for fopen is missing from the older one that every Windows carries.
std::FILE* createNewFile (const std::filesystem::path& path)
{
    const int file = _wopen (path.c_str (), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                             _S_IREAD | _S_IWRITE);
    return file >= 0 ? _fdopen (file, "wb") : nullptr;
}
}
