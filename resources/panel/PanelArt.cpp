#include "resources/panel/PanelArt.h"

namespace panel
{
Image drawBitmap (const panel::Bitmap& bitmap)
{
    if (bitmap.id == panel::panelBitmapId)
        return drawBackground ();
    if (bitmap.id == panel::aboutBitmapId)
        return drawAbout ();
    return drawControlBitmap (bitmap);
}

std::vector<std::uint8_t> bmpFile (const panel::Bitmap& bitmap)
{
    return encodeBmp (drawBitmap (bitmap), bitmap.bitsPerPixel, panel::plateColour);
}
}
