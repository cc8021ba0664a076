#pragma once

#include <cstdint>

namespace instrument
{
class Instrument;

// The command channel: what the panel's menus ask for through parameter indices above the parameters. A
// command shows its message boxes on the calling thread and returns when they are answered.
class Commands
{
public:
    explicit Commands (Instrument& owner) : instrument (owner) {}

    // Indices and values that name no command do nothing.
    void handleCommand (std::int32_t index, float value);

private:
    bool isConfirmed (const char* question) const;
    void learnOrForget (float value);

    Instrument& instrument;
};
}
