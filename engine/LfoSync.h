#pragma once

#include "engine/EngineHost.h"
#include "engine/Lfo.h"

namespace engine
{
// Keeps the LFO in step with the host's song. Audio thread.
class LfoSync
{
public:
    explicit LfoSync (Lfo& sharedLfo) : lfo (sharedLfo) {}

    // A block begins. The LFO takes its rate from the tempo, and starts anew when the block begins on a
    // division of a moving transport; divisions within a block do not restart it. `division` as
    // ParameterMapping::syncDivision.
    void followTransport (const Transport& transport, float division);

    // The host hands over events while its transport stands: lines the LFO up with the position at which it
    // will start to play.
    void catchUp (const Transport& transport, float division, double sampleRate);

    bool isStopped () const { return stopped; }

private:
    bool setRate (const Transport& transport, float division);

    Lfo& lfo;
    bool stopped = true;
    float lastSamplePosition = -1.0f;
};
}
