// The kernel sets of each level, for the chooser in byte_kernels.cpp.
#ifndef VARNICE_SIMD_BYTE_KERNELS_LEVELS_H_
#define VARNICE_SIMD_BYTE_KERNELS_LEVELS_H_

#include "varnice/simd/byte_kernels.h"

namespace varnice::internal::simd {

extern ByteKernels const kPortableKernels;
// The portable encodeFlat and decodePairs, which the wider levels also use
// for short runs (the second is also the reference: one load a pair leaves
// nothing to gain from a longer loop).
std::size_t EncodeFlatScalar(std::uint16_t const* flat, unsigned short const* in, std::size_t n, unsigned char* out,
                             std::size_t room, std::size_t& written);
std::size_t DecodePairsPlain(std::uint16_t const* pairs, unsigned char const* in, std::size_t n,
                             unsigned short* out);
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define VARNICE_SIMD_X86 1
extern ByteKernels const kAVX2Kernels;
extern ByteKernels const kAVX512Kernels;
#endif

}  // namespace varnice::internal::simd

#endif  // VARNICE_SIMD_BYTE_KERNELS_LEVELS_H_
