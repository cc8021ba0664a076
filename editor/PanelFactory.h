#pragma once

#include <memory>

#include "editor/PanelHost.h"
#include "editor/Synth.h"
#include "instrument/EditorLink.h"

namespace editor
{
inline constexpr std::int32_t escapeCharacter = 27; // what the Escape key types

// Keys by what a panel may want them for.
enum class KeyGroup
{
    number, // of the row above the letters
    arrow,
    other
};

// The panel as the plug-in formats drive it, and as the instrument tells it news. User-interface thread only,
// but for the news (see EditorLink).
class HostedPanel : public instrument::EditorLink
{
public:
    struct Size
    {
        int width, height; // pixels
    };

    // What the window has or, while it is closed, will have.
    virtual Size size () = 0;

    // What the host enlarges its windows by, for the size at which the panel opens until the user has chosen
    // a zoom. False while it is open, or when the user has.
    virtual bool setHostScale (double scale) = 0;

    // Opens inside the host's window (an HWND or an X11 window id); false when that failed.
    virtual bool open (void* parentWindow) = 0;
    virtual void close () = 0;

    // Its own window inside the host's (an HWND or an X11 window id); null while the panel is closed.
    virtual void* window () = 0;

    // To be called regularly while the panel is open.
    virtual void idle () = 0;

    // A key that the host caught, as the character it types; 0 where it types none. True: taken.
    virtual bool onKeyDown (std::int32_t character) = 0;

    // Whether the panel would do something with such a key right now: a field or a menu is open, the mouse
    // rests on what an arrow turns, or numbers make random sounds. For hosts that use keys themselves.
    virtual bool wantsKey (KeyGroup group) = 0;

    // The wheel over the panel, in notches, positive away from the user. True: taken.
    virtual bool onWheel (float distance) = 0;

    // How knobs are dragged: 0 circular, 1 circular relative, 2 linear. Others are refused.
    virtual bool setKnobMode (std::int32_t mode) = 0;
};

// Cheap: makes no window and touches no display before it is opened. Both arguments must outlive the panel.
std::unique_ptr<HostedPanel> createPanel (Synth& synth, PanelHost& host);
}
