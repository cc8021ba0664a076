#pragma once

#include <array>

#include "editor/KeyGeometry.h"
#include "editor/Toolkit.h"

namespace editor
{
// The on-screen keyboard. The mouse plays one note at a time; notes that sound from elsewhere are shown
// beside it. Its value is the mouse's note / 128 while one is held and -1 on release.
class Keyboard : public VSTGUI::CControl
{
public:
    struct Pictures
    {
        VSTGUI::SharedPointer<VSTGUI::CBitmap> whiteUp, whiteDown, blackUp, blackDown;
    };

    static constexpr float noteScale = 128.0f;
    static constexpr float released = -1.0f;
    static constexpr int noteCount = 128;

    // Notes outside `lowestNote`..`highestNote` are neither shown nor played.
    Keyboard (const VSTGUI::CRect& size, VSTGUI::IControlListener* listener, std::int32_t tag,
              const Pictures& keyPictures, int keyCount, int firstKey, int lowestNote, int highestNote);

    // Show a key pressed or not. The one that the mouse holds stays pressed whatever ends its note.
    void setKeyOn (int note);
    void setKeyOff (int note);
    void allKeysOff ();

    // Ends the note that the mouse holds, as if its button came up.
    void release ();
    bool isKeyDown (int note) const { return keyDown[static_cast<std::size_t> (note)]; }

    void draw (VSTGUI::CDrawContext* context) override;
    void drawRect (VSTGUI::CDrawContext* context, const VSTGUI::CRect& updateRect) override;
    void onMouseDownEvent (VSTGUI::MouseDownEvent& event) override;
    void onMouseMoveEvent (VSTGUI::MouseMoveEvent& event) override;
    void onMouseUpEvent (VSTGUI::MouseUpEvent& event) override;
    void onMouseCancelEvent (VSTGUI::MouseCancelEvent& event) override;
    bool removed (VSTGUI::CView* parent) override;

    CLASS_METHODS_NOCOPY (Keyboard, CControl)

private:
    bool isShown (int note) const { return note >= lowest && note <= highest; }
    void play (const VSTGUI::CPoint& where);
    void show (int note, bool isDown);
    VSTGUI::CRect keyRect (int note) const;
    void drawKey (VSTGUI::CDrawContext* context, const VSTGUI::CRect& updateRect, int note);

    Pictures pictures;
    KeyGeometry geometry;
    int lowest;
    int highest;
    std::array<bool, noteCount> keyDown = {};
    int mouseKey = KeyGeometry::noKey;
    bool tracking = false; // the left button went down on the keyboard and is still held
};
}
