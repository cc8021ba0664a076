#include "platform/FileDialog.h"

#include <optional>
#include <windows.h>

#include <commdlg.h>

namespace
{
constexpr DWORD longestPath = 4096; // characters

std::wstring wide (const std::string& ascii)
{
    return { ascii.begin (), ascii.end () };
}

// Pairs of a name and its patterns, each with a zero behind it.
std::wstring filterOf (const platform::FileQuestion& question)
{
    std::wstring patterns;
    for (const std::string& ending : question.endings)
        patterns += (patterns.empty () ? L"*" : L";*") + wide (ending);
    const std::wstring zero (1, L'\0');
    return wide (question.kind) + L" (" + patterns + L")" + zero + patterns + zero + L"*.*" + zero + L"*.*" +
           zero;
}

class AnsweredDialog final : public platform::FileDialog
{
public:
    explicit AnsweredDialog (std::optional<std::filesystem::path> chosenFile) : file (std::move (chosenFile))
    {
    }
    State state () override { return file ? State::chosen : State::dismissed; }
    std::filesystem::path chosen () const override { return file.value_or (std::filesystem::path ()); }

private:
    std::optional<std::filesystem::path> file;
};
}

namespace platform
{
// Above the window that the user has just clicked. The host's current folder stays what it is.
std::unique_ptr<FileDialog> FileDialog::show (const FileQuestion& question)
{
    const std::wstring filter = filterOf (question);
    const std::wstring title = wide (question.title);
    const std::wstring ending = question.endings.empty () ? L"" : wide (question.endings.front ().substr (1));
    const bool named = question.start.has_filename () && question.saves;
    const std::wstring folder = (named ? question.start.parent_path () : question.start).wstring ();
    std::wstring path = named ? question.start.filename ().wstring () : std::wstring ();
    path.resize (longestPath);

    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = GetActiveWindow ();
    dialog.lpstrFilter = filter.c_str ();
    dialog.lpstrFile = path.data ();
    dialog.nMaxFile = longestPath;
    dialog.lpstrInitialDir = folder.c_str ();
    dialog.lpstrTitle = title.c_str ();
    dialog.lpstrDefExt = ending.empty () ? nullptr : ending.c_str ();
    dialog.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST;
    dialog.Flags |= question.saves ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST;
    if (question.saves ? GetSaveFileNameW (&dialog) : GetOpenFileNameW (&dialog))
        return std::make_unique<AnsweredDialog> (std::filesystem::path (path.c_str ()));
    if (CommDlgExtendedError () != 0)
        return nullptr;
    return std::make_unique<AnsweredDialog> (std::nullopt);
}
}
