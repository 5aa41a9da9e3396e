// Host automation from another thread while the window's thread idles, opens
// and closes the editor, as a DAW does with automation playback on its
// engine thread. Built also with ThreadSanitizer (ctest -L tsan).

#include "PluginEditorHost.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace editortest;

namespace {

// Sweeps the source round the listener and the compensation distance through
// its range, one step per millisecond for about a second, ending at a known
// place, while the window's thread runs windowStep().
void automateWhile(HostedEditorPlugin& plugin, const std::function<void()>& windowStep) {
    std::atomic<bool> finished{false};
    std::thread automation([&] {
        constexpr int kSteps = 1000;
        for (int step = 0; step < kSteps; step++) {
            const float phase = static_cast<float>(step) / kSteps;
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
    });
    while (!finished) windowStep();
    automation.join();
}

using PluginEditorThreads = XFixture;

} // namespace

TEST_F(PluginEditorThreads, AutomationEveryMillisecondWhileTheEditorIdles) {
    PluginEditorSession editor(client, 0, 0);
    HostedEditorPlugin& plugin = editor.plugin();
    ASSERT_TRUE(editor.waitUntilPainted());
    automateWhile(plugin, [&] {
        editor.idle();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    });
    // Every change made off the window's thread shows after the next idles.
    std::optional<Spot> handle;
    EXPECT_TRUE(editor.waitForHandleAtParameters(handle));
    EXPECT_EQ(plugin.display(kNFC), "0.50");
    EXPECT_EQ(plugin.display(kAzim), "45");
    // Host automation is not reported back as user edits.
    EXPECT_TRUE(plugin.reports().empty());
}

TEST_F(PluginEditorThreads, AutomationWhileTheHostOpensAndClosesTheEditor) {
    PluginEditorSession editor(client, 0, 0);
    bool allOpened = true;
    automateWhile(editor.plugin(), [&] {
        editor.close();
        allOpened = editor.open() && allOpened;
        for (int round = 0; round < 5; round++) {
            editor.idle();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    });
    EXPECT_TRUE(allOpened);
    // Opened once more, the editor shows where automation left the source.
    editor.close();
    ASSERT_TRUE(editor.open());
    std::optional<Spot> handle;
    EXPECT_TRUE(editor.waitForHandleAtParameters(handle));
}
