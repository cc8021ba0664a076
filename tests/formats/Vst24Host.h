// The instrument in VST 2.4, by which the other formats are measured.
#pragma once

#include <algorithm>
#include <cstring>

#include "formats/shared/ShownParameters.h"
#include "host/Plugin.h"
#include "tests/formats/FormatHost.h"

class Vst24Host final : public FormatHost
{
public:
    Vst24Host ()
    {
        for (int event = 0; event < 100; ++event) // room for as many
            waiting.add (0, {});
        waiting.record ();
        waiting.clear ();
    }

    void start (double sampleRate, int longest) override
    {
        plugin.start (static_cast<int> (sampleRate), longest);
    }
    void stop () override { plugin.stop (); }

    // Acts at once, which the format leaves open.
    void set (std::int32_t index, double shown) override
    {
        if (index == formats::shownProgram)
            return plugin.selectProgram (static_cast<int> (shown));
        const float stored = plugin.parameter (index);
        const float wanted = formats::storedValue (index, shown, stored);
        if (wanted != stored) // not every format can tell what is there already
            plugin.setParameter (index, wanted);
    }
    double value (std::int32_t index) override
    {
        return index == formats::shownProgram ? plugin.currentProgram ()
                                              : formats::shownValue (index, plugin.parameter (index));
    }

    // It has no timed parameters.
    void render (std::span<const engine::Event> events, const engine::Transport* song, float* left,
                 float* right, int frames) override
    {
        if (song != nullptr)
        {
            VstTimeInfo time = {};
            time.samplePos = song->samplePosition;
            time.sampleRate = 44100.0;
            time.tempo = *song->tempo;
            time.ppqPos = *song->quarterPosition;
            time.flags = kVstTempoValid | kVstPpqPosValid;
            plugin.setTime (time);
        }
        const auto addMidi = [this] (const engine::Event& event, int offset) {
            waiting.add (offset, { event.status, event.data1, event.data2 });
        };
        inPieces (
            events, frames, addMidi, [this] (std::int32_t index, double shown) { set (index, shown); },
            [&] (int begin, int end)
            {
                plugin.sendEvents (waiting);
                plugin.process (end - begin);
                std::copy_n (plugin.left (), end - begin, left + begin);
                std::copy_n (plugin.right (), end - begin, right + begin);
                waiting.clear ();
            });
    }

    std::string save () override
    {
        void* data = nullptr;
        const VstIntPtr size = plugin.call (effGetChunk, 0, 0, &data);
        return { static_cast<const char*> (data), static_cast<std::size_t> (size) };
    }
    void load (const std::string& state) override
    {
        plugin.call (effSetChunk, 0, static_cast<VstIntPtr> (state.size ()), std::string (state).data ());
    }

    std::pair<int, int> size () override
    {
        ERect* rect = nullptr;
        plugin.call (effEditGetRect, 0, 0, &rect);
        return { rect->right - rect->left, rect->bottom - rect->top };
    }
    bool open (void* window) override { return plugin.call (effEditOpen, 0, 0, window) != 0; }
    void close () override { plugin.call (effEditClose); }
    void turn () override { plugin.call (effEditIdle); }

private:
    VstIntPtr answer (VstInt32 opcode, VstInt32 width, VstIntPtr height)
    {
        if (opcode == audioMasterSizeWindow)
            resized (width, static_cast<int> (height));
        return opcode == audioMasterSizeWindow || opcode == audioMasterCanDo ? 1 : 0;
    }

    host::Plugin plugin{ BRIMVALE_LIBRARY, [this] (VstInt32 opcode, VstInt32 index, VstIntPtr value, void*,
                                                   float) { return answer (opcode, index, value); } };
    host::BlockEvents waiting;
};
