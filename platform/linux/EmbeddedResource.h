#pragma once

#include <cstddef>
#include <iterator>

namespace platform
{
// One file compiled into the library. The table is made by the build from resources/resources.txt.
struct EmbeddedResource
{
    const char* type;
    int id;
    const std::byte* begin;
    const std::byte* end;
};

extern const EmbeddedResource embeddedResources[];
extern const std::size_t embeddedResourceCount;
}
