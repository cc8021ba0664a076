#include "editor/PanelBitmap.h"

#include "picture/Dib.h"
#include "platform/Resources.h"
#include "resources/panel/PanelLayout.h"
#include <vstgui/lib/platform/iplatformbitmap.h>
#include <vstgui/lib/platform/platformfactory.h>

namespace editor
{
using namespace VSTGUI;

namespace
{
PlatformBitmapPtr platformBitmap (const picture::Picture& image)
{
    auto bitmap = getPlatformFactory ().createBitmap (CPoint (image.width, image.height));
    auto pixels = bitmap ? bitmap->lockPixels (true) : nullptr;
    if (!pixels)
        return nullptr;

    // The order of the bytes in memory differs between the systems.
    const bool blueFirst = pixels->getPixelFormat () == IPlatformBitmapPixelAccess::kBGRA;
    for (int y = 0; y < image.height; ++y)
    {
        auto* out = pixels->getAddress () + static_cast<std::size_t> (y) * pixels->getBytesPerRow ();
        for (int x = 0; x < image.width; ++x, out += 4)
        {
            const picture::Colour& colour = image.at (x, y);
            out[0] = blueFirst ? colour.blue : colour.red;
            out[1] = colour.green;
            out[2] = blueFirst ? colour.red : colour.blue;
            out[3] = 255;
        }
    }
    return bitmap;
}

// Views whose edges fall inside a pixel are clipped there, which would mix the picture's last pixels with
// what lies below. Gives the clip that was set.
CRect widenClip (CDrawContext& context)
{
    constexpr double fuzz = 1e-6; // of a pixel, from calculating back and forth
    CRect before;
    context.getClipRect (before);
    CRect wide = before;
    const CGraphicsTransform toPixels = context.getCurrentTransform ();
    toPixels.transform (wide);
    wide.inset (fuzz, fuzz).makeIntegral ();
    toPixels.inverse ().transform (wide);
    context.setClipRect (wide);
    return before;
}
}

SharedPointer<PanelBitmap> PanelBitmap::load (int resourceId)
{
    const auto image = picture::readDib (platform::findResource ("BITMAP", resourceId));
    auto first = image ? platformBitmap (*image) : nullptr;
    if (!first)
        return nullptr;
    auto bitmap = makeOwned<PanelBitmap> (resourceId);
    bitmap->setPlatformBitmap (first);
    return bitmap;
}

// Added without the toolkit's check of the size, which a set whose pixels are no whole part of the panel's
// fails: at 150 % a width of 31 becomes 47 pixels.
void PanelBitmap::provide (int percent)
{
    if (percent == panel::bitmapPercent || !tried.insert (percent).second)
        return;
    const auto bytes = platform::findResource ("PNG", panel::largerPictureId (id, percent));
    if (bytes.empty ())
        return;
    auto larger = getPlatformFactory ().createBitmapFromMemory (bytes.data (),
                                                                static_cast<std::uint32_t> (bytes.size ()));
    if (!larger)
        return;
    larger->setScaleFactor (static_cast<double> (percent) / panel::bitmapPercent);
    bitmaps.push_back (larger);
}

void PanelBitmap::draw (CDrawContext* context, const CRect& rect, const CPoint& offset, float alpha)
{
    const double scale = context->getScaleFactor () * context->getCurrentTransform ().m11;
    const int percent = panel::setForZoom (scale * panel::bitmapPercent);
    provide (percent);
    const CRect placed (panel::edgeInSet (rect.left, percent), panel::edgeInSet (rect.top, percent),
                        panel::edgeInSet (rect.right, percent), panel::edgeInSet (rect.bottom, percent));
    const CRect clip = widenClip (*context);
    CBitmap::draw (context, placed, offset, alpha);
    context->setClipRect (clip);
}
}
