#pragma once

#include "plugin/vst2.h"

class AudioEffect;

// What the dispatch layer asks of an editor. All of it runs on the host's user-interface thread.
class AEffEditor
{
public:
    explicit AEffEditor (AudioEffect* owner = nullptr) : effect (owner) {}
    virtual ~AEffEditor () = default;
    AEffEditor (const AEffEditor&) = delete;
    AEffEditor& operator= (const AEffEditor&) = delete;

    AudioEffect* getEffect () { return effect; }

    // Points *rectangle at the editor's size; false when it has none.
    virtual bool getRect (ERect** rectangle)
    {
        *rectangle = nullptr;
        return false;
    }

    // Opens inside the host's window (an HWND or an X11 window id); false when that failed.
    virtual bool open (void* parentWindow)
    {
        systemWindow = parentWindow;
        return false;
    }

    virtual void close () { systemWindow = nullptr; }
    virtual bool isOpen () { return systemWindow != nullptr; }
    virtual void idle () {}

    // Keys answer true when the editor took them.
    virtual bool onKeyDown (VstKeyCode& /*keyCode*/) { return false; }
    virtual bool onKeyUp (VstKeyCode& /*keyCode*/) { return false; }

    // Mouse wheel, positive away from the user; true when the editor took it.
    virtual bool onWheel (float /*distance*/) { return false; }

    // 0 circular, 1 circular relative, 2 linear; true when the editor follows it.
    virtual bool setKnobMode (VstInt32 /*mode*/) { return false; }

protected:
    AudioEffect* effect;
    void* systemWindow = nullptr;
};
