#include "editor/ClipRelease.h"

#include <vstgui/lib/platform/iplatformgraphicsdevice.h>

namespace editor
{
using namespace VSTGUI;

ClipRelease::ClipRelease (const CRect& size) : CView (size)
{
    setTransparency (true);
    setMouseEnabled (false);
}

// Drawing anything, even nothing visible, makes the device take over the clip that was set last.
void ClipRelease::draw (CDrawContext* context)
{
    // Both in the panel's own pixels, of which a zoom may cut off a fraction.
    const CCoord wholeWidth = getFrame ()->getWidth () / getFrame ()->getZoom () - 1.0;
    const CCoord wholeHeight = getFrame ()->getHeight () / getFrame ()->getZoom () - 1.0;
    CRect clip;
    context->getClipRect (clip);
    partial = clip.getWidth () < wholeWidth || clip.getHeight () < wholeHeight;

    const auto& device = context->getPlatformDeviceContext ();
    device->setClipRect (context->getSurfaceRect ());
    device->setFillColor (kTransparentCColor);
    device->drawRect (CRect (0, 0, 1, 1), PlatformGraphicsDrawStyle::Filled);
    setDirty (false);
}
}
