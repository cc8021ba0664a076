#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "formats/shared/ShownParameters.h"
#include "instrument/Instrument.h"

namespace formats
{
// The instrument as hosts of every format but VST 2.4 see it: shown values for all parameters and the
// program, and the state that a song keeps. A new one has both additions switched on.
class HostedInstrument
{
public:
    HostedInstrument (instrument::Services surroundings, instrument::FormatHost& host);

    instrument::Instrument& instrument () { return core; }
    const instrument::Instrument& instrument () const { return core; }

    // Any thread. Indices that are not shown have the value 0, and setting them does nothing.
    double value (std::int32_t index) const;
    void setValue (std::int32_t index, double shown);

    // The value that setting this one will leave: the store rule may move it.
    static double valueAfter (std::int32_t index, double shown);

    // A value that a host sets at a sample of a block, for an engine::EventList that is read in place: it has
    // to be asked for when its turn comes, for what is stored then counts: setting that again is no event.
    // Audio thread.
    engine::Event eventFor (std::int32_t offset, std::int32_t index, double shown) const;

    // User-interface thread

    // In the words and units of the field; of the program number and name.
    std::string text (std::int32_t index, double shown) const;

    // The way back, for what is typed. A program is named by its number from 1 or by its name.
    std::optional<double> valueOf (std::int32_t index, const std::string& text) const;

    std::vector<std::byte> saveState ();

    // False for what is no state, and then nothing changes. The program that the state names is selected.
    bool loadState (std::span<const std::byte> data);

private:
    std::optional<double> programNamed (const std::string& text) const;

    instrument::Instrument core;
};

// For whatever the instrument does not know. Audio thread.
engine::Event silentEvent (std::int32_t offset);
}
