// LV2's side of the instrument: the framework's, but for what it tells the host, which it takes for told
// where it is not, and under the numbers of other ports.
#include <src/DistrhoDefines.h>
#undef DISTRHO_PLUGIN_EXPORT
#define DISTRHO_PLUGIN_EXPORT extern "C" // the list of exports decides, on Windows too
#include <src/lv2/lv2.h>                 // declares ours
#define lv2_descriptor frameworkDescriptor
#include <DistrhoPluginMain.cpp> // NOLINT(bugprone-suspicious-include): the framework is compiled within ours
#undef lv2_descriptor

#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

#include "formats/dpf/ScaleMarks.h"
#include "formats/dpf/SynthPlugin.h"

namespace dpf
{
namespace
{
constexpr char separator = ',';                                        // of the values in a song
constexpr std::uint32_t firstControl = DISTRHO_PLUGIN_NUM_OUTPUTS + 2; // behind two ports for events

const LV2_ControlInputPort_Change_Request* nextRequest = nullptr; // of the instance that is being made
constexpr double quartersPerWhole = 4.0;

// Under which hosts list the parameters, each once; the framework wants groups numbered so.
std::vector<std::string> headings ()
{
    std::vector<std::string> all;
    for (std::int32_t index = 0; index < formats::shownCount; ++index)
    {
        const std::string name = formats::shownParameter (index).group;
        if (std::ranges::find (all, name) == all.end ())
            all.push_back (name);
    }
    return all;
}

class Lv2Plugin final : public SynthPlugin
{
public:
    // Hosts know no texts of values but those in the library's description: the names of steps, and marks.
    void initParameter (std::uint32_t index, DISTRHO::Parameter& parameter) override
    {
        SynthPlugin::initParameter (index, parameter);
        const auto shown = static_cast<std::int32_t> (index);
        parameter.description = scaleComment (shown).c_str ();
        const std::vector<std::string> all = headings ();
        parameter.groupId = static_cast<std::uint32_t> (
            std::ranges::find (all, formats::shownParameter (shown).group) - all.begin ());
        const std::vector<ScaleMark> marks = scaleMarks (shown);
        if (marks.empty ())
            return;
        auto* values = new DISTRHO::ParameterEnumerationValue[marks.size ()]; // the framework deletes them
        std::ranges::transform (
            marks, values,
            [] (const ScaleMark& mark)
            { return DISTRHO::ParameterEnumerationValue (mark.shown, mark.label.c_str ()); });
        parameter.enumValues.values = values;
        parameter.enumValues.count = static_cast<std::uint8_t> (marks.size ());
    }

    void initPortGroup (std::uint32_t groupId, DISTRHO::PortGroup& group) override
    {
        const std::string name = headings ().at (groupId);
        group.name = name.c_str ();
        group.symbol = symbolFor (name).c_str ();
    }

    // Called where a port has another value than in the block before; and after a song was loaded, where it
    // has not the default. The host then repeats what it knew when it saved, which a program chosen by MIDI
    // may have overtaken: such a first value is no news.
    void setParameterValue (std::uint32_t index, float value) override
    {
        const auto repeated = std::exchange (fromSong[index], std::nullopt);
        if (repeated == value)
            setKnown (index, value);
        else
            takeFromHost (index, value);
    }

    void run (const float** inputs, float** outputs, std::uint32_t frames, const DISTRHO::MidiEvent* midi,
              std::uint32_t midiCount) override
    {
        followSong (frames);
        SynthPlugin::run (inputs, outputs, frames, midi, midiCount);
    }

private:
    std::optional<engine::Transport> transport () override { return position; }

    bool tellHost (std::uint32_t index, float value) override
    {
        return request != nullptr && request->request_change (request->handle, firstControl + index, value) ==
                                         LV2_CONTROL_INPUT_PORT_CHANGE_SUCCESS;
    }

    std::string extraState () const override
    {
        std::string text;
        for (std::uint32_t index = 0; index < fromSong.size (); ++index)
        {
            std::array<char, 32> digits;
            const auto end = std::to_chars (digits.data (), digits.data () + digits.size (), known (index));
            text.append (digits.data (), end.ptr) += separator;
        }
        return text;
    }

    void setExtraState (std::string_view text) override
    {
        for (auto& value : fromSong)
        {
            float read = 0.0f;
            const auto [end, error] = std::from_chars (text.data (), text.data () + text.size (), read);
            value = error == std::errc () ? std::optional (read) : std::nullopt;
            text.remove_prefix (std::min (text.find (separator), text.size () - 1) + 1);
        }
    }

    // A host that has told nothing has no song; a place at 0 would start synced LFOs anew. The framework
    // counts a bar one block too early at each bar line that it finds itself, so a position that is exactly a
    // bar ahead of what is due is put right; once, for a host may jump that far.
    void followSong (std::uint32_t frames)
    {
        constexpr double tolerance = 1e-3; // quarters
        const DISTRHO::TimePosition& time = getTimePosition ();
        if (!time.playing && time.frame == 0 && !time.bbt.valid)
        {
            position.reset ();
            return;
        }
        engine::Transport now;
        now.samplePosition = static_cast<double> (static_cast<std::int64_t> (time.frame));
        if (time.bbt.valid)
        {
            const double quartersPerBeat = quartersPerWhole / static_cast<double> (time.bbt.beatType);
            const double bar = static_cast<double> (time.bbt.beatsPerBar) * quartersPerBeat;
            const double beats = time.bbt.beat - 1 + time.bbt.tick / time.bbt.ticksPerBeat;
            double quarters = (time.bbt.bar - 1) * bar + beats * quartersPerBeat;
            const bool isAhead = due && std::abs (quarters - bar - *due) < tolerance;
            wasPutRight = isAhead && !wasPutRight;
            if (wasPutRight)
                quarters -= bar;
            now.tempo = time.bbt.beatsPerMinute * quartersPerBeat;
            now.quarterPosition = quarters;
            const double minutes = time.playing ? frames / (60.0 * getSampleRate ()) : 0.0;
            due = quarters + minutes * *now.tempo;
        }
        position = now;
    }

    const LV2_ControlInputPort_Change_Request* request = nextRequest;
    std::array<std::optional<float>, formats::shownCount> fromSong;
    std::optional<engine::Transport> position;
    std::optional<double> due; // quarters, where the next block should begin
    bool wasPutRight = false;
};

LV2_Handle instantiate (const LV2_Descriptor* descriptor, double hz, const char* bundlePath,
                        const LV2_Feature* const* features)
{
    for (const LV2_Feature* const* feature = features; *feature != nullptr; ++feature)
    {
        if (std::strcmp ((*feature)->URI, LV2_CONTROL_INPUT_PORT_CHANGE_REQUEST_URI) == 0)
            nextRequest = static_cast<const LV2_ControlInputPort_Change_Request*> ((*feature)->data);
    }
    const LV2_Handle made = frameworkDescriptor (0)->instantiate (descriptor, hz, bundlePath, features);
    nextRequest = nullptr;
    return made;
}
}
}

DISTRHO::Plugin* DISTRHO::createPlugin ()
{
    return new dpf::Lv2Plugin;
}

extern "C" const LV2_Descriptor* lv2_descriptor (std::uint32_t index)
{
    static const LV2_Descriptor descriptor = []
    {
        LV2_Descriptor ours = *frameworkDescriptor (0);
        ours.instantiate = dpf::instantiate;
        return ours;
    }();
    return index == 0 ? &descriptor : nullptr;
}
