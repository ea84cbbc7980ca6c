#include "varnice/charprops/unicode_comparator.h"

#include <gtest/gtest.h>

#include <vector>

#include "varnice/capi/varnice_c.h"

namespace {

using U16 = std::vector<unsigned short>;

int Raw(U16 const& a, U16 const& b) {
  return RawUnicodeComparator()(a.data(), static_cast<unsigned>(a.size()), b.data(),
                                static_cast<unsigned>(b.size()));
}

int Jis(U16 const& a, U16 const& b) {
  return JISUnicodeComparator()(a.data(), static_cast<unsigned>(a.size()), b.data(),
                                static_cast<unsigned>(b.size()));
}

TEST(RawUnicodeComparator, OrdersByCodeUnitThenLength) {
  EXPECT_EQ(Raw({}, {}), 0);
  EXPECT_EQ(Raw({}, {0}), -1);  // a NUL unit counts in counted strings
  EXPECT_EQ(Raw({'a', 'b'}, {'a', 'b', 'c'}), -1);
  EXPECT_EQ(Raw({'a', 'b', 'c'}, {'a', 'b'}), 1);
  EXPECT_EQ(Raw({0x0041}, {0xFF21}), -1);
  EXPECT_EQ(Raw({0xFF21}, {0x0041, 0x0041}), 1);  // the first difference wins over length
  EXPECT_EQ(Raw({0xFFFF}, {0x0001}), 1);          // units compare unsigned
  // Surrogate pairs sort by their units: U+10000 before U+E000.
  EXPECT_EQ(Raw({0xD800, 0xDC00}, {0xE000}), -1);
}

TEST(UnicodeComparator, ThreeCallFormsAgreeOnTheirOwnNotionOfLength) {
  const RawUnicodeComparator raw;
  const unsigned short a[] = {'a', 'b', 0, 'z', 0};
  const unsigned short b[] = {'a', 'b', 0, 'y', 0};
  EXPECT_EQ(raw(a, b), 0);  // NUL-terminated: both are "ab"
  EXPECT_EQ(raw(a, 4, b, 4), 1);
  EXPECT_EQ(raw(a, 2, b, 4), -1);
  EXPECT_EQ(raw(qz_wstring(a, 4), qz_wstring(b, 4)), 1);  // embedded NUL takes part
  EXPECT_EQ(raw(qz_wstring(a, 2), qz_wstring(b, 2)), 0);
  EXPECT_EQ(raw(qz_wstring(), qz_wstring(a, 1)), -1);

  UnicodeComparator const& base = raw;
  EXPECT_EQ(base.CompareBuffers(a, 4, b, 4), 1);
}

// A key of the caller's own goes through the general loop.
struct CaseBlind : CharwiseUnicodeComparator {
  unsigned long SortKey(unsigned long c) const override {
    return qz_towupper(static_cast<unsigned short>(c));
  }
};

TEST(CharwiseUnicodeComparator, DerivedKeysDecideAndResultsAreExactlyMinusOneZeroOne) {
  const CaseBlind blind;
  const unsigned short lower[] = {'a', 'b', 'c', 0};
  const unsigned short upper[] = {'A', 'B', 'C', 0};
  const unsigned short later[] = {'a', 'b', 'z', 0};
  EXPECT_EQ(blind(lower, upper), 0);
  EXPECT_EQ(blind(upper, later), -1);
  EXPECT_EQ(blind(later, upper), 1);
  EXPECT_EQ(blind(lower, 2, upper, 3), -1);
  EXPECT_EQ(RawUnicodeComparator()(lower, upper), 1);
}

// EUC-JP code order: ASCII in byte order, JIS X 0208 (fullwidth Latin in row
// 3, kana in row 4, then kanji), halfwidth katakana (8E..), then characters
// with no EUC-JP code, equal to each other, and JIS X 0212 last (8F..).
TEST(JISUnicodeComparator, FollowsEucJpCodeOrder) {
  const unsigned short hiraganaA = 0x3042;   // A4A2
  const unsigned short kanji0208 = 0x4E9C;   // B0A1
  const unsigned short halfwidthA = 0xFF71;  // 8EB1
  const unsigned short kanji0212 = 0x4E02;   // 8FB0A1
  const unsigned short thai = 0x0E01, hangul = 0xAC00;  // no code
  struct Row {
    U16 a, b;
    int expected;
  } const rows[] = {
      {{'A'}, {'a'}, -1},           {{'z'}, {'~'}, -1},
      {{'a', 'b'}, {'a', 'b'}, 0},  {{'a'}, {'a', 'b'}, -1},
      {{thai}, {'~'}, 1},           {{'x', thai, 'y'}, {'x', hangul, 'y'}, 0},
      {{'x', thai, 'a'}, {'x', hangul, 'b'}, -1},
      {{hiraganaA}, {kanji0208}, -1}, {{hiraganaA}, {halfwidthA}, 1},
      {{halfwidthA}, {'~'}, 1},     {{0xFF21}, {hiraganaA}, -1},
      {{kanji0208}, {thai}, -1},    {{thai}, {kanji0212}, -1},
      {{kanji0208}, {kanji0212}, -1},
  };
  for (const Row& r : rows) EXPECT_EQ(Jis(r.a, r.b), r.expected) << std::hex << r.a[0] << " " << r.b[0];
  // Where the raw order differs.
  EXPECT_EQ(Raw({'x', thai, 'y'}, {'x', hangul, 'y'}), -1);
  EXPECT_EQ(Raw({hiraganaA}, {halfwidthA}), -1);
}

TEST(CCompareFunctions, BothFormsOfBothOrders) {
  const unsigned short s[] = {'k', 0x3042, 0x4E9C, 0};
  const unsigned short t[] = {'k', 0x3042, 0};
  EXPECT_EQ(Varnice_compare_raw_unicode_sz(s, s), 0);
  EXPECT_EQ(Varnice_compare_raw_unicode_pl(s, 3, s, 3), 0);
  EXPECT_EQ(Varnice_compare_JIS_sz(s, s), 0);
  EXPECT_EQ(Varnice_compare_JIS_pl(s, 3, s, 3), 0);
  EXPECT_EQ(Varnice_compare_raw_unicode_sz(t, s), -1);
  EXPECT_EQ(Varnice_compare_raw_unicode_pl(s, 2, t, 2), 0);
  EXPECT_EQ(Varnice_compare_JIS_sz(s, t), 1);
  EXPECT_EQ(Varnice_compare_JIS_pl(s, 1, t, 2), -1);
}

}  // namespace
