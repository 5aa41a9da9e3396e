#include "BlockRenderer.h"

#include "Interruption.h"

#include <cmath>

namespace {
constexpr double kNeverReached = 4e18;
} // namespace

void ParameterSchedule::add(std::int64_t frame, const std::vector<ParameterWrite>& writes) {
    if (!list.empty() && frame < list.back().frame) {
        throw std::logic_error("parameter writes must be added in time order");
    }
    for (const ParameterWrite& write : writes) list.push_back({frame, write});
}

void ParameterSchedule::addPath(const AutomationPath& path, double sampleRate,
                                ParameterMapping& mapping) {
    bool first = true;
    for (const TimedPosition& point : path.points()) {
        // Beyond any input a file can hold; also keeps the conversion in range.
        const double at = point.seconds * sampleRate;
        const std::int64_t frame = first                ? 0
                                   : at < kNeverReached ? std::llround(at)
                                                        : static_cast<std::int64_t>(kNeverReached);
        add(frame, positionWrites(point.position, mapping));
        first = false;
    }
}

BlockRenderer::BlockRenderer(VstPlugin& plugin_, int blockSize_, int outputCount_)
    : plugin(plugin_), blockSize(blockSize_), outputCount(outputCount_),
      buffers(plugin_, 1, outputCount_, blockSize_) {}

void BlockRenderer::render(MonoSource& source, AmbisonicSink& sink,
                           const ParameterSchedule& schedule, ProgressBar& progress) {
    const std::vector<ParameterChange>& changes = schedule.changes();
    std::size_t next = 0;
    auto sendDueWrites = [&](std::int64_t frame) {
        for (; next < changes.size() && changes[next].frame <= frame; ++next) {
            plugin.setParameter(changes[next].write.index, changes[next].write.value);
        }
    };

    sendDueWrites(0);
    plugin.setMains(true);

    std::vector<const float*> blockPointers(outputCount);
    for (int c = 0; c < outputCount; ++c) blockPointers[c] = buffers.output(c);

    std::int64_t done = 0;
    for (;;) {
        if (Interruption::requested()) {
            progress.abandon(); // the message that follows starts on a line of its own
            throw Interrupted(Interruption::signalNumber());
        }
        const int frames = source.read(buffers.input(0), blockSize);
        if (frames == 0) break;

        for (int offset = 0; offset < frames;) {
            sendDueWrites(done + offset);
            int end = frames;
            if (next < changes.size() && changes[next].frame < done + frames) {
                end = static_cast<int>(changes[next].frame - done);
            }
            buffers.process(offset, end - offset);
            offset = end;
        }

        sink.write(blockPointers.data(), frames);
        done += frames;
        progress.update(done);
    }
    plugin.setMains(false);
    progress.finish();
}
