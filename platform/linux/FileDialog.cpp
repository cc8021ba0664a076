// Toolkits of desktops do not mix with each other in one process, nor with that of the host. So the desktop's
// own program shows the dialog, and its output is read without waiting for it.
#include "platform/FileDialog.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using platform::FileQuestion;
using Words = std::vector<std::string>;

std::string joined (const FileQuestion& question, const char* between)
{
    std::string patterns;
    for (const std::string& ending : question.endings)
        patterns += (patterns.empty () ? "*" : std::string (between) + "*") + ending;
    return patterns;
}

Words zenityWords (const FileQuestion& question)
{
    Words words = { "--file-selection", "--title=" + question.title, "--filename=" + question.start.string (),
                    "--file-filter=" + question.kind + " | " + joined (question, " "),
                    "--file-filter=* | *" };
    if (question.saves)
        words.insert (words.begin () + 1, { "--save", "--confirm-overwrite" });
    return words;
}

Words kdialogWords (const FileQuestion& question)
{
    return { "--title", question.title, question.saves ? "--getsavefilename" : "--getopenfilename",
             question.start.string (), joined (question, " ") + '|' + question.kind };
}

struct Program
{
    const char* name;
    Words (*words) (const FileQuestion& question);
};
constexpr Program programs[] = { { "zenity", zenityWords }, { "kdialog", kdialogWords } };

// Empty when no folder of PATH holds such a program.
std::string findProgram (std::string_view name)
{
    const char* variable = std::getenv ("PATH");
    std::string_view folders = variable != nullptr ? variable : "";
    while (!folders.empty ())
    {
        const std::string_view folder = folders.substr (0, folders.find (':'));
        std::string path = std::string (folder) + '/' + std::string (name);
        if (folder.starts_with ('/') && ::access (path.c_str (), X_OK) == 0)
            return path;
        folders.remove_prefix (std::min (folder.size () + 1, folders.size ()));
    }
    return {};
}

// Hosts that bring libraries of their own lead the loader to them, which system programs cannot stand.
std::vector<char*> plainEnvironment ()
{
    std::vector<char*> variables;
    for (char** variable = environ; *variable != nullptr; ++variable)
    {
        const std::string_view text = *variable;
        if (!text.starts_with ("LD_LIBRARY_PATH=") && !text.starts_with ("LD_PRELOAD="))
            variables.push_back (*variable);
    }
    variables.push_back (nullptr);
    return variables;
}

// Starts a program with its output going to a file, and everything else as if no host were there; -1 on
// failure.
pid_t start (Words command, int output)
{
    std::vector<char*> arguments;
    for (std::string& word : command)
        arguments.push_back (word.data ());
    arguments.push_back (nullptr);
    std::vector<char*> environment = plainEnvironment ();

    sigset_t none;
    sigset_t all;
    sigemptyset (&none);
    sigfillset (&all);
    posix_spawnattr_t attributes;
    posix_spawnattr_init (&attributes);
    posix_spawnattr_setflags (&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setsigmask (&attributes, &none);
    posix_spawnattr_setsigdefault (&attributes, &all);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init (&files);
    posix_spawn_file_actions_addopen (&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2 (&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen (&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    if (::posix_spawn (&process, arguments[0], &files, &attributes, arguments.data (), environment.data ()) !=
        0)
        process = -1;
    posix_spawn_file_actions_destroy (&files);
    posix_spawnattr_destroy (&attributes);
    return process;
}

class ProgramDialog final : public platform::FileDialog
{
public:
    ProgramDialog (pid_t process, int output) : child (process), input (output) {}
    ~ProgramDialog () override
    {
        ::close (input);
        if (child < 0)
            return;
        ::kill (child, SIGKILL);
        ::waitpid (child, nullptr, 0);
    }
    ProgramDialog (const ProgramDialog&) = delete;
    ProgramDialog& operator= (const ProgramDialog&) = delete;

    State state () override
    {
        if (child < 0)
            return now;
        char text[512];
        ssize_t count = 0;
        while ((count = ::read (input, text, sizeof text)) > 0)
            line.append (text, static_cast<std::size_t> (count));
        int status = 0;
        const pid_t ended = ::waitpid (child, &status, WNOHANG);
        if (ended == 0 || (ended < 0 && errno == EINTR))
            return State::open;
        child = -1;
        // What came between the last look and the end.
        while ((count = ::read (input, text, sizeof text)) > 0)
            line.append (text, static_cast<std::size_t> (count));
        if (line.ends_with ('\n'))
            line.pop_back ();
        // A host that takes all children's ends for itself leaves no status.
        constexpr int cancelled = 1;
        const bool known = ended > 0 && WIFEXITED (status);
        if (line.starts_with ('/') && (ended < 0 || (known && WEXITSTATUS (status) == 0)))
            now = State::chosen;
        else if (ended < 0 || (known && WEXITSTATUS (status) <= cancelled))
            now = State::dismissed;
        else
            now = State::failed;
        return now;
    }

    std::filesystem::path chosen () const override { return line; }

private:
    pid_t child; // -1 once it has ended
    int input;
    std::string line;
    State now = State::open;
};
}

namespace platform
{
std::unique_ptr<FileDialog> FileDialog::show (const FileQuestion& question)
{
    for (const Program& program : programs)
    {
        const std::string path = findProgram (program.name);
        int ends[2]; // to read from, to write to
        if (path.empty () || ::pipe2 (ends, O_CLOEXEC) != 0)
            continue;
        ::fcntl (ends[0], F_SETFL, O_NONBLOCK);
        Words command = program.words (question);
        command.insert (command.begin (), path);
        const pid_t process = start (std::move (command), ends[1]);
        ::close (ends[1]);
        if (process >= 0)
            return std::make_unique<ProgramDialog> (process, ends[0]);
        ::close (ends[0]);
    }
    return nullptr;
}
}
