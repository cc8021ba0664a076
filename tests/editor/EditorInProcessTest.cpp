// The editor in a real window of this process: what only somebody inside can see. Each test has its own
// display.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "editor/Editor.h"
#include "editor/EditorFactory.h"
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

// One instrument with its editor open.
struct OpenEditor
{
    explicit OpenEditor (FakeHost& host)
        : synth (&FakeHost::callback, host.services ()),
          window (platform::HostWindow::make (612, 433))
    {
        call (effEditOpen, window->handle ());
    }
    ~OpenEditor () { call (effEditClose); }

    VstIntPtr call (VstInt32 opcode, void* ptr = nullptr)
    {
        return synth.dispatcher (opcode, 0, 0, ptr, 0.0f);
    }
    Editor& editor () { return *dynamic_cast<Editor*> (synth.getEditor ()); }
    void idle ()
    {
        window->handleEvents ();
        call (effEditIdle);
    }

    VstSynth synth;
    std::unique_ptr<platform::HostWindow> window;
};

class EditorInProcess : public testing::Test
{
protected:
    EditorInProcess () { host.createEditor = createEditor; }

    // Idles until something is drawn and then until nothing more is.
    static bool settle (OpenEditor& open, DrawRecorder& recorder)
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

TEST_F (EditorInProcess, IdlesWithoutDrawing)
{
    OpenEditor open (host);
    auto* recorder = new DrawRecorder; // the frame's
    open.editor ().getFrame ()->addView (recorder);
    ASSERT_TRUE (settle (open, *recorder));
    recorder->drawn.clear ();
    for (int i = 0; i < 100; ++i)
    {
        open.synth.setParameter (paramVolume, open.synth.getParameter (paramVolume)); // the same again
        open.idle ();
        std::this_thread::sleep_for (std::chrono::milliseconds (1)); // timers are due every 16
    }
    EXPECT_TRUE (recorder->drawn.empty ()) << recorder->drawn.size () << " rectangles";
}

TEST_F (EditorInProcess, DrawsOnlyWhatChanged)
{
    OpenEditor open (host);
    auto* recorder = new DrawRecorder;
    open.editor ().getFrame ()->addView (recorder);
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
        open.editor ().setParameter (change.index, change.value);
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

TEST_F (EditorInProcess, SeveralEditorsLiveSideBySide)
{
    auto first = std::make_unique<OpenEditor> (host);
    OpenEditor second (host);
    first->editor ().setParameter (paramFilterFreq, 0.1f);
    second.editor ().setParameter (paramFilterFreq, 0.9f);
    first->idle ();
    second.idle ();
    EXPECT_FLOAT_EQ (first->editor ().slot (paramFilterFreq).control->getValue (), 0.1f);
    EXPECT_FLOAT_EQ (second.editor ().slot (paramFilterFreq).control->getValue (), 0.9f);
    first.reset ();
    second.editor ().setParameter (paramFilterFreq, 0.4f);
    for (int i = 0; i < 10; ++i)
        second.idle ();
    EXPECT_FLOAT_EQ (second.editor ().slot (paramFilterFreq).control->getValue (), 0.4f);
    first = std::make_unique<OpenEditor> (host);
    EXPECT_TRUE (first->editor ().isOpen ());
}

TEST_F (EditorInProcess, EveryParameterControlHasItsMenu)
{
    OpenEditor open (host);
    int menus = 0;
    for (std::int32_t tag = 0; tag < Editor::slotCount; ++tag)
    {
        const Editor::ControlSlot& slot = open.editor ().slot (tag);
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

TEST_F (EditorInProcess, LearnedControllersReachTheMenus)
{
    OpenEditor open (host);
    open.synth.setParameter (commandLearn, 18.0f);
    EventList list ({ { 0, 0xB0, 74, 100 } });
    open.synth.processEvents (list.get ());
    std::vector<float> samples (64);
    float* outputs[] = { samples.data (), samples.data () };
    open.synth.processReplacing (nullptr, outputs, 64);
    EXPECT_EQ (open.editor ().slot (18).rightMenu->boundController (), 0u) << "waits for the idle call";
    open.idle ();
    EXPECT_EQ (open.editor ().slot (18).rightMenu->boundController (), 74u);
    open.synth.setParameter (commandLearn, 1018.0f);
    open.idle ();
    EXPECT_EQ (open.editor ().slot (18).rightMenu->boundController (), 0u);
}

// A key that the mouse holds stays down whatever ends its note.
TEST_F (EditorInProcess, KeyUnderTheMouseIgnoresNoteOffs)
{
    OpenEditor open (host);
    auto& keyboard = const_cast<Keyboard&> (*open.editor ().onScreenKeyboard ());
    MouseDownEvent down (CPoint (39 + 5, 316 + 90), MouseEventButtonState (MouseButton::Left));
    keyboard.onMouseDownEvent (down);
    EXPECT_TRUE (keyboard.isKeyDown (48));
    keyboard.setKeyOff (48);
    EXPECT_TRUE (keyboard.isKeyDown (48));
    MouseUpEvent up (CPoint (39 + 5, 316 + 90), MouseEventButtonState (MouseButton::Left));
    keyboard.onMouseUpEvent (up);
    EXPECT_FALSE (keyboard.isKeyDown (48));
    EXPECT_EQ (keyboard.getValue (), -1.0f);
    EXPECT_EQ (keyboard.keyHeight (), 98);
    keyboard.setKeyOn (60);
    keyboard.allKeysOff ();
    EXPECT_FALSE (keyboard.isKeyDown (60));
}

// The audio thread plays and learns while the interface idles, opens and closes.
TEST_F (EditorInProcess, AudioThreadAndInterfaceThread)
{
    VstSynth synth (&FakeHost::callback, host.services ());
    std::atomic<bool> stop = false;
    auto& editor = *dynamic_cast<SynthEditor*> (synth.getEditor ());
    std::thread audio (
        [&]
        {
            for (int i = 0; !stop; ++i)
            {
                editor.setParameter (i % Editor::slotCount, static_cast<float> (i % 100) / 100.0f);
                editor.setParameter (i % 2 == 0 ? commandKeyOn : commandKeyOff,
                                     static_cast<float> (i % 128) / 128.0f);
                editor.refreshLearnMenus ();
                editor.markCurrentProgram ();
            }
        });
    for (int opening = 0; opening < 5; ++opening)
    {
        const auto window = platform::HostWindow::make (612, 433);
        EXPECT_EQ (synth.dispatcher (effEditOpen, 0, 0, window->handle (), 0.0f), 1);
        for (int i = 0; i < 20; ++i)
            synth.dispatcher (effEditIdle, 0, 0, nullptr, 0.0f);
        synth.dispatcher (effEditClose, 0, 0, nullptr, 0.0f);
    }
    stop = true;
    audio.join ();
}

TEST_F (EditorInProcess, WithoutADisplayItDoesNotOpen)
{
    VstSynth synth (&FakeHost::callback, host.services ());
    display.leave ();
    int anything = 0;
    EXPECT_EQ (synth.dispatcher (effEditOpen, 0, 0, &anything, 0.0f), 0);
    synth.dispatcher (effEditIdle, 0, 0, nullptr, 0.0f);
    synth.dispatcher (effEditClose, 0, 0, nullptr, 0.0f);
}
}
