#include "varnice/simd/byte_kernels.h"

#include <algorithm>
#include <cstring>

#include "varnice/simd/byte_kernels_levels.h"

namespace varnice::internal::simd {

namespace {

// The plain loops: the reference every vector version is tested against.

std::size_t DecodeRowPlain(void const* row, unsigned char const* in, std::size_t n, unsigned short* out) {
  for (std::size_t i = 0; i < n; ++i) {
    const unsigned char b = in[i];
    if (b < 0x80) {
      out[i] = b;
      continue;
    }
    const std::uint32_t a = RowEntry(row, b);
    if (a >= kRowIncomplete) return i;
    out[i] = static_cast<unsigned short>(a);
  }
  return n;
}

std::size_t NarrowBelowPlain(unsigned short const* in, std::size_t n, unsigned char* out, unsigned limit,
                             unsigned hole) {
  for (std::size_t i = 0; i < n; ++i) {
    if (in[i] >= limit || in[i] == hole) return i;
    out[i] = static_cast<unsigned char>(in[i]);
  }
  return n;
}

std::size_t WidenASCIIPlain(unsigned char const* in, std::size_t n, unsigned short* out) {
  for (std::size_t i = 0; i < n; ++i) {
    if (in[i] >= 0x80) return i;
    out[i] = in[i];
  }
  return n;
}

// The portable set: eight at a time in 64-bit words, where the test for a
// group costs one or two operations.

constexpr std::uint64_t kHighBytes = 0x8080808080808080ULL;

// Widens the leading groups of eight bytes that are all ASCII; returns how
// many bytes that was.
std::size_t WidenASCIIGroups(unsigned char const* in, std::size_t n, unsigned short* out) {
  std::size_t i = 0;
  for (; i + 8 <= n; i += 8) {
    std::uint64_t w;
    std::memcpy(&w, in + i, 8);
    if ((w & kHighBytes) != 0) break;
    for (int k = 0; k < 8; ++k) out[i + k] = in[i + k];
  }
  return i;
}

std::size_t DecodeRowWords(void const* row, unsigned char const* in, std::size_t n, unsigned short* out) {
  const std::size_t i = WidenASCIIGroups(in, n, out);
  return i + DecodeRowPlain(row, in + i, n - i, out + i);
}

std::size_t NarrowBelowWords(unsigned short const* in, std::size_t n, unsigned char* out, unsigned limit,
                             unsigned hole) {
  std::size_t i = 0;
  if (hole >= limit) {
    const std::uint64_t high = 0x0001000100010001ULL * (0x10000 - limit);
    for (; i + 8 <= n; i += 8) {
      std::uint64_t a, b;
      std::memcpy(&a, in + i, 8);
      std::memcpy(&b, in + i + 4, 8);
      if (((a | b) & high) != 0) break;
      for (int k = 0; k < 8; ++k) out[i + k] = static_cast<unsigned char>(in[i + k]);
    }
  }
  return i + NarrowBelowPlain(in + i, n - i, out + i, limit, hole);
}

std::size_t WidenASCIIWords(unsigned char const* in, std::size_t n, unsigned short* out) {
  const std::size_t i = WidenASCIIGroups(in, n, out);
  return i + WidenASCIIPlain(in + i, n - i, out + i);
}

void WidenAllPlain(unsigned char const* in, std::size_t n, unsigned short* out) {
  for (std::size_t i = 0; i < n; ++i) out[i] = in[i];
}

std::size_t EncodeFlatPlain(std::uint16_t const* flat, unsigned short const* in, std::size_t n, unsigned char* out,
                            std::size_t room, std::size_t& written) {
  std::size_t i = 0, w = 0;
  for (; i < n && room - w >= 4; ++i) {
    const std::uint16_t code = flat[in[i]];
    if (code == kFlatGeneral) break;
    if (code > 0xFF) out[w++] = static_cast<unsigned char>(code >> 8);
    out[w++] = static_cast<unsigned char>(code);
  }
  written = w;
  return i;
}

}  // namespace

std::size_t DecodePairsPlain(std::uint16_t const* pairs, unsigned char const* in, std::size_t n,
                             unsigned short* out) {
  std::size_t i = 0;
  for (; n - i >= 2; i += 2) {
    const std::uint16_t unit = pairs[in[i] << 8 | in[i + 1]];
    if (unit == kFlatGeneral) break;
    out[i / 2] = unit;
  }
  return i;
}

namespace {

ByteKernels const kReferenceKernels = {Level::kPortable, DecodeRowPlain,  NarrowBelowPlain, WidenASCIIPlain,
                                       WidenAllPlain,    EncodeFlatPlain, DecodePairsPlain};

}  // namespace

// Without a branch on the code's length: the first byte is the high one or
// the only one, the second store lands on the same byte again for a code of
// one byte. Units are taken in runs that the room surely holds (two bytes
// each), so the room is not asked per unit.
std::size_t EncodeFlatScalar(std::uint16_t const* flat, unsigned short const* in, std::size_t n, unsigned char* out,
                             std::size_t room, std::size_t& written) {
  std::size_t i = 0, w = 0;
  while (i < n && room - w >= 4) {
    const std::size_t sure = std::min(n - i, (room - w - 4) / 2 + 1);
    for (std::size_t const end = i + sure; i < end; ++i) {
      const unsigned code = flat[in[i]];
      if (code == kFlatGeneral) {
        written = w;
        return i;
      }
      const unsigned two = code > 0xFF;
      out[w] = static_cast<unsigned char>(two ? code >> 8 : code);
      out[w + two] = static_cast<unsigned char>(code);
      w += 1 + two;
    }
  }
  written = w;
  return i;
}

namespace {

#ifdef VARNICE_SIMD_X86
bool HasAVX512() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
         __builtin_cpu_supports("avx512vbmi2");
}
#endif

ByteKernels const& Choose() {
#ifdef VARNICE_SIMD_X86
  __builtin_cpu_init();
  if (HasAVX512()) return kAVX512Kernels;
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi")) return kAVX2Kernels;
#endif
  return kPortableKernels;
}

}  // namespace

// The compiler widens this loop with the baseline vector unit.
ByteKernels const kPortableKernels = {Level::kPortable, DecodeRowWords,   NarrowBelowWords, WidenASCIIWords,
                                      WidenAllPlain,    EncodeFlatScalar, DecodePairsPlain};

ByteKernels const& ReferenceKernels() { return kReferenceKernels; }

static ByteKernels const* gForced = nullptr;

ByteKernels const& Kernels() {
  static ByteKernels const& chosen = Choose();
  return gForced != nullptr ? *gForced : chosen;
}

void UseKernelsForTesting(ByteKernels const* kernels) { gForced = kernels; }

ByteKernels const* KernelsAt(Level level) {
  switch (level) {
    case Level::kPortable:
      return &kPortableKernels;
#ifdef VARNICE_SIMD_X86
    case Level::kAVX2:
      __builtin_cpu_init();
      return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") ? &kAVX2Kernels : nullptr;
    case Level::kAVX512:
      return HasAVX512() ? &kAVX512Kernels : nullptr;
#endif
    default:
      return nullptr;
  }
}

RowIdentity RowKeeps(void const* row) {
  // The row as it must be, built once: entry b is the unit b, next state 0.
  static const auto expected = [] {
    struct {
      unsigned char bytes[256 * 4];
    } e{};
    for (unsigned b = 0; b < 256; ++b) {
      const std::uint16_t unit = static_cast<std::uint16_t>(b), next = 0;
      std::memcpy(e.bytes + 4 * b, &unit, 2);
      std::memcpy(e.bytes + 4 * b + 2, &next, 2);
    }
    return e;
  }();
  constexpr std::size_t kHalf = sizeof expected.bytes / 2;
  if (std::memcmp(row, expected.bytes, kHalf) != 0) return RowIdentity::kNone;
  if (std::memcmp(static_cast<unsigned char const*>(row) + kHalf, expected.bytes + kHalf, kHalf) != 0) {
    return RowIdentity::kASCII;
  }
  return RowIdentity::kAll;
}

}  // namespace varnice::internal::simd
