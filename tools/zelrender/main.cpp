// zelrender: renders a mono file (or the built-in demo) through the encoder
// plug-in into a 16-channel ambisonic WAV, loading the plug-in as a host does.

#include "AudioFiles.h"
#include "AutomationPath.h"
#include "BinauralPreview.h"
#include "BlockRenderer.h"
#include "CommandLine.h"
#include "DemoScene.h"
#include "Interruption.h"
#include "PathPlot.h"
#include "PluginInfo.h"
#include "PluginLocator.h"
#include "ProgressBar.h"
#include "VstPlugin.h"

#include <iostream>
#include <memory>
#include <unistd.h>

namespace {

constexpr int kInputs = 1;
constexpr int kAmbisonicChannels = 16;
constexpr double kInfoSampleRate = 48000.0;

// Everything a render needs besides the plug-in, gathered before the plug-in
// is loaded so that bad input is refused early.
struct Job {
    std::unique_ptr<MonoSource> source;
    AutomationPath path;
    std::optional<double> compensation;
};

Job makeJob(const Options& options) {
    Job job;
    if (options.inputPath.empty() && !options.info) {
        job.source = std::make_unique<DemoSignal>();
        job.path = DemoScene::trajectory();
        job.compensation = options.compensationGiven
                               ? options.compensation
                               : std::optional<double>(DemoScene::kCompensationMetres);
        return job;
    }
    if (!options.inputPath.empty())
        job.source = std::make_unique<MonoFileReader>(options.inputPath);
    job.path = options.pathFile.empty() ? AutomationPath({{0.0, options.position}})
                                        : AutomationPath::load(options.pathFile);
    job.compensation = options.compensation;
    return job;
}

ParameterSchedule scheduleFor(const Job& job, double sampleRate) {
    ParameterMapping mapping;
    ParameterSchedule schedule;
    schedule.add(0, {{kCompensationParam, mapping.compensation(job.compensation)}});
    schedule.addPath(job.path, sampleRate, mapping);
    return schedule;
}

// The set-up a DAW does before switching a plug-in on.
void prepare(VstPlugin& plugin, const Options& options, double sampleRate) {
    plugin.open();
    plugin.setSampleRate(static_cast<float>(sampleRate));
    plugin.setBlockSize(options.blockSize);
    if (options.program) plugin.setProgram(*options.program - 1);
}

int showInfo(const Options& options) {
    Job job = makeJob(options);
    const double rate = job.source ? job.source->sampleRate() : kInfoSampleRate;
    const ParameterSchedule schedule = scheduleFor(job, rate);
    LoadedPlugin loaded(options.pluginPath.empty() ? PluginLocator::find() : options.pluginPath);
    VstPlugin& plugin = loaded.plugin();
    plugin.requireChannels(kInputs, kAmbisonicChannels, "zelrender");
    prepare(plugin, options, rate);
    // Show the state a render with these options starts from.
    for (const ParameterChange& change : schedule.changes()) {
        if (change.frame == 0) plugin.setParameter(change.write.index, change.write.value);
    }
    PluginInfo::print(plugin, std::cout);
    return 0;
}

int render(const Options& options) {
    Interruption::install();
    Job job = makeJob(options);
    checkOutputTarget(options.outputPath, options.inputPath);
    MonoSource& source = *job.source;
    const double rate = source.sampleRate();
    const ParameterSchedule schedule = scheduleFor(job, rate);

    LoadedPlugin loaded(options.pluginPath.empty() ? PluginLocator::find() : options.pluginPath);
    VstPlugin& plugin = loaded.plugin();
    plugin.requireChannels(kInputs, kAmbisonicChannels, "zelrender");
    prepare(plugin, options, rate);

    AtomicWavWriter output(options.outputPath, kAmbisonicChannels, static_cast<int>(rate),
                           source.frames());
    std::vector<AmbisonicSink*> sinks = {&output};
    std::unique_ptr<BinauralPreview> headphones;
    if (!options.binauralPath.empty()) {
        checkOutputTarget(options.binauralPath, options.inputPath);
        headphones = std::make_unique<BinauralPreview>(
            options.binauralPath,
            options.hrtfPath.empty() ? BinauralPreview::kDefaultHrtf : options.hrtfPath,
            static_cast<int>(rate), source.frames());
        sinks.push_back(headphones.get());
    }
    if (!options.plotPath.empty()) checkOutputTarget(options.plotPath, options.inputPath);
    SinkFanout allOutputs(sinks);
    ProgressBar progress(
        std::cerr, source.frames(), rate,
        !options.quiet && ProgressBar::wanted(source.frames(), rate, isatty(STDERR_FILENO) != 0));
    BlockRenderer(plugin, options.blockSize, kAmbisonicChannels)
        .render(source, allOutputs, schedule, progress);
    output.commit();
    if (headphones) headphones->commit();
    if (!options.plotPath.empty())
        PathPlot(job.path, job.compensation, static_cast<double>(source.frames()) / rate)
            .write(options.plotPath);
    if (const std::int64_t bad = source.nonFiniteSamples())
        std::cerr << "zelrender: " << bad << " input samples were not numbers (NaN or infinite);"
                  << " the encoder wrote silence in their place\n";
    if (!options.quiet) {
        std::cerr << "zelrender: wrote " << options.outputPath << " (" << kAmbisonicChannels
                  << " channels, ACN/SN3D, " << source.frames() << " frames at " << rate
                  << " Hz)\n";
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        const Options options = CommandLine::parse({argv + 1, argv + argc});
        if (options.help) {
            std::cout << CommandLine::usage();
            return 0;
        }
        return options.info ? showInfo(options) : render(options);
    } catch (const UsageError& error) {
        std::cerr << "zelrender: " << error.what() << "\n(zelrender --help shows the usage)\n";
        return 2;
    } catch (const Interrupted& interruption) {
        std::cerr << "zelrender: interrupted; no output was written\n";
        return 128 + interruption.signal;
    } catch (const ValueError& error) {
        std::cerr << "zelrender: " << error.what() << '\n';
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "zelrender: " << error.what() << '\n';
        return 1;
    }
}

#if defined(__SANITIZE_ADDRESS__)
// Fontconfig, which Cairo uses for the path picture's labels, keeps a few
// allocations it never frees. LeakSanitizer asks the executable, not the
// libraries, which leaks to forgive; these are not ours.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
#endif
