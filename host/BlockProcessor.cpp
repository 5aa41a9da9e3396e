#include "BlockProcessor.h"

#include <algorithm>

BlockProcessor::BlockProcessor(VstPlugin& plugin_, int inputCount, int outputCount, int frames)
    : plugin(plugin_), length(frames), unconnected(outputCount, false),
      inputs(inputCount, std::vector<float>(frames)),
      outputs(outputCount, std::vector<float>(frames)), scratch(frames), inputPointers(inputCount),
      outputPointers(outputCount) {}

void BlockProcessor::setUnconnected(const std::vector<int>& channels) {
    std::fill(unconnected.begin(), unconnected.end(), false);
    for (int c : channels) unconnected[c] = true;
}

void BlockProcessor::process(int offset, int count) {
    for (std::size_t c = 0; c < outputs.size(); ++c)
        outputPointers[c] = (unconnected[c] ? scratch.data() : outputs[c].data()) + offset;
    for (std::size_t c = 0; c < inputs.size(); ++c) inputPointers[c] = inputs[c].data() + offset;
    if (inputOutput >= 0 && !inputs.empty()) {
        std::copy_n(inputPointers[0], count, outputPointers[inputOutput]);
        inputPointers[0] = outputPointers[inputOutput];
    }
    plugin.processReplacing(inputPointers.data(), outputPointers.data(), count);
}
