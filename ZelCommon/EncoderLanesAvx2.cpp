// AVX2 without FMA: a product and a sum stay two roundings, as in the scalar code.
#define ZEL_LANES_TARGET "avx2"
#define ZEL_LANES_ENTRY zelLanesAvx2
#include "EncoderLanesKernel.h"
