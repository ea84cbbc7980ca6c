// The kernels in 32-byte vectors. Compiled for AVX2 by attribute, so that the
// rest of the library keeps the baseline instruction set; called only after
// the CPU has been asked.
#include "varnice/simd/byte_kernels_levels.h"

#ifdef VARNICE_SIMD_X86

#include <immintrin.h>

#include <cstring>

#define VARNICE_AVX2 __attribute__((target("avx2,bmi")))

namespace varnice::internal::simd {

namespace {

VARNICE_AVX2 inline void StoreWidened(__m256i bytes, unsigned short* out) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes)));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 16), _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1)));
}

VARNICE_AVX2 std::size_t DecodeRowAVX2(void const* row, unsigned char const* in, std::size_t n,
                                       unsigned short* out) {
  std::size_t i = 0;
  for (; i + 32 <= n; i += 32) {
    const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i));
    unsigned high = static_cast<unsigned>(_mm256_movemask_epi8(bytes));
    if (high == 0) {
      StoreWidened(bytes, out + i);
      continue;
    }
    // A few bytes above ASCII: find where the block stops (the first byte
    // that is not a whole character), store the widened prefix, then put
    // each looked-up unit in its place.
    unsigned count = 32;
    for (unsigned h = high; h != 0; h &= h - 1) {
      const unsigned k = static_cast<unsigned>(__builtin_ctz(h));
      if (RowEntry(row, in[i + k]) >= kRowIncomplete) {
        count = k;
        break;
      }
    }
    if (count == 32) {
      StoreWidened(bytes, out + i);
    } else {
      for (unsigned k = 0; k < count; ++k) out[i + k] = in[i + k];
      high &= (1u << count) - 1;
    }
    for (; high != 0; high &= high - 1) {
      const unsigned k = static_cast<unsigned>(__builtin_ctz(high));
      out[i + k] = static_cast<unsigned short>(RowEntry(row, in[i + k]));
    }
    if (count < 32) return i + count;
  }
  for (; i < n; ++i) {
    const unsigned char b = in[i];
    const std::uint32_t a = b < 0x80 ? b : RowEntry(row, b);
    if (a >= kRowIncomplete) return i;
    out[i] = static_cast<unsigned short>(a);
  }
  return n;
}

VARNICE_AVX2 std::size_t NarrowBelowAVX2(unsigned short const* in, std::size_t n, unsigned char* out,
                                         unsigned limit, unsigned hole) {
  std::size_t i = 0;
  const __m256i above = _mm256_set1_epi16(static_cast<short>(~(limit - 1)));
  const __m256i holes = _mm256_set1_epi16(static_cast<short>(hole));
  for (; i + 32 <= n; i += 32) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i + 16));
    if (!_mm256_testz_si256(_mm256_or_si256(a, b), above)) break;
    if (!_mm256_testz_si256(_mm256_or_si256(_mm256_cmpeq_epi16(a, holes), _mm256_cmpeq_epi16(b, holes)),
                            _mm256_cmpeq_epi16(a, a))) {
      break;
    }
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(a, b), 0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i), packed);
  }
  for (; i < n && in[i] < limit && in[i] != hole; ++i) out[i] = static_cast<unsigned char>(in[i]);
  return i;
}

VARNICE_AVX2 std::size_t WidenASCIIAVX2(unsigned char const* in, std::size_t n, unsigned short* out) {
  std::size_t i = 0;
  for (; i + 32 <= n; i += 32) {
    const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i));
    if (_mm256_movemask_epi8(bytes) != 0) break;
    StoreWidened(bytes, out + i);
  }
  for (; i < n && in[i] < 0x80; ++i) out[i] = in[i];
  return i;
}

VARNICE_AVX2 void WidenAllAVX2(unsigned char const* in, std::size_t n, unsigned short* out) {
  std::size_t i = 0;
  for (; i + 32 <= n; i += 32) StoreWidened(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i)), out + i);
  for (; i < n; ++i) out[i] = in[i];
}

// 16 pairs a block: their codes (lead byte high) gathered from the table.
VARNICE_AVX2 std::size_t DecodePairsAVX2(std::uint16_t const* pairs, unsigned char const* in, std::size_t n,
                                         unsigned short* out) {
  const __m256i swap = _mm256_set_epi64x(0x0E0F0C0D0A0B0809, 0x0607040502030001, 0x0E0F0C0D0A0B0809,
                                         0x0607040502030001);
  const __m256i low16 = _mm256_set1_epi32(0xFFFF);
  const __m256i general = _mm256_set1_epi16(static_cast<short>(kFlatGeneral));
  auto const* table = reinterpret_cast<int const*>(pairs);
  std::size_t i = 0;
  for (; n - i >= 32; i += 32) {
    const __m256i codes = _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i)), swap);
    const __m256i a = _mm256_i32gather_epi32(table, _mm256_cvtepu16_epi32(_mm256_castsi256_si128(codes)), 2);
    const __m256i b = _mm256_i32gather_epi32(table, _mm256_cvtepu16_epi32(_mm256_extracti128_si256(codes, 1)), 2);
    // packus works within 128-bit lanes: put the quarters back in order.
    const __m256i units = _mm256_permute4x64_epi64(
        _mm256_packus_epi32(_mm256_and_si256(a, low16), _mm256_and_si256(b, low16)), 0xD8);
    const unsigned bad = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi16(units, general)));
    if (bad != 0) {
      // Only the pairs before the first general one are written.
      alignas(32) unsigned short held[16];
      _mm256_store_si256(reinterpret_cast<__m256i*>(held), units);
      const unsigned count = static_cast<unsigned>(__builtin_ctz(bad)) / 2;
      std::memcpy(out + i / 2, held, count * sizeof(unsigned short));
      return i + 2 * count;
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i / 2), units);
  }
  return i + DecodePairsPlain(pairs, in + i, n - i, out + i / 2);
}

}  // namespace

// Encoding through a flat table keeps the portable loop: without byte-masked
// stores, a vector version would write past its result.
ByteKernels const kAVX2Kernels = {Level::kAVX2,    DecodeRowAVX2,    NarrowBelowAVX2, WidenASCIIAVX2,
                                  WidenAllAVX2,   EncodeFlatScalar, DecodePairsAVX2};

}  // namespace varnice::internal::simd

#endif  // VARNICE_SIMD_X86
