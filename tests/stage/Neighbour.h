#pragma once

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

// Another program at the display that DISPLAY names: what it sees of windows and tells them. Windows come and
// go meanwhile, and what is asked of one that has gone is empty.
class Neighbour
{
public:
    template <typename Type>
    using Held = std::unique_ptr<Type, decltype (&std::free)>;

    Neighbour () : connection (xcb_connect (nullptr, nullptr)) {}
    ~Neighbour () { xcb_disconnect (connection); }
    Neighbour (const Neighbour&) = delete;
    Neighbour& operator= (const Neighbour&) = delete;

    xcb_atom_t atom (const std::string& name)
    {
        const auto length = static_cast<std::uint16_t> (name.size ());
        const auto reply =
            ask (&xcb_intern_atom_reply, xcb_intern_atom (connection, 0, length, name.c_str ()));
        return reply != nullptr ? reply->atom : static_cast<xcb_atom_t> (XCB_ATOM_NONE);
    }
    // A window, by its program's class and the end of its title; 0: there is none.
    xcb_window_t find (const std::string& title = "Brimvale",
                       const std::string& windowClass = std::string ("brimvale\0Brimvale\0", 18))
    {
        const auto tree = ask (&xcb_query_tree_reply, xcb_query_tree (connection, root ()));
        const std::span windows (xcb_query_tree_children (tree.get ()), tree->children_len);
        for (const xcb_window_t window : windows)
            if (property (window, "WM_CLASS") == windowClass &&
                property (window, "_NET_WM_NAME").ends_with (title))
                return window;
        return 0;
    }
    std::string property (xcb_window_t window, const std::string& name)
    {
        const auto reply = ask (&xcb_get_property_reply, xcb_get_property (connection, 0, window, atom (name),
                                                                           XCB_ATOM_ANY, 0, 1 << 16));
        if (reply == nullptr)
            return {};
        return { static_cast<const char*> (xcb_get_property_value (reply.get ())),
                 static_cast<std::size_t> (xcb_get_property_value_length (reply.get ())) };
    }
    xcb_get_geometry_reply_t geometry (xcb_window_t window)
    {
        const auto reply = ask (&xcb_get_geometry_reply, xcb_get_geometry (connection, window));
        return reply != nullptr ? *reply : xcb_get_geometry_reply_t ();
    }
    // As a window manager does where somebody presses the button of the title bar.
    void close (xcb_window_t window)
    {
        tell (window, "WM_PROTOCOLS", { atom ("WM_DELETE_WINDOW") });
        geometry (window); // answered after the message was passed on, which a disconnection might overtake
    }
    void tell (xcb_window_t window, const std::string& type, const std::array<std::uint32_t, 5>& words)
    {
        xcb_client_message_event_t message = {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = atom (type);
        std::ranges::copy (words, message.data.data32);
        xcb_send_event (connection, 0, window, 0, reinterpret_cast<const char*> (&message));
        xcb_flush (connection);
    }
    xcb_window_t makeWindow ()
    {
        const xcb_window_t window = xcb_generate_id (connection);
        xcb_create_window (connection, XCB_COPY_FROM_PARENT, window, root (), 700, 500, 50, 50, 0,
                           XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window (connection, window);
        xcb_flush (connection);
        return window;
    }
    void offer (xcb_window_t from, const std::string& newList)
    {
        list = newList;
        xcb_set_selection_owner (connection, from, atom ("XdndSelection"), XCB_CURRENT_TIME);
    }
    // Hands over the list to who asks for it, and takes note of the rest.
    void serve ()
    {
        while (const Held<xcb_generic_event_t> event{ xcb_poll_for_event (connection), &std::free })
        {
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE)
                heard.push_back (reinterpret_cast<xcb_client_message_event_t&> (*event));
            if ((event->response_type & 0x7F) != XCB_SELECTION_REQUEST)
                continue;
            const auto& request = reinterpret_cast<xcb_selection_request_event_t&> (*event);
            xcb_change_property (connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                 request.target, 8, static_cast<std::uint32_t> (list.size ()), list.data ());
            xcb_selection_notify_event_t answer = {};
            answer.response_type = XCB_SELECTION_NOTIFY;
            answer.requestor = request.requestor;
            answer.selection = request.selection;
            answer.target = request.target;
            answer.property = request.property;
            xcb_send_event (connection, 0, request.requestor, 0, reinterpret_cast<const char*> (&answer));
            xcb_flush (connection);
        }
    }
    bool hasHeard (const std::string& type, std::uint32_t second)
    {
        const xcb_atom_t wanted = atom (type);
        return std::ranges::any_of (heard, [&] (const auto& message)
                                    { return message.type == wanted && message.data.data32[1] == second; });
    }

protected:
    // Takes what the display answers to a question; null when it cannot.
    template <typename Cookie, typename Reply>
    Held<Reply> ask (Reply* (*reply) (xcb_connection_t*, Cookie, xcb_generic_error_t**), Cookie cookie)
    {
        return { reply (connection, cookie, nullptr), &std::free };
    }

    xcb_connection_t* connection;

private:
    xcb_window_t root () const { return xcb_setup_roots_iterator (xcb_get_setup (connection)).data->root; }

    std::string list;
    std::vector<xcb_client_message_event_t> heard;
};
