// Cairo and the font library keep what they have looked up until the process ends. Released here, so
// that a leak check finds only our own leaks.
#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

namespace
{
class FontCaches : public testing::Environment
{
public:
    void TearDown () override
    {
        cairo_debug_reset_static_data ();
        FcFini ();
    }
};

[[maybe_unused]] const auto* const installed = testing::AddGlobalTestEnvironment (new FontCaches);
}
