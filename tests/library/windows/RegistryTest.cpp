// The registry as the settings store finds it and leaves it.
#include "platform/SettingsStore.h"
#include "tests/library/Surroundings.h"

#include <gtest/gtest.h>
#include <windows.h>

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

TEST_F (Registry, TheFirstReadMakesTheKeyAndNothingInIt)
{
    ASSERT_FALSE (keyExists ());
    EXPECT_EQ (platform::makeSettingsStore ()->read ("Brimvale", "Voices    "), 0u);
    EXPECT_TRUE (keyExists ());
    EXPECT_TRUE (storedNumbers ().empty ());
}

TEST_F (Registry, EveryNumberIsThereAsSoonAsItIsWritten)
{
    const auto store = platform::makeSettingsStore ();
    EXPECT_TRUE (store->write ("Brimvale", "Voices    ", 4294967295u));
    const std::map<std::string, std::uint32_t> expected = { { "Voices    ", 4294967295u } };
    EXPECT_EQ (storedNumbers (), expected) << "before the commit";
    EXPECT_TRUE (store->commit ());
    EXPECT_EQ (storedNumbers (), expected);
}

TEST_F (Registry, OnlyWholeNumbersCount)
{
    const DWORD number = 8;
    const unsigned char short8[] = { 8 };
    EXPECT_EQ (set ("number", REG_DWORD, &number, sizeof number), ERROR_SUCCESS);
    EXPECT_EQ (set ("text", REG_SZ, "8", 2), ERROR_SUCCESS);
    EXPECT_EQ (set ("bytes", REG_BINARY, &number, sizeof number), ERROR_SUCCESS);
    EXPECT_EQ (set ("long text", REG_SZ, "a text that is too long for a number", 37), ERROR_SUCCESS);
    set ("short", REG_DWORD, short8, sizeof short8); // a system may refuse this one

    const auto store = platform::makeSettingsStore ();
    EXPECT_EQ (store->read ("Brimvale", "number"), 8u);
    for (const char* name : { "text", "bytes", "long text", "short", "number ", "missing" })
        EXPECT_EQ (store->read ("Brimvale", name), 0u) << name;
}
}
