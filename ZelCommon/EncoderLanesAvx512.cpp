// The same kernel with AVX-512's encoding of the 8-lane operations: 32
// registers instead of 16 keep every coefficient and state in a register.
// No FMA, as in the AVX2 build.
#define ZEL_LANES_TARGET "avx512f,avx512vl"
#define ZEL_LANES_ENTRY zelLanesAvx512
#include "EncoderLanesKernel.h"
