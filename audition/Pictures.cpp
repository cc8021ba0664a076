#include "audition/Pictures.h"

#include <algorithm>
#include <cmath>

#include "analysis/Sheet.h"
#include "analysis/SoundPicture.h"

namespace audition
{
using analysis::accent;
using analysis::emptySheet;
using analysis::faintInk;
using analysis::text;
using picture::Canvas;

namespace
{
void drawSpectrogram (Canvas& canvas, double x, double y, int width, int height, Samples audio)
{
    std::vector<std::vector<double>> columns;
    for (int column = 0; column < width; ++column)
    {
        const std::size_t start =
            audio.size () * static_cast<std::size_t> (column) / static_cast<std::size_t> (width);
        columns.push_back (powerSpectrum (audio, start));
    }
    analysis::drawSpectrogram (canvas, x, y, height, columns, sampleRate);
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
    Canvas canvas = emptySheet (columns * cellWidth, rows * cellHeight + 6);
    for (std::size_t n = 0; n < programs.size (); ++n)
    {
        const std::size_t row = n / columns;
        const double x = static_cast<double> (n % columns) * cellWidth + 6.0;
        const double y = static_cast<double> (row) * cellHeight + 18.0;
        text (canvas, x, y - 4.0, 11.0, std::to_string (n) + "  " + programs[n].name ());
        drawSpectrogram (canvas, x, y, pictureWidth, pictureHeight, phrases[n]);
    }
    canvas.savePng (file);
}

void drawPiece (const std::filesystem::path& file, const Audio& audio)
{
    constexpr int width = 1200;
    constexpr int height = 300;
    Canvas canvas = emptySheet (width, height);
    drawSpectrogram (canvas, 0.0, 0.0, width, height, audio);
    canvas.savePng (file);
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
    Canvas canvas = emptySheet (static_cast<int> (spectrumLeft + partials * partialWidth) + 20,
                                static_cast<int> (tones.size ()) * static_cast<int> (rowHeight) + 10);
    double top = 30.0;
    for (const Tone& tone : tones)
    {
        text (canvas, 12.0, top - 9.0, 13.0, tone.title);
        canvas.fillRect (12.0, top + plotHeight / 2.0, waveWidth, 1.0, faintInk);
        const auto [lowest, highest] = std::ranges::minmax (tone.audio);
        const double scale = plotHeight / 2.0 / static_cast<double> (std::max (highest, -lowest));
        canvas.setColour (accent);
        for (int column = 0; column < static_cast<int> (waveWidth) * 2; ++column)
        {
            const double sample = column / (waveWidth * 2.0) * 2.0 * sampleRate / tone.hz;
            const double level = static_cast<double> (tone.audio[static_cast<std::size_t> (sample)]);
            cairo_line_to (canvas.context (), 12.0 + column * 0.5, top + plotHeight / 2.0 - level * scale);
        }
        cairo_set_line_width (canvas.context (), 1.4);
        cairo_stroke (canvas.context ());

        for (int line = 0; line <= 3; ++line)
        {
            const double y = top + plotHeight * line / 3.0;
            canvas.fillRect (spectrumLeft, y, partials * partialWidth, 1.0, faintInk);
            text (canvas, spectrumLeft - 48.0, y + 4.0, 10.0,
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
            canvas.fillRect (spectrumLeft + n * partialWidth + 2.0, top + plotHeight - height,
                             partialWidth - 4.0, height, accent);
            if ((n + 1) % 10 == 0 || n == 0)
                text (canvas, spectrumLeft + n * partialWidth, top + plotHeight + 13.0, 10.0,
                      std::to_string (n + 1));
        }
        top += rowHeight;
    }
    canvas.savePng (file);
}
}
