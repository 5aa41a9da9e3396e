// Host automation from another thread while the window's thread idles, opens
// and closes the editor, as a DAW does with automation playback on its
// engine thread. Built also with ThreadSanitizer (ctest -L tsan).

#include "PluginEditorSession.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace editortest;

namespace {

enum { kAzim = 0, kElev = 1, kX = 2, kY = 3, kZ = 4, kDist = 5, kNFC = 6 };

constexpr int kAutomationSteps = 1000; // one per millisecond: about a second

// Sweeps the source round the listener and the compensation distance through
// its range, one step per millisecond, ending at a known place.
class AutomationThread {
public:
    explicit AutomationThread(HostedEditorPlugin& plugin)
        : thread([this, &plugin] {
              for (int step = 0; step < kAutomationSteps; step++) {
                  const float phase = static_cast<float>(step) / kAutomationSteps;
                  plugin.setParameter(kAzim, phase);
                  plugin.setParameter(kDist, 0.25f + 0.5f * phase);
                  plugin.setParameter(kNFC, 1.0f - phase);
                  if (step % 10 == 0) plugin.setParameter(kX, phase);
                  std::this_thread::sleep_for(std::chrono::milliseconds(1));
              }
              plugin.setParameter(kDist, 0.5f);   // 2 m
              plugin.setParameter(kAzim, 0.125f); // front left
              plugin.setParameter(kNFC, 0.0f);    // 0.5 m
              finished = true;
          }) {}
    ~AutomationThread() { join(); }
    bool running() const { return !finished; }
    void join() {
        if (thread.joinable()) thread.join();
    }

private:
    std::atomic<bool> finished{false};
    std::thread thread;
};

struct PluginEditorThreads : ::testing::Test {
    XClient client;
    void SetUp() override {
        ASSERT_TRUE(xvfbIsRunning());
        ASSERT_TRUE(client.ok());
    }
};

} // namespace

TEST_F(PluginEditorThreads, AutomationEveryMillisecondWhileTheEditorIdles) {
    PluginEditorSession editor(client, 0, 0);
    HostedEditorPlugin& plugin = editor.plugin();
    ASSERT_TRUE(editor.waitUntilPainted());
    int idles = 0;
    {
        AutomationThread automation(plugin);
        while (automation.running()) {
            editor.idle();
            idles++;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    EXPECT_GT(idles, 0);
    // Every change made off the window's thread shows after the next idles.
    std::optional<Spot> handle;
    EXPECT_TRUE(editor.waitForHandleAtParameters(handle));
    EXPECT_EQ(plugin.display(kNFC), "0.50");
    EXPECT_EQ(plugin.display(kAzim), "45");
    // Host automation is not reported back as user edits.
    EXPECT_TRUE(plugin.reports().empty());
}

TEST_F(PluginEditorThreads, AutomationWhileTheHostOpensAndClosesTheEditor) {
    HostedEditorPlugin plugin;
    const EditorSize size = plugin.editorSize();
    const xcb_window_t parent = client.createParent(0, 0, size.width, size.height);
    {
        AutomationThread automation(plugin);
        while (automation.running()) {
            ASSERT_TRUE(plugin.openEditor(parent));
            for (int round = 0; round < 5; round++) {
                plugin.idleEditor();
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
            plugin.closeEditor();
        }
    }
    // Opened once more, the editor shows where automation left the source.
    ASSERT_TRUE(plugin.openEditor(parent));
    EXPECT_TRUE(pumpUntil([&] { plugin.idleEditor(); },
                          [&] {
                              const std::vector<xcb_window_t> children = client.children(parent);
                              if (children.size() != 1) return false;
                              const std::optional<Spot> handle = findHandleGlow(
                                  client.image(children[0], size.width, size.height));
                              const Spot expected = expectedHandleCentre(plugin.getParameter(kX),
                                                                         plugin.getParameter(kY));
                              return handle && std::abs(handle->x - expected.x) < 1.5 &&
                                     std::abs(handle->y - expected.y) < 1.5;
                          }));
    plugin.closeEditor();
    client.destroy(parent);
}
