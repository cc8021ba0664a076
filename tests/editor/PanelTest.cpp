// The panel in a real window of this process: what only somebody inside can see. Each test has its own
// display.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "editor/Panel.h"
#include "platform/HostWindow.h"
#include "tests/editor/Bench.h"
#include "tests/support/TestSynth.h"

using namespace editor;
using namespace engine;
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

// A format around the panel that only sets parameters.
class PlainHost final : public PanelHost
{
public:
    void setParameterAutomated (std::int32_t index, float value) override
    {
        synth->setParameter (index, value);
    }
    void beginEdit (std::int32_t /*index*/) override {}
    void endEdit (std::int32_t /*index*/) override {}
    bool resize (int /*width*/, int /*height*/) override { return true; }
    void updateDisplay () override {}

    VstSynth* synth = nullptr;
};

// One instrument with its panel, which it owns.
struct TestPanel
{
    explicit TestPanel (FakeHost& host)
    {
        static TestPanel* made = nullptr;
        made = this;
        host.createEditor = [] (VstSynth& owner) -> std::unique_ptr<SynthEditor>
        {
            auto created = std::make_unique<Panel> (owner, made->around);
            made->panel = created.get ();
            return created;
        };
        synth = std::make_unique<VstSynth> (&FakeHost::callback, host.services ());
        around.synth = synth.get ();
    }

    PlainHost around;
    Panel* panel = nullptr;
    std::unique_ptr<VstSynth> synth;
};

// The same with the panel open.
struct OpenPanel : TestPanel
{
    explicit OpenPanel (FakeHost& host) : TestPanel (host), window (platform::HostWindow::make (612, 433))
    {
        panel->open (window->handle ());
    }
    ~OpenPanel () { panel->close (); }

    void idle ()
    {
        window->handleEvents ();
        panel->idle ();
    }

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
    FakeHost host;
};

TEST_F (PanelInProcess, IdlesWithoutDrawing)
{
    OpenPanel open (host);
    auto* recorder = new DrawRecorder; // the frame's
    open.panel->getFrame ()->addView (recorder);
    ASSERT_TRUE (settle (open, *recorder));
    recorder->drawn.clear ();
    for (int i = 0; i < 100; ++i)
    {
        open.synth->setParameter (paramVolume, open.synth->getParameter (paramVolume)); // the same again
        open.idle ();
        std::this_thread::sleep_for (std::chrono::milliseconds (1)); // timers are due every 16
    }
    EXPECT_TRUE (recorder->drawn.empty ()) << recorder->drawn.size () << " rectangles";
}

TEST_F (PanelInProcess, DrawsOnlyWhatChanged)
{
    OpenPanel open (host);
    auto* recorder = new DrawRecorder;
    open.panel->getFrame ()->addView (recorder);
    ASSERT_TRUE (settle (open, *recorder));

    struct Change
    {
        std::int32_t index;
        float value;
        CRect place;
    };
    const Change changes[] = {
        { paramFilterFreq, 0.9f, CRect (318, 142, 340, 164) },
        { commandKeyOn, 60.0f / 128.0f, CRect (284, 316, 319, 414) },
        { commandKeyOff, 60.0f / 128.0f, CRect (284, 316, 319, 414) },
    };
    for (const Change& change : changes)
    {
        recorder->drawn.clear ();
        open.panel->setParameter (change.index, change.value);
        ASSERT_TRUE (settle (open, *recorder)) << change.index;
        for (const CRect& rect : recorder->drawn)
        {
            CRect inside = rect;
            inside.bound (change.place);
            EXPECT_EQ (inside, rect) << "drew more than " << change.index << " needs: " << rect.left << " "
                                     << rect.top << " " << rect.right << " " << rect.bottom;
        }
    }
}

TEST_F (PanelInProcess, SeveralEditorsLiveSideBySide)
{
    auto first = std::make_unique<OpenPanel> (host);
    OpenPanel second (host);
    first->panel->setParameter (paramFilterFreq, 0.1f);
    second.panel->setParameter (paramFilterFreq, 0.9f);
    first->idle ();
    second.idle ();
    EXPECT_FLOAT_EQ (first->panel->slot (paramFilterFreq).control->getValue (), 0.1f);
    EXPECT_FLOAT_EQ (second.panel->slot (paramFilterFreq).control->getValue (), 0.9f);
    first.reset ();
    second.panel->setParameter (paramFilterFreq, 0.4f);
    for (int i = 0; i < 10; ++i)
        second.idle ();
    EXPECT_FLOAT_EQ (second.panel->slot (paramFilterFreq).control->getValue (), 0.4f);
    first = std::make_unique<OpenPanel> (host);
    EXPECT_NE (first->panel->getFrame (), nullptr);
}

TEST_F (PanelInProcess, EveryParameterControlHasItsMenu)
{
    OpenPanel open (host);
    int menus = 0;
    for (std::int32_t tag = 0; tag < Panel::slotCount; ++tag)
    {
        const Panel::ControlSlot& slot = open.panel->slot (tag);
        EXPECT_EQ (slot.rightMenu != nullptr, slot.control != nullptr && tag < parameterCount) << tag;
        if (slot.rightMenu == nullptr)
            continue;
        ++menus;
        EXPECT_EQ (slot.rightMenu->getTag (), tag);
        EXPECT_EQ (slot.rightMenu->getViewSize (), slot.control->getViewSize ());
        EXPECT_TRUE (slot.rightMenu->isTypeOf ("CRightMenu"));
        EXPECT_TRUE (slot.rightMenu->isTypeOf ("CControl"));
        EXPECT_FALSE (slot.rightMenu->isTypeOf ("COptionMenu"));
        EXPECT_TRUE (slot.active);
    }
    EXPECT_EQ (menus, 32); // 38 parameters, six of them in menus or nowhere
}

TEST_F (PanelInProcess, LearnedControllersReachTheMenus)
{
    OpenPanel open (host);
    open.synth->setParameter (commandLearn, 18.0f);
    EventList list ({ { 0, 0xB0, 74, 100 } });
    open.synth->processEvents (list.get ());
    std::vector<float> samples (64);
    float* outputs[] = { samples.data (), samples.data () };
    open.synth->processReplacing (nullptr, outputs, 64);
    EXPECT_EQ (open.panel->slot (18).rightMenu->boundController (), 0u) << "waits for the idle call";
    open.idle ();
    EXPECT_EQ (open.panel->slot (18).rightMenu->boundController (), 74u);
    open.synth->setParameter (commandLearn, 1018.0f);
    open.idle ();
    EXPECT_EQ (open.panel->slot (18).rightMenu->boundController (), 0u);
}

// A key that the mouse holds stays down whatever ends its note.
TEST_F (PanelInProcess, KeyUnderTheMouseIgnoresNoteOffs)
{
    OpenPanel open (host);
    auto& keyboard = const_cast<Keyboard&> (*open.panel->onScreenKeyboard ());
    MouseDownEvent down (CPoint (39 + 5, 316 + 90), MouseEventButtonState (MouseButton::Left));
    keyboard.onMouseDownEvent (down);
    EXPECT_TRUE (keyboard.isKeyDown (48));
    keyboard.setKeyOff (48);
    EXPECT_TRUE (keyboard.isKeyDown (48));
    MouseUpEvent up (CPoint (39 + 5, 316 + 90), MouseEventButtonState (MouseButton::Left));
    keyboard.onMouseUpEvent (up);
    EXPECT_FALSE (keyboard.isKeyDown (48));
    EXPECT_EQ (keyboard.getValue (), -1.0f);
    keyboard.setKeyOn (60);
    keyboard.allKeysOff ();
    EXPECT_FALSE (keyboard.isKeyDown (60));
}

// The audio thread plays and learns while the interface idles, opens and closes.
TEST_F (PanelInProcess, AudioThreadAndInterfaceThread)
{
    TestPanel test (host);
    std::atomic<bool> stop = false;
    SynthEditor& editor = *test.panel;
    std::thread audio (
        [&]
        {
            for (int i = 0; !stop; ++i)
            {
                editor.setParameter (i % Panel::slotCount, static_cast<float> (i % 100) / 100.0f);
                editor.setParameter (i % 2 == 0 ? commandKeyOn : commandKeyOff,
                                     static_cast<float> (i % 128) / 128.0f);
                editor.refreshLearnMenus ();
                editor.markCurrentProgram ();
            }
        });
    for (int opening = 0; opening < 5; ++opening)
    {
        const auto window = platform::HostWindow::make (612, 433);
        EXPECT_TRUE (test.panel->open (window->handle ()));
        for (int i = 0; i < 20; ++i)
            test.panel->idle ();
        test.panel->close ();
    }
    stop = true;
    audio.join ();
}

TEST_F (PanelInProcess, WithoutADisplayItDoesNotOpen)
{
    TestPanel test (host);
    display.leave ();
    int anything = 0;
    EXPECT_FALSE (test.panel->open (&anything));
    test.panel->idle ();
    test.panel->close ();
}
}
