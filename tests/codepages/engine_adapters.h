// Test helper: block converters over the code-page tables with the contract's
// signatures, so that the conversion loops can be driven as the converters
// drive them.
#ifndef VARNICE_TESTS_CODEPAGES_ENGINE_ADAPTERS_H_
#define VARNICE_TESTS_CODEPAGES_ENGINE_ADAPTERS_H_

#include <string>
#include <vector>

#include "varnice/codepages/generated/code_page_tables.h"
#include "varnice/codepages/mbcs_engine.h"
#include "varnice/encoding/unicode_lib_behavior.h"

namespace codepage_test {

using namespace varnice::internal;

// The capacity rule: -1 is unlimited; once refused, always refused.
inline bool Reached(bool& flag, long n, long reserve, long& capacity) {
  if (capacity == -1) return false;
  if (flag) return true;
  if (n + reserve <= capacity) {
    capacity -= n;
    return false;
  }
  flag = true;
  return true;
}

struct Decoder {
  MBCStoUnicodeTable const& table;
  UnicodeLibBehavior* behavior = UnicodeLibBehavior::GetDefaultBehavior();
  bool honour = true;
  unsigned short state = 0;

  int Convert(char const*& in, char const* inEnd, unsigned short*& out, unsigned short const* outEnd) {
    auto* p = reinterpret_cast<unsigned char const*>(in);
    int r = DecodeMBCS(table.Actions(), state, PassThrough(honour, *behavior), p,
                       reinterpret_cast<unsigned char const*>(inEnd), out, outEnd);
    in = reinterpret_cast<char const*>(p);
    return r;
  }
  void Reset() { state = 0; }
};

struct Encoder {
  FromUnicodeFinder finder;
  UnicodeLibBehavior* behavior = UnicodeLibBehavior::GetDefaultBehavior();
  bool honour = true;
  bool capacityReached = false;

  explicit Encoder(LookupUnsignedLongTable<unsigned short> const& table) : finder(table) {}
  int Convert(unsigned short const*& in, unsigned short const* inEnd, char*& out, char const* outEnd,
              long capacity) {
    PassThrough pass(honour, *behavior);
    return finder.With([&](auto const& find) {
      return EncodeMBCS(find, pass, in, inEnd, out, outEnd, capacity == -1,
                        [&](long n) { return Reached(capacityReached, n, 0, capacity); });
    });
  }
  void Reset() { capacityReached = false; }
};

inline std::string Hex(char const* begin, char const* end) {
  std::string s;
  char b[4];
  for (; begin != end; ++begin) {
    std::snprintf(b, sizeof b, "%s%02X", s.empty() ? "" : " ", static_cast<unsigned char>(*begin));
    s += b;
  }
  return s;
}

}  // namespace codepage_test

#endif  // VARNICE_TESTS_CODEPAGES_ENGINE_ADAPTERS_H_
