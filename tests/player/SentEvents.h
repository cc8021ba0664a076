#pragma once

#include <vector>

#include "player/LiveEvents.h"

// What has been sent to the audio thread since the last question.
inline std::vector<player::ShortMessage> sentBy (player::LiveEvents& events)
{
    std::vector<player::ShortMessage> sent;
    for (player::ShortMessage message; events.next (message);)
        sent.push_back (message);
    return sent;
}
