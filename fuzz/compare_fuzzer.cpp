// Comparison, case and character-property functions over arbitrary UTF-16:
// the comparisons are antisymmetric and agree between their two forms, and
// nothing reads past a counted string.
#include "fuzz/fuzz_support.h"

namespace {

int Sign(int v) { return (v > 0) - (v < 0); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input in(data, size);
  const unsigned split = in.Byte();
  std::vector<unsigned short> units = fuzz::Units(in.Rest(), in.Left());
  const std::size_t cut = units.empty() ? 0 : split % (units.size() + 1);
  fuzz::Exact<unsigned short> a(cut), b(units.size() - cut);
  fuzz::Copy(a.data, units.data(), cut);
  fuzz::Copy(b.data, units.data() + cut, b.size);
  const unsigned aLen = static_cast<unsigned>(a.size), bLen = static_cast<unsigned>(b.size);

  FUZZ_CHECK(Sign(Varnice_compare_raw_unicode_pl(a.data, aLen, b.data, bLen)) ==
             -Sign(Varnice_compare_raw_unicode_pl(b.data, bLen, a.data, aLen)));
  FUZZ_CHECK(Sign(Varnice_compare_JIS_pl(a.data, aLen, b.data, bLen)) ==
             -Sign(Varnice_compare_JIS_pl(b.data, bLen, a.data, aLen)));
  FUZZ_CHECK(Varnice_compare_JIS_pl(a.data, aLen, a.data, aLen) == 0);

  // The terminated forms agree with the counted ones on text without NUL.
  std::vector<unsigned short> az(a.data, a.data + aLen), bz(b.data, b.data + bLen);
  bool hasNul = false;
  for (unsigned short u : units) hasNul |= u == 0;
  az.push_back(0);
  bz.push_back(0);
  if (!hasNul) {
    FUZZ_CHECK(Sign(Varnice_compare_raw_unicode_sz(az.data(), bz.data())) ==
               Sign(Varnice_compare_raw_unicode_pl(a.data, aLen, b.data, bLen)));
    FUZZ_CHECK(Sign(Varnice_compare_JIS_sz(az.data(), bz.data())) ==
               Sign(Varnice_compare_JIS_pl(a.data, aLen, b.data, bLen)));
  }

  for (unsigned i = 0; i < aLen; ++i) {
    const unsigned short c = a.data[i];
    (void)UCS2toupper(c);
    (void)qz_towlower(c);
    (void)TestUnicodeCharacter(c, split & 0x7F);
    (void)qz_iswctype(c, static_cast<int>(split % 90));
  }
  // UTF8toupper reads one character; give it a terminated copy.
  std::vector<unsigned char> bytes(reinterpret_cast<const unsigned char*>(a.data),
                                   reinterpret_cast<const unsigned char*>(a.data) + aLen * 2);
  bytes.push_back(0);
  bytes.push_back(0);
  bytes.push_back(0);
  bytes.push_back(0);
  (void)UTF8toupper(bytes.data());

  // Every transform selector over the text, with room from none to double.
  const int selector = static_cast<int>(split % 30);
  const long room = static_cast<long>(bLen);
  fuzz::Exact<unsigned short> out(room);
  const int n = TransformUnicodeString(selector, 0, a.data, aLen, out.data, room);
  FUZZ_CHECK(n <= room);
  return 0;
}
