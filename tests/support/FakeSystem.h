#pragma once

#include <map>
#include <string>
#include <vector>

#include "instrument/Services.h"

// The system around an instrument under test, held in memory, and what the instrument did to it. One at a
// time is the current one: message boxes and the library's path reach it through a static pointer.
class FakeSystem
{
public:
    using Settings = std::map<std::string, std::uint32_t>; // "subkey\name"
    struct Message
    {
        std::string text;
        std::string title;
        platform::Buttons buttons;
        bool operator== (const Message&) const = default;
    };

    FakeSystem () { current = this; }
    ~FakeSystem () { current = nullptr; }
    FakeSystem (const FakeSystem&) = delete;
    FakeSystem& operator= (const FakeSystem&) = delete;

    instrument::Services services ();

    std::vector<Message> messages;
    platform::Answer answer = platform::Answer::ok; // to every message
    bool banksBesideLibrary = true;
    std::filesystem::path libraryPath;
    std::filesystem::path userBankPath;
    std::shared_ptr<Settings> stored = std::make_shared<Settings> ();
    bool storeFails = false; // every write
    bool commitFails = false;

protected:
    static FakeSystem* current;
};
