// The same kernel with the 16 gain smoothers in one 16-lane vector, and
// AVX-512's encoding of the 8-lane operations, whose 32 registers keep the
// coefficients and states in registers. No FMA, as in the AVX2 build.
#define ZEL_LANES_TARGET "avx512f,avx512vl"
#define ZEL_LANES_WIDE
// GCC 12's AVX-512 intrinsics start some results from an undefined vector,
// which -W(maybe-)uninitialized takes for the use of one.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#define ZEL_LANES_ENTRY zelLanesAvx512
#include "EncoderLanesKernel.h"
