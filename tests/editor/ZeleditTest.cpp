// zeledit, the editor without a DAW, run as a user runs it: under the private
// Xvfb, its window found and clicked through the X server, closed the ways a
// user closes it.

#include "ChildProcess.h"
#include "XTestSupport.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using namespace editortest;

namespace {

// zeledit run with the given DISPLAY; none leaves DISPLAY out altogether.
ChildProcess zeledit(const std::vector<std::string>& arguments, const char* display) {
    std::vector<std::string> command{"env", "-u", "DISPLAY"};
    if (display) command.push_back(std::string("DISPLAY=") + display);
    command.push_back(ZEL_ZELEDIT_PATH);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return ChildProcess(command);
}

bool running(ChildProcess& process) {
    return !process.wait(std::chrono::milliseconds(0));
}

struct ZeleditX : XFixture {
    const char* display() const { return std::getenv("DISPLAY"); }

    // zeledit's top-level window, once it holds the mapped editor; 0 if none.
    xcb_window_t editorWindow() {
        for (xcb_window_t window : client.children(client.root())) {
            const xcb_window_t inside = client.onlyChild(window);
            if (client.isViewable(window) && inside != 0 && client.isViewable(inside))
                return window;
        }
        return 0;
    }
    bool waitForEditor(ChildProcess& zeledit, xcb_window_t& window) {
        return pumpUntil([] {},
                         [&] { return (window = editorWindow()) != 0 || !running(zeledit); }) &&
               window != 0;
    }
    bool waitUntilNoEditor() {
        return pumpUntil([&] { client.sync(); }, [&] { return editorWindow() == 0; });
    }
    // What a window manager sends when the user clicks the window's close box.
    static void requestClose(xcb_window_t window) {
        xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
        auto atom = [&](const char* name) {
            xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
                connection,
                xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
                nullptr);
            const xcb_atom_t result = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
            std::free(reply);
            return result;
        };
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = atom("WM_PROTOCOLS");
        message.data.data32[0] = atom("WM_DELETE_WINDOW");
        message.data.data32[1] = XCB_CURRENT_TIME;
        xcb_send_event(connection, 0, window, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char*>(&message));
        // A round trip before leaving: the server may drop what a client that
        // is gone had left unread.
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
        xcb_disconnect(connection);
    }
};

} // namespace

// zeledit exits after its seconds, having printed the editor's size and no
// edit; what it cannot run it refuses with a message and its exit code.
TEST_F(ZeleditX, ExitsAfterItsSecondsAndRefusesWhatItCannotRun) {
    const std::vector<std::string> oneSecond = {"--plugin", ZEL_PLUGIN_PATH, "--seconds", "1"};
    const std::string missing = "/nonexistent/ZelAmbiEnc.so";
    const struct {
        std::vector<std::string> arguments;
        const char* display;
        int status;
        std::string message;
    } cases[] = {
        {oneSecond, display(), 0, "editor 300 x 260"},
        {oneSecond, nullptr, 1, "zeledit: no X display: DISPLAY is not set\n"},
        {{"--plugin", ZEL_PLUGIN_PATH}, ":4321", 1, "zeledit: cannot open X display ':4321'\n"},
        {{"--plugin", missing}, display(), 1, "cannot load plug-in '" + missing + "'"},
        {{"--seconds", "0"}, display(), 2, "--seconds needs a positive number"},
    };
    for (const auto& c : cases) {
        ChildProcess run = zeledit(c.arguments, c.display);
        EXPECT_EQ(run.wait(), c.status) << c.message;
        EXPECT_NE(run.errors().find(c.message), std::string::npos) << run.errors();
        EXPECT_EQ(run.output(), "");
    }
    EXPECT_TRUE(waitUntilNoEditor());
}

// A click on the compensation switch is printed as the host hears it; the
// window's close box and Ctrl-C each close the editor and end zeledit.
TEST_F(ZeleditX, PrintsTheEditsOfAClickAndExitsWhenClosedOrInterrupted) {
    for (const bool interrupt : {false, true}) {
        ChildProcess editor = zeledit({"--plugin", ZEL_PLUGIN_PATH}, display());
        xcb_window_t window = 0;
        ASSERT_TRUE(waitForEditor(editor, window)) << editor.errors();
        // No window manager: the window stands at the root's origin. 60 px
        // down the switch (at 50, 77) is band 49 of 79, 1.80 m.
        client.movePointer(62, 77 + 60);
        client.pressButton(1);
        client.releaseButton(1);
        ASSERT_TRUE(pumpUntil([] {},
                              [&] {
                                  return editor.output().find("end edit") != std::string::npos ||
                                         !running(editor);
                              }));
        EXPECT_EQ(editor.output(), "begin edit   6 Compensation Distance\n"
                                   "automate     6 Compensation Distance 0.371795  1.80 m\n"
                                   "end edit     6 Compensation Distance\n");
        if (interrupt)
            editor.signal(SIGINT);
        else
            requestClose(window);
        EXPECT_EQ(editor.wait(), 0) << editor.errors();
        EXPECT_TRUE(waitUntilNoEditor()) << (interrupt ? "Ctrl-C" : "close box");
    }
}
