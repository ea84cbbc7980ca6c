// Surrogate pairs: how a code point above U+FFFF and its two UTF-16 code
// units relate, written once for every layer. Internal to the library.
#ifndef VARNICE_WIDEC_UTF16_UNITS_H_
#define VARNICE_WIDEC_UTF16_UNITS_H_

namespace varnice::internal {

constexpr bool IsHighSurrogate(unsigned long u) { return u >= 0xD800 && u <= 0xDBFF; }
constexpr bool IsLowSurrogate(unsigned long u) { return u >= 0xDC00 && u <= 0xDFFF; }
constexpr bool IsSurrogate(unsigned long u) { return u >= 0xD800 && u <= 0xDFFF; }

// The code point of a high and a low surrogate.
constexpr unsigned long CombineSurrogates(unsigned long high, unsigned long low) {
  return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

// The two units of a code point from U+10000 to U+10FFFF.
constexpr unsigned short HighSurrogateOf(unsigned long c) {
  return static_cast<unsigned short>(0xD800 + ((c - 0x10000) >> 10));
}
constexpr unsigned short LowSurrogateOf(unsigned long c) { return static_cast<unsigned short>(0xDC00 + (c & 0x3FF)); }

}  // namespace varnice::internal

#endif  // VARNICE_WIDEC_UTF16_UNITS_H_
