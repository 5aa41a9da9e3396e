// zeledit, the editor without a DAW, run as a user runs it: under the private
// Xvfb, its window found and clicked through the X server, closed the ways a
// user closes it.

#include "XTestSupport.h"

#include <gtest/gtest.h>

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

// One run of zeledit with its output and errors in files; killed and reaped
// if a test leaves it running.
class Zeledit {
public:
    // display: the DISPLAY it gets; none leaves DISPLAY out altogether.
    Zeledit(const std::vector<std::string>& arguments, const char* display) {
        char dirTemplate[] = "/tmp/zeledit-test-XXXXXX";
        if (const char* dir = mkdtemp(dirTemplate)) directory = dir;
        std::vector<std::string> command{"env", "-u", "DISPLAY"};
        if (display) command.push_back(std::string("DISPLAY=") + display);
        command.push_back(ZEL_ZELEDIT_PATH);
        command.insert(command.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        for (std::string& word : command) argv.push_back(word.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        for (int fd : {STDOUT_FILENO, STDERR_FILENO})
            posix_spawn_file_actions_addopen(&actions, fd, path(fd).c_str(),
                                             O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (posix_spawnp(&pid, "env", &actions, nullptr, argv.data(), environ) != 0) pid = -1;
        posix_spawn_file_actions_destroy(&actions);
    }
    ~Zeledit() {
        if (running()) {
            kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
        }
        unlink(path(STDOUT_FILENO).c_str());
        unlink(path(STDERR_FILENO).c_str());
        rmdir(directory.c_str());
    }
    Zeledit(const Zeledit&) = delete;
    Zeledit& operator=(const Zeledit&) = delete;

    bool running() const { return pid > 0 && !status; }
    void interrupt() { kill(pid, SIGINT); }
    // Its exit status once it has exited normally, waiting a bounded while.
    std::optional<int> exitStatus() {
        pumpUntil([] {},
                  [this] {
                      int raw = 0;
                      if (running() && waitpid(pid, &raw, WNOHANG) == pid) status = raw;
                      return status.has_value();
                  });
        if (!status || !WIFEXITED(*status)) return std::nullopt;
        return WEXITSTATUS(*status);
    }
    std::string output() const { return read(STDOUT_FILENO); }
    std::string errors() const { return read(STDERR_FILENO); }

private:
    std::string path(int fd) const { return directory + (fd == STDOUT_FILENO ? "/out" : "/err"); }
    std::string read(int fd) const {
        std::ifstream in(path(fd));
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

    std::string directory;
    pid_t pid = -1;
    std::optional<int> status;
};

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
    bool waitForEditor(Zeledit& zeledit, xcb_window_t& window) {
        return pumpUntil([] {},
                         [&] { return (window = editorWindow()) != 0 || !zeledit.running(); }) &&
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
    const struct {
        std::vector<std::string> arguments;
        const char* display;
        int status;
        std::string message;
    } cases[] = {
        {{"--plugin", ZEL_PLUGIN_PATH, "--seconds", "1"}, display(), 0, "editor 300 x 260"},
        {{"--plugin", ZEL_PLUGIN_PATH, "--seconds", "1"},
         nullptr,
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
        EXPECT_EQ(zeledit.output(), "");
    }
    EXPECT_TRUE(waitUntilNoEditor());
}

// A click on the compensation switch is printed as the host hears it; the
// window's close box and Ctrl-C each close the editor and end zeledit.
TEST_F(ZeleditX, PrintsTheEditsOfAClickAndExitsWhenClosedOrInterrupted) {
    for (const bool interrupt : {false, true}) {
        Zeledit zeledit({"--plugin", ZEL_PLUGIN_PATH}, display());
        xcb_window_t window = 0;
        ASSERT_TRUE(waitForEditor(zeledit, window)) << zeledit.errors();
        // No window manager: the window stands at the root's origin. 60 px
        // down the switch (at 50, 77) is band 49 of 79, 1.80 m.
        client.movePointer(62, 77 + 60);
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
        if (interrupt)
            zeledit.interrupt();
        else
            requestClose(window);
        EXPECT_EQ(zeledit.exitStatus(), 0) << zeledit.errors();
        EXPECT_TRUE(waitUntilNoEditor()) << (interrupt ? "Ctrl-C" : "close box");
    }
}
