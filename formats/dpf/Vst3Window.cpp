// VST3's side of the panel's window: the framework's, but for the size, of which it does not tell whether the
// host took it.
#define dpf_plugin_view_create frameworkView
#include <DistrhoUIMain.cpp> // NOLINT(bugprone-suspicious-include): the framework is compiled within ours
#undef dpf_plugin_view_create

#include "formats/dpf/PanelWindow.h"

namespace dpf
{
namespace
{
DISTRHO::dpf_plugin_view** nextView = nullptr; // of the window that is being made

class Vst3Seat final : public WindowSeat
{
public:
    bool resize (int width, int height) override
    {
        if (view == nullptr || (*view)->frame == nullptr)
            return false;
        v3_plugin_frame** const frame = (*view)->frame;
        v3_view_rect rect = { 0, 0, width, height };
        return v3_cpp_obj (frame)->resize_view (frame, reinterpret_cast<v3_plugin_view**> (view), &rect) ==
               V3_OK;
    }

    // Every block does.
    bool tellsParameters () const override { return false; }

private:
    DISTRHO::dpf_plugin_view** view = nextView;
};

v3_result V3_API attached (void* self, void* parent, const char* platform)
{
    nextView = static_cast<DISTRHO::dpf_plugin_view**> (self);
    const v3_result result = DISTRHO::dpf_plugin_view::attached (self, parent, platform);
    nextView = nullptr;
    return result;
}
}

std::unique_ptr<WindowSeat> takeNextSeat ()
{
    return std::make_unique<Vst3Seat> ();
}
}

namespace DISTRHO
{
// The framework's other half asks for views under this name.
v3_plugin_view** dpf_plugin_view_create (v3_host_application** host, void* instance, double hz)
{
    v3_plugin_view** const made = frameworkView (host, instance, hz);
    (*reinterpret_cast<dpf_plugin_view**> (made))->view.attached = dpf::attached;
    return made;
}
}
