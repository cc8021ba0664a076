#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <string>

#include <DistrhoPlugin.hpp>

#include "editor/PanelFactory.h"
#include "formats/dpf/BlockEvents.h"
#include "formats/shared/HostedInstrument.h"

namespace dpf
{
// A name as LV2 wants symbols: letters, digits and underscores, no digit first.
std::string symbolFor (std::string name);

// The instrument as the framework sees it: what VST3 and LV2 have in common. The panel belongs to it and not
// to the framework's window, for windows come and go while the instrument plays.
//
// A host has its own idea of every value. It is kept here, so that a program change or a learned controller
// can be told to the host, and what the host repeats can be told from what it wants.
class SynthPlugin : public DISTRHO::Plugin, protected instrument::FormatHost, private editor::PanelHost
{
public:
    SynthPlugin ();

    formats::HostedInstrument& hosted () { return synth; }
    editor::HostedPanel& panel () { return *ownPanel; }

    // User-interface thread

    // Who passes the panel's wishes on to the host while it is open; null: nobody.
    void setPanelHost (editor::PanelHost* host) { panelHost = host; }
    const editor::PanelHost* currentPanelHost () const { return panelHost; }

    // True where the host has a wrong idea of the value. It counts as told then.
    bool isNewsToHost (std::uint32_t index);

    // Plugin
    const char* getLabel () const override { return DISTRHO_PLUGIN_NAME; }
    const char* getDescription () const override;
    const char* getMaker () const override { return "corvanex.com"; }
    const char* getHomePage () const override { return "https://corvanex.com"; }
    const char* getLicense () const override { return "MIT"; }
    std::uint32_t getVersion () const override;
    std::int64_t getUniqueId () const override;
    void initAudioPort (bool input, std::uint32_t index, DISTRHO::AudioPort& port) override;
    void initParameter (std::uint32_t index, DISTRHO::Parameter& parameter) override;
    void initState (std::uint32_t index, DISTRHO::State& state) override;
    float getParameterValue (std::uint32_t index) const override;
    DISTRHO::String getState (const char* key) const override;
    void setState (const char* key, const char* text) override;
    void activate () override;
    void run (const float** inputs, float** outputs, std::uint32_t frames, const DISTRHO::MidiEvent* midi,
              std::uint32_t midiCount) override;
    void sampleRateChanged (double hz) override;

protected:
    // A value that the host sets; any thread. Nothing happens while the user holds the control: then the host
    // only says, late, what the panel told it.
    void takeFromHost (std::uint32_t index, float value);
    bool isHeld (std::uint32_t index) const;
    void setKnown (std::uint32_t index, float value);
    float known (std::uint32_t index) const;

    // From within a block: tells the host that the instrument changed a value itself. False when the host
    // takes no such news.
    virtual bool tellHost (std::uint32_t index, float value) = 0;

    // What a song has to keep besides the state that all formats share; a line of text without blanks.
    virtual std::string extraState () const { return {}; }
    virtual void setExtraState (std::string_view /*text*/) {}

    mutable formats::HostedInstrument synth; // the framework saves through a const operation
    BlockEvents events{ synth };             // of the block that comes

private:
    // PanelHost
    void setParameterAutomated (std::int32_t index, float value) override;
    void beginEdit (std::int32_t index) override;
    void endEdit (std::int32_t index) override;
    bool resize (int width, int height) override;
    void updateDisplay () override {} // every block and idle call compares the values anyway

    void tellHostOfChanges ();

    std::array<std::atomic<float>, formats::shownCount> knownToHost;
    std::atomic<std::uint64_t> held = 0; // one bit for each parameter
    std::unique_ptr<editor::HostedPanel> ownPanel;
    editor::PanelHost* panelHost = nullptr;
};
}
