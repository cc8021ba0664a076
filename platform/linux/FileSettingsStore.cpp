// The settings as one text file: a number, a tab and a name per line, names with their trailing blanks.
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

#include "platform/AtomicFile.h"
#include "platform/SettingsStore.h"

namespace
{
using Numbers = std::map<std::string, std::uint32_t, std::less<>>;

constexpr std::string_view header = "# Settings of Corvanex instruments: number, tab, group\\name\n";

std::filesystem::path settingsFile ()
{
    if (const char* config = std::getenv ("XDG_CONFIG_HOME"); config != nullptr && *config == '/')
        return std::filesystem::path (config) / "corvanex" / "settings";
    if (const char* home = std::getenv ("HOME"); home != nullptr && *home != 0)
        return std::filesystem::path (home) / ".config" / "corvanex" / "settings";
    return {};
}

// The numbers of a settings file; nothing when a line is damaged.
std::optional<Numbers> parse (std::istream& file)
{
    Numbers numbers;
    std::string line;
    while (std::getline (file, line))
    {
        if (line.starts_with ('#'))
            continue;
        std::uint32_t number = 0;
        const char* end = line.data () + line.size ();
        const auto [rest, error] = std::from_chars (line.data (), end, number);
        if (error != std::errc () || rest == end || *rest != '\t' || rest + 1 == end)
            return std::nullopt;
        numbers[std::string (rest + 1, end)] = number;
    }
    return numbers;
}

// Held while the file is read, merged and replaced, so that no other process's numbers get lost.
class FileLock
{
public:
    explicit FileLock (const std::filesystem::path& path)
        : file (::open (path.c_str (), O_RDWR | O_CREAT | O_CLOEXEC, 0644))
    {
        if (file >= 0)
            ::flock (file, LOCK_EX);
    }
    ~FileLock ()
    {
        if (file >= 0)
            ::close (file);
    }
    FileLock (const FileLock&) = delete;
    FileLock& operator= (const FileLock&) = delete;

private:
    int file;
};

class FileSettingsStore final : public SettingsStore
{
public:
    std::uint32_t read (std::string_view subkey, std::string_view name) const override
    {
        std::ifstream file (path);
        const Numbers numbers = parse (file).value_or (Numbers ());
        const auto found = numbers.find (fullName (subkey, name));
        return found != numbers.end () ? found->second : 0;
    }

    bool write (std::string_view subkey, std::string_view name, std::uint32_t number) override
    {
        if (path.empty () || name.find_first_of ("\n\t") != std::string_view::npos)
            return false;
        pending[fullName (subkey, name)] = number;
        return true;
    }

    bool commit () override
    {
        const Numbers written = std::exchange (pending, {});
        std::error_code failed;
        if (path.empty () || (std::filesystem::create_directories (path.parent_path (), failed), failed))
            return false;
        const FileLock lock (path.string () + ".lock");
        Numbers numbers;
        if (!readForMerge (numbers))
            return false;
        for (const auto& [name, number] : written)
            numbers[name] = number;
        std::string text (header);
        for (const auto& [name, number] : numbers)
            text += std::to_string (number) + '\t' + name + '\n';
        return platform::replaceFile (path, std::as_bytes (std::span (text)));
    }

private:
    static std::string fullName (std::string_view subkey, std::string_view name)
    {
        return std::string (subkey) + '\\' + std::string (name);
    }

    // What is stored already. A file that cannot be understood is set aside first; false when even that
    // fails, and then it stays untouched.
    bool readForMerge (Numbers& numbers) const
    {
        std::error_code failed;
        if (!std::filesystem::exists (path, failed))
            return !failed;
        std::ifstream file (path);
        std::optional<Numbers> stored = file ? parse (file) : std::nullopt;
        if (stored)
        {
            numbers = std::move (*stored);
            return true;
        }
        std::filesystem::rename (path, path.string () + ".damaged", failed);
        return !failed;
    }

    std::filesystem::path path = settingsFile ();
    Numbers pending;
};
}

namespace platform
{
std::unique_ptr<SettingsStore> makeSettingsStore ()
{
    return std::make_unique<FileSettingsStore> ();
}
}
