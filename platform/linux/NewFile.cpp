#include "platform/NewFile.h"

namespace platform
{
std::FILE* createNewFile (const std::filesystem::path& path)
{
    return std::fopen (path.c_str (), "wbxe"); // x: exclusively; e: not for programs that this one starts
}
}
