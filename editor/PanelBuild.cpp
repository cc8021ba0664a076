// What the panel is built of, from the control table.
#include "editor/ClipRelease.h"
#include "editor/Colours.h"
#include "editor/LevelSlider.h"
#include "editor/MenuTable.h"
#include "editor/Panel.h"
#include "editor/StepKnob.h"
#include "editor/SwitchButton.h"
#include "instrument/ValueText.h"
#include "parameters/KnobLaws.h"
#include "platform/MessageBox.h"

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr int highestNote = 127;
constexpr double aboutFontSize = 14.0; // pixels
constexpr double helpFontSize = 11.0;

// Under everything else: the background, and where a right click meets no control it opens the main menu. A
// view, for the toolkit does not scale the background of a frame with the frame's zoom.
class EmptyPanel : public CView
{
public:
    EmptyPanel (const CRect& size, CBitmap* picture, std::function<void (const CRect&)> onRightClick)
        : CView (size),
          rightClick (std::move (onRightClick))
    {
        setBackground (picture);
    }

    void onMouseDownEvent (MouseDownEvent& event) override
    {
        if (!event.buttonState.isRight ())
            return;
        event.consumed = true;
        event.ignoreFollowUpMoveAndUpEvents (true);
        rightClick (CRect (event.mousePosition, CPoint (1, 1)));
    }

private:
    std::function<void (const CRect&)> rightClick;
};

// The polyphony knob stands at the number of voices that play: 0 for two of them.
std::int32_t voicesPosition (float value)
{
    return voiceCountFor (value).value_or (mostVoices) / 2 - 1;
}
}

void Panel::buildPanel ()
{
    frame->addView (new EmptyPanel (toRect (panel::panelRect), background,
                                    [this] (const CRect& where) { openMainMenu (where); }));
    for (const panel::Control& control : panel::controls ())
    {
        const panel::Rect& r = control.rect;
        switch (control.kind)
        {
        case panel::ControlKind::knob:
            addKnob (r.x, r.y, control.tag, r.height, control.bitmapId, true);
            break;
        case panel::ControlKind::onOffButton:
        case panel::ControlKind::lamp:
            addOnOffButton (r.x, r.y, r.width, r.height, control.tag, control.bitmapId, true);
            break;
        case panel::ControlKind::slider:
            addHorizontalSlider (r.x, r.y, r.width, r.height, control.tag, control.bitmapId, true);
            break;
        case panel::ControlKind::keyboard:
            addKeyboard (r, control.tag);
            break;
        case panel::ControlKind::valueDisplay:
            addValueDisplay (r.x, r.y, r.width, r.height, control.tag, 1.0f, 0.0f, false, true);
            break;
        }
    }
    addProgramControls ();
    updateLamps ();
    updateProgramDisplay ();
    topView = new ClipRelease (toRect (panel::panelRect));
    frame->addView (topView);
    hoverHelp = std::make_unique<HoverHelp> (*frame, topView, toolkit->font (helpFontSize),
                                             [this] (const CPoint& where) { return helpAt (where); });
    frame->registerKeyboardHook (this);
}

SharedPointer<CBitmap> Panel::panelBitmap (int resourceId)
{
    auto bitmap = toolkit->bitmap (resourceId);
    if (!bitmap)
        platform::showMessage ("Bitmap Alocation Error!", "Error!", platform::Buttons::ok);
    return bitmap;
}

void Panel::enterControl (CControl* control, std::int32_t tag, int bitmapId, bool addToFrame)
{
    ControlSlot& entry = slots[static_cast<std::size_t> (tag)];
    entry.control = control;
    entry.bitmapId = static_cast<std::uint32_t> (bitmapId);
    control->setTransparency (true);
    if (isParameter (tag))
    {
        control->setDefaultValue (paramTable[static_cast<std::size_t> (tag)].initial);
        control->setValue (synth.getParameter (tag));
        entry.rightMenu = new VstGraph::CRightMenu (control->getViewSize (), this,
                                                    VstGraph::CRightMenu::storedTag, control);
        entry.rightMenu->setActions (
            [this] (const SharedPointer<COptionMenu>& menu, const CRect& anchor,
                    const std::function<void (std::int32_t)>& chosen)
            { popUp (menu, anchor, [chosen] (COptionMenu*, std::int32_t item) { chosen (item); }); },
            [this, tag] { typeValue (tag); });
    }
    else
    {
        control->setMouseEnabled (false); // lamps show and do not switch
    }
    if (!addToFrame)
        return;
    frame->addView (control);
    if (entry.rightMenu != nullptr)
        frame->addView (entry.rightMenu);
    entry.active = true;
}

void Panel::addKnob (int x, int y, std::int32_t tag, int frameHeight, int bitmapId, bool addToFrame)
{
    const auto bitmap = panelBitmap (bitmapId);
    const int width = bitmap ? static_cast<int> (bitmap->getWidth ()) : frameHeight;
    const int frames = bitmap ? static_cast<int> (bitmap->getHeight ()) / frameHeight : 0;
    const CRect size (x, y, x + width, y + frameHeight);
    const StepKnob::PositionLaw law = tag == paramVoices ? voicesPosition : nullptr;
    enterControl (new StepKnob (size, this, tag, frames, frameHeight, bitmap, law), tag, bitmapId,
                  addToFrame);
}

void Panel::addOnOffButton (int x, int y, int width, int height, std::int32_t tag, int bitmapId,
                            bool addToFrame)
{
    const CRect size (x, y, x + width, y + height);
    enterControl (new SwitchButton (size, this, tag, panelBitmap (bitmapId)), tag, bitmapId, addToFrame);
}

void Panel::addHorizontalSlider (int x, int y, int width, int height, std::int32_t tag, int bitmapId,
                                 bool addToFrame)
{
    const CRect size (x, y, x + width, y + height);
    enterControl (
        new LevelSlider (size, this, tag, CPoint (0, panel::sliderHandleOffsetY), panelBitmap (bitmapId)),
        tag, bitmapId, addToFrame);
}

void Panel::addValueDisplay (int x, int y, int width, int height, std::int32_t tag, float scale, float offset,
                             bool isInteger, bool addToFrame)
{
    ControlSlot& entry = slots[static_cast<std::size_t> (tag)];
    entry.displayScale = scale;
    entry.displayOffset = offset;
    entry.integerDisplay = isInteger;
    const CRect size (x, y, x + width, y + height);
    auto* display = new CParamDisplay (size, nullptr, CParamDisplay::kNoFrame);
    entry.display = display;
    display->setTransparency (true);
    display->setMouseEnabled (false);
    display->setBackColor (kTransparentCColor);
    display->setFont (toolkit->font (panel::valueFontSize));
    display->setFontColor (toColour (panel::accentColour));
    display->setValue (synth.getParameter (tag) * scale + offset);
    updateRateDisplay ();
    display->setValueToStringFunction2 (
        [this] (float, std::string& text, CParamDisplay*)
        {
            text = rateText;
            return true;
        });
    if (addToFrame)
        frame->addView (display);
}

void Panel::addKeyboard (const panel::Rect& rectangle, std::int32_t tag)
{
    const Keyboard::Pictures pictures = { panelBitmap (panel::whiteKeyUpId),
                                          panelBitmap (panel::whiteKeyDownId),
                                          panelBitmap (panel::blackKeyUpId),
                                          panelBitmap (panel::blackKeyDownId) };
    keyboard = makeOwned<Keyboard> (toRect (rectangle), this, tag, pictures, panel::keyCount, panel::firstKey,
                                    0, highestNote);
    keyboardShown = synth.getParameter (paramShowKeys) != 0.0f;
    if (keyboardShown)
        addShared (keyboard);
}

// A view that comes and goes: the frame gives up one reference when it removes it, and we keep ours.
void Panel::addShared (CView* view)
{
    view->remember ();
    frame->addView (view, topView);
}

void Panel::addProgramControls ()
{
    programDisplay = new ProgramDisplay (
        toRect (panel::programDisplayRect), toolkit->font (panel::programFontSize),
        { [this] { openProgramMenu (); }, [this] (std::int32_t step) { stepProgram (step); } });
    frame->addView (programDisplay);

    const auto picture = panelBitmap (panel::smallButtonBitmapId);
    using Sign = SmallButton::Sign;
    frame->addView (new SmallButton (toRect (panel::previousProgramRect), picture, Sign::left,
                                     [this] { stepProgram (-1); }));
    frame->addView (
        new SmallButton (toRect (panel::nextProgramRect), picture, Sign::right, [this] { stepProgram (1); }));
    const CRect menuRect = toRect (panel::menuButtonRect);
    menuButton =
        new SmallButton (menuRect, picture, Sign::menu, [this, menuRect] { openMainMenu (menuRect); });
    frame->addView (menuButton);
}

void Panel::makeAboutPage ()
{
    const CAboutPage::Places places = { toRect (panel::panelRect), toRect (panel::aboutRect),
                                        toRect (panel::aboutVersionRect) };
    aboutPage =
        makeOwned<CAboutPage> (places, this, commandRemoveAbout, aboutPicture, toolkit->font (aboutFontSize));
}

instrument::ValueContext Panel::valueContext () const
{
    return { synth.parameterValue (paramLfoBmpSync) != 0.0f,
             synth.parameterValue (paramFilterKeyTrak) != 0.0f };
}

std::string Panel::valueOf (std::int32_t parameter) const
{
    return instrument::valueText (parameter, synth.parameterValue (parameter), valueContext ());
}

std::string Panel::helpFor (const panel::Control& control)
{
    std::string text = control.help;
    if (!isParameter (control.tag))
        return text;
    text += " \xE2\x80\x94 "; // a dash
    text += control.tag == learning ? "move a controller" : valueOf (control.tag);
    if (const std::uint32_t controller = synth.midiController (control.tag); controller != 0)
        text += ", CC " + std::to_string (controller);
    return text;
}

std::optional<HoverHelp::Zone> Panel::helpAt (const CPoint& where)
{
    struct Button
    {
        const panel::Rect& rect;
        const char* help;
    };
    static constexpr Button buttons[] = {
        { panel::programDisplayRect, "Program: click for the list, turn the wheel to step" },
        { panel::previousProgramRect, "Previous program" },
        { panel::nextProgramRect, "Next program" },
        { panel::menuButtonRect, "Menu: banks, random sounds, undo, zoom" },
    };
    if (aboutShown)
        return std::nullopt;
    for (const panel::Control& control : panel::controls ())
    {
        const CRect place = toRect (panel::paintedRect (control));
        const bool isHidden = control.kind == panel::ControlKind::keyboard && !keyboardShown;
        if (isHidden || !place.pointInside (where))
            continue;
        CRect caption = place;
        caption.bottom += panel::captionHeight (control);
        return HoverHelp::Zone{ place, caption, helpFor (control),
                                isParameter (control.tag) &&
                                    control.kind != panel::ControlKind::valueDisplay };
    }
    for (const Button& button : buttons)
    {
        const CRect place = toRect (button.rect);
        if (place.pointInside (where))
            return HoverHelp::Zone{ place, place, button.help };
    }
    return std::nullopt;
}
}
