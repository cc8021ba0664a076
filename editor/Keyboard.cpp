#include "editor/Keyboard.h"

#include <cmath>

namespace editor
{
using namespace VSTGUI;

namespace
{
KeyGeometry geometryOf (const Keyboard::Pictures& pictures, int firstKey, int keyCount)
{
    const auto size = [] (const SharedPointer<CBitmap>& bitmap)
    { return bitmap ? CPoint (bitmap->getWidth (), bitmap->getHeight ()) : CPoint (); };
    const CPoint white = size (pictures.whiteUp);
    const CPoint black = size (pictures.blackUp);
    return { firstKey, keyCount, white.x, white.y, black.x, black.y };
}
}

Keyboard::Keyboard (const CRect& size, IControlListener* viewListener, std::int32_t viewTag,
                    const Pictures& keyPictures, int keyCount, int firstKey, int lowestNote, int highestNote)
    : CControl (size, viewListener, viewTag),
      pictures (keyPictures),
      geometry (geometryOf (keyPictures, firstKey, keyCount)),
      lowest (lowestNote),
      highest (highestNote)
{
    setTransparency (true);
    setMin (released);
    value = released;
}

void Keyboard::setKeyOn (int note)
{
    show (note, true);
}

void Keyboard::setKeyOff (int note)
{
    if (note != mouseKey)
        show (note, false);
}

void Keyboard::allKeysOff ()
{
    for (int note = 0; note < noteCount; ++note)
        show (note, false);
}

void Keyboard::show (int note, bool isDown)
{
    if (note < 0 || note >= noteCount || keyDown[static_cast<std::size_t> (note)] == isDown)
        return;
    keyDown[static_cast<std::size_t> (note)] = isDown;
    if (geometry.has (note))
        invalidRect (keyRect (note));
}

CRect Keyboard::keyRect (int note) const
{
    const bool white = KeyGeometry::isWhite (note);
    const double width = white ? geometry.whiteWidth : geometry.blackWidth;
    const double height = white ? geometry.whiteHeight : geometry.blackHeight;
    CRect rect (0, 0, width, height);
    rect.offset (getViewSize ().left + std::floor (geometry.left (note)), getViewSize ().top);
    return rect;
}

void Keyboard::draw (CDrawContext* context)
{
    drawRect (context, getViewSize ());
}

// Black keys lie on top of the white ones.
void Keyboard::drawRect (CDrawContext* context, const CRect& updateRect)
{
    for (const bool white : { true, false })
    {
        for (int key = 0; key < geometry.keyCount; ++key)
        {
            const int note = geometry.firstKey + key;
            if (KeyGeometry::isWhite (note) == white)
                drawKey (context, updateRect, note);
        }
    }
    setDirty (false);
}

void Keyboard::drawKey (CDrawContext* context, const CRect& updateRect, int note)
{
    const CRect rect = keyRect (note);
    if (!rect.rectOverlap (updateRect))
        return;
    const bool down = isKeyDown (note);
    const auto& picture = KeyGeometry::isWhite (note) ? (down ? pictures.whiteDown : pictures.whiteUp)
                                                      : (down ? pictures.blackDown : pictures.blackUp);
    if (picture)
        picture->draw (context, rect);
}

void Keyboard::onMouseDownEvent (MouseDownEvent& event)
{
    if (event.buttonState.isLeft ())
    {
        tracking = true;
        play (event.mousePosition);
        event.consumed = true;
    }
}

void Keyboard::onMouseMoveEvent (MouseMoveEvent& event)
{
    if (!tracking)
        return;
    if (event.buttonState.isLeft ())
        play (event.mousePosition);
    else
        release ();
    event.consumed = true;
}

void Keyboard::onMouseUpEvent (MouseUpEvent& event)
{
    release ();
    event.consumed = true;
}

void Keyboard::onMouseCancelEvent (MouseCancelEvent& event)
{
    release ();
    event.consumed = true;
}

// Taken off the panel with a key held: the note must not hang.
bool Keyboard::removed (CView* parent)
{
    release ();
    return CControl::removed (parent);
}

void Keyboard::play (const CPoint& where)
{
    const int note = geometry.hitTest (where.x - getViewSize ().left, where.y - getViewSize ().top);
    if (note == KeyGeometry::noKey || !isShown (note) || isKeyDown (note))
        return;
    const int before = mouseKey;
    mouseKey = note;
    if (before != KeyGeometry::noKey)
        show (before, false);
    show (note, true);
    value = static_cast<float> (note) / noteScale;
    valueChanged ();
}

void Keyboard::release ()
{
    tracking = false;
    if (mouseKey == KeyGeometry::noKey)
        return;
    const int note = mouseKey;
    mouseKey = KeyGeometry::noKey;
    show (note, false);
    value = released;
    valueChanged ();
}
}
