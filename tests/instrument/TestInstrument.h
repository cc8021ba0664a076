#pragma once

#include <functional>

#include "instrument/Instrument.h"
#include "tests/support/Events.h"
#include "tests/support/FakeSystem.h"
#include "tests/support/Signals.h"

// An instrument in a format of no kind, with an editor that writes down what it is told.
class TestInstrument final : public instrument::FormatHost, public instrument::EditorLink
{
public:
    using News = std::vector<std::pair<std::int32_t, float>>; // index and value

    explicit TestInstrument (FakeSystem& system) : core (system.services (), *this)
    {
        core.attachEditor (this);
    }

    void set (std::int32_t index, float value) { core.setParameter (index, value); }
    float get (std::int32_t index) const { return core.getParameter (index); }

    // One block; the left channel.
    std::vector<float> block (int frames, const std::vector<engine::Event>& events = {})
    {
        std::vector<float> left (static_cast<std::size_t> (frames));
        const engine::EventSpan list (events);
        core.processEvents (&list);
        core.render (left.data (), nullptr, frames);
        return left;
    }
    void controller (int number, int value, int channel = 0)
    {
        block (16, { midi (0, 0xB0 | channel, number, value) });
    }
    void learn (std::int32_t index, int number, int value = 1)
    {
        set (parameters::commandLearn, static_cast<float> (index));
        controller (number, value);
    }

    instrument::BankImage bank ()
    {
        instrument::BankImage image;
        const auto chunk = core.getChunk (false);
        std::memcpy (&image, chunk.data (), std::min (chunk.size (), sizeof image));
        return image;
    }
    void load (const instrument::BankImage& image) { core.setChunk (&image, sizeof image, false); }

    bool hasTime = false;
    engine::Transport time;
    News told;
    int menuRefreshes = 0;
    int marks = 0;                               // of the current program
    std::vector<std::string> entries;            // of the program menu, last told
    std::function<void (std::int32_t)> whenTold; // with the index, on the thread that tells
    instrument::Instrument core;

private:
    std::optional<engine::Transport> transport () override
    {
        return hasTime ? std::optional (time) : std::nullopt;
    }
    void setParameter (std::int32_t index, float value) override
    {
        told.emplace_back (index, value);
        if (whenTold)
            whenTold (index);
    }
    void refreshLearnMenus () override { ++menuRefreshes; }
    void setProgramEntry (std::int32_t program, const char* text) override
    {
        entries.resize (instrument::programCount);
        entries[static_cast<std::size_t> (program)] = text;
    }
    void markCurrentProgram () override { ++marks; }
};

inline bool equal (const instrument::BankImage& a, const instrument::BankImage& b)
{
    return std::memcmp (&a, &b, sizeof a) == 0;
}
