#include "tests/formats/Lv2Instance.h"

#include <map>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <lilv/lilv.h>

#include "formats/shared/ShownParameters.h"

namespace
{
// What the bundle describes.
struct Found
{
    Found ()
    {
        LilvNode* const bundle = lilv_new_file_uri (world, nullptr, BRIMVALE_LV2_BUNDLE);
        lilv_world_load_bundle (world, bundle);
        lilv_node_free (bundle);
        const LilvPlugins* const all = lilv_world_get_all_plugins (world);
        plugin = lilv_plugins_get (all, lilv_plugins_begin (all));
    }
    ~Found ()
    {
        if (instance != nullptr)
            lilv_instance_free (instance);
        lilv_world_free (world);
    }

    std::map<float, std::string> marks (std::uint32_t control) const
    {
        std::map<float, std::string> all;
        const auto* port = lilv_plugin_get_port_by_index (plugin, firstLv2Control + control);
        LilvScalePoints* const points = lilv_port_get_scale_points (plugin, port);
        LILV_FOREACH (scale_points, n, points)
        {
            const LilvScalePoint* const point = lilv_scale_points_get (points, n);
            all[lilv_node_as_float (lilv_scale_point_get_value (point))] =
                lilv_node_as_string (lilv_scale_point_get_label (point));
        }
        lilv_scale_points_free (points);
        return all;
    }

    LilvWorld* world = lilv_world_new ();
    const LilvPlugin* plugin = nullptr;
    LilvInstance* instance = nullptr;
};
}

Lv2Instance makeLv2Instance (const LV2_Feature* const* features)
{
    const auto found = std::make_shared<Found> ();
    found->instance = lilv_plugin_instantiate (found->plugin, 44100.0, features);
    if (found->instance == nullptr)
        throw std::runtime_error ("no instance");
    std::vector<float> defaults (lilv_plugin_get_num_ports (found->plugin));
    lilv_plugin_get_port_ranges_float (found->plugin, nullptr, nullptr, defaults.data ());
    return { found->instance->lv2_descriptor, found->instance->lv2_handle, defaults, found };
}

// Hosts that show the ports themselves.
TEST (Lv2, PortsAreMarkedInUnits)
{
    const Found found;
    for (std::int32_t index = 0; index < formats::shownCount; ++index)
    {
        const auto& row = formats::shownParameter (index);
        EXPECT_EQ (found.marks (static_cast<std::uint32_t> (index)).empty (),
                   row.positions == 0 && !row.automated)
            << index;
    }
    using Marks = std::map<float, std::string>;
    EXPECT_EQ (
        found.marks (parameters::paramVelocityAmp),
        (Marks{ { 0, "off" }, { 0.25f, "25 %" }, { 0.5f, "50 %" }, { 0.75f, "75 %" }, { 1, "100 %" } }));
    EXPECT_EQ (found.marks (parameters::paramVolume).at (0.1f), "-20.0 dB");
    EXPECT_EQ (found.marks (parameters::paramLfoRate).at (0), "0.17 Hz or 32/4");
}
