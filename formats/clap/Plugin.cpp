#include "formats/clap/Plugin.h"

#include <array>
#include <cmath>

#include <clap/plugin-features.h>

#include "brimvale/Version.h"
#include "formats/clap/Extensions.h"

namespace clap
{
namespace
{
const char* features[] = { CLAP_PLUGIN_FEATURE_INSTRUMENT, CLAP_PLUGIN_FEATURE_SYNTHESIZER,
                           CLAP_PLUGIN_FEATURE_STEREO, nullptr };

double fromFixedPoint (std::int64_t position)
{
    static_assert (CLAP_BEATTIME_FACTOR == CLAP_SECTIME_FACTOR);
    return static_cast<double> (position) / static_cast<double> (CLAP_SECTIME_FACTOR);
}
}

const clap_plugin_descriptor_t descriptor = {
    .clap_version = CLAP_VERSION,
    .id = "com.corvanex.brimvale", // for ever: songs know the instrument by it
    .name = "Brimvale",
    .vendor = "corvanex.com",
    .url = "",
    .manual_url = "",
    .support_url = "",
    .version = brimvale::version,
    .description = "Two-oscillator subtractive synthesizer",
    .features = features,
};

Plugin::Plugin (const clap_host_t& theHost)
    : handle (),
      host (theHost),
      synth (instrument::systemServices (instrument::BankPlaces::perUser), *this),
      panel (makeGui (synth.instrument (), reporter, host))
{
    handle.desc = &descriptor;
    handle.plugin_data = this;
    handle.init = [] (const clap_plugin_t* plugin) { return of (plugin).init (); };
    handle.destroy = [] (const clap_plugin_t* plugin) { delete &of (plugin); };
    handle.activate = [] (const clap_plugin_t* plugin, double sampleRate, std::uint32_t, std::uint32_t)
    { return of (plugin).activate (sampleRate); };
    handle.deactivate = [] (const clap_plugin_t*) {};
    handle.start_processing = [] (const clap_plugin_t*) { return true; };
    handle.stop_processing = [] (const clap_plugin_t*) {};
    handle.reset = [] (const clap_plugin_t* plugin) { of (plugin).reset (); };
    handle.process = [] (const clap_plugin_t* plugin, const clap_process_t* block)
    { return of (plugin).process (*block); };
    handle.get_extension = [] (const clap_plugin_t* plugin, const char* id)
    { return extension (id, of (plugin).gui () != nullptr); };
    handle.on_main_thread = [] (const clap_plugin_t* plugin) { of (plugin).onMainThread (); };
}

bool Plugin::init ()
{
    host.lookUp ();
    return true;
}

bool Plugin::activate (double sampleRate)
{
    rate = sampleRate;
    return synth.instrument ().setSampleRate (static_cast<float> (sampleRate));
}

void Plugin::reset ()
{
    synth.instrument ().silence ();
}

clap_process_status Plugin::process (const clap_process_t& block)
{
    if (block.frames_count == 0)
    {
        flush (block.in_events, block.out_events);
        return CLAP_PROCESS_CONTINUE;
    }
    constexpr std::uint32_t channels = 2;
    if (block.audio_outputs_count == 0 || block.audio_outputs[0].data32 == nullptr ||
        block.audio_outputs[0].channel_count < channels)
        return CLAP_PROCESS_ERROR;
    clap_audio_buffer_t& output = block.audio_outputs[0];
    output.constant_mask = 0;

    now = block.transport;
    reporter.hostSets (block.in_events);
    synth.instrument ().processEvents (events.show (block.in_events));
    synth.instrument ().render (output.data32[0], output.data32[1],
                                static_cast<std::int32_t> (block.frames_count));
    now = nullptr;
    report (block.out_events);
    return CLAP_PROCESS_CONTINUE;
}

// Values alone: between blocks nothing else has a time.
void Plugin::flush (const clap_input_events_t* in, const clap_output_events_t* out)
{
    reporter.hostSets (in);
    const std::uint32_t size = in != nullptr ? in->size (in) : 0;
    for (std::uint32_t n = 0; n < size; ++n)
    {
        if (const auto* change = asParameterValue (in->get (in, n)))
            synth.setValue (static_cast<std::int32_t> (change->param_id), change->value);
    }
    report (out);
}

void Plugin::report (const clap_output_events_t* out)
{
    reporter.tell (out);
    if (reporter.hasNewTexts ())
        host.requestCallback ();
}

// Where the song stands, not the host's steady clock: the LFO follows it through loops and jumps.
std::optional<engine::Transport> Plugin::transport ()
{
    if (now == nullptr)
        return std::nullopt;
    engine::Transport transport;
    const auto has = [this] (std::uint32_t flag) { return (now->flags & flag) != 0; };
    if (has (CLAP_TRANSPORT_HAS_TEMPO))
        transport.tempo = now->tempo;
    if (has (CLAP_TRANSPORT_HAS_BEATS_TIMELINE))
        transport.quarterPosition = fromFixedPoint (now->song_pos_beats);
    if (has (CLAP_TRANSPORT_HAS_SECONDS_TIMELINE))
        transport.samplePosition = std::round (fromFixedPoint (now->song_pos_seconds) * rate);
    else if (transport.quarterPosition && transport.tempo && *transport.tempo > 0.0)
        transport.samplePosition = std::round (*transport.quarterPosition * 60.0 / *transport.tempo * rate);
    return transport;
}

// Some hosts call back on whatever thread asked.
void Plugin::onMainThread ()
{
    if (!host.isMainThread ())
        return;
    if (reporter.takeNewTexts ())
        host.rescan (CLAP_PARAM_RESCAN_TEXT);
    if (panel != nullptr)
        panel->hostCalls ();
}

// --- What a song keeps. Streams take and give it in pieces of any size.

bool Plugin::saveState (const clap_ostream_t& stream)
{
    const std::vector<std::byte> state = synth.saveState ();
    for (std::size_t done = 0; done < state.size ();)
    {
        const std::int64_t written = stream.write (&stream, state.data () + done, state.size () - done);
        if (written <= 0)
            return false;
        done += static_cast<std::size_t> (written);
    }
    return true;
}

bool Plugin::loadState (const clap_istream_t& stream)
{
    constexpr std::size_t most = std::size_t{ 1 } << 20; // far more than any state of ours
    std::vector<std::byte> state;
    std::array<std::byte, 4096> piece;
    for (;;)
    {
        const std::int64_t got = stream.read (&stream, piece.data (), piece.size ());
        if (got == 0)
            break;
        if (got < 0 || state.size () > most)
            return false;
        state.insert (state.end (), piece.begin (), piece.begin () + got);
    }
    if (!synth.loadState (state))
        return false;
    reporter.settle ();
    host.rescan (CLAP_PARAM_RESCAN_VALUES | CLAP_PARAM_RESCAN_TEXT);
    return true;
}
}
