// zeledit: shows the encoder plug-in's editor without a DAW. It plays the
// host's part for the editor only: a top-level window, effEditOpen with its
// X window id, effEditIdle about every 40 ms, and a printout of every edit
// the plug-in reports. It renders no audio.

#include "EditOptions.h"
#include "EditReporter.h"
#include "EditorWindow.h"
#include "Interruption.h"
#include "PluginLocator.h"
#include "VstPlugin.h"

#include <chrono>
#include <iostream>
#include <thread>

namespace {

// Ardour idles editors about this often.
constexpr std::chrono::milliseconds kIdleInterval(40);
constexpr float kSampleRate = 48000.0f;
constexpr int kBlockSize = 512;

int showEditor(const EditOptions& options) {
    Interruption::install();
    // The display first: without one there is nothing to do, whatever the plug-in.
    EditorWindow window;
    const std::string path =
        options.pluginPath.empty() ? PluginLocator::find() : options.pluginPath;
    LoadedPlugin loaded(path);
    VstPlugin& plugin = loaded.plugin();
    plugin.open();
    plugin.setSampleRate(kSampleRate);
    plugin.setBlockSize(kBlockSize);
    plugin.setMains(true);
    if (!plugin.hasEditor()) throw PluginError("the plug-in has no editor");
    const auto [width, height] = plugin.editorSize();
    if (width <= 0 || height <= 0) throw PluginError("the plug-in gives its editor no size");

    const std::string name = plugin.effectName();
    window.show(width, height, name + " - zeledit");
    EditReporter reporter(plugin, std::cout);
    loaded.host().observeEdits([&reporter](const EditReport& edit) {
        reporter.report(edit.opcode, edit.index, edit.value);
    });
    if (!plugin.openEditor(window.parentHandle())) throw PluginError("the editor did not open");
    std::cerr << "zeledit: " << name << ", editor " << width << " x " << height
              << "; close the window or press Ctrl-C to quit\n";

    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    while (window.pumpEvents() && !Interruption::requested()) {
        if (options.seconds &&
            std::chrono::duration<double>(Clock::now() - start).count() >= *options.seconds)
            break;
        plugin.idleEditor();
        std::this_thread::sleep_for(kIdleInterval);
    }
    plugin.closeEditor();
    loaded.host().observeEdits(nullptr);
    plugin.setMains(false);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        const EditOptions options = EditCommandLine::parse({argv + 1, argv + argc});
        if (options.help) {
            std::cout << EditCommandLine::usage();
            return 0;
        }
        return showEditor(options);
    } catch (const EditUsageError& error) {
        std::cerr << "zeledit: " << error.what() << "\n(zeledit --help shows the usage)\n";
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "zeledit: " << error.what() << '\n';
        return 1;
    }
}

#if defined(__SANITIZE_ADDRESS__)
// Fontconfig, which Cairo uses for the editor's display texts, keeps a few
// allocations it never frees. LeakSanitizer asks the executable, not the
// plug-in loaded later, which leaks to forgive; these are not ours.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
#endif
