// Figures of a rendered sound. All take mono audio at the audition's sample rate.
#pragma once

#include "analysis/PowerSpectrum.h"
#include "audition/Takes.h"

#include <span>
#include <vector>

namespace audition
{
using Samples = std::span<const float>;
using analysis::powerSpectrum;
using analysis::spectrumSize;

// Loudest 400 ms in LUFS (momentary maximum, EBU R 128), heard from both outputs.
double loudness (Samples audio);

// Of all of it, gated (integrated loudness, EBU R 128), in LUFS.
double integratedLoudness (Samples audio);

// The longest stretch below -50 dBFS, in seconds.
double longestSilence (Samples audio);

// Mean of the takes' loudness() in LUFS, and how far the loudest lies above the quietest in LU.
struct Levels
{
    double mean;
    double spread;
};
Levels levelsOf (const std::vector<Audio>& takes);

// How the end of a plucked sound is bent: the time until it has fallen by 10 dB for good, as a share of the
// time until it has fallen by 30. A straight line to zero gives 0.7, an exponential decay 0.33.
double tailBend (Samples audio);

// Power between the partials of a steady tone, in dB below all of it: what aliasing leaves.
double inharmonicShare (Samples audio, double hz);

// Highest true peak in dBFS, four times oversampled.
double truePeak (Samples audio);

// Mean of the samples as a share of the largest magnitude.
double dcShare (Samples audio);

// Seconds from the beginning until the level of 10 ms first comes within `decibels` of the loudest 10 ms.
double secondsToReach (Samples audio, double decibels);

// Spectral centroid in Hz of the power spectrum.
double brightness (Samples audio);

// Levels in dB of a steady tone's first partials, from its first 1.5 s.
std::vector<double> partialLevels (Samples audio, double hz, int count);

// The sharpest lone step: how many times the difference between two neighbouring samples exceeds every other
// within 10 ms around it. Steps below 0.01 of full scale do not count. Music stays below 5.
double sharpestClick (Samples audio);

// How a sound looks, averaged over takes, so that chance counts little: level in bands spaced evenly in
// pitch, by time; its overall level by time; how much each band moves within a take. In dB below its own
// loudest value, so that volume does not count.
struct Fingerprint
{
    std::vector<double> bands;    // frame by frame
    std::vector<double> levels;   // frame by frame
    std::vector<double> movement; // band by band, standard deviation
};
Fingerprint fingerprint (const std::vector<Audio>& takes);

// How unlike two sounds are: the root mean square differences of bands, of levels and of movement, added, in
// dB. 0 for copies.
double distance (const Fingerprint& a, const Fingerprint& b);
}
