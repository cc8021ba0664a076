#pragma once

#include <array>
#include <memory>
#include <string>

#include "editor/AboutPage.h"
#include "editor/ClipRelease.h"
#include "editor/History.h"
#include "editor/HoverHelp.h"
#include "editor/InputField.h"
#include "editor/Keyboard.h"
#include "editor/Mailbox.h"
#include "editor/PanelFactory.h"
#include "editor/PopupMenu.h"
#include "editor/ProgramDisplay.h"
#include "editor/RandomSound.h"
#include "editor/RightMenu.h"
#include "editor/SmallButton.h"
#include "editor/Toolkit.h"
#include "instrument/ValueText.h"
#include "platform/FileDialog.h"
#include "resources/panel/PanelLayout.h"

namespace editor
{
// The panel in the host's window. Everything runs on the host's user-interface thread but the four calls of
// EditorLink that bring news: those may come on the audio thread, go into the mailbox and are worked off at
// the next idle, or at once when the change came from the panel itself.
class Panel final : public HostedPanel,
                    public VSTGUI::VSTGUIEditorInterface,
                    public VSTGUI::IControlListener,
                    public VSTGUI::IKeyboardHook
{
public:
    Panel (Synth& owner, PanelHost& surroundings);
    ~Panel () override;

    // HostedPanel
    Size size () override;
    bool setHostScale (double scale) override;
    bool open (void* parentWindow) override;
    void close () override;
    void* window () override;
    void idle () override;
    bool onKeyDown (std::int32_t character) override; // takes every key
    bool wantsKey (KeyGroup group) override;
    bool onWheel (float distance) override;
    bool setKnobMode (std::int32_t mode) override;

    // From the toolkit
    void beginEdit (std::int32_t index) override; // only parameters reach the host
    void endEdit (std::int32_t index) override;
    bool beforeSizeChange (const VSTGUI::CRect& newSize, const VSTGUI::CRect& oldSize) override;
    std::int32_t getKnobMode () const override { return knobMode; }

    // EditorLink
    void setParameter (std::int32_t index, float value) override;
    void refreshLearnMenus () override { mailbox.postLearnMenus (); }
    void setProgramEntry (std::int32_t, const char*) override { mailbox.postPrograms (); }
    void markCurrentProgram () override { mailbox.postPrograms (); }

    // From the controls
    void valueChanged (VSTGUI::CControl* control) override;
    void onKeyboardEvent (VSTGUI::KeyboardEvent& event, VSTGUI::CFrame* frame) override;

    // What stands on the panel for one tag. The views are the frame's and live until `close`.
    struct ControlSlot
    {
        VstGraph::CRightMenu* rightMenu = nullptr; // parameters only
        VSTGUI::CControl* control = nullptr;
        VSTGUI::CControl* display = nullptr;
        bool active = false;         // in use
        bool integerDisplay = false; // the display shows the value cut to an integer
        float displayScale = 1.0f;   // the display shows value x scale + offset
        float displayOffset = 0.0f;
        std::uint32_t bitmapId = 0;
    };
    static constexpr std::int32_t slotCount = 43;
    const ControlSlot& slot (std::int32_t tag) const { return slots[static_cast<std::size_t> (tag)]; }
    const Keyboard* onScreenKeyboard () const { return keyboard; }
    bool isKeyboardShown () const { return keyboardShown; }
    bool isAskingForFile () const { return fileDialog != nullptr; }

private:
    // PanelBuild.cpp: what the panel is built of
    void buildPanel ();
    void addKnob (int x, int y, std::int32_t tag, int frameHeight, int bitmapId, bool addToFrame);
    void addOnOffButton (int x, int y, int width, int height, std::int32_t tag, int bitmapId,
                         bool addToFrame);
    void addHorizontalSlider (int x, int y, int width, int height, std::int32_t tag, int bitmapId,
                              bool addToFrame);
    void addValueDisplay (int x, int y, int width, int height, std::int32_t tag, float scale, float offset,
                          bool isInteger, bool addToFrame);
    void addKeyboard (const panel::Rect& rect, std::int32_t tag);
    void addProgramControls ();
    void addShared (VSTGUI::CView* view);
    void makeAboutPage ();
    void enterControl (VSTGUI::CControl* control, std::int32_t tag, int bitmapId, bool addToFrame);
    VSTGUI::SharedPointer<VSTGUI::CBitmap> panelBitmap (int resourceId);
    std::optional<HoverHelp::Zone> helpAt (const VSTGUI::CPoint& where);
    std::string helpFor (const panel::Control& control);
    instrument::ValueContext valueContext () const;
    std::string valueOf (std::int32_t parameter) const; // as text

    // PanelMenus.cpp
    VSTGUI::SharedPointer<VSTGUI::COptionMenu> makeMenu (std::int32_t tag);
    VSTGUI::SharedPointer<VSTGUI::COptionMenu> makeMainMenu ();
    VSTGUI::SharedPointer<VSTGUI::COptionMenu> makeProgramMenu ();
    void popUp (const VSTGUI::SharedPointer<VSTGUI::COptionMenu>& menu, const VSTGUI::CRect& anchor,
                const PopupMenu::Done& chosen);
    void openMainMenu (const VSTGUI::CRect& anchor);
    void openProgramMenu ();
    int currentEntry (std::int32_t tag) const;
    bool isAvailable (std::int32_t command) const;
    bool isOn (std::int32_t command) const;
    void menuChosen (VSTGUI::COptionMenu* menu, std::int32_t entry);
    void perform (std::int32_t command);
    void switchAdditions (const instrument::Additions& wanted);

    // PanelEdits.cpp: steps that can be taken back, and what is typed
    void undo ();
    void redo ();
    void apply (const History::Step& step, bool again);
    struct Edit
    {
        std::int32_t program;
        History::Change change;
    };
    void startStep (std::int32_t index);
    void noteStep (std::int32_t index);
    void finishStep (std::int32_t index);
    void addStep (const Edit& edit);
    void addOpenSteps ();
    void replaceBank (const std::function<void ()>& load); // as one step
    History::Bank currentBank ();
    void openField (const VSTGUI::CRect& place, const std::string& text,
                    const std::function<void (const std::string&)>& typed, bool needsReturn = false);
    void typeValue (std::int32_t parameter);
    void renameProgram ();
    VSTGUI::CView* hoveredControl () const; // that turns, null: none
    bool turnHovered (const VSTGUI::KeyboardEvent& event);

    // PanelFiles.cpp: sounds as files
    void loadFile ();
    void saveProgram ();
    void saveBank ();
    struct FileRequest
    {
        platform::FileQuestion question;
        std::function<void (const std::filesystem::path&)> chosen;
    };
    void askForFile (FileRequest wanted);
    void pollFileDialog ();
    void typeFile ();
    void takeFile (const std::filesystem::path& file, bool typed);
    bool mayReplace (const std::filesystem::path& file);
    void tryWith (const std::filesystem::path& file, const char* failure,
                  void (*act) (Synth&, const std::filesystem::path&));

    // Panel.cpp: news and their effects
    void applyNews ();
    void applyValue (std::int32_t index, float value);
    void applyNotes (const Mailbox::News& news);
    void updateLamps ();
    void updateRateDisplay ();
    void updateProgramDisplay ();
    void copyLearnBindings ();
    void updateLearning ();
    void forward (std::int32_t tag, float value);
    void stepProgram (std::int32_t step);
    void makeRandomSound (std::int32_t category);
    void showAboutPage ();
    void removeAboutPage ();

    // Size
    int panelHeight () const;
    void updateRect ();
    void setKeyboardShown (bool shown);
    void setZoomEntry (int entry);

    Synth& synth;
    PanelHost& host;
    std::shared_ptr<Toolkit> toolkit; // from the first time open
    Mailbox mailbox;
    std::int32_t knobMode = VSTGUI::kLinearMode;
    Size shownSize = {}; // pixels, zoomed
    bool closed = true;
    bool mayBeDirty = true; // values moved since the views were last looked at
    bool applying = false;  // news are being worked off; calls that come back in between wait
    std::array<ControlSlot, slotCount> slots;
    VSTGUI::SharedPointer<VSTGUI::CBitmap> background;
    VSTGUI::SharedPointer<VSTGUI::CBitmap> aboutPicture;
    ClipRelease* topView = nullptr; // everything that joins the panel later goes below it
    VSTGUI::SharedPointer<Keyboard> keyboard;
    bool keyboardShown = false;
    Mailbox::NoteSet shownNotes = {};
    ProgramDisplay* programDisplay = nullptr;
    SmallButton* menuButton = nullptr;
    VSTGUI::SharedPointer<CAboutPage> aboutPage;
    bool aboutShown = false;
    std::unique_ptr<HoverHelp> hoverHelp;
    VSTGUI::SharedPointer<PopupMenu> popup;           // while one is open that the panel draws itself
    VSTGUI::SharedPointer<InputField> field;          // while something is being typed
    FileRequest fileRequest;                          // being asked
    std::unique_ptr<platform::FileDialog> fileDialog; // with this; null: none, or the field asks
    std::filesystem::path soundFolder;                // where a file was last chosen
    std::int32_t learning = -1;                       // parameter that waits for a controller
    History history;
    std::vector<Edit> edits;       // being made right now, one for each control held
    std::string rateText;          // what the LFO rate's display shows
    std::int32_t randomChoice = 0; // last chosen entry of the random-sound menu
    std::int32_t zoomChoice = -1;  // entry of the zoom menu, -1: not read yet
    RandomSound randomSound;
    std::shared_ptr<const bool> alive = std::make_shared<bool> (true); // for what may outlive this object
};
}
