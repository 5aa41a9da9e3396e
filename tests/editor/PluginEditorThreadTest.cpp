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

using PluginEditorThreads = XFixture;

// Sweeps the source round the listener and the compensation distance through
// its range, one step per millisecond for about a second, ending 2 m to the
// front left with compensation at 0.5 m, while the window's thread runs
// windowStep() and sleeps 2 ms between its steps.
void automateWhile(VstPlugin& plugin, const std::function<void()>& windowStep) {
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
        plugin.setParameter(kDist, 0.5f);
        plugin.setParameter(kAzim, 0.125f);
        plugin.setParameter(kNFC, 0.0f);
        finished = true;
    });
    while (!finished) {
        windowStep();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    automation.join();
}

} // namespace

TEST_F(PluginEditorThreads, AutomationEveryMillisecondWhileTheEditorIdles) {
    PluginEditorSession editor(client, 0, 0);
    ASSERT_TRUE(editor.showsHandleAtParameters());
    automateWhile(editor.plugin(), [&] { editor.idle(); });
    // Every change made off the window's thread shows after the next idles;
    // host automation is not reported back as user edits.
    EXPECT_TRUE(editor.showsHandleAtParameters());
    EXPECT_EQ(editor.plugin().parameterDisplay(kNFC), "0.50");
    EXPECT_EQ(editor.plugin().parameterDisplay(kAzim), "45");
    EXPECT_TRUE(editor.host().edits().empty());
}

TEST_F(PluginEditorThreads, AutomationWhileTheHostOpensAndClosesTheEditor) {
    PluginEditorSession editor(client, 0, 0);
    bool allOpened = true;
    automateWhile(editor.plugin(), [&] {
        editor.close();
        allOpened = editor.open() && allOpened;
        for (int round = 0; round < 5; round++) editor.idle();
    });
    EXPECT_TRUE(allOpened);
    // Opened once more, the editor shows where automation left the source.
    editor.close();
    ASSERT_TRUE(editor.open());
    EXPECT_TRUE(editor.showsHandleAtParameters());
}
