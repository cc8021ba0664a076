#pragma once

#include <memory>

#include <vstgui/vstgui.h>

namespace editor
{
// The toolkit as the whole process uses it: started for the first editor that opens, ended with the last one
// that existed. Starting it may create graphics devices, so scanning hosts never get here. User-interface
// thread only.
class Toolkit
{
public:
    static std::shared_ptr<Toolkit> use ();
    ~Toolkit ();
    Toolkit (const Toolkit&) = delete;
    Toolkit& operator= (const Toolkit&) = delete;

    // The bitmap with this resource id, loaded once; null when there is none or it is damaged.
    VSTGUI::SharedPointer<VSTGUI::CBitmap> bitmap (int resourceId);

    // Lets go of all bitmaps, once their frame is closed. The toolkit keeps a copy of each for every graphics
    // device that drew it, and some systems make a device for every frame: bitmaps that stayed would gather
    // copies.
    void releaseBitmaps ();

    // The panel's lettering in a size in pixels.
    VSTGUI::SharedPointer<VSTGUI::CFontDesc> font (double size, bool bold = false) const;

private:
    Toolkit ();

    struct Cache;
    std::unique_ptr<Cache> cache;
    const char* family;
};
}
