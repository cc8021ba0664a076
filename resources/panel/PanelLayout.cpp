#include "resources/panel/PanelLayout.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace panel
{
namespace
{
constexpr Bitmap bitmapTable[] = {
    { 176, "panel", 612, 433, 32, 1 },     { 178, "about", 612, 244, 32, 1 },
    { 179, "blackkeyup", 21, 59, 24, 1 },  { 180, "blackkeydown", 21, 59, 24, 1 },
    { 181, "whitekeyup", 35, 98, 24, 1 },  { 182, "whitekeydown", 35, 98, 24, 1 },
    { 184, "sliderhandle", 6, 12, 24, 1 }, { 186, "knob", 22, 2002, 8, 91 },
    { 187, "knob3", 22, 66, 32, 3 },       { 188, "knob5", 22, 110, 32, 5 },
    { 189, "knob6", 22, 132, 32, 6 },      { 191, "knob8", 24, 192, 24, 8 },
    { 192, "knob10", 24, 240, 24, 10 },    { 193, "smoothbutton", 31, 12, 24, 2 },
    { 195, "smallbutton", 20, 40, 24, 2 }, { 198, "keytrackbutton", 31, 12, 24, 2 },
    { 201, "syncbutton", 31, 12, 24, 2 },  { 202, "lamp", 6, 12, 24, 2 },
};

constexpr auto knob = ControlKind::knob;
constexpr auto slider = ControlKind::slider;
constexpr auto button = ControlKind::onOffButton;
constexpr auto lamp = ControlKind::lamp;

// One row per control, however long.
// clang-format off
// kind, { x, y, width, frame height }, tag, bitmap, scale, label, second line, help
constexpr Control controlTable[] = {
    { knob, { 26, 142, 22, 22 }, 9, 186, Scale::bipolar, "TUNE", nullptr, "Master tune, one semitone down to one up" },
    { knob, { 26, 238, 22, 22 }, 25, 186, Scale::unipolar, "GLIDE", "MONO", "Glide time; above zero the sound is mono legato" },
    { knob, { 172, 142, 22, 22 }, 2, 187, Scale::oscWave, "WAVE", nullptr, "Oscillator 1 wave: off, saw, pulse" },
    { knob, { 172, 238, 22, 22 }, 6, 187, Scale::oscWave, "WAVE", nullptr, "Oscillator 2 wave: off, saw, pulse" },
    { knob, { 78, 142, 22, 22 }, 4, 188, Scale::range, "RANGE", nullptr, "Oscillator 1 range in semitones" },
    { knob, { 78, 238, 22, 22 }, 8, 188, Scale::range, "RANGE", nullptr, "Oscillator 2 range in semitones" },
    { knob, { 125, 142, 22, 22 }, 3, 186, Scale::unipolar, "PULSE WIDTH", nullptr, "Oscillator 1 pulse width" },
    { knob, { 125, 238, 22, 22 }, 7, 186, Scale::unipolar, "FINE", nullptr, "Oscillator 2 fine tune, upwards" },
    { knob, { 222, 238, 22, 22 }, 10, 186, Scale::unipolar, "NOISE", nullptr, "Noise level" },
    { knob, { 222, 142, 22, 22 }, 21, 186, Scale::unipolar, "RATE", nullptr, "LFO rate, or its division while synced" },
    { knob, { 269, 142, 22, 22 }, 23, 186, Scale::unipolar, "PITCH", nullptr, "LFO to oscillator pitch" },
    { knob, { 269, 238, 22, 22 }, 22, 189, Scale::lfoWave, "WAVE", nullptr, "LFO wave: triangle, saw up, saw down, square, noise, sample and hold" },
    { knob, { 319, 238, 22, 22 }, 24, 186, Scale::bipolar, "LFO AMT", nullptr, "LFO to filter cutoff; off at the centre" },
    { knob, { 365, 238, 22, 22 }, 17, 186, Scale::bipolar, "ENV AMT", nullptr, "Filter envelope to cutoff; off at the centre" },
    { knob, { 318, 142, 22, 22 }, 18, 186, Scale::unipolar, "CUTOFF", nullptr, "Filter cutoff" },
    { knob, { 364, 142, 22, 22 }, 19, 186, Scale::unipolar, "RESO", nullptr, "Filter resonance" },
    { knob, { 342, 191, 22, 22 }, 20, 187, Scale::filterType, nullptr, nullptr, "Filter type: low-pass, band-pass, high-pass" },
    { knob, { 417, 142, 22, 22 }, 11, 186, Scale::unipolar, "ATTACK", nullptr, "Amplitude attack" },
    { knob, { 509, 142, 22, 22 }, 12, 186, Scale::unipolar, "SUSTAIN", nullptr, "Amplitude sustain; at zero attack and decay repeat" },
    { knob, { 462, 142, 22, 22 }, 13, 186, Scale::unipolar, "DECAY/REL", nullptr, "Amplitude decay and release" },
    { knob, { 417, 238, 22, 22 }, 14, 186, Scale::unipolar, "ATTACK", nullptr, "Filter attack" },
    { knob, { 509, 238, 22, 22 }, 16, 186, Scale::unipolar, "DELAY", nullptr, "Filter envelope delay; at zero attack and decay repeat" },
    { knob, { 462, 238, 22, 22 }, 15, 186, Scale::unipolar, "DECAY/REL", nullptr, "Filter decay and release" },
    { knob, { 562, 142, 22, 22 }, 0, 186, Scale::unipolar, "VOLUME", nullptr, "Volume of the program" },
    { slider, { 88, 190, 100, 10 }, 1, 184, Scale::none, nullptr, nullptr, "Oscillator 1 level" },
    { slider, { 88, 207, 100, 10 }, 5, 184, Scale::none, nullptr, nullptr, "Oscillator 2 level" },
    { knob, { 455, 46, 24, 24 }, 27, 191, Scale::voices, "POLY", nullptr, "Number of voices, 2 to 16" },
    { knob, { 498, 46, 24, 24 }, 31, 192, Scale::velocity, "AMP", nullptr, "Velocity to amplitude" },
    { knob, { 540, 46, 24, 24 }, 32, 192, Scale::velocity, "FILTER", nullptr, "Velocity to filter envelope" },
    { button, { 368, 200, 31, 6 }, 33, 193, Scale::none, "LP", "SMOOTH", "One more low-pass pole" },
    { button, { 308, 200, 31, 6 }, 35, 198, Scale::none, "KEY", "TRACK", "Cutoff follows the keys" },
    { lamp, { 478, 182, 31, 6 }, 39, 202, Scale::none, nullptr, nullptr, "Lit while sustain is zero: attack and decay repeat" },
    { lamp, { 478, 275, 31, 6 }, 40, 202, Scale::none, nullptr, nullptr, "Lit while delay is zero: attack and decay repeat" },
    { lamp, { 339, 275, 31, 6 }, 41, 202, Scale::none, nullptr, nullptr, "Lit while the LFO moves the cutoff" },
    { lamp, { 362, 275, 31, 6 }, 42, 202, Scale::none, nullptr, nullptr, "Lit while the envelope moves the cutoff" },
    { ControlKind::keyboard, { 39, 316, 532, 97 }, 49, 0, Scale::none, nullptr, nullptr, "Play with the mouse" },
    { button, { 218, 180, 31, 6 }, 36, 201, Scale::none, nullptr, nullptr, "LFO rate in divisions of the host's tempo" },
    { ControlKind::valueDisplay, { 222, 190, 25, 12 }, 21, 0, Scale::none, nullptr, nullptr, "LFO rate" },
};
// clang-format on

constexpr auto left = Align::left;
constexpr auto centre = Align::centre;
constexpr auto right = Align::right;
constexpr auto title = LabelStyle::section;
constexpr auto plain = LabelStyle::plain;

constexpr Label labelTable[] = {
    { "PROGRAM", 184, 12, left, title },
    { "VOICES", 446, 12, left, title },
    { "VELOCITY", 498, 12, left, title },
    { "MASTER", 37, 102, centre, title },
    { "OSCILLATORS", 71, 102, left, title },
    { "LFO", 215, 102, left, title },
    { "FILTER", 314, 102, left, title },
    { "AMP ENVELOPE", 413, 102, left, title },
    { "FILTER ENVELOPE", 413, 215, left, title },
    { "OUTPUT", 572, 102, centre, title },
    { "MENU", 585, 76, centre, plain },
    { "OSC 1", 136, 126, centre, title },
    { "OSC 2", 136, 222, centre, title },
    { "LEVEL", 64, 201, left, plain },
    { "1", 192, 192, left, plain },
    { "2", 192, 209, left, plain },
    { "SYNC", 253, 180, left, plain },
    { "LOOP", 487, 182, left, plain },
    { "LOOP", 487, 275, left, plain },
    { "ON", 353, 275, centre, plain },
};

constexpr Section sectionTable[] = {
    { "Program", true, { 176, 8, 259, 87 }, {} },
    { "Voices and velocity", true, { 438, 8, 131, 87 }, {} },
    { "Menu", false, { 572, 8, 26, 87 }, {} },
    { "Master", true, { 14, 98, 45, 189 }, {} },
    { "Oscillators and noise", true, { 62, 98, 142, 189 }, { 190, 211, 63, 76 } },
    { "LFO", true, { 207, 98, 96, 110 }, { 256, 190, 47, 97 } },
    { "Filter", true, { 306, 98, 96, 189 }, {} },
    { "Amp envelope", true, { 405, 98, 138, 110 }, {} },
    { "Filter envelope", true, { 405, 211, 138, 76 }, {} },
    { "Output", true, { 546, 98, 52, 110 }, {} },
    { nullptr, false, { 546, 211, 52, 76 }, {} },
};
}

std::span<const Bitmap> bitmaps ()
{
    return bitmapTable;
}

std::string bitmapFile (const Bitmap& bitmap)
{
    return std::string (bitmap.name) + ".bmp";
}

std::string largerFile (const Bitmap& bitmap, int percent)
{
    return std::to_string (percent) + "/" + bitmap.name + ".png";
}

const Bitmap* findBitmap (int id)
{
    const auto* found = std::ranges::find (bitmapTable, id, &Bitmap::id);
    return found == std::end (bitmapTable) ? nullptr : found;
}

std::span<const Control> controls ()
{
    return controlTable;
}

std::span<const Label> labels ()
{
    return labelTable;
}

std::span<const Section> sections ()
{
    return sectionTable;
}

int setForZoom (double percent)
{
    if (percent <= bitmapPercent)
        return bitmapPercent;
    const auto* set = std::ranges::lower_bound (largerSets, percent);
    return set == std::end (largerSets) ? set[-1] : *set;
}

double edgeInSet (double place, int percent)
{
    return std::round (place * percent / bitmapPercent) * bitmapPercent / percent;
}

int labelTop (const Control& control)
{
    const bool numbersBelow = control.scale == Scale::voices || control.scale == Scale::velocity;
    return control.rect.bottom () + (numbersBelow ? labelGapBelowNumbers : labelGap);
}

int captionHeight (const Control& control)
{
    if (control.label == nullptr || control.kind == ControlKind::onOffButton)
        return 0;
    return labelTop (control) - control.rect.bottom () + labelCapHeight +
           (control.secondLabel != nullptr ? labelLinePitch : 0);
}

Rect paintedRect (const Control& control)
{
    const Bitmap* bitmap = findBitmap (control.bitmapId);
    if (control.kind != ControlKind::lamp || bitmap == nullptr)
        return control.rect;
    return { control.rect.x, control.rect.y, bitmap->width, bitmap->frameHeight () };
}

double pointerDegrees (Scale scale, int frame, int frames)
{
    double sweep = sweepDegrees;
    if (scale == Scale::range || scale == Scale::lfoWave)
    {
        sweep = steppedSweepDegrees;
    }
    else if (scale == Scale::oscWave || scale == Scale::filterType)
    {
        sweep = switchSweepDegrees;
    }
    return sweep * (static_cast<double> (frame) / (frames - 1) - 0.5);
}
}
