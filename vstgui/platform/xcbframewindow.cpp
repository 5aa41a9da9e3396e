#include "xcbframewindow.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace VSTGUI {

namespace {

constexpr CCoord kMaxWindowSide = 16384;
constexpr std::uint8_t kBadWindow = 3;
constexpr std::uint8_t kBadDrawable = 9;
constexpr std::size_t kPutImageHeaderBytes = 24;

xcb_screen_t* screenOfRoot(xcb_connection_t* connection, xcb_window_t root) {
    for (auto it = xcb_setup_roots_iterator(xcb_get_setup(connection)); it.rem;
         xcb_screen_next(&it))
        if (it.data->root == root) return it.data;
    return nullptr;
}

std::uint8_t bitsPerPixel(xcb_connection_t* connection, std::uint8_t depth) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const xcb_format_t* formats = xcb_setup_pixmap_formats(setup);
    const int count = xcb_setup_pixmap_formats_length(setup);
    for (int i = 0; i < count; i++)
        if (formats[i].depth == depth) return formats[i].bits_per_pixel;
    return 0;
}

bool hostIsLittleEndian() {
    const std::uint32_t probe = 1;
    std::uint8_t first;
    std::memcpy(&first, &probe, 1);
    return first == 1;
}

} // namespace

std::unique_ptr<CFrameWindow> createFrameWindow(CFrame& frame, void* systemWindow) {
    const auto parent = static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(systemWindow));
    return XcbFrameWindow::create(frame, parent);
}

std::unique_ptr<XcbFrameWindow> XcbFrameWindow::create(CFrame& frame, xcb_window_t parent) {
    if (parent == 0) return nullptr;
    // One connection per editor: no state shared with the host or with other
    // editors in the same process.
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    std::unique_ptr<XcbFrameWindow> window(new XcbFrameWindow(frame, connection));
    if (xcb_connection_has_error(connection) || !window->init(parent)) return nullptr;
    return window;
}

XcbFrameWindow::XcbFrameWindow(CFrame& frame, xcb_connection_t* connection)
    : frame(frame), connection(connection) {}

XcbFrameWindow::~XcbFrameWindow() {
    context.reset();
    if (backBuffer) cairo_surface_destroy(backBuffer);
    if (!xcb_connection_has_error(connection)) {
        // Unchecked: if the host already destroyed our window with its
        // parent, the error just goes unread.
        if (window) xcb_destroy_window(connection, window);
        if (gc) xcb_free_gc(connection, gc);
        xcb_flush(connection);
    }
    xcb_disconnect(connection);
}

bool XcbFrameWindow::init(xcb_window_t parent) {
    xcb_generic_error_t* error = nullptr;
    xcb_get_geometry_reply_t* geometry =
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, parent), &error);
    std::free(error);
    if (!geometry) return false;
    const xcb_window_t root = geometry->root;
    std::free(geometry);

    xcb_screen_t* screen = screenOfRoot(connection, root);
    if (!screen) return false;
    depth = screen->root_depth;
    if ((depth != 24 && depth != 32) || bitsPerPixel(connection, depth) != 32) return false;
    const bool serverLittleEndian =
        xcb_get_setup(connection)->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    swapBytes = serverLittleEndian != hostIsLittleEndian();

    CRect size;
    frame.getViewSize(size);
    width = std::clamp<CCoord>(size.width(), 1, kMaxWindowSide);
    height = std::clamp<CCoord>(size.height(), 1, kMaxWindowSide);

    window = xcb_generate_id(connection);
    // No background: the server never clears exposed areas, so nothing
    // flickers between an expose and our repaint.
    const std::uint32_t values[] = {
        XCB_BACK_PIXMAP_NONE, 0,
        XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
            XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_LEAVE_WINDOW |
            XCB_EVENT_MASK_STRUCTURE_NOTIFY,
        screen->default_colormap};
    const xcb_void_cookie_t created = xcb_create_window_checked(
        connection, depth, window, parent, 0, 0, static_cast<std::uint16_t>(width),
        static_cast<std::uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
    if (xcb_generic_error_t* createError = xcb_request_check(connection, created)) {
        std::free(createError);
        window = 0;
        return false;
    }
    gc = xcb_generate_id(connection);
    xcb_create_gc(connection, gc, window, 0, nullptr);
    xcb_map_window(connection, window);

    // Asked once here, so that painting never waits for the server.
    maxRequestBytes = static_cast<std::size_t>(xcb_get_maximum_request_length(connection)) * 4;

    backBuffer = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width),
                                            static_cast<int>(height));
    if (cairo_surface_status(backBuffer) != CAIRO_STATUS_SUCCESS) return false;
    context = std::make_unique<CCairoDrawContext>(backBuffer);
    xcb_flush(connection);
    alive = !xcb_connection_has_error(connection);
    return alive;
}

void XcbFrameWindow::pumpEvents() {
    if (xcb_connection_has_error(connection)) {
        alive = false;
        return;
    }
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
        handleEvent(event);
        std::free(event);
    }
    if (xcb_connection_has_error(connection)) alive = false;
}

void XcbFrameWindow::handleEvent(const xcb_generic_event_t* event) {
    switch (event->response_type & 0x7f) {
    case 0: {
        const auto* error = reinterpret_cast<const xcb_generic_error_t*>(event);
        if (error->error_code == kBadWindow || error->error_code == kBadDrawable) alive = false;
        break;
    }
    case XCB_EXPOSE: {
        const auto* expose = reinterpret_cast<const xcb_expose_event_t*>(event);
        frame.invalidRect(
            CRect(expose->x, expose->y, expose->x + expose->width, expose->y + expose->height));
        break;
    }
    case XCB_BUTTON_PRESS: {
        const auto* press = reinterpret_cast<const xcb_button_press_event_t*>(event);
        dispatch(translator.buttonPress(press->detail, press->state, press->time, press->event_x,
                                        press->event_y));
        break;
    }
    case XCB_BUTTON_RELEASE: {
        const auto* release = reinterpret_cast<const xcb_button_release_event_t*>(event);
        dispatch(translator.buttonRelease(release->detail, release->state, release->event_x,
                                          release->event_y));
        break;
    }
    case XCB_MOTION_NOTIFY: {
        const auto* motion = reinterpret_cast<const xcb_motion_notify_event_t*>(event);
        dispatch(translator.motion(motion->state, motion->event_x, motion->event_y));
        break;
    }
    case XCB_LEAVE_NOTIFY: {
        const auto* leave = reinterpret_cast<const xcb_leave_notify_event_t*>(event);
        CPoint where(leave->event_x, leave->event_y);
        frame.onMouseExited(where, XEventTranslator::buttonsFromState(leave->state));
        break;
    }
    case XCB_DESTROY_NOTIFY: {
        const auto* destroyed = reinterpret_cast<const xcb_destroy_notify_event_t*>(event);
        if (destroyed->window == window) alive = false;
        break;
    }
    default:
        break;
    }
}

void XcbFrameWindow::dispatch(const MouseAction& action) {
    CPoint where = action.where;
    switch (action.kind) {
    case MouseAction::kDown:
        frame.onMouseDown(where, action.buttons);
        break;
    case MouseAction::kUp:
        frame.onMouseUp(where, action.buttons);
        break;
    case MouseAction::kMoved:
        frame.onMouseMoved(where, action.buttons);
        break;
    case MouseAction::kWheel:
        frame.onWheel(where, action.wheelDistance, action.buttons);
        break;
    case MouseAction::kNone:
        break;
    }
}

void XcbFrameWindow::paint() {
    CRect area;
    if (!frame.takeInvalidRect(area) || !alive || !context) return;
    area.bound(CRect(0, 0, width, height));
    if (area.isEmpty()) return;

    // Start from opaque black, so that transparent pixels of the views never
    // leave stale content or a see-through window.
    cairo_t* cr = cairo_create(backBuffer);
    cairo_rectangle(cr, area.left, area.top, area.width(), area.height());
    cairo_set_source_rgb(cr, 0, 0, 0);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_fill(cr);
    cairo_destroy(cr);

    context->setOffset(CPoint(0, 0));
    context->resetClipRect();
    frame.drawRect(context.get(), area);
    cairo_surface_flush(backBuffer);
    present(area);
    xcb_flush(connection);
}

void XcbFrameWindow::present(const CRect& area) {
    const auto rowBytes = static_cast<std::size_t>(area.width()) * 4;
    if (maxRequestBytes <= kPutImageHeaderBytes + rowBytes) return;
    const std::size_t rowsPerRequest = (maxRequestBytes - kPutImageHeaderBytes) / rowBytes;
    const unsigned char* pixels = cairo_image_surface_get_data(backBuffer);
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(backBuffer));
    if (!pixels) return;

    for (CCoord top = area.top; top < area.bottom;) {
        const auto rows = static_cast<CCoord>(
            std::min<std::size_t>(rowsPerRequest, static_cast<std::size_t>(area.bottom - top)));
        staging.resize(rowBytes * static_cast<std::size_t>(rows));
        for (CCoord row = 0; row < rows; row++) {
            const unsigned char* source = pixels + static_cast<std::size_t>(top + row) * stride +
                                          static_cast<std::size_t>(area.left) * 4;
            std::uint8_t* target = staging.data() + static_cast<std::size_t>(row) * rowBytes;
            std::memcpy(target, source, rowBytes);
            if (swapBytes)
                for (std::size_t i = 0; i < rowBytes; i += 4) {
                    std::swap(target[i], target[i + 3]);
                    std::swap(target[i + 1], target[i + 2]);
                }
        }
        xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, gc,
                      static_cast<std::uint16_t>(area.width()), static_cast<std::uint16_t>(rows),
                      static_cast<std::int16_t>(area.left), static_cast<std::int16_t>(top), 0,
                      depth, static_cast<std::uint32_t>(staging.size()), staging.data());
        top += rows;
    }
}

} // namespace VSTGUI
