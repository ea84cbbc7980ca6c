// Test helper: every kernel level this CPU runs, and a scope that makes the
// converters use one of them.
#ifndef VARNICE_TESTS_SIMD_KERNEL_LEVELS_H_
#define VARNICE_TESTS_SIMD_KERNEL_LEVELS_H_

#include <vector>

#include "varnice/simd/byte_kernels.h"

namespace kernel_test {

namespace simd = varnice::internal::simd;

// Portable always; AVX2 and AVX-512 where the CPU has them, whichever the
// dispatcher would pick.
inline std::vector<const simd::ByteKernels*> AvailableLevels() {
  std::vector<const simd::ByteKernels*> levels;
  for (simd::Level level : {simd::Level::kPortable, simd::Level::kAVX2, simd::Level::kAVX512}) {
    if (const simd::ByteKernels* k = simd::KernelsAt(level)) levels.push_back(k);
  }
  return levels;
}

inline const char* LevelName(const simd::ByteKernels& k) {
  return k.level == simd::Level::kPortable ? "portable" : k.level == simd::Level::kAVX2 ? "AVX2" : "AVX-512";
}

class UsingKernels {
 public:
  explicit UsingKernels(const simd::ByteKernels* k) { simd::UseKernelsForTesting(k); }
  ~UsingKernels() { simd::UseKernelsForTesting(nullptr); }
  UsingKernels(const UsingKernels&) = delete;
  UsingKernels& operator=(const UsingKernels&) = delete;
};

}  // namespace kernel_test

#endif  // VARNICE_TESTS_SIMD_KERNEL_LEVELS_H_
