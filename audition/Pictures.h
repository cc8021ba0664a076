// Draws sound, as PNG files. A file that cannot be written throws std::runtime_error.
#pragma once

#include "audition/SoundReport.h"

#include <filesystem>

namespace audition
{
// One small spectrogram of its phrase for each program: time to the right, 50 Hz to 12 kHz upwards in
// octaves, 60 dB from dark to bright.
void drawContactSheet (const std::filesystem::path& file, const std::vector<bank::SourceProgram>& programs,
                       const std::vector<Audio>& phrases);

// One wide spectrogram of a whole piece, as above.
void drawPiece (const std::filesystem::path& file, const Audio& audio);

// A steady sound: two cycles of its wave beside the levels of its partials.
struct Tone
{
    std::string title;
    Audio audio;
    double hz; // of the fundamental
};
void drawTones (const std::filesystem::path& file, const std::vector<Tone>& tones);
}
