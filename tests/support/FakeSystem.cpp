#include "tests/support/FakeSystem.h"

FakeSystem* FakeSystem::current = nullptr;

namespace
{
std::string keyOf (std::string_view subkey, std::string_view name)
{
    return std::string (subkey) + "\\" + std::string (name);
}

struct MemoryStore final : platform::SettingsStore
{
    std::uint32_t read (std::string_view subkey, std::string_view name) const override
    {
        const auto found = content->find (keyOf (subkey, name));
        return found != content->end () ? found->second : 0;
    }
    bool write (std::string_view subkey, std::string_view name, std::uint32_t number) override
    {
        if (!failsWrites)
            (*content)[keyOf (subkey, name)] = number;
        return !failsWrites;
    }
    bool commit () override { return !failsCommit; }

    std::shared_ptr<FakeSystem::Settings> content;
    bool failsWrites = false;
    bool failsCommit = false;
};
}

instrument::Services FakeSystem::services ()
{
    auto store = std::make_unique<MemoryStore> ();
    store->content = stored;
    store->failsWrites = storeFails;
    store->failsCommit = commitFails;
    const auto show = [] (const char* text, const char* title, platform::Buttons buttons)
    {
        current->messages.push_back ({ text, title, buttons });
        return current->answer;
    };
    instrument::Services services{ std::move (store), show, nullptr, [] { return current->userBankPath; } };
    if (banksBesideLibrary)
        services.libraryPath = [] { return current->libraryPath; };
    return services;
}
