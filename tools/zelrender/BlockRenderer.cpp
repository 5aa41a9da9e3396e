#include "BlockRenderer.h"

#include "Interruption.h"

#include <cmath>

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
        const std::int64_t frame = first ? 0 : std::llround(point.seconds * sampleRate);
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
        if (Interruption::requested()) throw std::runtime_error("interrupted");
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
