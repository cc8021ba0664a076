#include "resources/panel/PanelArt.h"

namespace panel
{
Picture drawBitmap (const Bitmap& bitmap, int percent)
{
    const double scale = static_cast<double> (percent) / bitmapPercent;
    if (bitmap.id == panelBitmapId)
        return drawBackground (scale);
    if (bitmap.id == aboutBitmapId)
        return drawAbout (scale);
    return drawControlBitmap (bitmap, scale);
}

std::vector<std::uint8_t> bmpFile (const Bitmap& bitmap)
{
    return encodeBmp (drawBitmap (bitmap), bitmap.bitsPerPixel, plateColour);
}
}
