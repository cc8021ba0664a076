#pragma once

#include <vector>

#include "analysis/PowerSpectrum.h"
#include "picture/Canvas.h"

namespace analysis
{
// Where pictures of sound begin and end, upwards in octaves, and how deep they look.
inline constexpr double lowestHz = 50.0;
inline constexpr double octaves = 7.9; // to 12 kHz
inline constexpr double range = 60.0;  // dB

// Draws power spectra side by side, one for each column of the picture: time to the right, frequency upwards,
// the level below the loudest from dark to bright. Their size is spectrumSize; what the sample rate (Hz)
// cannot hold stays dark.
void drawSpectrogram (picture::Canvas& canvas, double x, double y, int height,
                      const std::vector<std::vector<double>>& columns, double sampleRate);
}
