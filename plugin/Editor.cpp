#include "plugin/Editor.h"

#include "plugin/EditorFactory.h"

EditorFactory editorFactory ()
{
    return [] (VstSynth& synth) -> std::unique_ptr<AEffEditor> { return std::make_unique<Editor> (synth); };
}

namespace
{
constexpr unsigned char virtualEscape = 6; // as VstKeyCode numbers keys
}

Editor::Editor (VstSynth& owner)
    : AEffGUIEditor (static_cast<AudioEffect*> (&owner)),
      synth (owner),
      panel (editor::createPanel (owner.instrument (), *this))
{
    owner.instrument ().attachEditor (panel.get ());
}

bool Editor::getRect (ERect** rectangle)
{
    const auto size = panel->size ();
    rect = { 0, 0, static_cast<VstInt16> (size.height), static_cast<VstInt16> (size.width) };
    *rectangle = &rect;
    return true;
}

bool Editor::open (void* parentWindow)
{
    close ();
    if (!panel->open (parentWindow))
        return false;
    AEffGUIEditor::open (parentWindow);
    return true;
}

void Editor::close ()
{
    panel->close ();
    AEffGUIEditor::close ();
}

void Editor::idle ()
{
    panel->idle ();
}

bool Editor::onKeyDown (VstKeyCode& keyCode)
{
    return panel->onKeyDown (keyCode.virt == virtualEscape ? editor::escapeCharacter : keyCode.character);
}

bool Editor::onWheel (float distance)
{
    return panel->onWheel (distance);
}

bool Editor::setKnobMode (VstInt32 mode)
{
    return panel->setKnobMode (mode);
}

void Editor::setParameterAutomated (std::int32_t index, float value)
{
    synth.setParameterAutomated (index, value);
}

void Editor::beginEdit (std::int32_t index)
{
    synth.beginEdit (index);
}

void Editor::endEdit (std::int32_t index)
{
    synth.endEdit (index);
}

bool Editor::resize (int width, int height)
{
    return synth.sizeWindow (width, height);
}

void Editor::updateDisplay ()
{
    synth.updateDisplay ();
}
