// LV2's side of the panel's window: the framework's, but for the way back to the host when the panel changes
// its size, which it leaves out.
#include <src/DistrhoDefines.h>
#undef DISTRHO_PLUGIN_EXPORT
#define DISTRHO_PLUGIN_EXPORT extern "C" // the list of exports decides, on Windows too
#include <src/lv2/ui.h>                  // declares ours
#define lv2ui_descriptor frameworkWindow
#include <DistrhoUIMain.cpp> // NOLINT(bugprone-suspicious-include): the framework is compiled within ours
#undef lv2ui_descriptor

#include "formats/dpf/PanelWindow.h"

namespace dpf
{
namespace
{
const LV2UI_Resize* nextResize = nullptr; // of the window that is being made

class Lv2Seat final : public WindowSeat
{
public:
    // A host without this follows its window's size by itself, or cannot.
    bool resize (int width, int height) override
    {
        return feature == nullptr || feature->ui_resize (feature->handle, width, height) == 0;
    }

    // Few hosts let the instrument set its input ports, but all let its window do so.
    bool tellsParameters () const override { return true; }

private:
    const LV2UI_Resize* feature = nextResize;
};

LV2UI_Handle instantiate (const LV2UI_Descriptor* descriptor, const char* uri, const char* bundlePath,
                          LV2UI_Write_Function write, LV2UI_Controller controller, LV2UI_Widget* widget,
                          const LV2_Feature* const* features)
{
    nextResize = DISTRHO::getLv2Feature<LV2UI_Resize> (features, LV2_UI__resize);
    const auto window =
        frameworkWindow (0)->instantiate (descriptor, uri, bundlePath, write, controller, widget, features);
    nextResize = nullptr;
    return window;
}
}

std::unique_ptr<WindowSeat> takeNextSeat ()
{
    return std::make_unique<Lv2Seat> ();
}
}

extern "C" const LV2UI_Descriptor* lv2ui_descriptor (std::uint32_t index)
{
    static const LV2UI_Descriptor descriptor = []
    {
        LV2UI_Descriptor ours = *frameworkWindow (0);
        ours.instantiate = dpf::instantiate;
        return ours;
    }();
    return index == 0 ? &descriptor : nullptr;
}
