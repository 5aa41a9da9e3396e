// zeledit, the editor without a DAW, run as a user runs it: under the private
// Xvfb, its window found and clicked through the X server, closed the ways a
// user closes it.

#include "XTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

using namespace editortest;

namespace {

const std::string kTitle = "Zelworks Orvalis XY 3 - 3d - zeledit";

std::string readFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// One run of zeledit with its output in files; killed and reaped if a test
// leaves it running.
class Zeledit {
public:
    // display: the DISPLAY to give it; none leaves DISPLAY out altogether.
    Zeledit(std::vector<std::string> arguments, const std::optional<std::string>& display) {
        char dirTemplate[] = "/tmp/zeledit-test-XXXXXX";
        if (const char* dir = mkdtemp(dirTemplate)) directory = dir;
        arguments.insert(arguments.begin(), ZEL_ZELEDIT_PATH);
        std::vector<std::string> env;
        for (char** entry = environ; *entry != nullptr; entry++)
            if (std::strncmp(*entry, "DISPLAY=", 8) != 0) env.emplace_back(*entry);
        if (display) env.push_back("DISPLAY=" + *display);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outPath().c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errPath().c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        std::vector<char*> argv = pointers(arguments);
        std::vector<char*> envp = pointers(env);
        if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data()) != 0) pid = -1;
        posix_spawn_file_actions_destroy(&actions);
    }
    ~Zeledit() {
        if (running()) {
            kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
        }
        unlink(outPath().c_str());
        unlink(errPath().c_str());
        rmdir(directory.c_str());
    }
    Zeledit(const Zeledit&) = delete;
    Zeledit& operator=(const Zeledit&) = delete;

    bool started() const { return pid > 0; }
    bool running() const { return pid > 0 && !status; }
    void interrupt() { kill(pid, SIGINT); }
    // Its exit status once it has exited normally, waiting a bounded while.
    std::optional<int> exitStatus() {
        pumpUntil([] {},
                  [this] {
                      int raw = 0;
                      if (!status && waitpid(pid, &raw, WNOHANG) == pid) status = raw;
                      return status.has_value();
                  });
        if (!status || !WIFEXITED(*status)) return std::nullopt;
        return WEXITSTATUS(*status);
    }
    std::string output() const { return readFile(outPath()); }
    std::string errors() const { return readFile(errPath()); }

private:
    static std::vector<char*> pointers(std::vector<std::string>& strings) {
        std::vector<char*> result;
        for (std::string& s : strings) result.push_back(s.data());
        result.push_back(nullptr);
        return result;
    }
    std::string outPath() const { return directory + "/out"; }
    std::string errPath() const { return directory + "/err"; }

    std::string directory;
    pid_t pid = -1;
    std::optional<int> status;
};

struct ZeleditX : XFixture {
    const char* display() const { return std::getenv("DISPLAY"); }

    // zeledit's top-level window, once it holds the mapped editor; 0 if none.
    xcb_window_t editorWindow() {
        for (xcb_window_t window : client.children(client.root())) {
            if (client.name(window) != kTitle || !client.isViewable(window)) continue;
            const std::vector<xcb_window_t> inside = client.children(window);
            if (inside.size() == 1 && client.isViewable(inside[0])) return window;
        }
        return 0;
    }
    bool waitForEditor(Zeledit& zeledit, xcb_window_t& window) {
        return pumpUntil([] {},
                         [&] { return (window = editorWindow()) != 0 || !zeledit.running(); }) &&
               window != 0;
    }
    // What a window manager sends when the user clicks the window's close box.
    void requestClose(xcb_window_t window) {
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

TEST_F(ZeleditX, OpensTheEditorInATitledWindowAndExitsAfterItsSeconds) {
    Zeledit zeledit({"--plugin", ZEL_PLUGIN_PATH, "--seconds", "5"}, display());
    ASSERT_TRUE(zeledit.started());
    xcb_window_t window = 0;
    ASSERT_TRUE(waitForEditor(zeledit, window)) << zeledit.errors();
    const WindowGeometry outer = client.geometry(window);
    EXPECT_EQ(outer.width, 300);
    EXPECT_EQ(outer.height, 260);
    const WindowGeometry inner = client.geometry(client.children(window)[0]);
    EXPECT_EQ(inner.width, 300);
    EXPECT_EQ(inner.height, 260);

    EXPECT_EQ(zeledit.exitStatus(), 0) << zeledit.errors();
    EXPECT_NE(zeledit.errors().find("editor 300 x 260"), std::string::npos) << zeledit.errors();
    EXPECT_EQ(zeledit.output(), "") << "nothing was edited";
    EXPECT_TRUE(pumpUntil([&] { client.sync(); }, [&] { return editorWindow() == 0; }));
}

TEST_F(ZeleditX, PrintsTheEditsOfAClickAndExitsWhenTheWindowIsClosed) {
    Zeledit zeledit({"--plugin", ZEL_PLUGIN_PATH}, display());
    xcb_window_t window = 0;
    ASSERT_TRUE(waitForEditor(zeledit, window)) << zeledit.errors();
    // No window manager: the window stands at the root's origin. 60 px down
    // the compensation switch is band 49 of 79, 1.80 m.
    const WindowGeometry where = client.geometry(window);
    client.movePointer(where.x + 62, where.y + 77 + 60);
    client.pressButton(1);
    client.releaseButton(1);
    ASSERT_TRUE(pumpUntil([] {},
                          [&] {
                              return zeledit.output().find("end edit") != std::string::npos ||
                                     !zeledit.running();
                          }));
    EXPECT_EQ(zeledit.output(), "begin edit   6 Compensation Distance\n"
                                "automate     6 Compensation Distance 0.371795  1.80 m\n"
                                "end edit     6 Compensation Distance\n");

    requestClose(window);
    EXPECT_EQ(zeledit.exitStatus(), 0) << zeledit.errors();
}

TEST_F(ZeleditX, CtrlCClosesTheEditorAndExitsCleanly) {
    Zeledit zeledit({"--plugin", ZEL_PLUGIN_PATH}, display());
    xcb_window_t window = 0;
    ASSERT_TRUE(waitForEditor(zeledit, window)) << zeledit.errors();
    zeledit.interrupt();
    EXPECT_EQ(zeledit.exitStatus(), 0) << zeledit.errors();
    const std::vector<xcb_window_t> topLevel = client.children(client.root());
    EXPECT_EQ(std::find(topLevel.begin(), topLevel.end(), window), topLevel.end());
}

TEST_F(ZeleditX, RefusesWhatItCannotRunWithAClearMessage) {
    const struct {
        std::vector<std::string> arguments;
        std::optional<std::string> display;
        int status;
        std::string message;
    } cases[] = {
        {{"--plugin", ZEL_PLUGIN_PATH, "--seconds", "1"},
         std::nullopt,
         1,
         "zeledit: no X display: DISPLAY is not set\n"},
        {{"--plugin", ZEL_PLUGIN_PATH}, ":4321", 1, "zeledit: cannot open X display ':4321'\n"},
        {{"--plugin", "/nonexistent/ZelAmbiEnc.so"},
         display(),
         1,
         "cannot load plug-in '/nonexistent/ZelAmbiEnc.so'"},
        {{"--seconds", "0"}, display(), 2, "--seconds needs a positive number"},
    };
    for (const auto& c : cases) {
        Zeledit zeledit(c.arguments, c.display);
        EXPECT_EQ(zeledit.exitStatus(), c.status) << c.message;
        EXPECT_NE(zeledit.errors().find(c.message), std::string::npos) << zeledit.errors();
    }
    EXPECT_EQ(editorWindow(), 0u);
}
