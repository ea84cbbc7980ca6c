// The kernels in 64-byte vectors with mask registers (AVX-512 BW, VL and
// VBMI2, as in processors since Ice Lake and Zen 4), compiled for them by
// attribute and called only after the CPU has been asked. Masked stores write
// exactly the prefix that converted, so a block that stops part-way needs no
// scratch copy.
#include "varnice/simd/byte_kernels_levels.h"

#ifdef VARNICE_SIMD_X86

// GCC's own headers leave vector lanes undefined on purpose and then warn.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <immintrin.h>

#define VARNICE_AVX512 __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi2,bmi,bmi2,popcnt")))

namespace varnice::internal::simd {

namespace {

// The bytes of a block (those in valid; the others read as 0) as units, in
// two vectors of 32, and the mask of those above ASCII.
VARNICE_AVX512 inline std::uint64_t Widen(unsigned char const* in, __mmask64 valid, __m512i& low, __m512i& high) {
  const __m256i a = _mm256_maskz_loadu_epi8(static_cast<__mmask32>(valid), in);
  const __m256i b = _mm256_maskz_loadu_epi8(static_cast<__mmask32>(valid >> 32), in + 32);
  low = _mm512_cvtepu8_epi16(a);
  high = _mm512_cvtepu8_epi16(b);
  return static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm256_movemask_epi8(b))) << 32 |
         static_cast<std::uint32_t>(_mm256_movemask_epi8(a));
}

// Stores the first count (<= 64) units of low, high.
VARNICE_AVX512 inline void StorePrefix(unsigned short* out, __m512i low, __m512i high, unsigned count) {
  const __mmask64 keep = count >= 64 ? ~0ULL : (1ULL << count) - 1;
  _mm512_mask_storeu_epi16(out, static_cast<__mmask32>(keep), low);
  _mm512_mask_storeu_epi16(out + 32, static_cast<__mmask32>(keep >> 32), high);
}

// The upper half of a row (bytes 0x80-0xFF) as 128 units in four vectors,
// an entry that is not a whole character as 0xFFFF.
struct UpperHalf {
  __m512i t[4];
};

VARNICE_AVX512 inline void LoadUpperHalf(void const* row, UpperHalf& h) {
  alignas(64) unsigned short units[128];
  for (unsigned b = 0; b < 128; ++b) {
    const std::uint32_t a = RowEntry(row, static_cast<unsigned char>(0x80 + b));
    units[b] = a >= kRowIncomplete ? 0xFFFF : static_cast<unsigned short>(a);
  }
  for (int k = 0; k < 4; ++k) h.t[k] = _mm512_load_si512(units + 32 * k);
}

// 32 bytes (as units) through the row: ASCII as itself, the others looked up
// in the upper half without a branch. bad gets the lanes that are not whole
// characters.
VARNICE_AVX512 inline __m512i LookUp32(__m512i units, UpperHalf const& h, __mmask32& bad) {
  const __mmask32 upper = _mm512_cmpge_epu16_mask(units, _mm512_set1_epi16(0x80));
  // Index bits 0-5 pick a unit of a pair of vectors; bit 6 picks the pair.
  const __m512i first = _mm512_permutex2var_epi16(h.t[0], units, h.t[1]);
  const __m512i second = _mm512_permutex2var_epi16(h.t[2], units, h.t[3]);
  const __mmask32 inSecond = _mm512_test_epi16_mask(units, _mm512_set1_epi16(0x40));
  const __m512i looked = _mm512_mask_blend_epi16(inSecond, first, second);
  bad = _mm512_mask_cmpeq_epi16_mask(upper, looked, _mm512_set1_epi16(-1));
  return _mm512_mask_blend_epi16(upper, units, looked);
}

// Long stretches with many bytes above ASCII (a Latin text in windows-1252,
// say): every block goes through the vector lookup, no branch per byte.
VARNICE_AVX512 std::size_t DecodeRowLookedUp(void const* row, unsigned char const* in, std::size_t n,
                                             unsigned short* out) {
  UpperHalf h;
  LoadUpperHalf(row, h);
  std::size_t i = 0;
  for (; i + 64 <= n; i += 64) {
    __mmask32 badLow, badHigh;
    const __m512i low =
        LookUp32(_mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i))), h, badLow);
    const __m512i high = LookUp32(
        _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i + 32))), h, badHigh);
    const std::uint64_t bad = static_cast<std::uint64_t>(badHigh) << 32 | badLow;
    if (bad != 0) {
      const unsigned count = static_cast<unsigned>(__builtin_ctzll(bad));
      StorePrefix(out + i, low, high, count);
      return i + count;
    }
    _mm512_storeu_si512(out + i, low);
    _mm512_storeu_si512(out + i + 32, high);
  }
  for (; i < n; ++i) {
    const std::uint32_t a = in[i] < 0x80 ? in[i] : RowEntry(row, in[i]);
    if (a >= kRowIncomplete) return i;
    out[i] = static_cast<unsigned short>(a);
  }
  return n;
}

VARNICE_AVX512 std::size_t DecodeRowAVX512(void const* row, unsigned char const* in, std::size_t n,
                                           unsigned short* out) {
  std::size_t i = 0;
  while (i < n) {
    // A stretch that has gone on for a while in a page without lead bytes
    // (those stop it) is worth preparing the lookup vectors for.
    if (i >= 1024 && n - i >= 1024) return i + DecodeRowLookedUp(row, in + i, n - i, out + i);
    const std::size_t left = n - i;
    const __mmask64 valid = left >= 64 ? ~0ULL : (1ULL << left) - 1;
    __m512i low, up;
    std::uint64_t high = Widen(in + i, valid, low, up);
    if (high == 0) {
      if (left >= 64) {
        _mm512_storeu_si512(out + i, low);
        _mm512_storeu_si512(out + i + 32, up);
        i += 64;
        continue;
      }
      StorePrefix(out + i, low, up, static_cast<unsigned>(left));
      return n;
    }
    // The bytes above ASCII: find where the block stops (the first that is
    // not a whole character), store the widened prefix, then put each looked
    // up unit in its place (scalar stores after the vector ones, so nothing
    // waits on a store being forwarded).
    unsigned count = left >= 64 ? 64 : static_cast<unsigned>(left);
    for (std::uint64_t h = high; h != 0; h &= h - 1) {
      const unsigned k = static_cast<unsigned>(__builtin_ctzll(h));
      if (RowEntry(row, in[i + k]) >= kRowIncomplete) {
        count = k;
        break;
      }
    }
    StorePrefix(out + i, low, up, count);
    if (count < 64) high &= (1ULL << count) - 1;
    for (; high != 0; high &= high - 1) {
      const unsigned k = static_cast<unsigned>(__builtin_ctzll(high));
      out[i + k] = static_cast<unsigned short>(RowEntry(row, in[i + k]));
    }
    i += count;
    if (count < 64) return i;
  }
  return n;
}

VARNICE_AVX512 std::size_t NarrowBelowAVX512(unsigned short const* in, std::size_t n, unsigned char* out,
                                             unsigned limit, unsigned hole) {
  const __m512i above = _mm512_set1_epi16(static_cast<short>(~(limit - 1)));
  const __m512i holes = _mm512_set1_epi16(static_cast<short>(hole));
  std::size_t i = 0;
  while (i < n) {
    const std::size_t left = n - i;
    const __mmask64 valid = left >= 64 ? ~0ULL : (1ULL << left) - 1;
    if (left >= 64) {
      // Whole blocks without masks: a masked narrowing store is slow on
      // some processors.
      const __m512i a = _mm512_loadu_si512(in + i);
      const __m512i b = _mm512_loadu_si512(in + i + 32);
      const __mmask32 bad = _mm512_test_epi16_mask(_mm512_or_si512(a, b), above) |
                            _mm512_cmpeq_epi16_mask(a, holes) | _mm512_cmpeq_epi16_mask(b, holes);
      if (bad == 0) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i), _mm512_cvtepi16_epi8(a));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i + 32), _mm512_cvtepi16_epi8(b));
        i += 64;
        continue;
      }
    }
    const __m512i a = _mm512_maskz_loadu_epi16(static_cast<__mmask32>(valid), in + i);
    const __m512i b = _mm512_maskz_loadu_epi16(static_cast<__mmask32>(valid >> 32), in + i + 32);
    const std::uint64_t bad =
        (static_cast<std::uint64_t>(_mm512_test_epi16_mask(b, above) | _mm512_cmpeq_epi16_mask(b, holes)) << 32 |
         (_mm512_test_epi16_mask(a, above) | _mm512_cmpeq_epi16_mask(a, holes))) & valid;
    const std::uint64_t keep = bad == 0 ? valid : (1ULL << __builtin_ctzll(bad)) - 1;
    _mm512_mask_cvtepi16_storeu_epi8(out + i, static_cast<__mmask32>(keep), a);
    _mm512_mask_cvtepi16_storeu_epi8(out + i + 32, static_cast<__mmask32>(keep >> 32), b);
    if (bad != 0) return i + static_cast<std::size_t>(__builtin_ctzll(bad));
    i += left >= 64 ? 64 : left;
  }
  return n;
}

VARNICE_AVX512 std::size_t WidenASCIIAVX512(unsigned char const* in, std::size_t n, unsigned short* out) {
  std::size_t i = 0;
  for (; i + 64 <= n; i += 64) {
    const __m512i bytes = _mm512_loadu_si512(in + i);
    if (_mm512_movepi8_mask(bytes) != 0) break;
    _mm512_storeu_si512(out + i, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(bytes)));
    _mm512_storeu_si512(out + i + 32,
                        _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i + 32))));
  }
  while (i < n) {
    const std::size_t left = n - i;
    const __mmask64 valid = left >= 64 ? ~0ULL : (1ULL << left) - 1;
    __m512i low, up;
    const std::uint64_t high = Widen(in + i, valid, low, up);
    const unsigned count = high != 0 ? static_cast<unsigned>(__builtin_ctzll(high))
                                     : left >= 64 ? 64u : static_cast<unsigned>(left);
    StorePrefix(out + i, low, up, count);
    i += count;
    if (count < 64) return i;
  }
  return n;
}

VARNICE_AVX512 void WidenAllAVX512(unsigned char const* in, std::size_t n, unsigned short* out) {
  std::size_t i = 0;
  for (; i + 64 <= n; i += 64) {
    _mm512_storeu_si512(out + i, _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i))));
    _mm512_storeu_si512(out + i + 32,
                        _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(in + i + 32))));
  }
  if (i < n) {
    __m512i low, up;
    Widen(in + i, (1ULL << (n - i)) - 1, low, up);
    StorePrefix(out + i, low, up, static_cast<unsigned>(n - i));
  }
}

// Swaps the two bytes of every 16-bit lane.
VARNICE_AVX512 inline __m512i SwapBytes(__m512i v) {
  const __m512i swap = _mm512_set_epi64(0x0E0F0C0D0A0B0809, 0x0607040502030001, 0x0E0F0C0D0A0B0809,
                                        0x0607040502030001, 0x0E0F0C0D0A0B0809, 0x0607040502030001,
                                        0x0E0F0C0D0A0B0809, 0x0607040502030001);
  return _mm512_shuffle_epi8(v, swap);
}

// table[i] for each of the 32 16-bit indices: two gathers of 32-bit lanes
// (the table has one entry to spare at the end), their low halves in order.
VARNICE_AVX512 inline __m512i Gather32(__m512i indices, std::uint16_t const* table) {
  const __m512i evens = _mm512_set_epi16(62, 60, 58, 56, 54, 52, 50, 48, 46, 44, 42, 40, 38, 36, 34, 32, 30, 28, 26,
                                         24, 22, 20, 18, 16, 14, 12, 10, 8, 6, 4, 2, 0);
  const __m512i low = _mm512_i32gather_epi32(_mm512_cvtepu16_epi32(_mm512_castsi512_si256(indices)), table, 2);
  const __m512i high = _mm512_i32gather_epi32(_mm512_cvtepu16_epi32(_mm512_extracti64x4_epi64(indices, 1)), table, 2);
  return _mm512_permutex2var_epi16(low, evens, high);
}

// 32 units a block: their codes gathered from the flat table, each swapped
// to big-endian, and the high byte of every one-byte code squeezed out.
VARNICE_AVX512 std::size_t EncodeFlatAVX512(std::uint16_t const* flat, unsigned short const* in, std::size_t n,
                                            unsigned char* out, std::size_t room, std::size_t& written) {
  const __m512i general = _mm512_set1_epi16(static_cast<short>(kFlatGeneral));
  const __m512i oneByte = _mm512_set1_epi16(0xFF);
  std::size_t i = 0, w = 0;
  // Each unit writes at most two bytes, and four must be left before the last.
  while (n - i >= 32 && room - w >= 64 + 4) {
    const __m512i codes = Gather32(_mm512_loadu_si512(in + i), flat);
    const std::uint32_t bad = _mm512_cmpeq_epi16_mask(codes, general);
    const unsigned count = bad == 0 ? 32 : static_cast<unsigned>(__builtin_ctz(bad));
    const std::uint64_t units2 = count == 32 ? ~0ULL : (1ULL << (2 * count)) - 1;
    const std::uint64_t two = _pdep_u64(_mm512_cmpgt_epu16_mask(codes, oneByte), 0x5555555555555555ULL);
    const std::uint64_t keep = (two | 0xAAAAAAAAAAAAAAAAULL) & units2;
    const unsigned bytes = static_cast<unsigned>(__builtin_popcountll(keep));
    // The high byte of each code first, then the one-byte codes' empty high bytes squeezed out.
    const __m512i packed = _mm512_maskz_compress_epi8(keep, SwapBytes(codes));
    _mm512_mask_storeu_epi8(out + w, bytes == 64 ? ~0ULL : (1ULL << bytes) - 1, packed);
    i += count;
    w += bytes;
    if (count < 32) {
      written = w;
      return i;
    }
  }
  std::size_t tail = 0;
  i += EncodeFlatScalar(flat, in + i, n - i, out + w, room - w, tail);
  written = w + tail;
  return i;
}

// 32 pairs a block: their codes (lead byte high) gathered from the table; a
// short last block is loaded and stored under masks.
VARNICE_AVX512 std::size_t DecodePairsAVX512(std::uint16_t const* pairs, unsigned char const* in, std::size_t n,
                                             unsigned short* out) {
  const __m512i general = _mm512_set1_epi16(static_cast<short>(kFlatGeneral));
  std::size_t i = 0;
  while (n - i >= 2) {
    const std::size_t whole = (n - i) / 2;  // pairs left
    const unsigned block = whole >= 32 ? 32 : static_cast<unsigned>(whole);
    const __mmask32 valid = block == 32 ? ~0U : (1U << block) - 1;
    // Each pair as a big-endian code, the table's index.
    const __m512i units = Gather32(SwapBytes(_mm512_maskz_loadu_epi16(valid, in + i)), pairs);
    const __mmask32 bad = _mm512_mask_cmpeq_epi16_mask(valid, units, general);
    const unsigned count = bad == 0 ? block : static_cast<unsigned>(__builtin_ctz(bad));
    _mm512_mask_storeu_epi16(out + i / 2, count == 32 ? ~0U : (1U << count) - 1, units);
    i += 2 * count;
    if (count < 32) break;
  }
  return i;
}

}  // namespace

ByteKernels const kAVX512Kernels = {Level::kAVX512, DecodeRowAVX512,  NarrowBelowAVX512, WidenASCIIAVX512,
                                    WidenAllAVX512, EncodeFlatAVX512, DecodePairsAVX512};

}  // namespace varnice::internal::simd

#endif  // VARNICE_SIMD_X86
