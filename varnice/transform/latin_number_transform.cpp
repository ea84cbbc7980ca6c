#include "varnice/transform/latin_number_transform.h"

#include <algorithm>

#include "varnice/charprops/types/character_test.h"
#include "varnice/transform/language_tables.h"
#include "varnice/transform/transform_frame.h"
#include "varnice/widec/utf16_units.h"

using varnice::internal::CombineSurrogates;
using varnice::internal::HighSurrogateOf;
using varnice::internal::IsHighSurrogate;
using varnice::internal::IsLowSurrogate;

namespace {

// No decimal digit other than 0-9 lies below the Arabic-Indic zero.
constexpr unsigned short kFirstForeignDigit = 0x0660;

// The ASCII digit of a decimal digit, or c itself.
inline unsigned long LatinDigit(unsigned long c) {
  using varnice::internal::kDecimalDigitZeroCount;
  using varnice::internal::kDecimalDigitZeros;
  if (c < kFirstForeignDigit) return c;
  if (c <= 0xFFFF && (varnice::internal::kDecimalDigitPages[c >> 14] >> ((c >> 8) & 63) & 1) == 0)
    return c;
  const char32_t* end = kDecimalDigitZeros + kDecimalDigitZeroCount;
  const char32_t* zero = std::upper_bound(kDecimalDigitZeros, end, static_cast<char32_t>(c));
  if (zero == kDecimalDigitZeros || c - zero[-1] >= 10) return c;
  return '0' + (c - zero[-1]);
}

}  // namespace

ToLatinNumberTransform::~ToLatinNumberTransform() = default;

unsigned long ToLatinNumberTransform::Transform(unsigned long c) { return LatinDigit(c); }

bool ToLatinNumberTransform::FillBuffer() {
  const Gate passes = TestGate();
  unsigned short held = heldHigh_;
  auto step = [&](unsigned short c, unsigned short* out) {
    if (held != 0) {
      if (IsLowSurrogate(c)) {
        const unsigned long cp = CombineSurrogates(held, c);
        const unsigned long digit = LatinDigit(cp);
        held = 0;
        if (digit != cp && test_(cp, encoding_)) {
          *out = static_cast<unsigned short>(digit);
          return out + 1;
        }
        out[0] = HighSurrogateOf(cp);
        out[1] = c;
        return out + 2;
      }
      *out++ = held;
      held = 0;
    }
    if (IsHighSurrogate(c)) {
      held = c;
      return out;
    }
    const unsigned long digit = LatinDigit(c);
    if (digit != c && passes(c)) c = static_cast<unsigned short>(digit);
    *out = c;
    return out + 1;
  };
  // Runs with no digit but 0-9, and nothing held, are copied as they are.
  bool ended;
  unsigned short* out = varnice::internal::FillUnitsCopying(
      source_, buffer_, buffer_ + kBufferSize - 1, ended,
      [&held](unsigned short c) { return held == 0 && c < kFirstForeignDigit; }, step);
  if (ended && held != 0) {
    *out++ = held;
    held = 0;
  }
  heldHigh_ = held;
  return Lend(out);
}
