#include "EditorWindow.h"

#include <cstdlib>
#include <cstring>

namespace {

std::string displayName() {
    const char* name = std::getenv("DISPLAY");
    return name != nullptr ? name : "";
}

// ICCCM WM_NORMAL_HINTS: 18 words, of which the flags and the min and max
// sizes are used here.
constexpr std::uint32_t kMinSizeFlag = 1u << 4;
constexpr std::uint32_t kMaxSizeFlag = 1u << 5;
constexpr int kSizeHintWords = 18;

} // namespace

EditorWindow::EditorWindow() {
    int screenNumber = 0;
    connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        const std::string name = displayName();
        throw DisplayError(name.empty() ? "no X display: DISPLAY is not set"
                                        : "cannot open X display '" + name + "'");
    }
    for (auto it = xcb_setup_roots_iterator(xcb_get_setup(connection)); it.rem;
         xcb_screen_next(&it), screenNumber--)
        if (screenNumber == 0) screen = it.data;
    if (screen == nullptr) {
        xcb_disconnect(connection);
        throw DisplayError("the X display '" + displayName() + "' has no such screen");
    }
    protocolsAtom = atom("WM_PROTOCOLS");
    deleteWindowAtom = atom("WM_DELETE_WINDOW");
}

EditorWindow::~EditorWindow() {
    if (window != 0 && !xcb_connection_has_error(connection)) {
        xcb_destroy_window(connection, window);
        // A round trip, not a flush: once the process has gone, its window has
        // too. A server busy with other clients may otherwise still list it.
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
    xcb_disconnect(connection);
}

xcb_atom_t EditorWindow::atom(const char* name) {
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr);
    const xcb_atom_t result = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return result;
}

void EditorWindow::setProperty(xcb_atom_t property, xcb_atom_t type, int format,
                               std::uint32_t count, const void* data) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type,
                        static_cast<std::uint8_t>(format), count, data);
}

void EditorWindow::setFixedSize(int width, int height) {
    std::uint32_t hints[kSizeHintWords] = {};
    hints[0] = kMinSizeFlag | kMaxSizeFlag;
    hints[5] = hints[7] = static_cast<std::uint32_t>(width);
    hints[6] = hints[8] = static_cast<std::uint32_t>(height);
    setProperty(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, kSizeHintWords, hints);
}

void EditorWindow::show(int width, int height, const std::string& title) {
    window = xcb_generate_id(connection);
    const std::uint32_t values[] = {screen->black_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    const xcb_void_cookie_t created = xcb_create_window_checked(
        connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
        static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
        values);
    if (xcb_generic_error_t* error = xcb_request_check(connection, created)) {
        std::free(error);
        window = 0;
        throw DisplayError("cannot create a window on the X display");
    }

    setProperty(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(title.size()),
                title.data());
    setProperty(atom("_NET_WM_NAME"), atom("UTF8_STRING"), 8,
                static_cast<std::uint32_t>(title.size()), title.data());
    static const char kClass[] = "zeledit\0Zeledit"; // instance and class, each terminated
    setProperty(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, sizeof kClass, kClass);
    // Ask to be told of a close request instead of being killed by the
    // window manager.
    setProperty(protocolsAtom, XCB_ATOM_ATOM, 32, 1, &deleteWindowAtom);
    setFixedSize(width, height);
    xcb_map_window(connection, window);

    // A round trip: the plug-in's connection looks the window up next.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    open = !xcb_connection_has_error(connection);
}

void* EditorWindow::parentHandle() const {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(window));
}

bool EditorWindow::pumpEvents() {
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
        switch (event->response_type & 0x7f) {
        case XCB_CLIENT_MESSAGE: {
            const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event);
            if (message->type == protocolsAtom && message->format == 32 &&
                message->data.data32[0] == deleteWindowAtom)
                open = false;
            break;
        }
        case XCB_DESTROY_NOTIFY:
            if (reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == window) {
                open = false;
                window = 0;
            }
            break;
        default:
            break;
        }
        std::free(event);
    }
    if (xcb_connection_has_error(connection)) open = false;
    return open;
}
