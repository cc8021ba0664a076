// The registry as the settings store finds it and leaves it.
#include "platform/SettingsStore.h"
#include "tests/library/Surroundings.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace
{
constexpr char path[] = "Software\\Corvanex\\Brimvale";

TEST (Registry, HoldsEveryNumberAsSoonAsItIsWrittenAndNothingElseCounts)
{
    clearStoredSettings ();
    const auto store = platform::makeSettingsStore ();
    EXPECT_EQ (store->read ("Brimvale", "Voices    "), 0u);
    HKEY key = nullptr;
    EXPECT_EQ (RegOpenKeyExA (HKEY_CURRENT_USER, path, 0, KEY_READ, &key), ERROR_SUCCESS)
        << "made by reading";
    RegCloseKey (key);
    EXPECT_TRUE (store->write ("Brimvale", "Voices    ", 4294967295u));
    EXPECT_EQ (storedNumbers (), (std::map<std::string, std::uint32_t>{ { "Voices    ", 4294967295u } }))
        << "before the commit";
    EXPECT_TRUE (store->commit ());

    const DWORD number = 8;
    const auto set = [&] (const char* name, DWORD type, const void* data, DWORD size)
    { return RegSetKeyValueA (HKEY_CURRENT_USER, path, name, type, data, size) == ERROR_SUCCESS; };
    EXPECT_TRUE (set ("number", REG_DWORD, &number, sizeof number));
    EXPECT_TRUE (set ("text", REG_SZ, "8", 2));
    EXPECT_TRUE (set ("bytes", REG_BINARY, &number, sizeof number));
    EXPECT_TRUE (set ("long text", REG_SZ, "a text that is too long for a number", 37));
    set ("short", REG_DWORD, &number, 1); // a system may refuse this one
    EXPECT_EQ (store->read ("Brimvale", "number"), 8u);
    for (const char* name : { "text", "bytes", "long text", "short", "number " })
        EXPECT_EQ (store->read ("Brimvale", name), 0u) << name;
}
}
