#pragma once

#include "editor/Toolkit.h"

namespace editor
{
// Lies on top of everything, shows nothing and cures a slip of the toolkit's Direct2D drawing: the clip of
// one update rectangle is still set while the next one is cleared, and where the system does not forgive an
// empty intersection (Wine's does not) the first rectangle is cleared again and stays empty. Being drawn with
// every update, it also knows whether the last one was partial.
class ClipRelease : public VSTGUI::CView
{
public:
    explicit ClipRelease (const VSTGUI::CRect& size);
    void draw (VSTGUI::CDrawContext* context) override;

    // Whether less than all was drawn last.
    bool drewPart () const { return partial; }

private:
    bool partial = false;
};
}
