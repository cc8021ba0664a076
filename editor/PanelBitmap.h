#pragma once

#include <set>

#include "editor/Toolkit.h"

namespace editor
{
// One picture of the panel, sharp at every zoom: it is drawn from the set that the zoom asks for, from a
// whole pixel of that set on, as the background was. A larger set's picture is loaded when it is first needed
// and stays while the bitmap lives. User-interface thread only.
class PanelBitmap : public VSTGUI::CBitmap
{
public:
    // The bitmap with this resource id; null when there is none or it is damaged.
    static VSTGUI::SharedPointer<PanelBitmap> load (int resourceId);

    // `rect` and `offset` in panel pixels, the offset on the edge of a frame.
    void draw (VSTGUI::CDrawContext* context, const VSTGUI::CRect& rect,
               const VSTGUI::CPoint& offset = VSTGUI::CPoint (0, 0), float alpha = 1.0f) override;

    explicit PanelBitmap (int resourceId) : id (resourceId) {}

private:
    void provide (int percent);

    int id;
    std::set<int> tried; // sets of which a picture is there, or cannot be had
};
}
