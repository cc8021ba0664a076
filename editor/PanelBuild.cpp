// What the panel is built of, from the control table.
#include "editor/ClipRelease.h"
#include "editor/Colours.h"
#include "editor/MenuTable.h"
#include "editor/Panel.h"
#include "editor/StepKnob.h"
#include "editor/ValueText.h"
#include "platform/MessageBox.h"

namespace editor
{
using namespace VSTGUI;

namespace
{
constexpr int highestNote = 127;
constexpr double aboutFontSize = 14.0; // pixels
constexpr double helpFontSize = 11.0;
constexpr float sliderWheelShare = 0.02f; // of the travel, for one notch
constexpr float fineDragFactor = 10.0f;   // shift makes a drag this much longer

// Under everything else: the background, and where a right click meets no control it opens the main menu. A
// view, for the toolkit does not scale the background of a frame with the frame's zoom.
class EmptyPanel : public CView
{
public:
    EmptyPanel (const CRect& size, CBitmap* picture, std::function<void (const CPoint&)> onRightClick)
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
        rightClick (event.mousePosition);
    }

private:
    std::function<void (const CPoint&)> rightClick;
};
}

void Panel::buildPanel ()
{
    frame->addView (new EmptyPanel (toRect (panel::panelRect), background,
                                    [this] (const CPoint& where) { openMainMenu (where); }));
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
                                             [this] (CView* view) { return helpFor (view); });
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
    enterControl (new StepKnob (size, this, tag, frames, frameHeight, bitmap), tag, bitmapId, addToFrame);
}

void Panel::addOnOffButton (int x, int y, int width, int height, std::int32_t tag, int bitmapId,
                            bool addToFrame)
{
    const CRect size (x, y, x + width, y + height);
    enterControl (new COnOffButton (size, this, tag, panelBitmap (bitmapId)), tag, bitmapId, addToFrame);
}

void Panel::addHorizontalSlider (int x, int y, int width, int height, std::int32_t tag, int bitmapId,
                                 bool addToFrame)
{
    const CRect size (x, y, x + width, y + height);
    auto* slider = new CHorizontalSlider (size, this, tag, CPoint (0, panel::sliderHandleOffsetY), width,
                                          panelBitmap (bitmapId), nullptr, CPoint (0, 0), CSlider::kLeft);
    slider->setWheelInc (sliderWheelShare);
    slider->setZoomFactor (fineDragFactor);
    enterControl (slider, tag, bitmapId, addToFrame);
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
    menuButton = new SmallButton (menuRect, picture, Sign::menu,
                                  [this, menuRect] { openMainMenu (menuRect.getBottomLeft ()); });
    frame->addView (menuButton);
}

void Panel::makeAboutPage ()
{
    const CAboutPage::Places places = { toRect (panel::panelRect), toRect (panel::aboutRect),
                                        toRect (panel::aboutVersionRect) };
    aboutPage =
        makeOwned<CAboutPage> (places, this, commandRemoveAbout, aboutPicture, toolkit->font (aboutFontSize));
}

std::string Panel::helpFor (CView* view)
{
    if (auto* rightMenu = dynamic_cast<VstGraph::CRightMenu*> (view))
    {
        const std::int32_t tag = rightMenu->getTag ();
        for (const panel::Control& control : panel::controls ())
        {
            if (control.tag == tag && control.kind != panel::ControlKind::valueDisplay)
                return std::string (control.help) + " \xE2\x80\x94 " +
                       valueText (tag, synth.parameterValue (tag),
                                  synth.parameterValue (paramLfoBmpSync) != 0.0f);
        }
    }
    if (view == programDisplay)
        return "Program: click for the list, turn the wheel to step";
    return {};
}
}
