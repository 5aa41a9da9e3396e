#include "XTestSupport.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <xcb/xtest.h>

namespace editortest {

namespace {

class XvfbEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        int fds[2];
        ASSERT_EQ(pipe(fds), 0);
        const std::string fdText = std::to_string(fds[1]);
        pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            // The server must not outlive a test process that crashes.
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            close(fds[0]);
            const int devNull = open("/dev/null", O_RDWR);
            dup2(devNull, 0);
            dup2(devNull, 1);
            dup2(devNull, 2);
            // -noreset: by default the server resets whenever its last client
            // leaves, as between two tests, and refuses connections meanwhile.
            execlp("Xvfb", "Xvfb", "-displayfd", fdText.c_str(), "-screen", "0", "640x480x24",
                   "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(fds[1]);
        // Xvfb writes the display number once it accepts connections.
        std::string number;
        char c;
        while (read(fds[0], &c, 1) == 1 && c != '\n') number += c;
        close(fds[0]);
        ASSERT_FALSE(number.empty()) << "Xvfb did not start (is the package xvfb installed?)";
        setenv("DISPLAY", (":" + number).c_str(), 1);
        running = true;
    }
    void TearDown() override {
        if (pid > 0) {
            kill(pid, SIGTERM);
            waitpid(pid, nullptr, 0);
        }
        running = false;
    }
    static bool running;

private:
    pid_t pid = -1;
};

bool XvfbEnvironment::running = false;

[[maybe_unused]] ::testing::Environment* const xvfbEnvironment =
    ::testing::AddGlobalTestEnvironment(new XvfbEnvironment);

constexpr int kMaxPumpRounds = 10000; // ~20 s: only a failing test waits that long

} // namespace

bool xvfbIsRunning() {
    return XvfbEnvironment::running;
}

XClient::XClient() : connection(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection)) return;
    screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

XClient::~XClient() {
    xcb_disconnect(connection);
}

xcb_window_t XClient::createParent(int x, int y, int width, int height) {
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t values[] = {screen->white_pixel};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root,
                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL,
                      values);
    xcb_map_window(connection, window);
    sync();
    return window;
}

void XClient::destroy(xcb_window_t window) {
    xcb_destroy_window(connection, window);
    sync();
}

std::vector<xcb_window_t> XClient::children(xcb_window_t parent) {
    std::vector<xcb_window_t> result;
    xcb_query_tree_reply_t* tree =
        xcb_query_tree_reply(connection, xcb_query_tree(connection, parent), nullptr);
    if (!tree) return result;
    const xcb_window_t* list = xcb_query_tree_children(tree);
    result.assign(list, list + xcb_query_tree_children_length(tree));
    std::free(tree);
    return result;
}

bool XClient::isViewable(xcb_window_t window) {
    xcb_get_window_attributes_reply_t* attributes = xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr);
    const bool viewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    std::free(attributes);
    return viewable;
}

xcb_window_t XClient::onlyChild(xcb_window_t parent) {
    const std::vector<xcb_window_t> list = children(parent);
    return list.size() == 1 ? list[0] : 0;
}

WindowImage XClient::image(xcb_window_t window, int width, int height, int x, int y) {
    WindowImage result;
    xcb_get_image_reply_t* reply = xcb_get_image_reply(
        connection,
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), ~0u),
        nullptr);
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    // 32 bits per pixel in the server's (little-endian) order, no row padding.
    if (reply && static_cast<std::size_t>(xcb_get_image_data_length(reply)) >= count * 4) {
        result.width = width;
        result.height = height;
        result.pixels.resize(count);
        std::memcpy(result.pixels.data(), xcb_get_image_data(reply), count * 4);
        for (std::uint32_t& pixel : result.pixels) pixel &= 0xffffff;
    }
    std::free(reply);
    return result;
}

void XClient::fakeInput(std::uint8_t type, std::uint8_t detail, int x, int y) {
    xcb_test_fake_input(connection, type, detail, XCB_CURRENT_TIME, screen->root,
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    sync();
}

void XClient::sync() {
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

bool pumpUntil(const std::function<void()>& step, const std::function<bool()>& done) {
    for (int round = 0; round < kMaxPumpRounds; round++) {
        step();
        if (done()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return false;
}

int openFileCount() {
    int count = 0;
    if (DIR* dir = opendir("/proc/self/fd")) {
        while (readdir(dir)) count++;
        closedir(dir);
    }
    return count;
}

} // namespace editortest
