// Sounds as files: asking for one, loading and saving.
#include "editor/Colours.h"
#include "editor/MenuTable.h"
#include "editor/Panel.h"
#include "instrument/SoundFile.h"
#include "platform/UserFolders.h"

namespace editor
{
using namespace VSTGUI;
using instrument::bankExtension;
using instrument::defaultBankExtension;
using instrument::presetExtension;

namespace
{
constexpr double fieldMargin = 8.0; // pixels

std::filesystem::path pathFromUtf8 (std::string_view text)
{
    return { std::u8string (text.begin (), text.end ()) };
}

std::string utf8 (const std::filesystem::path& path)
{
    const std::u8string text = path.u8string ();
    return { text.begin (), text.end () };
}
}

// The current program or the whole bank, as one step.
void Panel::loadFile ()
{
    FileRequest request;
    request.question = { "Load sounds",
                         "Brimvale sounds",
                         { presetExtension, bankExtension, defaultBankExtension } };
    request.chosen = [this] (const std::filesystem::path& file)
    {
        replaceBank ([&] { tryWith (file, "Cannot load this file: ", &instrument::loadSounds); });
        if (closed)
            return;
        host.updateDisplay ();
        applyNews ();
    };
    askForFile (std::move (request));
}

void Panel::saveProgram ()
{
    FileRequest request;
    request.question = { "Save program", "Brimvale program", { presetExtension }, true };
    request.question.start =
        instrument::fileNameOf (synth.programName (synth.getProgram ())) + presetExtension;
    request.chosen = [this] (const std::filesystem::path& file)
    { tryWith (file, "Cannot save the program: ", &instrument::saveProgram); };
    askForFile (std::move (request));
}

void Panel::saveBank ()
{
    FileRequest request;
    request.question = { "Save bank", "Brimvale bank", { bankExtension, defaultBankExtension }, true };
    request.question.start = std::string ("Brimvale") + bankExtension;
    request.chosen = [this] (const std::filesystem::path& file)
    { tryWith (file, "Cannot save the bank: ", &instrument::saveBank); };
    askForFile (std::move (request));
}

void Panel::tryWith (const std::filesystem::path& file, const char* failure,
                     void (*act) (Synth&, const std::filesystem::path&))
{
    try
    {
        act (synth, file);
    }
    catch (const std::exception& error)
    {
        synth.showMessage ((failure + std::string (error.what ()) + '.').c_str (), "Error!",
                           platform::Buttons::ok);
    }
}

// One question at a time. While the system's dialog is answered the host may close or end the panel.
void Panel::askForFile (FileRequest wanted)
{
    if (isAskingForFile ())
        return;
    if (soundFolder.empty ())
        soundFolder = platform::homeFolder ();
    wanted.question.start =
        soundFolder / wanted.question.start; // ends with a separator where no name is given
    fileRequest = std::move (wanted);
    const auto owner = std::weak_ptr (alive);
    auto dialog = platform::FileDialog::show (fileRequest.question);
    if (owner.expired () || closed)
        return;
    fileDialog = std::move (dialog);
    if (fileDialog == nullptr)
        typeFile ();
}

void Panel::pollFileDialog ()
{
    if (fileDialog == nullptr)
        return;
    const auto state = fileDialog->state ();
    if (state == platform::FileDialog::State::open)
        return;
    const std::filesystem::path file = fileDialog->chosen ();
    fileDialog.reset ();
    if (state == platform::FileDialog::State::chosen)
        takeFile (file, false);
    else if (state == platform::FileDialog::State::failed)
        typeFile ();
}

// Where the system has no dialog. Only Return writes or reads a file, no click beside the field.
void Panel::typeFile ()
{
    CRect place = toRect (panel::panelRect);
    place.setHeight (InputField::usualHeight);
    place.inset (fieldMargin, 0.0);
    place.offset (0.0, toRect (panel::programDisplayRect).bottom + fieldMargin);
    openField (
        place, utf8 (fileRequest.question.start),
        [this] (const std::string& line)
        {
            const bool isAtHome = line.starts_with ("~/");
            const auto folder = isAtHome ? platform::homeFolder () : soundFolder;
            if (line.find_first_not_of (' ') != std::string::npos)
                takeFile (folder / pathFromUtf8 (line.substr (isAtHome ? 2 : 0)), true);
        },
        true);
}

// A new file gets the ending that it lacks. Who typed its name, or did not see it whole, has not been asked
// yet whether an older one may go.
void Panel::takeFile (const std::filesystem::path& file, bool typed)
{
    const auto [question, chosen] = fileRequest; // a copy, for another may be made while this one asks
    const bool ends = std::ranges::any_of (question.endings, [&] (const std::string& ending)
                                           { return file.extension () == ending; });
    std::filesystem::path whole = file;
    if (question.saves && !ends)
        whole += question.endings.front ();
    soundFolder = whole.parent_path ();
    if (!question.saves || (ends && !typed) || mayReplace (whole))
        chosen (whole);
}

bool Panel::mayReplace (const std::filesystem::path& file)
{
    std::error_code failed;
    const auto owner = std::weak_ptr (alive);
    const bool may = !std::filesystem::exists (file, failed) ||
                     synth.showMessage ("There is a file of that name. Replace it?", "Warning!",
                                        platform::Buttons::yesNo) == platform::Answer::yes;
    return may && !owner.expired () && !closed;
}
}
