// The settings as one text file: a number, a tab and a name per line, names with their trailing blanks.
#include "platform/SettingsStore.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "platform/AtomicFile.h"
#include "platform/UserFolders.h"

namespace
{
using Numbers = std::map<std::string, std::uint32_t, std::less<>>;

constexpr std::string_view header = "# Settings of Corvanex instruments: number, tab, group\\name\n";
constexpr std::streamoff mostBytes = 1 << 20; // of a file that can be ours

std::filesystem::path settingsFile ()
{
    const std::filesystem::path folder = platform::settingsFolder ();
    return folder.empty () ? folder : folder / "settings";
}

bool isName (std::string_view text)
{
    const auto isControl = [] (char c) { return static_cast<unsigned char> (c) < ' '; };
    return !text.empty () && std::none_of (text.begin (), text.end (), isControl);
}

// The numbers of a settings file; none when a line is damaged. Editors may have ended the lines with CR LF
// and left out the end of the last one.
std::optional<Numbers> parse (std::string_view text)
{
    Numbers numbers;
    while (!text.empty ())
    {
        const std::size_t length = std::min (text.find ('\n'), text.size ());
        std::string_view line = text.substr (0, length);
        text.remove_prefix (std::min (length + 1, text.size ()));
        if (line.ends_with ('\r'))
            line.remove_suffix (1);
        if (line.empty () || line.front () == '#')
            continue;
        std::uint32_t number = 0;
        const char* end = line.data () + line.size ();
        const auto [rest, error] = std::from_chars (line.data (), end, number);
        if (error != std::errc () || rest == end || *rest != '\t' || !isName ({ rest + 1, end }))
            return std::nullopt;
        numbers[std::string (rest + 1, end)] = number;
    }
    return numbers;
}

// The numbers stored in a file; none when it is not there, cannot be read or is damaged.
std::optional<Numbers> load (const std::filesystem::path& path)
{
    std::error_code failed;
    if (!std::filesystem::is_regular_file (path, failed)) // opening a pipe would wait for its other end
        return std::nullopt;
    std::ifstream file (path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file.tellg ();
    if (!file || size > mostBytes)
        return std::nullopt;
    std::string text (static_cast<std::size_t> (size), '\0');
    if (!file.seekg (0).read (text.data (), size))
        return std::nullopt;
    return parse (text);
}

// Keeps other processes from reading, merging and replacing the file meanwhile, so that nobody's numbers get
// lost. Where nothing can be locked (some network file systems, a lock file of another user) a save goes on
// without: the file stays whole even so.
class FileLock
{
public:
    explicit FileLock (const std::filesystem::path& path)
        : file (::open (path.c_str (), O_RDONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0666))
    {
        // Others hold it for moments only. One that was stopped meanwhile must not stop this host, too.
        const auto deadline = std::chrono::steady_clock::now () + std::chrono::seconds (3);
        while (file >= 0 && (heldByOther = !lock ()) && std::chrono::steady_clock::now () < deadline)
            std::this_thread::sleep_for (std::chrono::milliseconds (2));
    }
    ~FileLock ()
    {
        if (file >= 0)
            ::close (file);
    }
    FileLock (const FileLock&) = delete;
    FileLock& operator= (const FileLock&) = delete;

    bool isHeldByOther () const { return heldByOther; }

private:
    // False when another process has the lock.
    bool lock () const
    {
        return ::flock (file, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR);
    }

    int file;
    bool heldByOther = false;
};

// The numbers that stand in a settings file now. It is read again only when it has changed: an instance that
// opens asks for each of its settings, and another instance may have replaced the file.
class StoredNumbers
{
public:
    const Numbers& numbers (const std::filesystem::path& path)
    {
        const auto now = std::chrono::system_clock::now ();
        struct stat file = {};
        const bool exists = ::stat (path.c_str (), &file) == 0;
        if (!exists || !isKnown || !isSame (file, known))
        {
            loaded = exists ? load (path).value_or (Numbers ()) : Numbers ();
            known = file;
            // A file's time stands still for some milliseconds, and so does not tell of a second change.
            isKnown =
                exists &&
                std::chrono::system_clock::from_time_t (file.st_mtim.tv_sec) + std::chrono::seconds (2) < now;
        }
        return loaded;
    }

private:
    static bool isSame (const struct stat& a, const struct stat& b)
    {
        return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
               a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
    }

    Numbers loaded;
    struct stat known = {}; // looked at before the file was read: what replaces it meanwhile is another file
    bool isKnown = false;
};

class FileSettingsStore final : public platform::SettingsStore
{
public:
    std::uint32_t read (std::string_view subkey, std::string_view name) const override
    {
        const Numbers& numbers = stored.numbers (path);
        const auto found = numbers.find (fullName (subkey, name));
        return found != numbers.end () ? found->second : 0;
    }

    bool write (std::string_view subkey, std::string_view name, std::uint32_t number) override
    {
        const std::string full = fullName (subkey, name);
        if (!isName (full))
            return false;
        pending[full] = number;
        return true;
    }

    bool commit () override
    {
        const Numbers written = std::exchange (pending, {});
        if (written.empty ())
            return true;
        std::error_code failed;
        if (path.empty () || (std::filesystem::create_directories (path.parent_path (), failed), failed))
            return false;
        const FileLock lock (path.string () + ".lock");
        return !lock.isHeldByOther () && mergeIntoFile (written);
    }

private:
    static std::string fullName (std::string_view subkey, std::string_view name)
    {
        return std::string (subkey) + '\\' + std::string (name);
    }

    bool mergeIntoFile (const Numbers& written) const
    {
        std::error_code failed;
        std::optional<Numbers> numbers = load (path);
        std::filesystem::path backup;
        if (!numbers && std::filesystem::exists (path, failed))
        {
            backup = freeBackupName ();
            std::filesystem::rename (path, backup, failed);
        }
        if (failed)
            return false;

        std::string text (header);
        for (const auto& [name, number] : merged (numbers.value_or (Numbers ()), written))
            text += std::to_string (number) + '\t' + name + '\n';
        if (platform::replaceFile (path, std::as_bytes (std::span (text))))
            return true;
        if (!backup.empty ())
            std::filesystem::rename (backup, path, failed);
        return false;
    }

    static Numbers merged (Numbers numbers, const Numbers& written)
    {
        for (const auto& [name, number] : written)
            numbers[name] = number;
        return numbers;
    }

    // Where a file that cannot be understood is set aside; earlier ones stay.
    std::filesystem::path freeBackupName () const
    {
        std::error_code failed;
        std::filesystem::path name = path.string () + ".damaged";
        for (int number = 2; std::filesystem::exists (name, failed); ++number)
            name = path.string () + ".damaged" + std::to_string (number);
        return name;
    }

    std::filesystem::path path = settingsFile ();
    mutable StoredNumbers stored;
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
