#include "platform/linux/Dialog.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <numbers>
#include <unistd.h>

#include <cairo/cairo-xcb.h>

#include "platform/linux/XcbWindow.h"

namespace
{
// Sizes in pixels.
constexpr double fontSize = 14.0;
constexpr double margin = 24.0;
constexpr double markRadius = 16.0;
constexpr double textLeft = margin + 2.0 * markRadius + 16.0;
constexpr double messageHeight = 80.0; // upper part: mark and text
constexpr double barHeight = 56.0;     // lower part: buttons
constexpr int height = static_cast<int> (messageHeight + barHeight);
constexpr int leastWidth = 320;
constexpr double buttonWidth = 92.0;
constexpr double buttonHeight = 30.0;
constexpr double buttonGap = 10.0;
constexpr double buttonTop = messageHeight + (barHeight - buttonHeight) / 2.0;
constexpr double buttonEdge = 14.0; // from the last button to the window's right edge
constexpr double cornerRadius = 4.0;

struct Colour
{
    double red;
    double green;
    double blue;
};
constexpr Colour paper = { 0.98, 0.98, 0.98 };
constexpr Colour bar = { 0.92, 0.92, 0.93 };
constexpr Colour line = { 0.82, 0.82, 0.84 };
constexpr Colour ink = { 0.13, 0.14, 0.16 };
constexpr Colour accent = { 0.17, 0.40, 0.69 };
constexpr Colour accentPressed = { 0.12, 0.30, 0.53 };
constexpr Colour buttonFace = { 1.0, 1.0, 1.0 };
constexpr Colour buttonPressed = { 0.85, 0.86, 0.88 };
constexpr Colour white = { 1.0, 1.0, 1.0 };

enum KeySymbol : xcb_keysym_t
{
    keyTab = 0xFF09,
    keyReturn = 0xFF0D,
    keyEscape = 0xFF1B,
    keyLeft = 0xFF51,
    keyRight = 0xFF53,
    keyEnter = 0xFF8D, // of the number pad
    keySpace = 0x0020
};

void setColour (cairo_t* drawing, Colour colour)
{
    cairo_set_source_rgb (drawing, colour.red, colour.green, colour.blue);
}

void setFont (cairo_t* drawing, cairo_font_weight_t weight)
{
    cairo_select_font_face (drawing, "sans-serif", CAIRO_FONT_SLANT_NORMAL, weight);
    cairo_set_font_size (drawing, fontSize);
}

double widthOf (cairo_t* drawing, const std::string& text)
{
    cairo_text_extents_t extents;
    cairo_text_extents (drawing, text.c_str (), &extents);
    return extents.x_advance;
}

// One line, its letters centred on height y.
void drawText (cairo_t* drawing, const std::string& text, double x, double y)
{
    cairo_font_extents_t font;
    cairo_font_extents (drawing, &font);
    cairo_move_to (drawing, std::round (x), std::round (y + (font.ascent - font.descent) / 2.0));
    cairo_show_text (drawing, text.c_str ());
}

void roundedRectangle (cairo_t* drawing, double x, double y, double w, double h)
{
    constexpr double quarter = std::numbers::pi / 2.0;
    constexpr double r = cornerRadius;
    cairo_new_sub_path (drawing);
    cairo_arc (drawing, x + w - r, y + r, r, -quarter, 0.0);
    cairo_arc (drawing, x + w - r, y + h - r, r, 0.0, quarter);
    cairo_arc (drawing, x + r, y + h - r, r, quarter, 2.0 * quarter);
    cairo_arc (drawing, x + r, y + r, r, 2.0 * quarter, 3.0 * quarter);
    cairo_close_path (drawing);
}

xcb_visualtype_t* visualOf (const xcb_screen_t* screen)
{
    for (auto depth = xcb_screen_allowed_depths_iterator (screen); depth.rem > 0; xcb_depth_next (&depth))
    {
        for (auto visual = xcb_depth_visuals_iterator (depth.data); visual.rem > 0;
             xcb_visualtype_next (&visual))
        {
            if (visual.data->visual_id == screen->root_visual)
                return visual.data;
        }
    }
    return nullptr;
}
}

namespace platform
{
Dialog::Dialog (std::string message, const std::string& title, const std::vector<std::string>& labels)
    : text (std::move (message))
{
    int screenNumber = 0;
    connection = xcb_connect (nullptr, &screenNumber);
    if (!isConnected ())
        return;
    auto screens = xcb_setup_roots_iterator (xcb_get_setup (connection));
    for (int n = 0; n < screenNumber && screens.rem > 1; ++n)
        xcb_screen_next (&screens);
    screen = screens.data;
    keySymbols = xcb_key_symbols_alloc (connection);

    layOut (labels);
    createWindow (title);
    createSurface ();
}

Dialog::~Dialog ()
{
    if (surface != nullptr)
    {
        // cairo remembers connections by their address, which the next one may get again.
        cairo_device_t* device = cairo_device_reference (cairo_surface_get_device (surface));
        cairo_surface_destroy (surface);
        cairo_device_finish (device);
        cairo_device_destroy (device);
    }
    if (keySymbols != nullptr)
        xcb_key_symbols_free (keySymbols);
    xcb_disconnect (connection);
}

// The text sets the width; the buttons stand at the right, in their order.
void Dialog::layOut (const std::vector<std::string>& labels)
{
    cairo_surface_t* nowhere = cairo_image_surface_create (CAIRO_FORMAT_RGB24, 1, 1);
    cairo_t* drawing = cairo_create (nowhere);
    setFont (drawing, CAIRO_FONT_WEIGHT_NORMAL);
    width = std::max (leastWidth, static_cast<int> (std::ceil (textLeft + widthOf (drawing, text) + margin)));
    cairo_destroy (drawing);
    cairo_surface_destroy (nowhere);

    double x =
        width - buttonEdge + buttonGap - static_cast<double> (labels.size ()) * (buttonWidth + buttonGap);
    for (const std::string& label : labels)
    {
        buttons.push_back ({ label, x });
        x += buttonWidth + buttonGap;
    }
}

void Dialog::createWindow (const std::string& title)
{
    const auto x = static_cast<std::int16_t> ((screen->width_in_pixels - width) / 2);
    const auto y = static_cast<std::int16_t> ((screen->height_in_pixels - height) / 2);
    const std::uint32_t attributes[] = { screen->white_pixel, // until the first drawing
                                         XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_KEY_PRESS |
                                             XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                             XCB_EVENT_MASK_STRUCTURE_NOTIFY };
    window = xcb_generate_id (connection);
    xcb_create_window (connection, XCB_COPY_FROM_PARENT, window, screen->root, x, y,
                       static_cast<std::uint16_t> (width), static_cast<std::uint16_t> (height), 0,
                       XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                       XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, attributes);
    describeWindow (title);
}

// What window managers and task bars are told.
void Dialog::describeWindow (const std::string& title)
{
    const XcbWindow asXcb (connection, window);
    asXcb.setTitle (title);
    asXcb.setText ("WM_ICON_NAME", "STRING", text); // shown while the window is iconified
    asXcb.setText ("_NET_WM_ICON_NAME", "UTF8_STRING", text);
    asXcb.setClass ();

    const auto setAtoms = [&] (const char* name, std::initializer_list<xcb_atom_t> atoms) {
        asXcb.setNumbers (name, "ATOM", { atoms.begin (), atoms.size () });
    };
    deleteWindow = asXcb.atom ("WM_DELETE_WINDOW");
    setAtoms ("WM_PROTOCOLS", { deleteWindow });
    setAtoms ("_NET_WM_WINDOW_TYPE", { asXcb.atom ("_NET_WM_WINDOW_TYPE_DIALOG") });
    setAtoms ("_NET_WM_STATE", { asXcb.atom ("_NET_WM_STATE_MODAL"), asXcb.atom ("_NET_WM_STATE_ABOVE") });
    const auto process = static_cast<std::uint32_t> (::getpid ());
    asXcb.setNumbers ("_NET_WM_PID", "CARDINAL", { &process, 1 });

    // The place is left to the window manager, which knows where the user's screen is.
    asXcb.fixSize (width, height);
    constexpr std::uint32_t hintFlags = 1 | 2; // input and state are set
    constexpr std::uint32_t takesInput = 1;
    constexpr std::uint32_t normalState = 1;
    const std::uint32_t hints[9] = { hintFlags, takesInput, normalState };
    asXcb.setNumbers ("WM_HINTS", "WM_HINTS", hints);
}

void Dialog::createSurface ()
{
    if (xcb_visualtype_t* visual = visualOf (screen); visual != nullptr)
        surface = cairo_xcb_surface_create (connection, window, visual, width, height);
}

int Dialog::run ()
{
    xcb_map_window (connection, window);
    bool answered = false;
    while (!answered && xcb_flush (connection) > 0)
    {
        const std::unique_ptr<xcb_generic_event_t, decltype (&std::free)> event (
            xcb_wait_for_event (connection), &std::free);
        if (event == nullptr)
            break;
        answered = handle (*event);
    }
    return answered ? answer : lastButton ();
}

bool Dialog::handle (const xcb_generic_event_t& event)
{
    constexpr std::uint8_t sentByProgram = 0x80; // set in events that another program made up
    switch (event.response_type & ~sentByProgram)
    {
    case XCB_EXPOSE:
        draw ();
        return false;
    case XCB_MAP_NOTIFY:
        xcb_set_input_focus (connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        return false;
    case XCB_MAPPING_NOTIFY:
        xcb_refresh_keyboard_mapping (keySymbols, reinterpret_cast<xcb_mapping_notify_event_t*> (
                                                      const_cast<xcb_generic_event_t*> (&event)));
        return false;
    case XCB_KEY_PRESS:
        return keyPressed (reinterpret_cast<const xcb_key_press_event_t&> (event));
    case XCB_BUTTON_PRESS:
    {
        const auto& press = reinterpret_cast<const xcb_button_press_event_t&> (event);
        pressed = press.detail == XCB_BUTTON_INDEX_1 ? buttonAt (press.event_x, press.event_y) : -1;
        focused = pressed >= 0 ? pressed : focused;
        draw ();
        return false;
    }
    case XCB_BUTTON_RELEASE:
    {
        const auto& release = reinterpret_cast<const xcb_button_release_event_t&> (event);
        answer = pressed;
        pressed = -1;
        draw ();
        return answer >= 0 && answer == buttonAt (release.event_x, release.event_y);
    }
    case XCB_CLIENT_MESSAGE:
        answer = lastButton ();
        return reinterpret_cast<const xcb_client_message_event_t&> (event).data.data32[0] == deleteWindow;
    case XCB_DESTROY_NOTIFY:
        answer = lastButton ();
        return true;
    default:
        return false;
    }
}

bool Dialog::keyPressed (const xcb_key_press_event_t& event)
{
    const int count = static_cast<int> (buttons.size ());
    const bool shifted = (event.state & XCB_MOD_MASK_SHIFT) != 0;
    switch (xcb_key_symbols_get_keysym (keySymbols, event.detail, 0))
    {
    case keyReturn:
    case keyEnter:
    case keySpace:
        answer = focused;
        return true;
    case keyEscape:
        answer = lastButton ();
        return true;
    case keyTab:
        focused = (focused + (shifted ? count - 1 : 1)) % count;
        break;
    case keyLeft:
        focused = std::max (focused - 1, 0);
        break;
    case keyRight:
        focused = std::min (focused + 1, count - 1);
        break;
    default:
        return false;
    }
    draw ();
    return false;
}

int Dialog::buttonAt (int x, int y) const
{
    for (int n = 0; n < static_cast<int> (buttons.size ()); ++n)
    {
        const double left = buttons[static_cast<std::size_t> (n)].x;
        if (x >= left && x < left + buttonWidth && y >= buttonTop && y < buttonTop + buttonHeight)
            return n;
    }
    return -1;
}

// Drawn aside and shown in one piece, so that nothing flickers.
void Dialog::draw ()
{
    if (surface == nullptr)
        return;
    cairo_t* drawing = cairo_create (surface);
    cairo_push_group_with_content (drawing, CAIRO_CONTENT_COLOR);
    setColour (drawing, paper);
    cairo_paint (drawing);
    drawMark (drawing);
    setFont (drawing, CAIRO_FONT_WEIGHT_NORMAL);
    setColour (drawing, ink);
    drawText (drawing, text, textLeft, messageHeight / 2.0);

    setColour (drawing, bar);
    cairo_rectangle (drawing, 0.0, messageHeight, width, barHeight);
    cairo_fill (drawing);
    setColour (drawing, line);
    cairo_rectangle (drawing, 0.0, messageHeight, width, 1.0);
    cairo_fill (drawing);
    for (int n = 0; n < static_cast<int> (buttons.size ()); ++n)
        drawButton (drawing, n);

    cairo_pop_group_to_source (drawing);
    cairo_paint (drawing);
    cairo_destroy (drawing);
    cairo_surface_flush (surface);
}

// A disc with a question mark where there is a choice, else with an exclamation mark.
void Dialog::drawMark (cairo_t* drawing) const
{
    const std::string mark = buttons.size () > 1 ? "?" : "!";
    const double centre = margin + markRadius;
    setColour (drawing, accent);
    cairo_arc (drawing, centre, messageHeight / 2.0, markRadius, 0.0, 2.0 * std::numbers::pi);
    cairo_fill (drawing);
    setFont (drawing, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size (drawing, 1.25 * markRadius);
    setColour (drawing, white);
    drawText (drawing, mark, centre - widthOf (drawing, mark) / 2.0, messageHeight / 2.0);
}

void Dialog::drawButton (cairo_t* drawing, int index) const
{
    const Button& button = buttons[static_cast<std::size_t> (index)];
    const bool isFocused = index == focused;
    const bool isPressed = index == pressed;
    if (isFocused)
        setColour (drawing, isPressed ? accentPressed : accent);
    else
        setColour (drawing, isPressed ? buttonPressed : buttonFace);
    roundedRectangle (drawing, button.x + 0.5, buttonTop + 0.5, buttonWidth - 1.0, buttonHeight - 1.0);
    cairo_fill_preserve (drawing);
    setColour (drawing, isFocused ? accentPressed : line);
    cairo_set_line_width (drawing, 1.0);
    cairo_stroke (drawing);

    setFont (drawing, CAIRO_FONT_WEIGHT_NORMAL);
    setColour (drawing, isFocused ? white : ink);
    drawText (drawing, button.label, button.x + (buttonWidth - widthOf (drawing, button.label)) / 2.0,
              buttonTop + buttonHeight / 2.0);
}
}
