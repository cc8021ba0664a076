#pragma once

#include <string>

#include "picture/Canvas.h"

namespace analysis
{
// The look that all pictures of sound share.
inline constexpr picture::Colour paper{ 18, 18, 23 };
inline constexpr picture::Colour ink{ 219, 219, 214 };
inline constexpr picture::Colour faintInk{ 92, 92, 102 };
inline constexpr picture::Colour accent{ 245, 168, 64 };

picture::Canvas emptySheet (int width, int height); // pixels

// Words that begin at x, with their base line at y.
void text (picture::Canvas& canvas, double x, double y, double size, const std::string& words);
}
