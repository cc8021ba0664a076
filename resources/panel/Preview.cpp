#include "resources/panel/PanelArt.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace panel
{
using namespace panel;

namespace
{
// Values by tag that show every kind of control off its rest position.
const std::map<int, double> typicalValues{
    { 0, 0.8 },   { 1, 1.0 },  { 2, 0.5 },  { 3, 0.3 },   { 4, 0.5 },   { 5, 0.62 },
    { 6, 1.0 },   { 7, 0.15 }, { 8, 0.25 }, { 9, 0.5 },   { 10, 0.1 },  { 11, 0.05 },
    { 12, 0.7 },  { 13, 0.4 }, { 14, 0.1 }, { 15, 0.45 }, { 16, 0.0 },  { 17, 0.85 },
    { 18, 0.55 }, { 19, 0.6 }, { 20, 0.0 }, { 21, 0.35 }, { 22, 0.2 },  { 23, 0.0 },
    { 24, 0.5 },  { 25, 0.0 }, { 27, 1.0 }, { 31, 0.5 },  { 32, 0.35 }, { 33, 1.0 },
    { 35, 0.0 },  { 36, 1.0 }, { 39, 0.0 }, { 40, 1.0 },  { 41, 0.0 },  { 42, 1.0 },
};
constexpr std::array<int, 3> keysDown{ 48, 55, 63 };
constexpr std::array<bool, 12> isBlack{ false, true,  false, true,  false, false,
                                        true,  false, true,  false, true,  false };

void pasteFrame (Canvas& canvas, const Control& control, const Bitmap& bitmap, double value)
{
    const int frame = static_cast<int> (value * (bitmap.frames - 1));
    const int height = bitmap.frameHeight ();
    canvas.paste (drawBitmap (bitmap), { 0, frame * height, bitmap.width, height }, control.rect.x,
                  control.rect.y);
}

void pasteSliderHandle (Canvas& canvas, const Control& control, const Bitmap& handle, double value)
{
    const int x =
        control.rect.x + static_cast<int> (std::lround (value * (control.rect.width - handle.width)));
    canvas.paste (drawBitmap (handle), { 0, -sliderHandleOffsetY, handle.width, control.rect.height }, x,
                  control.rect.y);
}

void pasteKeys (Canvas& canvas, const Control& keyboard)
{
    const Bitmap& white = *findBitmap (whiteKeyUpId);
    const Bitmap& black = *findBitmap (blackKeyUpId);
    for (const bool blackPass : { false, true })
    {
        int x = keyboard.rect.x;
        for (int key = firstKey; key < firstKey + keyCount; ++key)
        {
            const bool keyIsBlack = isBlack[static_cast<std::size_t> (key % 12)];
            const bool down = std::ranges::find (keysDown, key) != keysDown.end ();
            const int id =
                keyIsBlack ? (down ? blackKeyDownId : blackKeyUpId) : (down ? whiteKeyDownId : whiteKeyUpId);
            const int height = std::min (keyboard.rect.height, keyIsBlack ? black.height : white.height);
            if (keyIsBlack == blackPass)
            {
                canvas.paste (drawBitmap (*findBitmap (id)),
                              { 0, 0, keyIsBlack ? black.width : white.width, height },
                              keyIsBlack ? x - black.width / 2 - 1 : x, keyboard.rect.y);
            }
            if (!keyIsBlack)
                x += white.width;
        }
    }
}

void pasteButtons (Canvas& canvas)
{
    const Image button = drawBitmap (*findBitmap (smallButtonBitmapId));
    for (const Rect& rect : { previousProgramRect, nextProgramRect, menuButtonRect })
        canvas.paste (button, { 0, 0, rect.width, rect.height }, rect.x, rect.y);
    for (const ButtonGlyph& glyph : buttonGlyphs ())
    {
        cairo_t* cr = canvas.context ();
        canvas.setColour (letterColour);
        for (const GlyphPoint& point : glyph.points)
            cairo_line_to (cr, glyph.button.x + double{ point.x }, glyph.button.y + double{ point.y });
        cairo_close_path (cr);
        cairo_fill (cr);
    }
}
}

void savePreview (const std::string& pngPath)
{
    const Image background = drawBackground ();
    Canvas canvas (background.width, background.height, caseColour);
    canvas.paste (background, panelRect, 0, 0);
    for (const Control& control : controls ())
    {
        const Bitmap* bitmap = findBitmap (control.bitmapId);
        const auto value = typicalValues.find (control.tag);
        if (control.kind == ControlKind::keyboard)
        {
            pasteKeys (canvas, control);
        }
        else if (bitmap != nullptr && control.kind == ControlKind::slider)
        {
            pasteSliderHandle (canvas, control, *bitmap, value->second);
        }
        else if (bitmap != nullptr)
        {
            pasteFrame (canvas, control, *bitmap, value->second);
        }
    }
    pasteButtons (canvas);
    const TextStyle value{ fontFamily, false, 6, 0, accentColour };
    const TextStyle program{ fontFamily, false, 10, 0, accentColour };
    canvas.text ("1/16", 234.5, 193, Align::centre, value);
    canvas.text ("000  Warm Valley Bass", programTextRect.x, programTextRect.y + 7, Align::left, program);
    canvas.savePng (pngPath);
}
}
