#pragma once

#include <memory>
#include <string>

#include "tests/formats/Sameness.h"

// One instrument of a library that the framework makes, as the smallest host of its format has it.
class FrameworkHost : public FormatInstance
{
public:
    bool loadBank (std::span<const std::byte> image) final;
    std::vector<std::byte> saveBank () final;
    virtual std::string save () = 0; // a song's state
    virtual void load (const std::string& state) = 0;

    // A value as it is shown: set with the next block, and as the host knows it.
    virtual void set (std::int32_t index, double shown) = 0;
    virtual double value (std::int32_t index) = 0;

    bool hearsChanges = true; // that the instrument made itself

    virtual bool openPanel (void* window) = 0;
    virtual std::pair<int, int> panelSize () = 0;
    virtual void idlePanel () = 0;
    virtual void closePanel () = 0;
    std::function<bool (int width, int height)> resize; // what the panel asks for; false: refused
    std::string edits;                                  // what it told: "begin 18;set 18;end 18;"

    // What the format keeps a state in, there and back.
    virtual std::string songOf (std::span<const std::byte> state) const = 0;
    virtual std::vector<std::byte> stateOf (const std::string& song) const = 0;

protected:
    static constexpr int longestBlock = 1024;
    static constexpr int beats = 7, beatType = 8; // of a bar
};

std::unique_ptr<FrameworkHost> makeHost ();
