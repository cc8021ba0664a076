// What the picture of a sound shows, by its pixels.
#include "host/Plot.h"
#include "picture/Png.h"
#include "tests/host/TemporaryFolder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace
{
int brightness (picture::Colour colour)
{
    return colour.red + colour.green + colour.blue;
}

// Silence, then 1 kHz on the left, for so long that many columns had to be put together.
TEST (Plot, ShowsWhenAndWhatSounds)
{
    constexpr int rate = 48000;
    constexpr int seconds = 40;
    const TemporaryFolder folder;
    const auto file = folder / "sound.png";
    const auto plot = host::Plot::make (file, rate);
    for (int second = 0; second < seconds; ++second)
    {
        std::vector<float> stereo (2 * rate);
        for (std::size_t n = 0; second >= seconds / 2 && n < rate; ++n)
            stereo[2 * n] = 0.5f * static_cast<float> (std::sin (2.0 * std::numbers::pi * 1000.0 *
                                                                 static_cast<double> (n) / rate));
        plot->add (stereo);
    }
    EXPECT_FALSE (std::filesystem::exists (file)) << "before it is complete";
    plot->finish ();
    EXPECT_EQ (filesIn (folder.folder ()), std::set<std::string>{ "sound.png" });

    const picture::Picture picture = picture::readPng (file);
    const picture::Colour ground = picture.at (1, 1);
    constexpr int sounding = 56 + 900;
    constexpr int silent = 56 + 300;
    constexpr int leftMiddle = 14 + 45;
    constexpr int rightMiddle = leftMiddle + 100;
    for (const int height : { 20, -20 }) // of 45 for full scale
    {
        EXPECT_NE (picture.at (sounding, leftMiddle + height), ground);
        EXPECT_EQ (picture.at (silent, leftMiddle + height), ground);
        EXPECT_EQ (picture.at (sounding, leftMiddle + height * 5 / 4), ground);
        EXPECT_EQ (picture.at (sounding, rightMiddle + height), ground);
    }
    const auto rowOf = [] (double hz)
    { return 214 + static_cast<int> (319.0 * (1.0 - std::log2 (hz / 50.0) / 7.9)); };
    EXPECT_GT (brightness (picture.at (sounding, rowOf (1000.0))), 500);
    for (const double hz : { 200.0, 800.0, 1250.0, 5000.0 })
        EXPECT_LT (brightness (picture.at (sounding, rowOf (hz))), 60) << hz;
    EXPECT_LT (brightness (picture.at (silent, rowOf (1000.0))), 60);
    EXPECT_GT (brightness (picture.at (56 + 605, rowOf (1000.0))), 500) << "from the middle on";
    EXPECT_LT (brightness (picture.at (56 + 595, rowOf (1000.0))), 60) << "and not before";

    host::Plot::make (folder / "nothing.png", rate)->finish ();
    EXPECT_EQ (picture::readPng (folder / "nothing.png").width, 1266);
}
}
