// The registry as the library finds it and leaves it, and the system's message boxes.
#include "parameters/Parameters.h"
#include "platform/MessageBox.h"
#include "tests/library/LoadedSynth.h"
#include "tests/library/Surroundings.h"

#include <gtest/gtest.h>
#include <tuple>
#include <windows.h>

using namespace parameters;

namespace
{
constexpr char path[] = "Software\\Corvanex\\Brimvale";

class Registry : public testing::Test
{
protected:
    void SetUp () override { clearStoredSettings (); }

    static LSTATUS set (const char* name, DWORD type, const void* data, DWORD size)
    {
        return RegSetKeyValueA (HKEY_CURRENT_USER, path, name, type, data, size);
    }
    static bool keyExists ()
    {
        HKEY key = nullptr;
        const bool exists = RegOpenKeyExA (HKEY_CURRENT_USER, path, 0, KEY_READ, &key) == ERROR_SUCCESS;
        if (exists)
            RegCloseKey (key);
        return exists;
    }
};

TEST_F (Registry, TheFirstInstanceMakesTheKeyAndNothingInIt)
{
    ASSERT_FALSE (keyExists ());
    LoadedSynth synth{ std::filesystem::path (BRIMVALE_LIBRARY) };
    EXPECT_TRUE (keyExists ());
    EXPECT_TRUE (storedNumbers ().empty ());
}

TEST_F (Registry, OnlyWholeNumbersCount)
{
    const DWORD controller7 = 8;
    const DWORD none = 0;
    const unsigned char eight[] = { 8 };
    ASSERT_EQ (set ("MidiCC-Volume    ", REG_DWORD, &controller7, sizeof controller7), ERROR_SUCCESS);
    ASSERT_EQ (set ("MidiCC-Osc1-Vol  ", REG_DWORD, &none, sizeof none), ERROR_SUCCESS);
    ASSERT_EQ (set ("MidiCC-Osc1-Wave ", REG_SZ, "8", 2), ERROR_SUCCESS);
    ASSERT_EQ (set ("MidiCC-Osc1-PW   ", REG_BINARY, &controller7, sizeof controller7), ERROR_SUCCESS);
    ASSERT_EQ (set ("MidiCC-Osc1-Range", REG_SZ, "a text that is too long for a number", 37), ERROR_SUCCESS);
    set ("MidiCC-Osc2-Vol  ", REG_DWORD, eight, sizeof eight); // a system may refuse this one
    ASSERT_EQ (set ("MidiCC-MasterP", REG_DWORD, &controller7, sizeof controller7),
               ERROR_SUCCESS); // without its blanks

    LoadedSynth synth{ std::filesystem::path (BRIMVALE_LIBRARY) };
    for (const ParamRow& row : paramTable)
    {
        const auto slot = static_cast<std::size_t> (row.index);
        EXPECT_EQ (synth.bank ().slots[slot].midiController, row.index == paramVolume ? 7u : 0u) << row.name;
    }
}

// Each value is written for itself, so of two processes each value comes from one of them.
TEST_F (Registry, TwoProcessesMaySaveAtOnce)
{
    OtherProcess first ("11");
    OtherProcess second ("22");
    EXPECT_EQ (first.wait (), 0);
    EXPECT_EQ (second.wait (), 0);
    const auto numbers = storedNumbers ();
    EXPECT_EQ (numbers.size (), 44u);
    for (const ParamRow& row : paramTable)
    {
        const std::uint32_t number = numbers.at (std::string ("MidiCC-") + row.name);
        EXPECT_TRUE (number == 12 || number == 23) << row.name << " " << number;
    }
}

TEST (SystemBox, HasItsButtons)
{
    using platform::Answer;
    using platform::Buttons;
    const std::tuple<Buttons, Press, Answer> cases[] = {
        { Buttons::ok, Press::firstButton, Answer::ok },
        { Buttons::ok, Press::lastButton, Answer::ok },
        { Buttons::okCancel, Press::firstButton, Answer::ok },
        { Buttons::okCancel, Press::lastButton, Answer::cancel },
        { Buttons::okCancel, Press::close, Answer::cancel },
        { Buttons::yesNo, Press::firstButton, Answer::yes },
        { Buttons::yesNo, Press::lastButton, Answer::no },
    };
    for (const auto& [buttons, press, answer] : cases)
    {
        BoxWatcher watcher (press);
        EXPECT_EQ (platform::showMessage ("Default Values Saved!", "Ok!", buttons), answer);
        EXPECT_TRUE ((watcher.boxes () == std::vector<Box>{ { "Ok!", "Default Values Saved!" } }));
    }
}
}
