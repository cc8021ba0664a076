// What stands where on the panel: one row per bitmap, control and printed label. Plain data, in
// pixels of the 612 x 433 panel with the origin at its top left, shared by the editor that builds the
// views, the generator that draws the art and the tests that compare the two.
#pragma once

#include <span>
#include <string>

#include "picture/Picture.h"

namespace panel
{
struct Rect
{
    int x, y, width, height;

    constexpr int right () const { return x + width; }
    constexpr int bottom () const { return y + height; }
    constexpr bool overlaps (const Rect& other) const
    {
        return x < other.right () && other.x < right () && y < other.bottom () && other.y < bottom ();
    }
};

using picture::Colour;

// The whole palette. One accent; everything else is a shade of the case or of the lettering.
inline constexpr Colour caseColour{ 0x12, 0x1a, 0x1d };   // the metal between the sections
inline constexpr Colour plateColour{ 0x24, 0x31, 0x36 };  // the sections; ground of every control
inline constexpr Colour glassColour{ 0x0a, 0x10, 0x12 };  // behind the two displays
inline constexpr Colour letterColour{ 0xf1, 0xec, 0xdf }; // labels and titles
inline constexpr Colour scaleColour{ 0xb9, 0xc2, 0xbf };  // ticks and position names
inline constexpr Colour accentColour{ 0xf5, 0xa6, 0x3c }; // lit lamps, switches that are on, displays

struct Bitmap
{
    int id;
    const char* name; // of its files, without the end
    int width, height, bitsPerPixel;
    int frames; // equal pictures stacked from top to bottom, the first for the lowest value

    constexpr int frameHeight () const { return height / frames; }
};

// The pictures again for larger panels, drawn and not stretched, in percent. Each set is a folder of PNG
// files beside the bitmaps, named like them.
inline constexpr int bitmapPercent = 100;
inline constexpr int largerSets[] = { 150, 200, 300 };

// Id of a bitmap's picture in a larger set, as a resource of the type "PNG".
constexpr int largerPictureId (int bitmapId, int percent)
{
    return percent * 100 + bitmapId;
}

// The set that a panel of this zoom is drawn from: as large, else the next larger one, else the largest.
int setForZoom (double percent);

// Where a set has the edge that lies at a whole panel pixel, in panel pixels: on a whole pixel of its own, so
// that every picture fits the background pixel by pixel.
double edgeInSet (double place, int percent);

enum class ControlKind
{
    knob,
    slider,
    onOffButton,
    lamp, // an on/off button that only shows; its picture is narrower than its rectangle
    keyboard,
    valueDisplay
};

// What is printed around a control: the marks of its travel and the names of its positions.
enum class Scale
{
    none,
    unipolar,   // eleven ticks
    bipolar,    // the same with a strong centre tick
    range,      // -24 -12 0 +12 +24 semitones
    oscWave,    // off, saw and pulse
    lfoWave,    // six drawings
    filterType, // LP BP HP
    voices,     // 2 4 ... 16
    velocity    // ten ticks, 0 3 6 9 named
};

struct Control
{
    ControlKind kind;
    Rect rect;
    int tag;
    int bitmapId; // 0: none
    Scale scale;
    const char* label;       // printed centred below; null: see the free labels
    const char* secondLabel; // a second line below the first, or null
    const char* help;        // one line for the hover text

    constexpr double centreX () const { return rect.x + rect.width / 2.0; }
    constexpr double centreY () const { return rect.y + rect.height / 2.0; }
};

enum class LabelStyle
{
    section, // bold, with the height of titleCapHeight
    plain
};

enum class Align
{
    left,
    centre,
    right
};

// Lettering that belongs to no single control, or that stands beside one.
struct Label
{
    const char* text;
    int x;      // of the left edge, the centre or the right edge
    int capTop; // y of the top of a capital letter
    Align align;
    LabelStyle style;
};

// A plate of the panel and what stands on it: one rectangle or, where two sections interlock, two that share
// an edge.
struct Section
{
    const char* name; // null for the badge, which is no section of controls
    bool titled;      // has a strip for the title, which is among the labels
    Rect first, second;

    constexpr bool contains (double x, double y) const { return isIn (first, x, y) || isIn (second, x, y); }

private:
    static constexpr bool isIn (const Rect& rect, double x, double y)
    {
        return x >= rect.x && x < rect.right () && y >= rect.y && y < rect.bottom ();
    }
};

// From a control's bottom to the top of its label's capitals; more where numbers stand below the control.
inline constexpr int labelGap = 6;
inline constexpr int labelGapBelowNumbers = 14;
inline constexpr int labelCapHeight = 6; // pixels, all labels
inline constexpr int labelLinePitch = 9; // from a label's line to the next
inline constexpr int titleCapHeight = 7; // pixels, section titles

// The family of everything printed and of the text that the editor draws; Arial stands in for it
// where it is missing (same metrics).
inline constexpr const char* fontFamily = "Liberation Sans";
inline constexpr const char* fontFamilyFallback = "Arial";
inline constexpr int valueFontSize = 9;    // pixels, the LFO rate's display
inline constexpr int programFontSize = 15; // pixels, the program display; less for long names

std::span<const Bitmap> bitmaps ();
const Bitmap* findBitmap (int id);

// Below this folder.
std::string bitmapFile (const Bitmap& bitmap);
std::string largerFile (const Bitmap& bitmap, int percent);

// In the order in which the views are added: later rows lie on top.
std::span<const Control> controls ();
std::span<const Label> labels ();
std::span<const Section> sections (); // from the top left; later ones lie on top

// Top of the capitals of a control's own label.
int labelTop (const Control& control);

// How far the printed name below a control reaches beyond it, in pixels; 0 without one.
int captionHeight (const Control& control);

// The part of its rectangle that a control paints: the picture for a lamp, else the rectangle.
Rect paintedRect (const Control& control);

inline constexpr int panelBitmapId = 176;
inline constexpr int aboutBitmapId = 178;
inline constexpr int smallButtonBitmapId = 195; // up, then pressed; 20 x 20 each
inline constexpr Rect panelRect{ 0, 0, 612, 433 };
inline constexpr int heightWithoutKeys = 295;

// Beside the controls. The three buttons show bitmap 195; the editor draws the sign over it.
inline constexpr Rect programDisplayRect{ 184, 46, 184, 24 };
inline constexpr Rect previousProgramRect{ 376, 48, 20, 20 };
inline constexpr Rect nextProgramRect{ 400, 48, 20, 20 };
inline constexpr Rect menuButtonRect{ 575, 48, 20, 20 };

// Where the about picture stands on the page that covers the panel; a click anywhere closes it.
inline constexpr Rect aboutRect{ 0, 26, 612, 244 };
inline constexpr Rect aboutVersionRect{ 42, 248, 200, 16 }; // in the panel's pixels, text from the left

// Keys: the white ones, 35 pixels wide, in a row from the keyboard's left edge, C to C.
inline constexpr int firstKey = 48;
inline constexpr int keyCount = 25;
inline constexpr int whiteKeyCount = 15;
inline constexpr int whiteKeyUpId = 181;
inline constexpr int whiteKeyDownId = 182;
inline constexpr int blackKeyUpId = 179;
inline constexpr int blackKeyDownId = 180;

// The slider's handle is two rows taller than its rectangle: shown from its second row on, so that
// it stands centred on the groove.
inline constexpr int sliderHandleOffsetY = -1;

// Travel of the pointers, half of it on either side of straight up; positive angles are clockwise.
inline constexpr double sweepDegrees = 270.0;        // continuous knobs, voices, velocity
inline constexpr double steppedSweepDegrees = 240.0; // five and six positions: names beside and above
inline constexpr double switchSweepDegrees = 90.0;   // three positions: all names above
// Angle of a frame's pointer; `frames` above 1.
double pointerDegrees (Scale scale, int frame, int frames);
}
