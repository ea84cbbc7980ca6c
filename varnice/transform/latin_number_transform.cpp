#include "varnice/transform/latin_number_transform.h"

#include <algorithm>

#include "varnice/charprops/character_test.h"
#include "varnice/transform/language_tables.h"
#include "varnice/transform/transform_frame.h"

namespace {

// No decimal digit other than 0-9 lies below the Arabic-Indic zero.
constexpr unsigned short kFirstForeignDigit = 0x0660;

bool IsHigh(unsigned short c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLow(unsigned short c) { return c >= 0xDC00 && c <= 0xDFFF; }

}  // namespace

ToLatinNumberTransform::~ToLatinNumberTransform() = default;

unsigned long ToLatinNumberTransform::Transform(unsigned long c) {
  using varnice::internal::kDecimalDigitZeroCount;
  using varnice::internal::kDecimalDigitZeros;
  if (c < kFirstForeignDigit) return c;
  const char32_t* end = kDecimalDigitZeros + kDecimalDigitZeroCount;
  const char32_t* zero = std::upper_bound(kDecimalDigitZeros, end, static_cast<char32_t>(c));
  if (zero == kDecimalDigitZeros || c - zero[-1] >= 10) return c;
  return '0' + (c - zero[-1]);
}

bool ToLatinNumberTransform::FillBuffer() {
  bool ended;
  const Gate passes = TestGate();
  unsigned short held = heldHigh_;
  unsigned short* out = varnice::internal::FillUnits(
      source_, buffer_, buffer_ + kBufferSize - 1, ended,
      [&](unsigned short c, unsigned short* out) {
        if (held != 0) {
          if (IsLow(c)) {
            const unsigned long cp = 0x10000 + ((held - 0xD800UL) << 10) + (c - 0xDC00UL);
            const unsigned long digit = Transform(cp);
            held = 0;
            if (digit != cp && test_(cp, encoding_)) {
              *out = static_cast<unsigned short>(digit);
              return out + 1;
            }
            out[0] = static_cast<unsigned short>(0xD800 + ((cp - 0x10000) >> 10));
            out[1] = c;
            return out + 2;
          }
          *out++ = held;
          held = 0;
        }
        if (IsHigh(c)) {
          held = c;
          return out;
        }
        if (c >= kFirstForeignDigit) {
          const unsigned long digit = Transform(c);
          if (digit != c && passes(c)) c = static_cast<unsigned short>(digit);
        }
        *out = c;
        return out + 1;
      });
  if (ended && held != 0) {
    *out++ = held;
    held = 0;
  }
  heldHigh_ = held;
  return Lend(out);
}
