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

    // Whether the LFO's place in its cycle is that of the song at every block that begins while the song
    // moves, instead of being put right at its starts and at divisions alone.
    void lock (bool on) { locked = on; }

    // A block begins, or has begun `samplesInto` ago. The LFO takes its rate from the tempo, and starts anew
    // when the block begins on a division of a moving transport; divisions within a block do not restart it.
    // A transport that has just begun to move without a list of events lines the LFO up as such a list would.
    void blockBegins (const Transport& transport, float division, double sampleRate,
                      std::int32_t samplesInto);

    // Whether eventsArrive would do anything.
    bool isStopped () const { return stopped; }

private:
    bool setRate (const Transport& transport, float division);
    void lineUp (const Transport& transport, float division, double sampleRate);
    void follow (const Transport& transport, float division, double sampleRate, std::int32_t samplesInto);

    static constexpr double nowhere = std::numeric_limits<double>::infinity ();

    Lfo& lfo;
    bool locked = false;
    bool stopped = true;
    double lastPosition = -1.0;       // samples, of the last block
    double linedUpPosition = nowhere; // samples, where the LFO was lined up last
};
}
