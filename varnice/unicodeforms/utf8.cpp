#include "varnice/unicodeforms/utf8.h"

#include <climits>

#include "varnice/encoding/internal_encoding.h"
#include "varnice/simd/byte_kernels.h"
#include "varnice/unicodeforms/form_pipelines.h"
#include "varnice/unicodeforms/unicode_form_ids.h"
#include "varnice/widec/utf16_units.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

const unsigned char UTF8_CHAR_LENGTHS_FROM_LEAD[256] = {
#define R16(n) n, n, n, n, n, n, n, n, n, n, n, n, n, n, n, n
    R16(1), R16(1), R16(1), R16(1), R16(1), R16(1), R16(1), R16(1),  // 0x00-0x7F
    R16(0), R16(0), R16(0), R16(0),                                  // 0x80-0xBF
    R16(2), R16(2),                                                  // 0xC0-0xDF
    R16(3),                                                          // 0xE0-0xEF
    4, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 5, 6, 6, 6, 6,                  // 0xF0-0xFF
#undef R16
};

using varnice::internal::HighSurrogateOf;
using varnice::internal::LowSurrogateOf;

namespace {

constexpr int kContinuationByte = 9;

// Continuation bytes to expect after a lead byte, from the exported length
// table; 9 marks a continuation byte itself. C0, C1 and F5-FF are leads like
// any other.
inline int Continuations(unsigned char b) {
  const int length = UTF8_CHAR_LENGTHS_FROM_LEAD[b];
  return length == 0 ? kContinuationByte : length - 1;
}

// The value bits of a lead byte, by the number of continuation bytes.
constexpr unsigned char kLeadMask[6] = {0x7F, 0x1F, 0x0F, 0x07, 0x03, 0x01};
// The marker bits of a lead byte, by the total length.
constexpr unsigned char kLeadMark[7] = {0, 0x00, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC};

inline bool IsContinuation(unsigned char b) { return (b & 0xC0) == 0x80; }

// Copies the leading ASCII bytes of [in, in + n) as code units; returns how
// many there were.
inline std::size_t WidenASCII(const unsigned char* in, std::size_t n, unsigned short* out) {
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  for (; i + 16 <= n; i += 16) {
    // A run that has gone on for 32 bytes is likely long: the rest goes to
    // the vector kernel. Short runs between other characters stay here.
    if (i == 32 && n - i >= 64) return i + varnice::internal::simd::Kernels().widenASCII(in + i, n - i, out + i);
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i));
    if (_mm_movemask_epi8(bytes) != 0) break;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_unpacklo_epi8(bytes, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i + 8), _mm_unpackhi_epi8(bytes, zero));
  }
#endif
  for (; i < n && in[i] < 0x80; ++i) out[i] = in[i];
  return i;
}

// Copies the leading code units below 0x80 of [in, in + n) as bytes; returns
// how many there were.
inline std::size_t NarrowASCII(const unsigned short* in, std::size_t n, unsigned char* out) {
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
  const __m128i zero = _mm_setzero_si128();
  for (; i + 16 <= n; i += 16) {
    if (i == 32 && n - i >= 64) {
      return i + varnice::internal::simd::Kernels().narrowBelow(in + i, n - i, out + i, 0x80, 0xFFFF);
    }
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i + 8));
    const __m128i highBits = _mm_and_si128(_mm_or_si128(a, b), high);
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(highBits, zero)) != 0xFFFF) break;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(a, b));
  }
#endif
  for (; i < n && in[i] < 0x80; ++i) out[i] = static_cast<unsigned char>(in[i]);
  return i;
}

}  // namespace

// --- UTF8toWhatever -----------------------------------------------------------

UTF8toWhatever::UTF8toWhatever(bool allowSurrogates) : allowSurrogates_(allowSurrogates) {}
UTF8toWhatever::~UTF8toWhatever() = default;

void UTF8toWhatever::Reset() {
  expected_ = 0;
  value_ = 0;
}

int UTF8toWhatever::Step(const unsigned char*& in, const unsigned char* inEnd, unsigned short*& out,
                         const unsigned short* outEnd) {
  if (in == inEnd) return kInputUsedUp;
  // Room for a surrogate pair is demanded before every byte.
  if (outEnd - out < 2) return kOutputFull;
  const unsigned char b = *in++;
  if (expected_ == 0) {
    const int count = Continuations(b);
    if (count == 0) {
      *out++ = b;
    } else if (count == kContinuationByte) {
      Reset();
      return kIllegalInput;
    } else {
      value_ = b & kLeadMask[count];
      expected_ = count;
    }
    return kKeepConverting;
  }
  if (!IsContinuation(b)) {
    // The interrupting byte goes with the broken sequence.
    Reset();
    return kIllegalInput;
  }
  value_ = value_ << 6 | (b & 0x3F);
  if (--expected_ > 0) return kKeepConverting;
  // Overlong forms and encoded surrogates are taken as they come.
  if (value_ <= 0xFFFF) {
    *out++ = static_cast<unsigned short>(value_);
  } else if (allowSurrogates_ && value_ <= 0x10FFFF) {
    *out++ = HighSurrogateOf(value_);
    *out++ = LowSurrogateOf(value_);
  } else {
    Reset();
    return kNoCharacterDefined;
  }
  value_ = 0;
  return kKeepConverting;
}

int UTF8toWhatever::ConvertByteAtATime(const char*& in, const char* inEnd, unsigned short*& out,
                                       const unsigned short* outEnd) {
  auto* p = reinterpret_cast<const unsigned char*>(in);
  const auto* end = reinterpret_cast<const unsigned char*>(inEnd);
  int result;
  while ((result = Step(p, end, out, outEnd)) < kConversionDone) {
  }
  in = reinterpret_cast<const char*>(p);
  return result;
}

int UTF8toWhatever::Convert(const char*& in, const char* inEnd, unsigned short*& out,
                            const unsigned short* outEnd) {
  auto* p = reinterpret_cast<const unsigned char*>(in);
  const auto* end = reinterpret_cast<const unsigned char*>(inEnd);
  int result;
  do {
    // Between characters, whole well-formed characters that fit are taken in
    // one go. The plain step demands two units of room per byte and never
    // writes more than two per character, so with that room a whole
    // character goes exactly where the plain steps would have put it. An
    // ASCII run stops one unit short of the end, where the plain loop would
    // stop for want of room. Anything else (a sequence cut by the block end,
    // a malformed or out-of-range one) is left to the plain step.
    while (expected_ == 0 && p != end && outEnd - out >= 2) {
      const unsigned char b = *p;
      if (b < 0x80) {
        std::size_t n = static_cast<std::size_t>(end - p);
        const std::size_t room = static_cast<std::size_t>(outEnd - out) - 1;
        if (n > room) n = room;
        const std::size_t done = WidenASCII(p, n, out);
        p += done;
        out += done;
        if (done < n) continue;
        break;
      }
      const std::ptrdiff_t left = end - p;
      if (b >= 0xC0 && b < 0xE0) {
        if (left < 2 || !IsContinuation(p[1])) break;
        *out++ = static_cast<unsigned short>((b & 0x1F) << 6 | (p[1] & 0x3F));
        p += 2;
      } else if (b >= 0xE0 && b < 0xF0) {
        if (left < 3 || !IsContinuation(p[1]) || !IsContinuation(p[2])) break;
        *out++ = static_cast<unsigned short>((b & 0x0F) << 12 | (p[1] & 0x3F) << 6 | (p[2] & 0x3F));
        p += 3;
      } else if (b >= 0xF0 && b < 0xF8) {
        if (left < 4 || !IsContinuation(p[1]) || !IsContinuation(p[2]) || !IsContinuation(p[3])) break;
        const std::uint32_t v =
            (b & 0x07u) << 18 | (p[1] & 0x3Fu) << 12 | (p[2] & 0x3Fu) << 6 | (p[3] & 0x3Fu);
        if (v <= 0xFFFF) {
          *out++ = static_cast<unsigned short>(v);
        } else if (allowSurrogates_ && v <= 0x10FFFF) {
          *out++ = HighSurrogateOf(v);
          *out++ = LowSurrogateOf(v);
        } else {
          break;
        }
        p += 4;
      } else {
        break;
      }
    }
    result = Step(p, end, out, outEnd);
  } while (result < kConversionDone);
  in = reinterpret_cast<const char*>(p);
  return result;
}

// --- UTF8fromWhatever ---------------------------------------------------------

UTF8fromWhatever::UTF8fromWhatever(bool pairSurrogates) : pairSurrogates_(pairSurrogates) {}
UTF8fromWhatever::~UTF8fromWhatever() = default;

void UTF8fromWhatever::Reset() {
  pendingHigh_ = 0;
  BlockConverter_16_to_8::Reset();
}

int UTF8fromWhatever::Step(const unsigned short*& in, const unsigned short* inEnd, unsigned char*& out,
                           const unsigned char* outEnd, long& capacity) {
  if (in == inEnd) return kInputUsedUp;
  if (outEnd - out < 6) return kOutputFull;
  const unsigned short u = *in++;
  std::uint32_t value;
  if (pendingHigh_ != 0) {
    if (!varnice::internal::IsLowSurrogate(u)) {
      pendingHigh_ = 0;
      return kIllegalUTF16;
    }
    value = varnice::internal::CombineSurrogates(pendingHigh_, u);
    pendingHigh_ = 0;
  } else if (pairSurrogates_ && varnice::internal::IsHighSurrogate(u)) {
    pendingHigh_ = u;
    return kKeepConverting;
  } else {
    value = u;
  }
  const int length = value <= 0x7F ? 1 : value <= 0x7FF ? 2 : value <= 0xFFFF ? 3 : value <= 0x1FFFFF ? 4
                     : value <= 0x3FFFFFF ? 5 : 6;
  // The unit (or the pair) stays consumed when the budget refuses it.
  if (ReachedCapacity(length, 0, capacity)) return kCapacityReached;
  for (int i = length - 1; i > 0; --i) {
    out[i] = static_cast<unsigned char>(0x80 | (value & 0x3F));
    value >>= 6;
  }
  out[0] = static_cast<unsigned char>(value | kLeadMark[length]);
  out += length;
  return kKeepConverting;
}

int UTF8fromWhatever::ConvertUnitAtATime(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                                         const char* outEnd, long capacity) {
  auto* o = reinterpret_cast<unsigned char*>(out);
  const auto* end = reinterpret_cast<const unsigned char*>(outEnd);
  int result;
  while ((result = Step(in, inEnd, o, end, capacity)) < kConversionDone) {
  }
  out = reinterpret_cast<char*>(o);
  return result;
}

int UTF8fromWhatever::Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                              const char* outEnd, long capacity) {
  auto* o = reinterpret_cast<unsigned char*>(out);
  const auto* end = reinterpret_cast<const unsigned char*>(outEnd);
  int result;
  do {
    // Between characters, units outside the surrogate range are written in a
    // tight loop while the plain step's six bytes of room are there and the
    // budget allows; the budget is spent exactly as the plain step spends it.
    // Surrogates, a spent budget and the last bytes of room go to the plain
    // step.
    if (pendingHigh_ == 0 && !CapacityWasReached() && capacity >= -1) {
      long budget = capacity == -1 ? LONG_MAX : capacity;
      // A local copy: the bytes are written through char pointers, which may
      // alias anything, so the reference would be reloaded for every unit.
      const unsigned short* p = in;
      while (p != inEnd && end - o >= 6) {
        const unsigned short u = *p;
        if (u < 0x80) {
          std::size_t n = static_cast<std::size_t>(inEnd - p);
          const std::size_t room = static_cast<std::size_t>(end - o) - 5;
          if (n > room) n = room;
          if (static_cast<unsigned long>(budget) < n) n = static_cast<std::size_t>(budget);
          if (n == 0) break;
          const std::size_t done = NarrowASCII(p, n, o);
          p += done;
          o += done;
          budget -= static_cast<long>(done);
          if (done < n) continue;
          break;
        }
        if (u < 0x800) {
          if (budget < 2) break;
          o[0] = static_cast<unsigned char>(0xC0 | u >> 6);
          o[1] = static_cast<unsigned char>(0x80 | (u & 0x3F));
          o += 2;
          budget -= 2;
        } else if (!varnice::internal::IsSurrogate(u)) {
          if (budget < 3) break;
          o[0] = static_cast<unsigned char>(0xE0 | u >> 12);
          o[1] = static_cast<unsigned char>(0x80 | (u >> 6 & 0x3F));
          o[2] = static_cast<unsigned char>(0x80 | (u & 0x3F));
          o += 3;
          budget -= 3;
        } else {
          break;
        }
        ++p;
      }
      in = p;
      if (capacity != -1) capacity = budget;
    }
    result = Step(in, inEnd, o, end, capacity);
  } while (result < kConversionDone);
  out = reinterpret_cast<char*>(o);
  return result;
}

// --- UTF8Detector -------------------------------------------------------------

UTF8Detector::UTF8Detector(const ExternalEncoding& encoding) : ExternalEncodingDetector(encoding, 0, 0) {}
UTF8Detector::~UTF8Detector() = default;

void UTF8Detector::Scan(const char*, const char* begin, const char* end) {
  for (const char* p = begin; p != end; ++p) {
    const auto b = static_cast<unsigned char>(*p);
    if (expected_ > 0) {
      if (!IsContinuation(b)) --score_;
      --expected_;
    } else {
      if (IsContinuation(b)) --score_;
      expected_ = Continuations(b);
    }
  }
}

void UTF8Detector::Finish(const char*, const char*) {
  if (expected_ > 0) --score_;
}

// --- UTF8EncodingVariant ------------------------------------------------------

UTF8EncodingVariant::UTF8EncodingVariant(const InternalEncoding& internal, const EncodingVariation& variation,
                                         bool allowSurrogates, const char** names)
    : ExternalEncoding(internal, variation, names, nullptr, 0),
      internal_(internal),
      allowSurrogates_(allowSurrogates) {}

UTF8EncodingVariant::~UTF8EncodingVariant() = default;

bool UTF8EncodingVariant::IsTextModeSafe() const { return true; }

ExternalEncoding::ToUnicodeSource* UTF8EncodingVariant::CreateCharSourceToUnicode(CharSource& in,
                                                                                  UnicodeLibAllocator& a) const {
  return varnice::internal::FormSourceToUnicode(*this, internal_, new (a) UTF8toWhatever(Decoder()), in, a);
}

CharSource* UTF8EncodingVariant::CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSourceFromUnicode(*this, internal_, new (a) UTF8fromWhatever(Encoder()),
                                                  in, a);
}

Char16Sink* UTF8EncodingVariant::CreateCharSinkFromUnicode(CharSink& out, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSinkFromUnicode(*this, internal_, new (a) UTF8fromWhatever(Encoder()),
                                                out, a);
}

CharSink* UTF8EncodingVariant::CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  return varnice::internal::FormSinkToUnicode(*this, internal_, new (a) UTF8toWhatever(Decoder()), out, a);
}

ExternalEncodingDetector* UTF8EncodingVariant::CreateEncodingDetector(UnicodeLibAllocator& a) const {
  return new (a) UTF8Detector(*this);
}

// --- UTF8Variation ------------------------------------------------------------

namespace {

const char* kUTF8VariationNames[] = {"UTF8", "UTF-8", nullptr};
const char* kUTF8Names[] = {"UTF8", "UTF-8", nullptr};

}  // namespace

UTF8Variation::UTF8Variation()
    : RealEncodingVariation(EncodingVariationID(varnice::internal::kUTF8Variation), kUTF8VariationNames) {}
UTF8Variation::~UTF8Variation() = default;

void UTF8Variation::GenerateVariantOf(const InternalEncoding& encoding) {
  if (!varnice::internal::ShouldGenerate(*this, encoding)) return;
  const TextEncodingID id = encoding.GetTextEncodingID();
  // Unicode 1.1 has no surrogates, so its UTF-8 form never makes pairs.
  const bool allowSurrogates = id.GetBaseEncodingID().Value() != varnice::internal::kUnicode11Number;
  const char** names = id == TextEncodingID(varnice::internal::kUnicode20Number) ? kUTF8Names : nullptr;
  AddVariant(new UTF8EncodingVariant(encoding, *this, allowSurrogates, names));
}
