#include "platform/Resources.h"

#include <cstring>

#include "platform/linux/EmbeddedResource.h"

namespace platform
{
std::span<const std::byte> findResource (const char* type, int id)
{
    for (const EmbeddedResource& resource : std::span (embeddedResources, embeddedResourceCount))
    {
        if (resource.id == id && std::strcmp (resource.type, type) == 0)
            return { resource.begin, resource.end };
    }
    return {};
}
}
