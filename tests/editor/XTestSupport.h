#pragma once

// Support for the editor's X11 tests: a private Xvfb server per test process,
// and a second X client that plays the host (owns the parent windows) and the
// user (moves and clicks the pointer through the XTest extension).

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <vector>
#include <xcb/xcb.h>

namespace editortest {

// A rectangle of a window's pixels, 0xRRGGBB each, row by row.
struct WindowImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
    std::uint32_t at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

// Starts "Xvfb -displayfd" on a free display before the tests and stops it
// afterwards; DISPLAY then names it. Failing to start fails every test.
bool xvfbIsRunning();

class XClient {
public:
    XClient();
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    bool ok() const { return screen && !xcb_connection_has_error(connection); }
    // A mapped top-level window, as a host's editor window.
    xcb_window_t createParent(int x, int y, int width, int height);
    void destroy(xcb_window_t window);
    std::vector<xcb_window_t> children(xcb_window_t parent);
    // The parent's only child, as an editor's window; 0 if none or several.
    xcb_window_t onlyChild(xcb_window_t parent);
    bool isViewable(xcb_window_t window);
    // Width x height pixels of a window from (x, y); empty if unreadable.
    WindowImage image(xcb_window_t window, int width, int height, int x = 0, int y = 0);
    xcb_window_t root() const { return screen ? screen->root : 0; }

    // Pointer and keyboard input, as if from the user; root coordinates.
    void movePointer(int x, int y) { fakeInput(XCB_MOTION_NOTIFY, 0, x, y); }
    void pressButton(std::uint8_t button) { fakeInput(XCB_BUTTON_PRESS, button); }
    void releaseButton(std::uint8_t button) { fakeInput(XCB_BUTTON_RELEASE, button); }
    // Returns after the server has handled everything sent so far.
    void sync();

private:
    void fakeInput(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);

    xcb_connection_t* connection;
    xcb_screen_t* screen = nullptr;
};

// A test with its own X client on the private server.
struct XFixture : ::testing::Test {
    XClient client;
    void SetUp() override {
        ASSERT_TRUE(xvfbIsRunning());
        ASSERT_TRUE(client.ok());
    }
};

// Runs step() (one host idle) until done() holds; false if it never does
// within a generous number of rounds. The server works concurrently, so a
// result may need a few rounds to arrive.
bool pumpUntil(const std::function<void()>& step, const std::function<bool()>& done);

// Open file descriptors of this process, to see that connections close.
int openFileCount();

} // namespace editortest
