#include "audition/Pictures.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace audition
{
namespace
{
struct Colour
{
    double red;
    double green;
    double blue;
};
constexpr Colour paper = { 0.07, 0.07, 0.09 };
constexpr Colour ink = { 0.86, 0.86, 0.84 };
constexpr Colour faintInk = { 0.36, 0.36, 0.40 };
constexpr Colour accent = { 0.96, 0.66, 0.25 };

// An image surface and the context that draws on it.
class Canvas
{
public:
    Canvas (int width, int height)
        : surface (cairo_image_surface_create (CAIRO_FORMAT_RGB24, width, height)),
          context (cairo_create (surface.get ()))
    {
        setColour (paper);
        cairo_paint (cr ());
        cairo_select_font_face (cr (), "Liberation Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    }

    cairo_t* cr () { return context.get (); }
    void setColour (Colour c) { cairo_set_source_rgb (cr (), c.red, c.green, c.blue); }

    void box (double x, double y, double width, double height, Colour c)
    {
        setColour (c);
        cairo_rectangle (cr (), x, y, width, height);
        cairo_fill (cr ());
    }

    void text (double x, double y, double size, Colour c, const std::string& words)
    {
        setColour (c);
        cairo_set_font_size (cr (), size);
        cairo_move_to (cr (), x, y);
        cairo_show_text (cr (), words.c_str ());
    }

    void save (const std::filesystem::path& file)
    {
        if (cairo_surface_write_to_png (surface.get (), file.c_str ()) != CAIRO_STATUS_SUCCESS)
            throw std::runtime_error ("cannot write " + file.string ());
    }

private:
    struct SurfaceDeleter
    {
        void operator() (cairo_surface_t* s) const { cairo_surface_destroy (s); }
    };
    struct ContextDeleter
    {
        void operator() (cairo_t* c) const { cairo_destroy (c); }
    };
    std::unique_ptr<cairo_surface_t, SurfaceDeleter> surface;
    std::unique_ptr<cairo_t, ContextDeleter> context;
};

// Level 0..1 to a colour: dark blue, purple, orange, pale yellow.
Colour heat (double level)
{
    static constexpr std::array<Colour, 5> stops = { { { 0.04, 0.03, 0.10 },
                                                       { 0.30, 0.07, 0.45 },
                                                       { 0.72, 0.21, 0.36 },
                                                       { 0.98, 0.56, 0.20 },
                                                       { 0.99, 0.96, 0.72 } } };
    const double place = std::clamp (level, 0.0, 1.0) * (stops.size () - 1);
    const auto below = std::min (static_cast<std::size_t> (place), stops.size () - 2);
    const double share = place - static_cast<double> (below);
    const auto mix = [share] (double a, double b) { return a + (b - a) * share; };
    const Colour& a = stops[below];
    const Colour& b = stops[below + 1];
    return { mix (a.red, b.red), mix (a.green, b.green), mix (a.blue, b.blue) };
}

double decibels (double power)
{
    return 10.0 * std::log10 (std::max (power, 1e-20));
}

void drawSpectrogram (Canvas& canvas, double x, double y, int width, int height, Samples audio)
{
    constexpr double lowestHz = 50.0;
    constexpr double octaves = 7.9; // to 12 kHz
    constexpr double range = 60.0;  // dB
    std::vector<std::vector<double>> columns;
    double loudest = 0.0;
    for (int column = 0; column < width; ++column)
    {
        const std::size_t start =
            audio.size () * static_cast<std::size_t> (column) / static_cast<std::size_t> (width);
        columns.push_back (powerSpectrum (audio, start));
        loudest = std::max (loudest, *std::ranges::max_element (columns.back ()));
    }
    for (int column = 0; column < width; ++column)
    {
        for (int row = 0; row < height; ++row)
        {
            const double hz = lowestHz * std::exp2 (octaves * (height - 1 - row) / (height - 1));
            const double bin = hz * spectrumSize / sampleRate;
            const auto below = static_cast<std::size_t> (bin);
            const double share = bin - static_cast<double> (below);
            const std::vector<double>& power = columns[static_cast<std::size_t> (column)];
            const double here = power[below] * (1.0 - share) + power[below + 1] * share;
            canvas.box (x + column, y + row, 1.0, 1.0,
                        heat (1.0 + (decibels (here) - decibels (loudest)) / range));
        }
    }
}
}

void drawContactSheet (const std::filesystem::path& file, const std::vector<bank::SourceProgram>& programs,
                       const std::vector<Audio>& phrases)
{
    constexpr int columns = 8;
    constexpr int pictureWidth = 164;
    constexpr int pictureHeight = 76;
    constexpr int cellWidth = pictureWidth + 12;
    constexpr int cellHeight = pictureHeight + 24;
    const int rows = (static_cast<int> (programs.size ()) + columns - 1) / columns;
    Canvas canvas (columns * cellWidth, rows * cellHeight + 6);
    for (std::size_t n = 0; n < programs.size (); ++n)
    {
        const std::size_t row = n / columns;
        const double x = static_cast<double> (n % columns) * cellWidth + 6.0;
        const double y = static_cast<double> (row) * cellHeight + 18.0;
        canvas.text (x, y - 4.0, 11.0, ink, std::to_string (n) + "  " + programs[n].name ());
        drawSpectrogram (canvas, x, y, pictureWidth, pictureHeight, phrases[n]);
    }
    canvas.save (file);
}

void drawTones (const std::filesystem::path& file, const std::vector<Tone>& tones)
{
    constexpr double rowHeight = 150.0;
    constexpr double waveWidth = 260.0;
    constexpr double spectrumLeft = 340.0;
    constexpr double partialWidth = 11.0;
    constexpr int partials = 60;
    constexpr double range = 60.0; // dB
    constexpr double plotHeight = rowHeight - 46.0;
    Canvas canvas (static_cast<int> (spectrumLeft + partials * partialWidth) + 20,
                   static_cast<int> (tones.size ()) * static_cast<int> (rowHeight) + 10);
    double top = 30.0;
    for (const Tone& tone : tones)
    {
        canvas.text (12.0, top - 9.0, 13.0, ink, tone.title);
        canvas.box (12.0, top + plotHeight / 2.0, waveWidth, 1.0, faintInk);
        const auto [lowest, highest] = std::ranges::minmax (tone.audio);
        const double scale = plotHeight / 2.0 / static_cast<double> (std::max (highest, -lowest));
        canvas.setColour (accent);
        for (int column = 0; column < static_cast<int> (waveWidth) * 2; ++column)
        {
            const double sample = column / (waveWidth * 2.0) * 2.0 * sampleRate / tone.hz;
            const double level = static_cast<double> (tone.audio[static_cast<std::size_t> (sample)]);
            cairo_line_to (canvas.cr (), 12.0 + column * 0.5, top + plotHeight / 2.0 - level * scale);
        }
        cairo_set_line_width (canvas.cr (), 1.4);
        cairo_stroke (canvas.cr ());

        for (int line = 0; line <= 3; ++line)
        {
            const double y = top + plotHeight * line / 3.0;
            canvas.box (spectrumLeft, y, partials * partialWidth, 1.0, faintInk);
            canvas.text (spectrumLeft - 48.0, y + 4.0, 10.0, ink,
                         std::to_string (-static_cast<int> (range) * line / 3) + " dB");
        }
        std::vector<double> levels = partialLevels (tone.audio, tone.hz, partials);
        const double strongest = *std::ranges::max_element (levels);
        for (double& level : levels)
            level -= strongest;
        for (int n = 0; n < partials; ++n)
        {
            const double height =
                plotHeight * std::max (0.0, 1.0 + levels[static_cast<std::size_t> (n)] / range);
            canvas.box (spectrumLeft + n * partialWidth + 2.0, top + plotHeight - height, partialWidth - 4.0,
                        height, accent);
            if ((n + 1) % 10 == 0 || n == 0)
                canvas.text (spectrumLeft + n * partialWidth, top + plotHeight + 13.0, 10.0, ink,
                             std::to_string (n + 1));
        }
        top += rowHeight;
    }
    canvas.save (file);
}
}
