#include "platform/HostWindow.h"

#include <windows.h>
// After windows.h, whose types it uses.
#include <psapi.h>

namespace platform
{
namespace
{
constexpr wchar_t className[] = L"BrimvaleEditorHost";

class Win32HostWindow final : public HostWindow
{
public:
    explicit Win32HostWindow (HWND window) : hwnd (window) {}
    ~Win32HostWindow () override { DestroyWindow (hwnd); }

    void* handle () const override { return hwnd; }

    void resize (int width, int height) override
    {
        SetWindowPos (hwnd, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void redraw () override
    {
        RedrawWindow (hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    }

    void handleEvents () override
    {
        MSG message;
        while (PeekMessageW (&message, nullptr, 0, 0, PM_REMOVE) != 0)
        {
            TranslateMessage (&message);
            DispatchMessageW (&message);
        }
    }

private:
    HWND hwnd;
};
}

std::unique_ptr<HostWindow> HostWindow::make (int width, int height)
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW (nullptr);
    windowClass.lpszClassName = className;
    RegisterClassW (&windowClass); // fails the second time, when it is there already
    const DWORD style = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN;
    const HWND hwnd = CreateWindowExW (0, className, L"Brimvale", style, 0, 0, width, height, nullptr,
                                       nullptr, windowClass.hInstance, nullptr);
    return hwnd != nullptr ? std::make_unique<Win32HostWindow> (hwnd) : nullptr;
}

long residentKilobytes ()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    if (GetProcessMemoryInfo (GetCurrentProcess (), &counters, sizeof counters) == 0)
        return 0;
    return static_cast<long> (counters.WorkingSetSize / 1024);
}
}
