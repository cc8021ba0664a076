#include "host/Plot.h"

#include "analysis/Sheet.h"
#include "analysis/SoundPicture.h"
#include "host/ReplacementFile.h"
#include "picture/Surface.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <vector>

namespace host
{
namespace
{
using picture::Canvas;

constexpr std::size_t channels = 2;

// Pixels.
constexpr std::size_t width = 1200; // of wave and spectrogram
constexpr int laneHeight = 90;
constexpr int spectrogramHeight = 320;
constexpr int left = 56; // room for the labels
constexpr int top = 14;
constexpr int gap = 10;
constexpr int bottom = 26;
constexpr int spectrogramTop = top + static_cast<int> (channels) * (laneHeight + gap);
constexpr int height = spectrogramTop + spectrogramHeight + bottom;
constexpr double labelSize = 11.0;

constexpr std::size_t firstHop = 64; // frames that a column holds in a short sound

// What a column of the picture shows.
struct Column
{
    std::array<float, channels> lowest = {};
    std::array<float, channels> highest = {};
    std::vector<double> power = std::vector<double> (analysis::spectrumSize / 2 + 1);
};

Column together (std::span<const Column> columns)
{
    Column all = columns.front ();
    for (const Column& column : columns.subspan (1))
    {
        for (std::size_t channel = 0; channel < channels; ++channel)
        {
            all.lowest[channel] = std::min (all.lowest[channel], column.lowest[channel]);
            all.highest[channel] = std::max (all.highest[channel], column.highest[channel]);
        }
        std::ranges::transform (all.power, column.power, all.power.begin (), std::plus<> ());
    }
    for (double& power : all.power)
        power /= static_cast<double> (columns.size ());
    return all;
}

std::string timeText (double seconds)
{
    char text[32];
    if (seconds < 60.0)
        std::snprintf (text, sizeof text, "%g s", seconds);
    else
        std::snprintf (text, sizeof text, "%d:%02d", static_cast<int> (seconds) / 60,
                       static_cast<int> (seconds) % 60);
    return text;
}

void drawWave (Canvas& canvas, const std::vector<Column>& columns, std::size_t channel)
{
    const double middle = top + static_cast<double> (channel) * (laneHeight + gap) + laneHeight / 2.0;
    const auto heightOf = [] (float sample)
    { return laneHeight / 2.0 * static_cast<double> (std::clamp (sample, -1.0f, 1.0f)); };
    canvas.fillRect (left, middle, width, 1.0, analysis::faintInk);
    analysis::text (canvas, 8.0, middle + 4.0, labelSize, channel == 0 ? "left" : "right");
    double x = left;
    for (const Column& column : columns)
    {
        const double high = heightOf (column.highest[channel]);
        const double low = heightOf (column.lowest[channel]);
        if (high > 0.0 || low < 0.0)
            canvas.fillRect (x, middle - high, 1.0, std::max (1.0, high - low), analysis::accent);
        x += 1.0;
    }
}

void drawScales (Canvas& canvas, double seconds)
{
    constexpr std::array steps = { 0.1,  0.2,  0.5,   1.0,   2.0,   5.0,    10.0,
                                   20.0, 60.0, 120.0, 300.0, 600.0, 1800.0, 3600.0 };
    constexpr double mostTicks = 12.0;
    const auto* step = std::ranges::find_if (steps, [=] (double s) { return seconds / s <= mostTicks; });
    const double distance = step == steps.end () ? seconds : *step;
    for (int n = 0; seconds > 0.0 && n * distance <= seconds; ++n)
    {
        const double x = left + width * n * distance / seconds;
        canvas.fillRect (std::floor (x), spectrogramTop + spectrogramHeight, 1.0, 5.0, analysis::faintInk);
        analysis::text (canvas, x, height - 8.0, labelSize, timeText (n * distance));
    }
    for (const auto& [hz, label] :
         { std::pair{ 100.0, "100 Hz" }, { 1000.0, "1 kHz" }, { 10000.0, "10 kHz" } })
    {
        const double share = std::log2 (hz / analysis::lowestHz) / analysis::octaves;
        const double y = std::floor (spectrogramTop + spectrogramHeight * (1.0 - share));
        canvas.fillRect (left - 5.0, y, 5.0, 1.0, analysis::faintInk);
        analysis::text (canvas, 8.0, y + 4.0, labelSize, label);
    }
}

cairo_status_t writeBytes (void* file, const unsigned char* bytes, unsigned int count)
{
    const bool done = static_cast<ReplacementFile*> (file)->write (std::as_bytes (std::span (bytes, count)));
    return done ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

class CairoPlot final : public Plot
{
public:
    CairoPlot (const std::filesystem::path& file, int hz) : out (file), sampleRate (hz) {}

    void add (std::span<const float> stereo) override
    {
        pending.insert (pending.end (), stereo.begin (), stereo.end ());
        while (pending.size () >= channels * std::max<std::size_t> (hop, analysis::spectrumSize))
            takeColumn ();
    }

    void finish () override
    {
        while (!pending.empty ())
            takeColumn ();
        draw ();
        out.keep ();
    }

private:
    // From the beginning of what waits. Twice as many as there are pixels become half as many.
    void takeColumn ()
    {
        Column& column = columns.emplace_back ();
        const std::size_t count = std::min (hop, pending.size () / channels);
        for (std::size_t n = 0; n < count * channels; ++n)
        {
            column.lowest[n % channels] = std::min (column.lowest[n % channels], pending[n]);
            column.highest[n % channels] = std::max (column.highest[n % channels], pending[n]);
        }
        std::vector<float> mono (std::min<std::size_t> (pending.size () / channels, analysis::spectrumSize));
        for (std::size_t n = 0; n < mono.size (); ++n)
            mono[n] = (pending[channels * n] + pending[channels * n + 1]) / channels;
        column.power = analysis::powerSpectrum (mono, 0);
        pending.erase (pending.begin (), pending.begin () + static_cast<std::ptrdiff_t> (count * channels));
        frames += count;

        if (columns.size () < 2 * width)
            return;
        for (std::size_t n = 0; n < width; ++n)
            columns[n] = together (std::span (columns).subspan (2 * n, 2));
        columns.resize (width);
        hop *= 2;
    }

    void draw ()
    {
        Canvas canvas = analysis::emptySheet (left + width + gap, height);
        std::vector<Column> shown;
        std::vector<std::vector<double>> powers;
        for (std::size_t x = 0; x < width && !columns.empty (); ++x)
        {
            const std::size_t first = x * columns.size () / width;
            const std::size_t end = std::max (first + 1, (x + 1) * columns.size () / width);
            shown.push_back (together (std::span (columns).subspan (first, end - first)));
            powers.push_back (shown.back ().power);
        }
        for (std::size_t channel = 0; channel < channels; ++channel)
            drawWave (canvas, shown, channel);
        analysis::drawSpectrogram (canvas, left, spectrogramTop, spectrogramHeight, powers, sampleRate);
        drawScales (canvas, static_cast<double> (frames) / sampleRate);
        const picture::Surface surface = picture::surfaceOf (canvas.image ());
        if (cairo_surface_write_to_png_stream (surface.get (), &writeBytes, &out) != CAIRO_STATUS_SUCCESS)
            out.fail ();
    }

    ReplacementFile out;
    int sampleRate;             // Hz
    std::size_t hop = firstHop; // frames in a column
    std::size_t frames = 0;
    std::vector<float> pending; // left and right in turn, not in a column yet
    std::vector<Column> columns;
};
}

bool canPlot ()
{
    return true;
}

std::unique_ptr<Plot> Plot::make (const std::filesystem::path& file, int sampleRate)
{
    return std::make_unique<CairoPlot> (file, sampleRate);
}
}
