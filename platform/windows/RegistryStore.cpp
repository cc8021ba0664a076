#include "platform/SettingsStore.h"

#include <string>
#include <windows.h>

namespace
{
constexpr char keyPath[] = "Software\\Corvanex\\";

// One key below the current user's, opened or created with read and write access; closed at the end.
class RegistryKey
{
public:
    explicit RegistryKey (std::string_view subkey)
    {
        const std::string path = keyPath + std::string (subkey);
        DWORD disposition = 0;
        isOpen = RegCreateKeyExA (HKEY_CURRENT_USER, path.c_str (), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                  KEY_READ | KEY_WRITE, nullptr, &key, &disposition) == ERROR_SUCCESS;
        isNew = disposition == REG_CREATED_NEW_KEY;
    }
    ~RegistryKey ()
    {
        if (isOpen)
            RegCloseKey (key);
    }
    RegistryKey (const RegistryKey&) = delete;
    RegistryKey& operator= (const RegistryKey&) = delete;

    std::uint32_t read (const std::string& name) const
    {
        DWORD type = 0;
        DWORD number = 0;
        DWORD size = sizeof number;
        if (!isOpen || isNew)
            return 0;
        const LSTATUS status =
            RegQueryValueExA (key, name.c_str (), nullptr, &type, reinterpret_cast<BYTE*> (&number), &size);
        return status == ERROR_SUCCESS && type == REG_DWORD && size == sizeof number ? number : 0;
    }

    bool write (const std::string& name, std::uint32_t number) const
    {
        const DWORD data = number;
        return isOpen && RegSetValueExA (key, name.c_str (), 0, REG_DWORD,
                                         reinterpret_cast<const BYTE*> (&data), sizeof data) == ERROR_SUCCESS;
    }

private:
    HKEY key = nullptr;
    bool isOpen = false;
    bool isNew = false;
};

// Every write goes to the registry at once, so there is nothing left to commit.
class RegistryStore final : public platform::SettingsStore
{
public:
    std::uint32_t read (std::string_view subkey, std::string_view name) const override
    {
        return RegistryKey (subkey).read (std::string (name));
    }
    bool write (std::string_view subkey, std::string_view name, std::uint32_t number) override
    {
        return RegistryKey (subkey).write (std::string (name), number);
    }
    bool commit () override { return true; }
};
}

namespace platform
{
std::unique_ptr<SettingsStore> makeSettingsStore ()
{
    return std::make_unique<RegistryStore> ();
}
}
