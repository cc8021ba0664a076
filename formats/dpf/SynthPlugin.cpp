#include "formats/dpf/SynthPlugin.h"

#include <cstring>

#include "brimvale/Version.h"
#include "formats/dpf/Base64.h"

namespace dpf
{
namespace
{
constexpr const char* stateKey = "bank";
constexpr char extraMark =
    '.'; // between the shared state and what else the format keeps; no letter of base64

// The framework makes VST3's class ID of these letters: "DPF ", "clas", these and zeros, each four as a
// little-endian number. Songs find the instrument by it, so it stays for ever, as do the symbols below and
// the number and order of the parameters.
constexpr char uniqueId[] = "Qnrk";

// The framework makes an instance of its own to describe the library, which no user's bank shall do.
instrument::Services services (bool describes)
{
    instrument::Services found = instrument::systemServices (instrument::BankPlaces::perUser);
    if (describes)
        found.userBankPath = nullptr;
    return found;
}

bool isTheStates (const char* key)
{
    return std::strcmp (key, stateKey) == 0;
}

std::int32_t asIndex (std::uint32_t index)
{
    return static_cast<std::int32_t> (index);
}
}

std::string symbolFor (std::string name)
{
    const auto isDigit = [] (char c) { return c >= '0' && c <= '9'; };
    const auto isLetter = [] (char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    for (char& character : name)
    {
        if (!isDigit (character) && !isLetter (character))
            character = '_';
    }
    return isDigit (name.front ()) ? "_" + name : name;
}

SynthPlugin::SynthPlugin ()
    : Plugin (formats::shownCount, 0, 1),
      synth (services (isDummyInstance ()), *this),
      ownPanel (editor::createPanel (synth.instrument (), *this))
{
    synth.instrument ().attachEditor (ownPanel.get ());
    synth.instrument ().setSampleRate (static_cast<float> (getSampleRate ()));
    for (std::uint32_t index = 0; index < knownToHost.size (); ++index)
        setKnown (index, static_cast<float> (formats::shownDefault (asIndex (index))));
}

const char* SynthPlugin::getDescription () const
{
    return "A polyphonic synthesizer with two oscillators, a resonant filter and 128 programs.";
}

std::uint32_t SynthPlugin::getVersion () const
{
    return d_version (brimvale::versionNumbers[0], brimvale::versionNumbers[1], brimvale::versionNumbers[2]);
}

std::int64_t SynthPlugin::getUniqueId () const
{
    return d_cconst (uniqueId[0], uniqueId[1], uniqueId[2], uniqueId[3]);
}

void SynthPlugin::initAudioPort (bool /*input*/, std::uint32_t index, DISTRHO::AudioPort& port)
{
    port.name = index == 0 ? "Left" : "Right";
    port.symbol = index == 0 ? "left" : "right";
    port.groupId = DISTRHO::kPortGroupStereo;
}

void SynthPlugin::initParameter (std::uint32_t index, DISTRHO::Parameter& parameter)
{
    const std::int32_t shown = asIndex (index);
    const auto& row = formats::shownParameter (shown);
    const std::string name = formats::shownName (shown);
    parameter.name = name.c_str ();
    parameter.symbol = symbolFor (name).c_str ();
    parameter.ranges.max = static_cast<float> (formats::shownHighest (shown));
    parameter.ranges.def = static_cast<float> (formats::shownDefault (shown));
    parameter.hints = row.automated ? DISTRHO::kParameterIsAutomatable : 0;
    if (row.positions == 0)
        return;
    parameter.hints |= DISTRHO::kParameterIsInteger;
    if (row.positions == 2)
        parameter.hints |= DISTRHO::kParameterIsBoolean;
    parameter.enumValues.count = static_cast<std::uint8_t> (row.positions);
    parameter.enumValues.restrictedMode = true;
    parameter.enumValues.values = new DISTRHO::ParameterEnumerationValue[parameter.enumValues.count];
    for (std::uint8_t position = 0; position < parameter.enumValues.count; ++position)
    {
        parameter.enumValues.values[position].value = position;
        parameter.enumValues.values[position].label = synth.text (shown, position).c_str ();
    }
}

// Not for the framework's side of the window: it would be told with every block that there is no room for it.
void SynthPlugin::initState (std::uint32_t /*index*/, DISTRHO::State& state)
{
    state.key = stateKey;
    state.label = "Bank";
    state.hints = DISTRHO::kStateIsOnlyForDSP | DISTRHO::kStateIsBase64Blob;
}

float SynthPlugin::getParameterValue (std::uint32_t index) const
{
    return static_cast<float> (synth.value (asIndex (index)));
}

DISTRHO::String SynthPlugin::getState (const char* key) const
{
    if (!isTheStates (key))
        return DISTRHO::String ();
    std::string text = toBase64 (synth.saveState ());
    if (const std::string extra = extraState (); !extra.empty ())
        text += extraMark + extra;
    return DISTRHO::String (text.c_str ());
}

// What is no state changes nothing.
void SynthPlugin::setState (const char* key, const char* text)
{
    if (!isTheStates (key))
        return;
    const std::string_view whole = text;
    const std::size_t end = std::min (whole.find (extraMark), whole.size ());
    const auto bytes = fromBase64 (whole.substr (0, end));
    if (bytes && synth.loadState (*bytes))
        setExtraState (whole.substr (std::min (end + 1, whole.size ())));
}

// Hosts start anew with it.
void SynthPlugin::activate ()
{
    synth.instrument ().silence ();
}

void SynthPlugin::sampleRateChanged (double hz)
{
    synth.instrument ().setSampleRate (static_cast<float> (hz));
}

void SynthPlugin::run (const float** /*inputs*/, float** outputs, std::uint32_t frames,
                       const DISTRHO::MidiEvent* midi, std::uint32_t midiCount)
{
    for (std::uint32_t n = 0; n < midiCount; ++n)
    {
        if (midi[n].size <= DISTRHO::MidiEvent::kDataSize) // the others are not for instruments of this kind
            events.addMidi (static_cast<std::int32_t> (midi[n].frame), midi[n].data[0], midi[n].data[1],
                            midi[n].data[2]);
    }
    synth.instrument ().processEvents (events.size () > 0 ? &events : nullptr);
    synth.instrument ().render (outputs[0], outputs[1], static_cast<std::int32_t> (frames));
    events.clear ();
    tellHostOfChanges ();
}

// --- What the host knows

float SynthPlugin::known (std::uint32_t index) const
{
    return knownToHost[index].load (std::memory_order_relaxed);
}

void SynthPlugin::setKnown (std::uint32_t index, float value)
{
    knownToHost[index].store (value, std::memory_order_relaxed);
}

bool SynthPlugin::isHeld (std::uint32_t index) const
{
    return ((held.load (std::memory_order_relaxed) >> index) & 1u) != 0;
}

void SynthPlugin::takeFromHost (std::uint32_t index, float value)
{
    if (!isHeld (index) && value != getParameterValue (index)) // an echo is not heard by the engine
        synth.setValue (asIndex (index), static_cast<double> (value));
    setKnown (index, value); // last, so that nobody finds a difference in between
}

void SynthPlugin::tellHostOfChanges ()
{
    for (std::uint32_t index = 0; index < knownToHost.size (); ++index)
    {
        const float value = getParameterValue (index);
        if (value != known (index) && tellHost (index, value))
            setKnown (index, value);
    }
}

bool SynthPlugin::isNewsToHost (std::uint32_t index)
{
    const float value = getParameterValue (index);
    return knownToHost[index].exchange (value, std::memory_order_relaxed) != value;
}

// --- The panel's wishes

void SynthPlugin::setParameterAutomated (std::int32_t index, float value)
{
    synth.instrument ().setParameter (index, value);
    const auto shown = static_cast<std::uint32_t> (index);
    const float result = getParameterValue (shown);
    setKnown (shown, result);
    if (panelHost != nullptr)
        panelHost->setParameterAutomated (index, result);
}

void SynthPlugin::beginEdit (std::int32_t index)
{
    held.fetch_or (std::uint64_t{ 1 } << index, std::memory_order_relaxed);
    if (panelHost != nullptr)
        panelHost->beginEdit (index);
}

void SynthPlugin::endEdit (std::int32_t index)
{
    held.fetch_and (~(std::uint64_t{ 1 } << index), std::memory_order_relaxed);
    if (panelHost != nullptr)
        panelHost->endEdit (index);
}

bool SynthPlugin::resize (int width, int height)
{
    return panelHost != nullptr && panelHost->resize (width, height);
}
}
