#include "platform/PlayerWindow.h"

#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <set>
#include <string_view>

#include "platform/linux/XcbWindow.h"

namespace platform
{
namespace
{
constexpr std::uint8_t dropVersion = 5; // of the protocol for dragging

template <typename Type>
struct Release
{
    void operator() (Type* reply) const { std::free (reply); }
};
template <typename Type>
using Reply = std::unique_ptr<Type, Release<Type>>;

struct KeyCode
{
    int code; // as the kernel numbers keys
    Key key;
};
constexpr KeyCode keysBeside[] = { { 102, keyHome },  { 103, keyUp },   { 104, keyPageUp },  { 105, keyLeft },
                                   { 106, keyRight }, { 108, keyDown }, { 109, keyPageDown } };

// The kernel numbers the keys of the main block as the keyboard does, and X servers add 8.
int keyOf (xcb_keycode_t detail)
{
    constexpr int offset = 8;
    constexpr int lastOfMainBlock = 0x58;
    const int code = detail - offset;
    const auto beside = std::ranges::find (keysBeside, code, &KeyCode::code);
    if (beside != std::end (keysBeside))
        return beside->key;
    return code > 0 && code <= lastOfMainBlock ? code : 0;
}

// "file:///a%20song.mid" as a path; nothing for anything else than a file of this machine.
std::optional<std::filesystem::path> pathOfUri (std::string_view uri)
{
    constexpr std::string_view scheme = "file://";
    if (!uri.starts_with (scheme))
        return std::nullopt;
    uri.remove_prefix (scheme.size ());
    uri.remove_prefix (std::min (uri.find ('/'), uri.size ())); // the machine's name
    std::string path;
    for (std::size_t n = 0; n < uri.size (); ++n)
    {
        unsigned character = 0;
        const char* digits = uri.data () + n + 1;
        if (uri[n] == '%' && n + 2 < uri.size () &&
            std::from_chars (digits, digits + 2, character, 16).ptr == digits + 2)
        {
            path += static_cast<char> (character);
            n += 2;
        }
        else
        {
            path += uri[n];
        }
    }
    return path.empty () ? std::nullopt : std::optional<std::filesystem::path> (path);
}

std::vector<std::filesystem::path> pathsOf (std::string_view list)
{
    std::vector<std::filesystem::path> paths;
    while (!list.empty ())
    {
        const std::size_t length = std::min (list.find_first_of ("\r\n"), list.size ());
        if (const auto path = pathOfUri (list.substr (0, length)))
            paths.push_back (*path);
        list.remove_prefix (std::min (length + 1, list.size ()));
    }
    return paths;
}

// Keys go to the window with the focus, but where the mouse is inside a window within it, to that one: a
// panel would get those that are pressed while the mouse is on it. So the focus is given to a window beside
// it that nobody sees, and what is not taken there is passed on to the panel.
class XcbPlayerWindow final : public PlayerWindow
{
public:
    XcbPlayerWindow (xcb_connection_t* display, int width, int height, std::span<const std::uint32_t> icon,
                     PlayerWindowListener& owner)
        : connection (display),
          screen (xcb_setup_roots_iterator (xcb_get_setup (connection)).data),
          window (xcb_generate_id (connection)),
          asXcb (connection, window),
          keyWindow (xcb_generate_id (connection)),
          listener (owner)
    {
        const std::uint32_t values[] = { screen->black_pixel, XCB_EVENT_MASK_FOCUS_CHANGE |
                                                                  XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                                                  XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY };
        xcb_create_window (connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
                           static_cast<std::uint16_t> (width), static_cast<std::uint16_t> (height), 0,
                           XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                           XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        const std::uint32_t keyMask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
        xcb_create_window (connection, 0, keyWindow, window, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                           XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &keyMask);
        xcb_map_window (connection, keyWindow);
        describe (icon);
        asXcb.fixSize (width, height);
        xcb_map_window (connection, window);
        asXcb.synchronize ();
    }

    ~XcbPlayerWindow () override { xcb_disconnect (connection); }

    void* handle () const override { return asXcb.handle (); }

    void resize (int width, int height) override
    {
        asXcb.fixSize (width, height);
        asXcb.resize (width, height);
    }

    void setTitle (const std::string& title) override
    {
        asXcb.setTitle (title);
        xcb_flush (connection);
    }

    void acceptFiles () override
    {
        const std::uint32_t version = dropVersion;
        asXcb.setNumbers ("XdndAware", "ATOM", { &version, 1 });
        xcb_flush (connection);
    }

    void handleEvents (int milliseconds) override
    {
        auto* event = xcb_poll_for_event (connection);
        if (event == nullptr)
        {
            pollfd waiting = { xcb_get_file_descriptor (connection), POLLIN, 0 };
            poll (&waiting, 1, milliseconds);
            event = xcb_poll_for_event (connection);
        }
        for (; event != nullptr; event = xcb_poll_for_event (connection))
        {
            handle (*event);
            std::free (event);
        }
        xcb_flush (connection);
        if (xcb_connection_has_error (connection) != 0) // the display is gone
            listener.closeRequested ();
    }

private:
    void handle (xcb_generic_event_t& event)
    {
        switch (event.response_type & ~0x80)
        {
        case XCB_CREATE_NOTIFY:
            panelOpened (reinterpret_cast<xcb_create_notify_event_t&> (event).window);
            break;
        case XCB_DESTROY_NOTIFY:
            closed (reinterpret_cast<xcb_destroy_notify_event_t&> (event).window);
            break;
        case XCB_FOCUS_IN:
            takeKeys (reinterpret_cast<xcb_focus_in_event_t&> (event));
            break;
        case XCB_FOCUS_OUT:
            loseKeys (reinterpret_cast<xcb_focus_out_event_t&> (event));
            break;
        case XCB_KEY_PRESS:
            pressKey (reinterpret_cast<xcb_key_press_event_t&> (event));
            break;
        case XCB_KEY_RELEASE:
            releaseKey (reinterpret_cast<xcb_key_release_event_t&> (event));
            break;
        case XCB_CLIENT_MESSAGE:
            hear (reinterpret_cast<xcb_client_message_event_t&> (event));
            break;
        case XCB_SELECTION_NOTIFY:
            takeDrop (reinterpret_cast<xcb_selection_notify_event_t&> (event));
            break;
        default:
            break;
        }
    }

    // --- What window managers want to know

    void describe (std::span<const std::uint32_t> icon)
    {
        const std::uint32_t protocols[] = { asXcb.atom ("WM_DELETE_WINDOW"), asXcb.atom ("_NET_WM_PING") };
        asXcb.setNumbers ("WM_PROTOCOLS", "ATOM", protocols);
        asXcb.setClass ();
        const auto process = static_cast<std::uint32_t> (getpid ());
        asXcb.setNumbers ("_NET_WM_PID", "CARDINAL", { &process, 1 });
        const std::uint32_t hints[9] = { 1, 1 }; // first bit: it tells that it wants the keys; it does
        asXcb.setNumbers ("WM_HINTS", "WM_HINTS", hints);

        const auto side = static_cast<std::uint32_t> (std::lround (std::sqrt (icon.size ())));
        std::vector<std::uint32_t> words = { side, side };
        words.insert (words.end (), icon.begin (), icon.end ());
        asXcb.setNumbers ("_NET_WM_ICON", "CARDINAL", words);
    }

    // --- Keys

    void panelOpened (xcb_window_t child)
    {
        if (child == keyWindow)
            return;
        panelWindow = child;
        const std::uint32_t mask = XCB_EVENT_MASK_FOCUS_CHANGE;
        xcb_change_window_attributes (connection, panelWindow, XCB_CW_EVENT_MASK, &mask);
    }

    void closed (xcb_window_t gone)
    {
        if (gone == window) // by force
            listener.closeRequested ();
        if (gone == panelWindow)
            panelWindow = XCB_NONE;
    }

    // From the window manager, or from the panel that took the focus at a click.
    void takeKeys (const xcb_focus_in_event_t& event)
    {
        const bool isFollowingMouse =
            event.detail == XCB_NOTIFY_DETAIL_POINTER || event.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT;
        if (!isFollowingMouse)
            xcb_set_input_focus (connection, XCB_INPUT_FOCUS_PARENT, keyWindow, XCB_CURRENT_TIME);
    }

    void loseKeys (const xcb_focus_out_event_t& event)
    {
        const bool isStillOurs = event.event != window || event.detail == XCB_NOTIFY_DETAIL_INFERIOR ||
                                 event.detail == XCB_NOTIFY_DETAIL_POINTER ||
                                 event.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT;
        if (isStillOurs)
            return;
        taken.clear ();
        listener.focusLost ();
    }

    void pressKey (xcb_key_press_event_t& event)
    {
        constexpr std::uint16_t commands = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
        const int key = keyOf (event.detail);
        if (taken.contains (event.detail))
            return;
        if (key != 0 && (event.state & commands) == 0 && listener.keyPressed (key))
            taken.insert (event.detail);
        else
            passOn (event, XCB_KEY_PRESS);
    }

    // A key that repeats comes as released and pressed again all the time, and yet is down.
    void releaseKey (xcb_key_release_event_t& event)
    {
        if (!taken.contains (event.detail))
        {
            passOn (event, XCB_KEY_RELEASE);
            return;
        }
        const Reply<xcb_query_keymap_reply_t> down (
            xcb_query_keymap_reply (connection, xcb_query_keymap (connection), nullptr));
        if (down != nullptr && (down->keys[event.detail / 8] >> (event.detail % 8) & 1) != 0)
            return;
        taken.erase (event.detail);
        listener.keyReleased (keyOf (event.detail));
    }

    void passOn (xcb_key_press_event_t event, std::uint8_t type)
    {
        if (panelWindow == XCB_NONE)
            return;
        event.response_type = type;
        event.event = panelWindow;
        event.child = XCB_NONE;
        // To whoever has made the panel's window.
        xcb_send_event (connection, 0, panelWindow, XCB_EVENT_MASK_NO_EVENT,
                        reinterpret_cast<const char*> (&event));
    }

    // --- Messages of window managers and of those who drag files here

    void hear (xcb_client_message_event_t event)
    {
        const std::uint32_t* data = event.data.data32;
        if (event.type == asXcb.atom ("WM_PROTOCOLS") && data[0] == asXcb.atom ("WM_DELETE_WINDOW"))
        {
            listener.closeRequested ();
        }
        else if (event.type == asXcb.atom ("WM_PROTOCOLS") && data[0] == asXcb.atom ("_NET_WM_PING"))
        {
            event.window = screen->root;
            xcb_send_event (connection, 0, screen->root,
                            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                            reinterpret_cast<const char*> (&event));
        }
        else if (event.type == asXcb.atom ("XdndPosition"))
        {
            // Anything is welcome until it is looked at.
            answerDrag (data[0], "XdndStatus", 1, 0, 0, asXcb.atom ("XdndActionCopy"));
        }
        else if (event.type == asXcb.atom ("XdndDrop"))
        {
            dragSource = data[0];
            xcb_convert_selection (connection, window, asXcb.atom ("XdndSelection"),
                                   asXcb.atom ("text/uri-list"), asXcb.atom ("BRIMVALE_DROP"), data[2]);
        }
    }

    void answerDrag (xcb_window_t source, std::string_view type, std::uint32_t second, std::uint32_t third,
                     std::uint32_t fourth, std::uint32_t fifth)
    {
        xcb_client_message_event_t answer = {};
        answer.response_type = XCB_CLIENT_MESSAGE;
        answer.format = 32;
        answer.window = source;
        answer.type = asXcb.atom (type);
        const std::array<std::uint32_t, 5> words = { window, second, third, fourth, fifth };
        std::ranges::copy (words, answer.data.data32);
        xcb_send_event (connection, 0, source, XCB_EVENT_MASK_NO_EVENT,
                        reinterpret_cast<const char*> (&answer));
    }

    void takeDrop (const xcb_selection_notify_event_t& event)
    {
        constexpr std::uint32_t mostWords = 1 << 16;
        std::vector<std::filesystem::path> files;
        if (event.property != XCB_NONE)
        {
            const Reply<xcb_get_property_reply_t> list (xcb_get_property_reply (
                connection,
                xcb_get_property (connection, 1, window, event.property, XCB_ATOM_ANY, 0, mostWords),
                nullptr));
            if (list != nullptr)
                files = pathsOf ({ static_cast<const char*> (xcb_get_property_value (list.get ())),
                                   static_cast<std::size_t> (xcb_get_property_value_length (list.get ())) });
        }
        const bool isTaken = !files.empty ();
        answerDrag (dragSource, "XdndFinished", isTaken ? 1 : 0,
                    isTaken ? asXcb.atom ("XdndActionCopy") : xcb_atom_t{}, 0, 0);
        if (isTaken)
            listener.filesDropped (files);
    }

    xcb_connection_t* connection;
    const xcb_screen_t* screen;
    xcb_window_t window;
    XcbWindow asXcb;
    xcb_window_t keyWindow;
    xcb_window_t panelWindow = XCB_NONE;
    xcb_window_t dragSource = XCB_NONE;
    std::set<xcb_keycode_t> taken; // keys that are down
    PlayerWindowListener& listener;
};
}

std::unique_ptr<PlayerWindow> PlayerWindow::make (int width, int height, std::span<const std::uint32_t> icon,
                                                  PlayerWindowListener& listener)
{
    xcb_connection_t* connection = xcb_connect (nullptr, nullptr);
    if (xcb_connection_has_error (connection) == 0)
        return std::make_unique<XcbPlayerWindow> (connection, width, height, icon, listener);
    xcb_disconnect (connection);
    return nullptr;
}
}
