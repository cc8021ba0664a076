#pragma once

#include <memory>

#include <clap/ext/gui.h>

#include "formats/clap/Host.h"
#include "formats/clap/Reporter.h"

namespace clap
{
// The panel in a window of the host's or in one of its own. Main thread.
class Gui
{
public:
    virtual ~Gui () = default;

    // As clap_plugin_gui names them.
    virtual bool create (bool isFloating) = 0;
    virtual void destroy () = 0;
    virtual bool setScale (double scale) = 0;
    virtual bool size (std::uint32_t& width, std::uint32_t& height) = 0; // pixels
    virtual bool setParent (void* window) = 0;
    virtual bool setTransient (void* window) = 0;
    virtual void suggestTitle (const char* title) = 0;
    virtual bool show () = 0;
    virtual bool hide () = 0;

    // The host's timer has run out, or its callback has come.
    virtual void timerCalls (clap_id timer) = 0;
    virtual void hostCalls () = 0;
};

// Null where the library is built without its panel. All three must outlive it.
std::unique_ptr<Gui> makeGui (instrument::Instrument& instrument, Reporter& reporter, const Host& host);

// The windows that `makeGui` opens, as CLAP names them ("x11").
const char* windowApi ();
}
