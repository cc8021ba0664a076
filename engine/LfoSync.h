#pragma once

#include <limits>

#include "engine/Lfo.h"
#include "engine/Transport.h"

namespace engine
{
// Keeps the LFO in step with the host's song. Audio thread. `division` is ParameterMapping::syncDivision,
// `sampleRate` in Hz.
class LfoSync
{
public:
    explicit LfoSync (Lfo& sharedLfo) : lfo (sharedLfo) {}

    // The host hands over events before a block: while its transport stands, the LFO is lined up with the
    // position at which it will start to play. Once for each position, so that synced sounds move while the
    // song stands still.
    void eventsArrive (const Transport& transport, float division, double sampleRate);

    // A block begins. The LFO takes its rate from the tempo, and starts anew when the block begins on a
    // division of a moving transport; divisions within a block do not restart it. A transport that has just
    // begun to move without a list of events lines the LFO up as such a list would.
    void blockBegins (const Transport& transport, float division, double sampleRate);

    // Whether eventsArrive would do anything.
    bool isStopped () const { return stopped; }

private:
    bool setRate (const Transport& transport, float division);
    void lineUp (const Transport& transport, float division, double sampleRate);

    static constexpr double nowhere = std::numeric_limits<double>::infinity ();

    Lfo& lfo;
    bool stopped = true;
    double lastPosition = -1.0;       // samples, of the last block
    double linedUpPosition = nowhere; // samples, where the LFO was lined up last
};
}
