#include "platform/PlayerWindow.h"

#include <windows.h>

#include <cmath>
#include <map>

#include <ole2.h>
#include <shellapi.h>

namespace platform
{
namespace
{
constexpr wchar_t className[] = L"BrimvalePlayer";
constexpr DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;

// The scan code, as windowing messages hold it.
int keyOf (LPARAM lParam)
{
    constexpr int extended = 0xE000;
    return static_cast<int> ((lParam >> 16) & 0xFF) + ((lParam & (1 << 24)) != 0 ? extended : 0);
}

bool isHeld (int virtualKey)
{
    return (GetKeyState (virtualKey) & 0x8000) != 0;
}

HICON makeIcon (std::span<const std::uint32_t> pixels)
{
    const int side = static_cast<int> (std::lround (std::sqrt (pixels.size ())));
    const HBITMAP colours = CreateBitmap (side, side, 1, 32, pixels.data ());
    const HBITMAP mask = CreateBitmap (side, side, 1, 1, nullptr);
    ICONINFO info = {};
    info.fIcon = TRUE;
    info.hbmMask = mask;
    info.hbmColor = colours;
    const HICON icon = CreateIconIndirect (&info);
    DeleteObject (colours);
    DeleteObject (mask);
    return icon;
}

// Keys and files come as messages to whichever window inside has the focus or lies under the mouse, so they
// are looked at before any window gets them.
class Win32PlayerWindow final : public PlayerWindow
{
public:
    Win32PlayerWindow (HWND newWindow, std::span<const std::uint32_t> pixels, PlayerWindowListener& owner)
        : window (newWindow),
          icon (makeIcon (pixels)),
          listener (owner)
    {
        SetWindowLongPtrW (window, GWLP_USERDATA, reinterpret_cast<LONG_PTR> (this));
        SendMessageW (window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM> (icon));
        SendMessageW (window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM> (icon));
    }

    ~Win32PlayerWindow () override
    {
        SetWindowLongPtrW (window, GWLP_USERDATA, 0);
        DestroyWindow (window);
        DestroyIcon (icon);
    }

    void* handle () const override { return window; }

    void resize (int width, int height) override
    {
        RECT frame = { 0, 0, width, height };
        AdjustWindowRect (&frame, style, FALSE);
        SetWindowPos (window, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                      SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void setTitle (const std::string& title) override
    {
        const std::u8string text (title.begin (), title.end ());
        SetWindowTextW (window, std::filesystem::path (text).c_str ());
    }

    // The toolkit has made the panel's window a place for what it can take itself.
    void acceptFiles () override
    {
        DragAcceptFiles (window, TRUE);
        const auto accept = [] (HWND inside, LPARAM) -> BOOL
        {
            RevokeDragDrop (inside);
            DragAcceptFiles (inside, TRUE);
            return TRUE;
        };
        EnumChildWindows (window, accept, 0);
    }

    void handleEvents (int milliseconds) override
    {
        MsgWaitForMultipleObjectsEx (0, nullptr, static_cast<DWORD> (milliseconds), QS_ALLINPUT,
                                     MWMO_INPUTAVAILABLE);
        MSG message;
        while (PeekMessageW (&message, nullptr, 0, 0, PM_REMOVE) != 0)
        {
            if (handle (message))
                continue;
            TranslateMessage (&message);
            DispatchMessageW (&message);
        }
        // While a menu is open it takes the messages itself, and a key's release may be among them.
        for (auto key = taken.begin (); key != taken.end ();)
        {
            const int number = key->first;
            const bool isDown = isHeld (key->second);
            key = isDown ? std::next (key) : taken.erase (key);
            if (!isDown)
                listener.keyReleased (number);
        }
    }

    static LRESULT CALLBACK procedure (HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
    {
        auto* self = reinterpret_cast<Win32PlayerWindow*> (GetWindowLongPtrW (hwnd, GWLP_USERDATA));
        if (self != nullptr && self->handle (message, wParam))
            return 0;
        return DefWindowProcW (hwnd, message, wParam, lParam);
    }

private:
    // True: nobody else gets it.
    bool handle (const MSG& message)
    {
        constexpr LPARAM repeats = 1 << 30;
        if (message.message == WM_DROPFILES)
        {
            takeDrop (reinterpret_cast<HDROP> (message.wParam));
            return true;
        }
        const int key = keyOf (message.lParam);
        if (message.message == WM_KEYUP && taken.erase (key) > 0)
        {
            listener.keyReleased (key);
            return true;
        }
        if (message.message != WM_KEYDOWN)
            return false;
        if (taken.contains (key))
            return true;
        if ((message.lParam & repeats) != 0 || isHeld (VK_CONTROL) || isHeld (VK_LWIN) || isHeld (VK_RWIN) ||
            !listener.keyPressed (key))
            return false;
        taken[key] = static_cast<int> (message.wParam);
        return true;
    }

    bool handle (UINT message, WPARAM wParam)
    {
        switch (message)
        {
        case WM_CLOSE:
            listener.closeRequested ();
            return true;
        case WM_ACTIVATE:
            if (LOWORD (wParam) != WA_INACTIVE)
                return false;
            taken.clear ();
            listener.focusLost ();
            return false;
        case WM_SETFOCUS: // the wheel goes where the focus is
            SetFocus (GetWindow (window, GW_CHILD));
            return true;
        default:
            return false;
        }
    }

    void takeDrop (HDROP drop)
    {
        constexpr UINT all = 0xFFFFFFFF;
        std::vector<std::filesystem::path> files;
        const UINT count = DragQueryFileW (drop, all, nullptr, 0);
        for (UINT n = 0; n < count; ++n)
        {
            std::wstring name (DragQueryFileW (drop, n, nullptr, 0) + 1, L'\0');
            name.resize (DragQueryFileW (drop, n, name.data (), static_cast<UINT> (name.size ())));
            files.emplace_back (name);
        }
        DragFinish (drop);
        if (!files.empty ())
            listener.filesDropped (files);
    }

    HWND window;
    HICON icon;
    std::map<int, int> taken; // keys that are down, and what the system calls them
    PlayerWindowListener& listener;
};
}

std::unique_ptr<PlayerWindow> PlayerWindow::make (int width, int height, std::span<const std::uint32_t> icon,
                                                  PlayerWindowListener& listener)
{
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Win32PlayerWindow::procedure;
    windowClass.hInstance = GetModuleHandleW (nullptr);
    windowClass.hCursor = LoadCursor (nullptr, IDC_ARROW);
    windowClass.lpszClassName = className;
    RegisterClassW (&windowClass); // fails the second time, when it is there already
    RECT frame = { 0, 0, width, height };
    AdjustWindowRect (&frame, style, FALSE);
    const HWND window =
        CreateWindowExW (0, className, L"", style, CW_USEDEFAULT, CW_USEDEFAULT, frame.right - frame.left,
                         frame.bottom - frame.top, nullptr, nullptr, windowClass.hInstance, nullptr);
    if (window == nullptr)
        return nullptr;
    auto made = std::make_unique<Win32PlayerWindow> (window, icon, listener);
    ShowWindow (window, SW_SHOW);
    return made;
}
}
