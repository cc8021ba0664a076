#include "editor/ClipRelease.h"

#include "vstgui/lib/platform/iplatformgraphicsdevice.h"

using namespace VSTGUI;

ClipRelease::ClipRelease (const CRect& size) : CView (size)
{
    setTransparency (true);
    setMouseEnabled (false);
}

// Drawing anything, even nothing visible, makes the device take over the clip that was set last.
void ClipRelease::draw (CDrawContext* context)
{
    const auto& device = context->getPlatformDeviceContext ();
    device->setClipRect (context->getSurfaceRect ());
    device->setFillColor (kTransparentCColor);
    device->drawRect (CRect (0, 0, 1, 1), PlatformGraphicsDrawStyle::Filled);
    setDirty (false);
}
