// What a host asks first: the one exported name.
#include <clap/entry.h>
#include <clap/plugin-factory.h>

#include <new>
#include <string_view>

#include "formats/clap/Plugin.h"

namespace
{
const clap_plugin_factory_t factory = {
    .get_plugin_count = [] (const clap_plugin_factory_t*) -> std::uint32_t { return 1; },
    .get_plugin_descriptor = [] (const clap_plugin_factory_t*, std::uint32_t index)
    { return index == 0 ? &clap::descriptor : nullptr; },
    .create_plugin = [] (const clap_plugin_factory_t*, const clap_host_t* host,
                         const char* id) -> const clap_plugin_t*
    {
        if (host == nullptr || id == nullptr || !clap_version_is_compatible (host->clap_version) ||
            std::string_view (id) != clap::descriptor.id)
            return nullptr;
        auto* plugin = new (std::nothrow) clap::Plugin (*host); // the host's destroy deletes it
        return plugin != nullptr ? plugin->face () : nullptr;
    },
};
}

extern "C" CLAP_EXPORT const clap_plugin_entry_t clap_entry = {
    .clap_version = CLAP_VERSION,
    .init = [] (const char*) { return true; },
    .deinit = [] {},
    .get_factory = [] (const char* id) -> const void*
    { return id != nullptr && std::string_view (id) == CLAP_PLUGIN_FACTORY_ID ? &factory : nullptr; },
};
