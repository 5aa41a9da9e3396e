#pragma once

#include "VstPlugin.h"

#include <vector>

// The audio buffers a host hands a plug-in, and processReplacing over any
// stretch of them. Separate buffers by default; hosts may also work in place
// (the input handed over in one output's buffer) and let every unconnected
// output write into one shared scratch buffer, and a plug-in must give the
// connected outputs exactly the same samples either way.
class BlockProcessor {
public:
    BlockProcessor(VstPlugin& plugin, int inputs, int outputs, int frames);

    float* input(int channel) { return inputs[channel].data(); }
    const float* output(int channel) const { return outputs[channel].data(); }
    const std::vector<float>& outputChannel(int channel) const { return outputs[channel]; }
    int frames() const { return length; }

    // The input goes in through this output's buffer; -1: a buffer of its own.
    void setInputInOutput(int channel) { inputOutput = channel; }
    // Outputs listed here all write into one scratch buffer.
    void setUnconnected(const std::vector<int>& channels);

    // processReplacing over frames [offset, offset + count) of the buffers.
    void process(int offset, int count);

private:
    VstPlugin& plugin;
    int length;
    int inputOutput = -1;
    std::vector<bool> unconnected;
    std::vector<std::vector<float>> inputs;
    std::vector<std::vector<float>> outputs;
    std::vector<float> scratch;
    std::vector<float*> inputPointers;
    std::vector<float*> outputPointers;
};
