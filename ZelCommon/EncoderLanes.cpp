#include "EncoderLanes.h"

#include <cstdlib>
#include <cstring>

namespace {

bool cpuHas(ZelLanePath path) {
    // Also asked while the library is loaded, perhaps before the compiler's
    // own start-up code has read the CPU's features.
    __builtin_cpu_init();
    switch (path) {
    case ZelLanePath::kScalar:
        return true;
    case ZelLanePath::kAvx2:
        return __builtin_cpu_supports("avx2");
    case ZelLanePath::kAvx512:
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl");
    }
    return false;
}

// Asked once, when the library is loaded.
const ZelLanePath bestPath = cpuHas(ZelLanePath::kAvx512) ? ZelLanePath::kAvx512
                             : cpuHas(ZelLanePath::kAvx2) ? ZelLanePath::kAvx2
                                                          : ZelLanePath::kScalar;

} // namespace

ZelLaneKernel zelLaneKernel(ZelLanePath path) {
    if (!cpuHas(path)) return nullptr;
    switch (path) {
    case ZelLanePath::kScalar:
        return nullptr;
    case ZelLanePath::kAvx2:
        return zelLanesAvx2;
    case ZelLanePath::kAvx512:
        return zelLanesAvx512;
    }
    return nullptr;
}

ZelLanePath zelDefaultLanePath() {
    ZelLanePath cap = ZelLanePath::kAvx512;
    if (const char* name = std::getenv("ZEL_ENCODER_PATH")) {
        if (std::strcmp(name, "scalar") == 0) cap = ZelLanePath::kScalar;
        if (std::strcmp(name, "avx2") == 0) cap = ZelLanePath::kAvx2;
    }
    return bestPath < cap ? bestPath : cap;
}
