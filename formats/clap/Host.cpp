#include "formats/clap/Host.h"

#include "platform/Thread.h"

namespace clap
{
void Host::lookUp ()
{
    const auto find = [this]<typename Extension> (const char* id, const Extension*& found)
    { found = static_cast<const Extension*> (host.get_extension (&host, id)); };
    find (CLAP_EXT_PARAMS, params);
    find (CLAP_EXT_GUI, gui);
    find (CLAP_EXT_STATE, state);
    find (CLAP_EXT_TIMER_SUPPORT, timers);
    find (CLAP_EXT_THREAD_CHECK, threads);
    mainThread = platform::currentThread ();
}

bool Host::isMainThread () const
{
    return threads != nullptr ? threads->is_main_thread (&host) : platform::currentThread () == mainThread;
}

void Host::requestFlush () const
{
    if (params != nullptr)
        params->request_flush (&host);
}

bool Host::requestResize (int width, int height) const
{
    return gui != nullptr && gui->request_resize (&host, static_cast<std::uint32_t> (width),
                                                  static_cast<std::uint32_t> (height));
}

void Host::windowClosed () const
{
    if (gui != nullptr)
        gui->closed (&host, false);
}

void Host::rescan (clap_param_rescan_flags what) const
{
    if (params != nullptr)
        params->rescan (&host, what);
}

void Host::markDirty () const
{
    if (state != nullptr)
        state->mark_dirty (&host);
}

bool Host::startTimer (std::uint32_t milliseconds, clap_id& id) const
{
    return timers != nullptr && timers->register_timer (&host, milliseconds, &id);
}

void Host::stopTimer (clap_id id) const
{
    timers->unregister_timer (&host, id);
}
}
