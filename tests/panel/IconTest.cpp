// The committed icons against what their generator draws.
#include <gtest/gtest.h>

#include "picture/Surface.h"
#include "resources/icon/Icon.h"
#include "tests/panel/PanelFiles.h"

namespace
{
// By their pixels, for another zlib packs them differently. Colours where they are opaque: what shows through
// is stored multiplied by its opacity.
TEST (Icon, committedFilesAreWhatIsDrawn)
{
    for (const int side : { 16, 32, 48, 64, 128, 256 })
    {
        const auto file = resourcePath ("../icon/" + std::to_string (side) + "/brimvale.png");
        const picture::Surface surface (cairo_image_surface_create_from_png (file.c_str ()));
        ASSERT_EQ (cairo_image_surface_get_format (surface.get ()), CAIRO_FORMAT_ARGB32) << file;
        ASSERT_EQ (cairo_image_surface_get_width (surface.get ()), side);
        ASSERT_EQ (cairo_image_surface_get_height (surface.get ()), side);
        const auto* stored =
            reinterpret_cast<const std::uint32_t*> (cairo_image_surface_get_data (surface.get ()));
        int opaque = 0;
        for (const std::uint32_t drawn : icon::draw (side))
        {
            const std::uint32_t pixel = *stored++;
            ASSERT_EQ (pixel >> 24, drawn >> 24) << file << " differs; build the target icons";
            if (drawn >> 24 != 255)
                continue;
            ++opaque;
            ASSERT_EQ (pixel, drawn) << file << " differs; build the target icons";
        }
        EXPECT_GT (opaque, side * side / 2);
    }
}
}
