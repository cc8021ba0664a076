#include "editor/Toolkit.h"

#include <map>
#include <mutex>
#include <string_view>

#include "editor/PanelBitmap.h"
#include "platform/EditorWindow.h"
#include "resources/panel/PanelLayout.h"
#include <vstgui/lib/platform/platformfactory.h>

namespace editor
{
using namespace VSTGUI;

struct Toolkit::Cache
{
    std::map<int, SharedPointer<CBitmap>> bitmaps;
};

namespace
{
// Arial is listed on systems where nothing of it can be drawn, so the printed family comes first.
const char* existingFamily ()
{
    bool found = false;
    getPlatformFactory ().getAllFontFamilies (
        [&] (const std::string& name)
        {
            found = found || name == panel::fontFamily; // not every system stops at false
            return !found;
        });
    return found ? panel::fontFamily : panel::fontFamilyFallback;
}

// A double click or ctrl-click sets a knob or slider back.
bool asksForDefault (CControl* control, MouseDownEvent& event)
{
    const bool canTurn =
        dynamic_cast<CKnobBase*> (control) != nullptr || dynamic_cast<CSliderBase*> (control) != nullptr;
    return canTurn && event.buttonState.isLeft () &&
           (event.clickCount == 2 || event.modifiers.is (ModifierKey::Control));
}

std::mutex useMutex; // hosts may make and delete instances on any thread
std::weak_ptr<Toolkit> inUse;
}

std::shared_ptr<Toolkit> Toolkit::use ()
{
    const std::lock_guard lock (useMutex);
    auto toolkit = inUse.lock ();
    if (toolkit == nullptr)
    {
        toolkit = std::shared_ptr<Toolkit> (new Toolkit);
        inUse = toolkit;
    }
    return toolkit;
}

Toolkit::Toolkit () : cache (std::make_unique<Cache> ())
{
    platform::startToolkit ();
    family = existingFamily ();
    CControl::CheckDefaultValueEventFunc = asksForDefault;
}

Toolkit::~Toolkit ()
{
    cache.reset ();
    platform::endToolkit ();
}

SharedPointer<CBitmap> Toolkit::bitmap (int resourceId)
{
    const auto known = cache->bitmaps.find (resourceId);
    if (known != cache->bitmaps.end ())
        return known->second;

    return cache->bitmaps.emplace (resourceId, PanelBitmap::load (resourceId)).first->second;
}

void Toolkit::releaseBitmaps ()
{
    cache->bitmaps.clear ();
}

SharedPointer<CFontDesc> Toolkit::font (double size, bool bold) const
{
    return makeOwned<CFontDesc> (family, size, bold ? kBoldFace : kNormalFace);
}
}
