#pragma once

#include <memory>

#include <DistrhoUI.hpp>

#include "formats/dpf/SynthPlugin.h"

namespace dpf
{
// The host's side of the window that is made next, as far as the framework does not pass it on.
class WindowSeat
{
public:
    virtual ~WindowSeat () = default;

    // False when the host refuses.
    virtual bool resize (int width, int height) = 0;

    // Whether the host learns from its window, and from nothing else, what the instrument changed itself.
    virtual bool tellsParameters () const = 0;
};

// Made by the format: VST3's or LV2's. Never null.
std::unique_ptr<WindowSeat> takeNextSeat ();

// The framework's window, with the panel in it. The framework also makes windows that are never shown, only
// to ask them for their size; those leave the panel alone. User-interface thread.
class PanelWindow final : public DISTRHO::UI, private editor::PanelHost
{
public:
    PanelWindow ();
    ~PanelWindow () override;

    // UI
    std::uintptr_t getNativeWindowHandle () const noexcept override;
    void uiIdle () override;

    // The panel hears of everything from the instrument itself.
    void parameterChanged (std::uint32_t /*index*/, float /*value*/) override {}
    void stateChanged (const char* /*key*/, const char* /*value*/) override {}

private:
    // PanelHost
    void setParameterAutomated (std::int32_t index, float value) override;
    void beginEdit (std::int32_t index) override;
    void endEdit (std::int32_t index) override;
    bool resize (int width, int height) override;
    void updateDisplay () override {}

    void sizeChanged (unsigned width, unsigned height) override;

    bool hasPanel () const; // the last window that opened has it

    SynthPlugin& plugin;
    std::unique_ptr<WindowSeat> seat = takeNextSeat ();
    bool sizeIsTold = false;
};
}
