#include "manual/Pictures.h"

#include <cmath>
#include <functional>

#include "engine/Envelope.h"
#include "engine/Lfo.h"
#include "instrument/ValueText.h"
#include "manual/PanelPicture.h"
#include "manual/Sheet.h"
#include "parameters/KnobLaws.h"
#include "resources/panel/PanelLayout.h"

namespace manual
{
namespace
{
using picture::Colour;
using Points = std::vector<std::pair<double, double>>;

constexpr Colour ground = panel::caseColour;
constexpr Colour plate = panel::plateColour;
constexpr Colour ink = panel::letterColour;
constexpr Colour faintInk = panel::scaleColour;
constexpr Colour accent = panel::accentColour;
constexpr double textSize = 11.0;
constexpr double smallTextSize = 9.0;

// --- The way of the sound

struct Stage
{
    double x, y, width;
    const char* name;
    const char* detail; // below the name, or null
};
constexpr double stageHeight = 34.0;

void drawStage (Sheet& sheet, const Stage& stage, Colour edge)
{
    picture::Canvas& canvas = sheet.canvas ();
    canvas.setColour (plate);
    canvas.fillRoundedRect (stage.x, stage.y, stage.width, stageHeight, 4.0);
    canvas.roundedRect (stage.x + 0.5, stage.y + 0.5, stage.width - 1.0, stageHeight - 1.0, 4.0);
    canvas.setColour (edge);
    cairo_set_line_width (canvas.context (), 1.0);
    cairo_stroke (canvas.context ());
    const double middle = stage.x + stage.width / 2.0;
    sheet.centredText (middle, stage.y + (stage.detail != nullptr ? 14.0 : 21.0), textSize, ink, stage.name);
    if (stage.detail != nullptr)
        sheet.centredText (middle, stage.y + 27.0, smallTextSize, faintInk, stage.detail);
}

picture::Picture drawFlow (const Programs& /*programs*/)
{
    constexpr Stage sources[] = { { 12, 12, 112, "Oscillator 1", "saw, pulse + width" },
                                  { 12, 54, 112, "Oscillator 2", "saw, square" },
                                  { 12, 96, 112, "Noise", "the same for every key" } };
    constexpr Stage way[] = { { 166, 54, 84, "Drive", "high quality" },
                              { 284, 54, 96, "Filter", "LP, BP, HP" },
                              { 414, 54, 84, "Level", "of the voice" },
                              { 532, 54, 84, "Volume", "of the program" } };
    constexpr Stage movers[] = { { 12, 158, 112, "LFO", "one for all voices" },
                                 { 276, 158, 112, "Filter envelope", "one for each voice" },
                                 { 400, 158, 112, "Amp envelope", "one for each voice" } };
    Sheet sheet (628, 204, ground);
    constexpr double wayMiddle = 54.0 + stageHeight / 2.0;
    constexpr double mixX = 146.0;
    for (const Stage& source : sources)
    {
        drawStage (sheet, source, faintInk);
        const double y = source.y + stageHeight / 2.0;
        sheet.canvas ().line (source.x + source.width, y, mixX, y, 1.5, ink);
    }
    sheet.canvas ().line (mixX, sources[0].y + stageHeight / 2.0, mixX, sources[2].y + stageHeight / 2.0, 1.5,
                          ink);
    double from = mixX;
    for (const Stage& stage : way)
    {
        sheet.arrow (from, wayMiddle, stage.x, wayMiddle, ink);
        drawStage (sheet, stage, faintInk);
        from = stage.x + stage.width;
    }
    for (const Stage& mover : movers)
        drawStage (sheet, mover, accent);
    const double wayBottom = 54.0 + stageHeight;
    const double moversTop = movers[0].y;
    const auto label = [&sheet] (double x, double y, const char* text)
    { sheet.text (x, y, smallTextSize, accent, text); };
    sheet.arrow (346, moversTop, 346, wayBottom, accent);
    label (350, 134, "ENV AMT");
    sheet.arrow (456, moversTop, 456, wayBottom, accent);
    sheet.canvas ().line (124, 175, 200, 175, 1.5, accent);
    sheet.canvas ().line (200, 175, 200, 118, 1.5, accent);
    sheet.canvas ().line (200, 118, 316, 118, 1.5, accent);
    sheet.arrow (316, 118, 316, wayBottom, accent);
    label (206, 114, "LFO AMT");
    sheet.canvas ().line (5, 175, 12, 175, 1.5, accent);
    sheet.canvas ().line (5, 29, 5, 175, 1.5, accent);
    sheet.arrow (5, 29, 12, 29, accent);
    sheet.arrow (5, 71, 12, 71, accent);
    label (9, 148, "PITCH");
    return sheet.image ();
}

// --- The envelopes

struct Shape
{
    const char* title;
    float attack, sustain, delay; // knob positions; a delay above 1 is none
    bool ofFilter;
};

// What one note makes of an envelope of the engine: the key is held for `held` seconds.
Points envelopeCurve (const Shape& shape, double left, double top, double width, double height, double held,
                      double seconds)
{
    constexpr float hz = 1000.0f;
    constexpr float decay = 0.45f;
    engine::Envelope envelope;
    envelope.setSampleRate (hz);
    const auto control = shape.ofFilter ? filterTimeControl : ampAttackControl;
    envelope.setAttack (control (shape.attack));
    envelope.setDecay (shape.ofFilter ? filterTimeControl (decay) : ampDecayControl (decay));
    envelope.setRelease (shape.ofFilter ? filterTimeControl (decay) : ampDecayControl (decay));
    envelope.setLoop (!shape.ofFilter || shape.delay <= 0.0f);
    envelope.setSustain (shape.ofFilter ? 0.0f : sustainLevel (shape.sustain));
    envelope.setVelocitySensitivity (0.0f);
    envelope.trigger (127);
    Points points;
    const int samples = static_cast<int> (seconds * static_cast<double> (hz));
    const int delaySamples = shape.ofFilter ? static_cast<int> (delaySeconds (shape.delay) * hz) : 0;
    for (int n = 0; n < samples; ++n)
    {
        if (n == static_cast<int> (held * static_cast<double> (hz)))
            envelope.release ();
        const float level = n < delaySamples ? 0.0f : envelope.tick ();
        points.emplace_back (left + width * n / samples, top + height * (1.0 - static_cast<double> (level)));
    }
    return points;
}

picture::Picture drawEnvelopes (const Programs& /*programs*/)
{
    constexpr Shape shapes[] = { { "Amp envelope", 0.4f, 0.75f, 0.0f, false },
                                 { "Amp envelope, SUSTAIN at 0: repeats", 0.25f, 0.0f, 0.0f, false },
                                 { "Filter envelope, DELAY above 0: once", 0.4f, 0.0f, 0.35f, true },
                                 { "Filter envelope, DELAY at 0: repeats", 0.25f, 0.0f, 0.0f, true } };
    constexpr double width = 280.0;
    constexpr double height = 64.0;
    constexpr double held = 1.5;
    constexpr double seconds = 2.2;
    Sheet sheet (612, 212, ground);
    for (int n = 0; n < 4; ++n)
    {
        const int column = n % 2;
        const int row = n / 2;
        const double left = 12.0 + column * (width + 28.0);
        const double top = 24.0 + row * (height + 40.0);
        sheet.canvas ().setColour (plate);
        sheet.canvas ().fillRoundedRect (left - 4.0, top - 4.0, width + 8.0, height + 8.0, 4.0);
        sheet.text (left, top - 9.0, textSize, ink, shapes[n].title);
        const double release = left + width * held / seconds;
        sheet.canvas ().line (release, top, release, top + height, 1.0, faintInk);
        sheet.text (release + 4.0, top + 8.0, smallTextSize, faintInk, "key up");
        sheet.curve (envelopeCurve (shapes[n], left, top, width, height, held, seconds), accent);
    }
    return sheet.image ();
}

// --- The waves of the LFO

picture::Picture drawLfoWaves (const Programs& /*programs*/)
{
    // In the order of the knob.
    constexpr engine::Lfo::Shape shapes[] = { engine::Lfo::roundedTriangle, engine::Lfo::risingSaw,
                                              engine::Lfo::fallingSaw,      engine::Lfo::square,
                                              engine::Lfo::noise,           engine::Lfo::sampleAndHold };
    static_assert (std::size (shapes) == std::size (lfoWaves));
    constexpr double width = 86.0;
    constexpr double height = 40.0;
    constexpr int samples = 172;
    Sheet sheet (612, 78, ground);
    double left = 12.0;
    for (std::size_t wave = 0; wave < std::size (shapes); ++wave)
    {
        sheet.canvas ().setColour (plate);
        sheet.canvas ().fillRoundedRect (left - 4.0, 22.0, width + 8.0, height + 8.0, 4.0);
        const float knob = static_cast<float> (wave) / static_cast<float> (std::size (shapes) - 1);
        sheet.text (left, 15.0, smallTextSize, ink, instrument::valueText (paramLfoWave, knob, {}));
        engine::Lfo lfo;
        lfo.setSampleRate (samples);
        lfo.setShape (shapes[wave]);
        lfo.setRateHz (shapes[wave] == engine::Lfo::sampleAndHold ? 8.0f : 2.0f);
        lfo.resetPhase ();
        Points points;
        for (int n = 0; n < samples; ++n)
            points.emplace_back (left + width * n / samples,
                                 26.0 + height / 2.0 * (1.0 - static_cast<double> (lfo.tick ())));
        sheet.curve (points, accent);
        left += width + 14.0;
    }
    return sheet.image ();
}
}

std::span<const Drawing> drawings ()
{
    static constexpr Drawing all[] = { { "panel.png", drawPanel },
                                       { "flow.png", drawFlow },
                                       { "envelopes.png", drawEnvelopes },
                                       { "lfo.png", drawLfoWaves } };
    return all;
}
}
