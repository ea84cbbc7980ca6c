// The kernel sets of each level, for the chooser in byte_kernels.cpp.
#ifndef VARNICE_SIMD_BYTE_KERNELS_LEVELS_H_
#define VARNICE_SIMD_BYTE_KERNELS_LEVELS_H_

#include "varnice/simd/byte_kernels.h"

namespace varnice::internal::simd {

extern ByteKernels const kPortableKernels;
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define VARNICE_SIMD_X86 1
extern ByteKernels const kAVX2Kernels;
extern ByteKernels const kAVX512Kernels;
#endif

}  // namespace varnice::internal::simd

#endif  // VARNICE_SIMD_BYTE_KERNELS_LEVELS_H_
