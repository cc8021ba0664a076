// The panel in a real window of this process: what only somebody inside can see. Each test has its own
// display.
#include <gtest/gtest.h>

#include <thread>

#include "editor/Colours.h"
#include "editor/MenuTable.h"
#include "editor/Panel.h"
#include "platform/HostWindow.h"
#include "tests/editor/Bench.h"
#include "tests/host/TemporaryFolder.h"
#include "tests/support/Events.h"
#include "tests/support/FakeSystem.h"

using namespace editor;
using namespace instrument;
using namespace parameters;

using namespace VSTGUI;

namespace
{
// Sees through the whole panel and notes what is drawn anew.
class DrawRecorder : public CView
{
public:
    DrawRecorder () : CView (CRect (0, 0, 612, 433)) { setMouseEnabled (false); }

    void drawRect (CDrawContext* /*context*/, const CRect& updateRect) override
    {
        drawn.push_back (updateRect);
    }

    std::vector<CRect> drawn;
};

// A format around instrument and panel that writes down what it is told.
class PlainFormat final : public FormatHost, public PanelHost
{
public:
    std::optional<engine::Transport> transport () override { return std::nullopt; }
    void setParameterAutomated (std::int32_t index, float value) override
    {
        told.push_back (index);
        instrument->setParameter (index, value);
    }
    void beginEdit (std::int32_t /*index*/) override {}
    void endEdit (std::int32_t /*index*/) override {}
    bool resize (int /*width*/, int /*height*/) override { return true; }
    void updateDisplay () override {}

    Instrument* instrument = nullptr;
    std::vector<std::int32_t> told; // of these parameters
};

// One instrument with its panel, still closed.
struct TestPanel
{
    explicit TestPanel (FakeSystem& system) : synth (system.services (), format), panel (synth, format)
    {
        format.instrument = &synth;
        synth.attachEditor (&panel);
    }

    void play (const std::vector<engine::Event>& events)
    {
        const engine::EventSpan list (events);
        synth.processEvents (&list);
        float samples[64];
        synth.render (samples, nullptr, 64);
    }

    PlainFormat format;
    Instrument synth;
    Panel panel;
};

// The same with the panel open, and hands on it.
struct OpenPanel : TestPanel
{
    explicit OpenPanel (FakeSystem& system)
        : TestPanel (system),
          window (platform::HostWindow::make (612, 433))
    {
        panel.open (window->handle ());
    }
    ~OpenPanel () { panel.close (); }

    void idle ()
    {
        window->handleEvents ();
        panel.idle ();
    }
    float value (std::int32_t index) { return synth.getParameter (index); }
    CPoint middleOf (std::int32_t tag) { return panel.slot (tag).control->getViewSize ().getCenter (); }
    void press (const CPoint& where)
    {
        MouseDownEvent down (where, MouseEventButtonState (MouseButton::Left));
        panel.getFrame ()->dispatchEvent (down);
    }
    void release (const CPoint& where)
    {
        MouseUpEvent up (where, MouseEventButtonState (MouseButton::Left));
        panel.getFrame ()->dispatchEvent (up);
    }
    void move (const CPoint& where, bool held)
    {
        MouseMoveEvent moved (where);
        if (held)
            moved.buttonState.add (MouseButton::Left);
        panel.getFrame ()->dispatchEvent (moved);
    }
    // In steps of ten pixels.
    void dragUp (std::int32_t tag, int steps)
    {
        CPoint where = middleOf (tag);
        press (where);
        for (int step = 0; step < steps; ++step)
            move (where.offset (0.0, -10.0), true);
        release (where);
    }
    void key (VirtualKey virtualKey, char32_t character = 0, Modifiers modifiers = {})
    {
        KeyboardEvent event;
        event.type = EventType::KeyDown;
        event.virt = virtualKey;
        event.character = character;
        event.modifiers = modifiers;
        panel.getFrame ()->dispatchEvent (event);
    }
    void undo () { key (VirtualKey::None, 'z', Modifiers (ModifierKey::Control)); }
    void redo () { key (VirtualKey::None, 'y', Modifiers (ModifierKey::Control)); }

    std::unique_ptr<platform::HostWindow> window;
};

class PanelInProcess : public testing::Test
{
protected:
    // Idles until something is drawn and then until nothing more is.
    static bool settle (OpenPanel& open, DrawRecorder& recorder)
    {
        int quiet = 0;
        return Bench::eventually (
            [&]
            {
                const auto before = recorder.drawn.size ();
                open.idle ();
                quiet = recorder.drawn.size () == before ? quiet + 1 : 0;
                return quiet > 10 && !recorder.drawn.empty ();
            });
    }

    VirtualDisplay display;
    FakeSystem system;
};

TEST_F (PanelInProcess, DrawsOnlyWhatChangedAndIdlesWithoutDrawing)
{
    OpenPanel open (system);
    auto* recorder = new DrawRecorder; // the frame's
    open.panel.getFrame ()->addView (recorder);
    ASSERT_TRUE (settle (open, *recorder));
    const auto set = [&] (std::int32_t index, float value)
    {
        recorder->drawn.clear ();
        open.synth.setParameter (index, value);
    };
    using Row = std::tuple<std::int32_t, float, CRect>;
    for (const auto& [index, value, place] :
         { Row{ paramFilterFreq, 0.9f, CRect (318, 142, 340, 164) },
           Row{ commandKeyOn, 60.0f / 128.0f, CRect (284, 316, 319, 414) },
           Row{ commandKeyOff, 60.0f / 128.0f, CRect (284, 316, 319, 414) } })
    {
        set (index, value);
        ASSERT_TRUE (settle (open, *recorder)) << index;
        for (const CRect& rect : recorder->drawn)
            EXPECT_EQ (CRect (rect).bound (place), rect) << "drew more than " << index << " needs";
    }
    set (paramFilterFreq, 0.9f); // the same again
    for (int i = 0; i < 100; ++i)
    {
        open.idle ();
        std::this_thread::sleep_for (std::chrono::milliseconds (1)); // timers are due every 16
    }
    EXPECT_TRUE (recorder->drawn.empty ()) << recorder->drawn.size () << " rectangles";
}

TEST_F (PanelInProcess, SeveralPanelsLiveSideBySide)
{
    auto first = std::make_unique<OpenPanel> (system);
    OpenPanel second (system);
    const auto shown = [] (OpenPanel& open, float value)
    {
        open.synth.setParameter (paramFilterFreq, value);
        open.idle ();
        return open.panel.slot (paramFilterFreq).control->getValue ();
    };
    EXPECT_FLOAT_EQ (shown (*first, 0.1f), 0.1f);
    EXPECT_FLOAT_EQ (shown (second, 0.9f), 0.9f);
    EXPECT_FLOAT_EQ (shown (*first, 0.2f), 0.2f);
    first.reset ();
    EXPECT_FLOAT_EQ (shown (second, 0.4f), 0.4f);
    first = std::make_unique<OpenPanel> (system);
    EXPECT_NE (first->panel.getFrame (), nullptr);
}

TEST_F (PanelInProcess, EveryParameterControlHasItsMenu)
{
    OpenPanel open (system);
    int menus = 0;
    for (std::int32_t tag = 0; tag < Panel::slotCount; ++tag)
    {
        const Panel::ControlSlot& slot = open.panel.slot (tag);
        ASSERT_EQ (slot.rightMenu != nullptr, slot.control != nullptr && tag < parameterCount) << tag;
        if (slot.rightMenu == nullptr)
            continue;
        ++menus;
        EXPECT_EQ (slot.rightMenu->getTag (), tag);
        EXPECT_EQ (slot.rightMenu->getViewSize (), slot.control->getViewSize ());
        EXPECT_TRUE (slot.active);
    }
    EXPECT_EQ (menus, 32); // 38 parameters, six of them in menus or nowhere
}

// What the engine tells, that all notes have ended included. A key that the mouse holds stays down.
TEST_F (PanelInProcess, EngineNoticesReachTheKeyboard)
{
    OpenPanel open (system);
    const Keyboard& keyboard = *open.panel.onScreenKeyboard ();
    const CPoint lowC (39 + 5, 316 + 90);
    const auto shows = [&] (int note)
    {
        open.idle ();
        return keyboard.isKeyDown (note);
    };
    open.play ({ midi (0, 0x90, 60, 100), midi (0, 0x90, 64, 100) });
    EXPECT_TRUE (shows (60) && shows (64));
    open.play ({ midi (0, 0x80, 60, 0) });
    EXPECT_TRUE (!shows (60) && shows (64));
    open.press (lowC);
    open.play ({ midi (0, 0x90, 48, 100), midi (0, 0x80, 48, 0) });
    EXPECT_TRUE (shows (48));
    open.release (lowC);
    EXPECT_FALSE (keyboard.isKeyDown (48));
    EXPECT_EQ (keyboard.getValue (), -1.0f);
    open.synth.setParameter (paramGlideMono, 0.5f); // to one voice: all notes end
    open.play ({});
    EXPECT_FALSE (shows (64));
}

TEST_F (PanelInProcess, DragsAreTakenBackAsOneStepInTheirProgram)
{
    OpenPanel open (system);
    open.synth.setProgram (3);
    const float cutoff = open.value (paramFilterFreq);
    const float resonance = open.value (paramFilterRez);
    open.dragUp (paramFilterFreq, 4);
    open.dragUp (paramFilterRez, 2);
    const float dragged = open.value (paramFilterFreq);
    const float draggedToo = open.value (paramFilterRez);
    EXPECT_TRUE (dragged != cutoff && draggedToo != resonance);
    // What hosts and controllers change makes no step.
    open.synth.setProgram (7);
    open.synth.setParameter (paramVolume, 0.123f);
    open.synth.setParameter (commandLearn, 20.0f);
    open.play ({ midi (0, 0xB0, 74, 32), midi (0, 0xB0, 74, 64) });
    open.idle ();
    const float learned = open.value (paramFilterType);
    const float other = open.value (paramFilterRez);

    open.undo ();
    EXPECT_EQ (open.synth.getProgram (), 3);
    EXPECT_EQ (open.value (paramFilterRez), resonance);
    EXPECT_EQ (open.value (paramFilterFreq), dragged);
    open.format.told.clear ();
    open.undo ();
    EXPECT_EQ (open.value (paramFilterFreq), cutoff);
    EXPECT_EQ (open.format.told, std::vector<std::int32_t>{ paramFilterFreq }) << "the host records it";
    open.undo (); // nothing is left
    EXPECT_EQ (open.synth.getProgram (), 3);
    open.redo ();
    open.redo ();
    EXPECT_EQ (open.value (paramFilterFreq), dragged);
    EXPECT_EQ (open.value (paramFilterRez), draggedToo);
    open.synth.setProgram (7);
    EXPECT_EQ (open.value (paramVolume), 0.123f);
    EXPECT_EQ (open.value (paramFilterType), learned);
    EXPECT_EQ (open.value (paramFilterRez), other);

    // The arrow keys and the wheel leave an edit open for a while.
    open.move (open.middleOf (paramFilterRez), false);
    open.key (VirtualKey::Up);
    const float turned = open.value (paramFilterRez);
    EXPECT_NE (turned, other);
    open.undo ();
    EXPECT_EQ (open.value (paramFilterRez), other);
    open.redo ();
    open.key (VirtualKey::Down);
    open.key (VirtualKey::Down);
    open.undo ();
    EXPECT_EQ (open.value (paramFilterRez), turned) << "what went on is a step of its own";
}

TEST_F (PanelInProcess, RandomSoundsAndLoadedBanksAreTakenBack)
{
    OpenPanel open (system);
    const auto values = [&]
    {
        std::vector<float> all;
        for (std::int32_t index = 0; index < parameterCount; ++index)
            all.push_back (open.value (index));
        return all;
    };
    const auto before = values ();
    open.synth.setParameter (commandRandom, 3.0f);
    open.idle ();
    const auto random = values ();
    ASSERT_NE (random, before);
    open.undo ();
    EXPECT_EQ (values (), before);
    open.redo ();
    EXPECT_EQ (values (), random);
    EXPECT_TRUE (open.format.told.empty ()) << "the host does not hear of random sounds";

    open.press (toRect (panel::menuButtonRect).getCenter ()); // "Load factory bank", answered at once
    open.key (VirtualKey::Down);
    open.key (VirtualKey::Down);
    open.key (VirtualKey::Return);
    ASSERT_EQ (system.messages.size (), 1u);
    EXPECT_EQ (values (), before);
    open.undo ();
    EXPECT_EQ (values (), random) << "the bank as it was, with the random sound in it";
    open.undo ();
    EXPECT_EQ (values (), before);
}

// The desktop's dialog is another program, and here one of this test's.
TEST_F (PanelInProcess, SoundsAreLoadedAndSavedThroughTheDialog)
{
    const TemporaryFolder folder;
    const auto program = folder / "zenity";
    std::ofstream (program) << "#!/bin/sh\necho \"$@\" > '" << (folder / "asked").string () << "'\ncat '"
                            << (folder / "answer").string () << "'\n";
    std::filesystem::permissions (program, std::filesystem::perms::owner_all);
    const std::string path = std::getenv ("PATH");
    ::setenv ("PATH", (folder.folder ().string () + ":" + path).c_str (), 1);

    OpenPanel open (system);
    open.synth.setAdditions ({ true, false });
    const auto choose = [&] (std::int32_t command, const std::string& answer)
    {
        std::ofstream (folder / "answer") << answer << '\n';
        std::filesystem::remove (folder / "asked");
        const auto entry = std::ranges::find (commandEntries (), command, &CommandEntry::tag);
        open.press (toRect (panel::menuButtonRect).getCenter ());
        open.key (VirtualKey::Down);
        for (auto n = entry; n != commandEntries ().end (); ++n)
            open.key (VirtualKey::Up); // from the first entry to the last and upwards
        open.key (VirtualKey::Return);
        EXPECT_TRUE (Bench::eventually (
            [&]
            {
                open.idle ();
                return !open.panel.isAskingForFile ();
            }));
    };
    const auto place = [&] (const char* name) { return (folder / name).string (); };

    open.synth.setProgram (3);
    choose (commandSaveProgram, place ("one")); // and gets the ending
    EXPECT_NE (contentOf (folder / "asked").find ("--save"), std::string::npos);
    EXPECT_NE (contentOf (folder / "asked").find ("/Sub Bass.fxp"), std::string::npos)
        << contentOf (folder / "asked");
    const std::string preset = contentOf (folder / "one.fxp");
    EXPECT_EQ (preset.size (), 236u);
    choose (commandSaveBank, place ("all.fxb"));
    EXPECT_EQ (std::filesystem::file_size (folder / "all.fxb"), 24056u);
    EXPECT_TRUE (system.messages.empty ());

    open.synth.setParameter (paramFilterRez, 0.123f);
    for (const auto& [answer, isReplaced] :
         { std::pair{ platform::Answer::no, false }, { platform::Answer::yes, true } })
    {
        system.answer = answer;
        choose (commandSaveProgram, place ("one"));
        EXPECT_EQ (contentOf (folder / "one.fxp") != preset, isReplaced);
    }
    EXPECT_EQ (system.messages.size (), 2u) << "the dialog has not asked for this name";

    open.synth.setAdditions ({ false, true });
    choose (commandLoadFile, place ("all.fxb"));
    EXPECT_NE (open.value (paramFilterRez), 0.123f);
    EXPECT_TRUE (open.synth.additions ().songLock && !open.synth.additions ().pedalAndWheel);
    open.undo ();
    EXPECT_EQ (open.value (paramFilterRez), 0.123f);
    open.synth.setProgram (9);
    choose (commandLoadFile, place ("one.fxp"));
    EXPECT_EQ (open.synth.programName (9), "Sub Bass");
    EXPECT_EQ (open.value (paramFilterRez), 0.123f);
    choose (commandLoadFile, place ("zenity"));
    EXPECT_EQ (system.messages.back ().text, "Cannot load this file: it is no preset or bank file.");
    choose (commandLoadFile, ""); // dismissed
    EXPECT_EQ (system.messages.size (), 3u);
    open.undo ();
    EXPECT_EQ (open.synth.programName (9), "Long Boom") << "neither of the last two made a step";
    ::setenv ("PATH", path.c_str (), 1);
}

// The toolkit's scroll bars read a flag that nobody sets; nothing of the panel may bring one.
bool hasScrollbar (CViewContainer& container)
{
    bool found = false;
    container.forEachChild (
        [&] (CView* view)
        {
            found = found || dynamic_cast<CScrollbar*> (view) != nullptr;
            if (auto* inner = view->asViewContainer (); inner != nullptr && !found)
                found = hasScrollbar (*inner);
        });
    return found;
}

TEST_F (PanelInProcess, MenusScrollWithoutTheToolkit)
{
    OpenPanel open (system);
    open.press (toRect (panel::programDisplayRect).getCenter ());
    open.key (VirtualKey::Down);
    open.key (VirtualKey::Right); // the basses, more than fit
    EXPECT_FALSE (hasScrollbar (*open.panel.getFrame ()));
    open.key (VirtualKey::Up); // from the first to the last, which has to come into sight
    open.key (VirtualKey::Return);
    EXPECT_EQ (open.synth.getProgram (), 23);
}

TEST_F (PanelInProcess, WithoutADisplayItDoesNotOpen)
{
    TestPanel test (system);
    display.leave ();
    int anything = 0;
    EXPECT_FALSE (test.panel.open (&anything));
    test.panel.idle ();
    test.panel.close ();
}
}
