#include "platform/FloatingWindow.h"

#include <filesystem>
#include <utility>

#include "platform/windows/OwnModule.h"

namespace platform
{
namespace
{
constexpr wchar_t className[] = L"BrimvalePanel";
constexpr DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;

SIZE outerSize (int width, int height)
{
    RECT frame = { 0, 0, width, height };
    AdjustWindowRect (&frame, style, FALSE);
    return { frame.right - frame.left, frame.bottom - frame.top };
}

// The host's message loop serves it.
class Win32FloatingWindow final : public FloatingWindow
{
public:
    explicit Win32FloatingWindow (HWND made) : window (made)
    {
        SetWindowLongPtrW (window, GWLP_USERDATA, reinterpret_cast<LONG_PTR> (this));
    }
    ~Win32FloatingWindow () override
    {
        SetWindowLongPtrW (window, GWLP_USERDATA, 0);
        DestroyWindow (window);
        UnregisterClassW (className, ownModule ()); // fails while another is open, and goes with the last one
    }

    void* handle () const override { return window; }

    void resize (int width, int height) override
    {
        const SIZE size = outerSize (width, height);
        SetWindowPos (window, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void setTitle (const std::string& title) override
    {
        const std::u8string text (title.begin (), title.end ());
        SetWindowTextW (window, std::filesystem::path (text).c_str ());
    }

    void stayAbove (void* other) override
    {
        SetWindowLongPtrW (window, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR> (other));
    }

    void show () override { ShowWindow (window, SW_SHOW); }
    void hide () override { ShowWindow (window, SW_HIDE); }
    bool closeAsked () override { return std::exchange (closing, false); }

    static LRESULT CALLBACK procedure (HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* self = reinterpret_cast<Win32FloatingWindow*> (GetWindowLongPtrW (hwnd, GWLP_USERDATA));
        if (self == nullptr || message != WM_CLOSE)
            return DefWindowProcW (hwnd, message, wParam, lParam);
        self->closing = true;
        return 0;
    }

private:
    HWND window;
    bool closing = false;
};
}

std::unique_ptr<FloatingWindow> FloatingWindow::make (int width, int height)
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Win32FloatingWindow::procedure;
    windowClass.hInstance = ownModule ();
    windowClass.hCursor = LoadCursor (nullptr, IDC_ARROW);
    windowClass.lpszClassName = className;
    RegisterClassW (&windowClass); // fails the second time, when it is there already
    const SIZE size = outerSize (width, height);
    const HWND window = CreateWindowExW (0, className, L"", style, CW_USEDEFAULT, CW_USEDEFAULT, size.cx,
                                         size.cy, nullptr, nullptr, windowClass.hInstance, nullptr);
    return window != nullptr ? std::make_unique<Win32FloatingWindow> (window) : nullptr;
}
}
