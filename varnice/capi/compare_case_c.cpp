// The C comparison and upper-case functions.
#include <cstdint>
#include <cstring>

#include "varnice/capi/varnice_c.h"
#include "varnice/charprops/property_tables.h"
#include "varnice/charprops/unicode_comparator.h"
#include "varnice/widec/utf16_units.h"

extern "C" int Varnice_compare_raw_unicode_sz(const unsigned short* a, const unsigned short* b) {
  return RawUnicodeComparator()(a, b);
}

extern "C" int Varnice_compare_raw_unicode_pl(const unsigned short* a, unsigned int aLen,
                                              const unsigned short* b, unsigned int bLen) {
  return RawUnicodeComparator()(a, aLen, b, bLen);
}

extern "C" int Varnice_compare_JIS_sz(const unsigned short* a, const unsigned short* b) {
  return JISUnicodeComparator()(a, b);
}

extern "C" int Varnice_compare_JIS_pl(const unsigned short* a, unsigned int aLen,
                                      const unsigned short* b, unsigned int bLen) {
  return JISUnicodeComparator()(a, aLen, b, bLen);
}

// A missing row and a zero entry both give U+FFFD: the table stores every
// character of a present row, so a zero can only mean "not covered".
extern "C" unsigned short UCS2toupper(unsigned short ch) {
  const unsigned short* row = varnice::internal::kUcs2UpperRows[ch >> 8];
  const unsigned short upper = row != nullptr ? row[ch & 0xFF] : 0;
  return upper != 0 ? upper : 0xFFFD;
}

namespace {

// Trail bytes announced by a lead byte; -1 for a byte that cannot begin a
// sequence whose bytes fit the 32-bit result.
int TrailBytes(unsigned char lead) {
  if (lead < 0x80) return 0;
  if (lead < 0xC0) return -1;
  if (lead < 0xE0) return 1;
  if (lead < 0xF0) return 2;
  if (lead < 0xF8) return 3;
  return -1;
}

// What the lead byte and trail bytes contribute beyond the code point when
// the bytes are summed in six-bit steps.
constexpr unsigned long kOffsets[4] = {0x00000000ul, 0x00003080ul, 0x000E2080ul, 0x03C82080ul};

unsigned long PackedBytes(const unsigned char* p, int count) {
  std::uint32_t word = 0;
  std::memcpy(&word, p, static_cast<std::size_t>(count));
  return word;
}

}  // namespace

extern "C" unsigned long UTF8toupper(const unsigned char* p) {
  const int trail = TrailBytes(p[0]);
  if (trail < 0) return PackedBytes(p, 1);
  unsigned long ch = p[0];
  for (int i = 1; i <= trail; ++i) {
    // Stop at the first byte that does not continue the sequence (such as
    // the terminating NUL) rather than read past it.
    if ((p[i] & 0xC0) != 0x80) return PackedBytes(p, 1);
    ch = (ch << 6) + p[i];
  }
  ch -= kOffsets[trail];
  // Beyond the 16-bit tables: a low surrogate's row (absent, so the input
  // comes back) or U+FFFD.
  if (ch > 0xFFFF) ch = ch < 0x110000 ? varnice::internal::LowSurrogateOf(ch) : 0xFFFD;
  const std::uint32_t* row = varnice::internal::kUtf8UpperRows[ch >> 8];
  const std::uint32_t upper = row != nullptr ? row[ch & 0xFF] : 0;
  return upper != 0 ? upper : PackedBytes(p, trail + 1);
}
