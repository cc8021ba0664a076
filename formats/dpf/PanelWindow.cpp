#include "formats/dpf/PanelWindow.h"

#include <utility>

namespace dpf
{
namespace
{
// The framework wants a size before it tells which instrument the window is for, so the panel's at its first
// zoom stands in.
constexpr unsigned startWidth = 612, startHeight = 433;
}

PanelWindow::PanelWindow ()
    : UI (startWidth, startHeight),
      plugin (*static_cast<SynthPlugin*> (getPluginInstancePointer ()))
{
    if (getScaleFactor () > 0.0)
        plugin.panel ().setHostScale (getScaleFactor ());
    if (!isEmbed ())
    {
        const auto size = plugin.panel ().size ();
        setSize (static_cast<unsigned> (size.width), static_cast<unsigned> (size.height));
        return;
    }
    plugin.setPanelHost (this);
    plugin.panel ().open (reinterpret_cast<void*> (getParentWindowHandle ()));
}

PanelWindow::~PanelWindow ()
{
    if (!hasPanel ())
        return;
    plugin.panel ().close ();
    plugin.setPanelHost (nullptr);
}

bool PanelWindow::hasPanel () const
{
    return plugin.currentPanelHost () == this;
}

std::uintptr_t PanelWindow::getNativeWindowHandle () const noexcept
{
    return hasPanel () ? reinterpret_cast<std::uintptr_t> (plugin.panel ().window ()) : 0;
}

void PanelWindow::uiIdle ()
{
    if (!hasPanel ())
        return;
    // Hosts of LV2 may open a window of any size and wait to be told.
    if (!std::exchange (sizeIsTold, true))
    {
        const auto size = plugin.panel ().size ();
        resize (size.width, size.height);
    }
    plugin.panel ().idle ();
    for (std::uint32_t index = 0; seat->tellsParameters () && index < formats::shownCount; ++index)
    {
        if (plugin.isNewsToHost (index))
            setParameterValue (index, plugin.getParameterValue (index));
    }
}

void PanelWindow::setParameterAutomated (std::int32_t index, float value)
{
    setParameterValue (static_cast<std::uint32_t> (index), value);
}

void PanelWindow::beginEdit (std::int32_t index)
{
    editParameter (static_cast<std::uint32_t> (index), true);
}

void PanelWindow::endEdit (std::int32_t index)
{
    editParameter (static_cast<std::uint32_t> (index), false);
}

// The framework would not tell whether the host refused. What it believes the size to be comes first, for
// hosts ask it in the middle of this.
bool PanelWindow::resize (int width, int height)
{
    const unsigned oldWidth = getWidth (), oldHeight = getHeight ();
    setSize (static_cast<unsigned> (width), static_cast<unsigned> (height));
    if (seat->resize (width, height))
        return true;
    setSize (oldWidth, oldHeight);
    return false;
}

// Not passed on: the host has been asked already, or has said so itself.
void PanelWindow::sizeChanged (unsigned /*width*/, unsigned /*height*/) {}
}

DISTRHO::UI* DISTRHO::createUI ()
{
    return new dpf::PanelWindow;
}
