#pragma once

#include <vector>

// What a sound is, measured.

// Frequency in Hz of a steady sound, by its autocorrelation; looks within 3 % of `about`.
double frequencyOf (const std::vector<float>& samples, double rate, double about);

// Index of the first sample that is not 0, or the size.
int firstSound (const std::vector<float>& samples);

// Hz of a key whose oscillator plays the saw or the pulse at middle range: the tables are read one semitone
// above the key, loop once in 734 or 732 samples, and carry a small correction.
double sawHz (int key);
double pulseHz (int key);
