#pragma once

#include <vstgui/plugin-bindings/aeffguieditor.h>

#include "editor/PanelFactory.h"
#include "plugin/VstSynth.h"

// The panel as VST 2.4 hosts see it: their calls go to the panel, and the panel's wishes to them.
class Editor final : public VSTGUI::AEffGUIEditor, private editor::PanelHost
{
public:
    explicit Editor (VstSynth& owner);

    // AEffEditor
    bool getRect (ERect** rectangle) override;
    bool open (void* parentWindow) override;
    void close () override;
    void idle () override;
    bool onKeyDown (VstKeyCode& keyCode) override;
    bool onWheel (float distance) override;
    bool setKnobMode (VstInt32 mode) override;

private:
    // PanelHost
    void setParameterAutomated (std::int32_t index, float value) override;
    void beginEdit (std::int32_t index) override;
    void endEdit (std::int32_t index) override;
    bool resize (int width, int height) override;
    void updateDisplay () override;

    VstSynth& synth;
    std::unique_ptr<editor::HostedPanel> panel;
};
