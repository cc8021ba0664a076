#include "formats/clap/Gui.h"

#include "editor/PanelFactory.h"
#include "formats/clap/IdleTimer.h"
#include "platform/EditorWindow.h"
#include "platform/FloatingWindow.h"

namespace clap
{
namespace
{
constexpr char defaultTitle[] = "Brimvale";

class PanelGui final : public Gui, private editor::PanelHost
{
public:
    PanelGui (instrument::Instrument& instrument, Reporter& changes, const Host& theHost)
        : synth (instrument),
          reporter (changes),
          host (theHost),
          idleTimer (theHost),
          panel (editor::createPanel (instrument, *this))
    {
        instrument.attachEditor (panel.get ());
    }

    bool create (bool isFloating) override;
    void destroy () override;
    bool setScale (double scale) override { return panel->setHostScale (scale); }
    bool size (std::uint32_t& width, std::uint32_t& height) override;
    bool setParent (void* window) override;
    bool setTransient (void* window) override;
    void suggestTitle (const char* title) override;
    bool show () override;
    bool hide () override;
    void timerCalls (clap_id timer) override;
    void hostCalls () override;

private:
    // PanelHost
    void setParameterAutomated (std::int32_t index, float value) override;
    void beginEdit (std::int32_t index) override;
    void endEdit (std::int32_t index) override;
    bool resize (int width, int height) override;
    void updateDisplay () override;

    void idle ();

    instrument::Instrument& synth;
    Reporter& reporter;
    const Host& host;
    IdleTimer idleTimer;
    std::unique_ptr<editor::HostedPanel> panel;
    std::unique_ptr<platform::FloatingWindow> ownWindow; // null in one of the host's
    void* parent = nullptr;                              // window that the panel opens in
    bool isShown = false;
};

bool PanelGui::create (bool isFloating)
{
    destroy ();
    if (!isFloating)
        return true;
    const auto size = panel->size ();
    ownWindow = platform::FloatingWindow::make (size.width, size.height);
    if (ownWindow == nullptr)
        return false;
    ownWindow->setTitle (defaultTitle);
    parent = ownWindow->handle ();
    return true;
}

void PanelGui::destroy ()
{
    hide ();
    parent = nullptr;
    ownWindow = nullptr;
}

bool PanelGui::size (std::uint32_t& width, std::uint32_t& height)
{
    const auto size = panel->size ();
    width = static_cast<std::uint32_t> (size.width);
    height = static_cast<std::uint32_t> (size.height);
    return true;
}

bool PanelGui::setParent (void* window)
{
    if (ownWindow != nullptr)
        return false;
    hide ();
    parent = window;
    return true;
}

bool PanelGui::setTransient (void* window)
{
    if (ownWindow != nullptr)
        ownWindow->stayAbove (window);
    return ownWindow != nullptr;
}

void PanelGui::suggestTitle (const char* title)
{
    if (ownWindow != nullptr && title != nullptr)
        ownWindow->setTitle (title);
}

bool PanelGui::show ()
{
    if (isShown)
        return true;
    if (ownWindow != nullptr)
        ownWindow->show ();
    isShown = panel->open (parent);
    if (isShown)
        idleTimer.start ();
    return isShown;
}

// A panel that nobody sees is closed: it keeps nothing that the instrument does not.
bool PanelGui::hide ()
{
    idleTimer.stop ();
    panel->close ();
    if (ownWindow != nullptr)
        ownWindow->hide ();
    isShown = false;
    return true;
}

void PanelGui::timerCalls (clap_id timer)
{
    if (idleTimer.isTimer (timer))
        idle ();
}

void PanelGui::hostCalls ()
{
    if (idleTimer.takeCallback ())
        idle ();
}

// Values that are moved without the panel's telling (random sounds, other programs) are told here where the
// host processes nothing.
void PanelGui::idle ()
{
    panel->idle ();
    if (ownWindow != nullptr && ownWindow->closeAsked ())
    {
        hide ();
        host.windowClosed ();
    }
    if (reporter.hasNews ())
        host.requestFlush ();
}

void PanelGui::setParameterAutomated (std::int32_t index, float value)
{
    synth.setParameter (index, value);
    host.requestFlush ();
}

void PanelGui::beginEdit (std::int32_t index)
{
    reporter.beginEdit (index);
    host.requestFlush ();
}

void PanelGui::endEdit (std::int32_t index)
{
    reporter.endEdit (index);
    host.requestFlush ();
}

bool PanelGui::resize (int width, int height)
{
    if (ownWindow == nullptr)
        return host.requestResize (width, height);
    ownWindow->resize (width, height);
    return true;
}

void PanelGui::updateDisplay ()
{
    host.rescan (CLAP_PARAM_RESCAN_VALUES | CLAP_PARAM_RESCAN_TEXT);
    host.markDirty ();
}
}

std::unique_ptr<Gui> makeGui (instrument::Instrument& instrument, Reporter& reporter, const Host& host)
{
    return std::make_unique<PanelGui> (instrument, reporter, host);
}

const char* windowApi ()
{
    return platform::windowSystem ();
}
}
