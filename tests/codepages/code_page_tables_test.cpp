// The generated tries: state counts, lead-byte sets and a few known rows.
#include <gtest/gtest.h>

#include <set>

#include "varnice/codepages/generated/code_page_tables.h"

namespace {

using namespace varnice::internal;

std::set<int> LeadBytes(MBCStoUnicodeTable const& t, unsigned short state = 0) {
  std::set<int> leads;
  for (int b = 0; b < 256; ++b) {
    if (t.GetAction(state, static_cast<unsigned char>(b)).output == MBCStoUnicodeTable::kNoOutput) {
      leads.insert(b);
    }
  }
  return leads;
}

std::set<int> Bytes(std::initializer_list<std::pair<int, int>> ranges) {
  std::set<int> out;
  for (auto [lo, hi] : ranges) {
    for (int b = lo; b <= hi; ++b) out.insert(b);
  }
  return out;
}

TEST(CodePageTables, StateCounts) {
  EXPECT_EQ(ShiftJISToUnicodeTable().StateCount(), 50);
  EXPECT_EQ(EUCPkdFmtJapaneseToUnicodeTable().StateCount(), 148);
  EXPECT_EQ(ISO87JISX0208ToUnicodeTable().StateCount(), 78);
  EXPECT_EQ(CCSID942ToUnicodeTable().StateCount(), 53);
  // 55 lead bytes in the data: 0x81-0x84, 0x87, 0x88-0x9F, 0xE0-0xEA,
  // 0xED-0xEE, 0xF0-0xF9 (user-defined) and 0xFA-0xFC.
  EXPECT_EQ(CP932ToUnicodeTable().StateCount(), 56);
  for (auto* single : {&ASCIIToUnicodeTable, &CP1252ToUnicodeTable, &CCSID290ToUnicodeTable,
                       &CP870ToUnicodeTable, &HalfWidthKatakanaToUnicodeTable}) {
    EXPECT_EQ(single().StateCount(), 1);
  }
}

TEST(CodePageTables, ShiftJISLeadAndKatakanaBytes) {
  MBCStoUnicodeTable const& t = ShiftJISToUnicodeTable();
  EXPECT_EQ(LeadBytes(t), Bytes({{0x81, 0x84}, {0x88, 0x9F}, {0xE0, 0xEA}, {0xF0, 0xF9}}));
  for (int b : Bytes({{0x80, 0x80}, {0x85, 0x87}, {0xA0, 0xA0}, {0xEB, 0xEF}, {0xFA, 0xFF}})) {
    EXPECT_EQ(t.GetAction(0, static_cast<unsigned char>(b)).output, MBCStoUnicodeTable::kInvalid) << b;
  }
  for (int b = 0xA1; b <= 0xDF; ++b) {
    EXPECT_EQ(t.GetAction(0, static_cast<unsigned char>(b)).output, 0xFF61 + b - 0xA1);
  }
  unsigned short u = 0;
  ASSERT_TRUE(t.Lookup(0x8140, u, 0));
  EXPECT_EQ(u, 0x3000);
  ASSERT_TRUE(t.Lookup(0xF040, u, 0));  // user-defined area
  EXPECT_EQ(u, 0xE000);
  ASSERT_TRUE(t.Lookup(0xF9FC, u, 0));
  EXPECT_EQ(u, 0xE757);
}

TEST(CodePageTables, EUCJPLeadBytesAndThreeByteRows) {
  MBCStoUnicodeTable const& t = EUCPkdFmtJapaneseToUnicodeTable();
  EXPECT_EQ(LeadBytes(t), Bytes({{0x8E, 0x8F}, {0xA1, 0xA8}, {0xB0, 0xF4}}));
  unsigned short s8F = t.GetAction(0, 0x8F).nextState;
  EXPECT_EQ(LeadBytes(t, s8F), Bytes({{0xA2, 0xA2}, {0xA6, 0xA7}, {0xA9, 0xAB}, {0xB0, 0xED}}));
  unsigned short s8E = t.GetAction(0, 0x8E).nextState;
  for (int b = 0; b < 256; ++b) {
    unsigned short want = (b >= 0xA1 && b <= 0xDF) ? 0xFF61 + b - 0xA1 : MBCStoUnicodeTable::kInvalid;
    EXPECT_EQ(t.GetAction(s8E, static_cast<unsigned char>(b)).output, want) << b;
  }
}

TEST(CodePageTables, JISX0208IsTwoSevenBitBytes) {
  MBCStoUnicodeTable const& t = ISO87JISX0208ToUnicodeTable();
  EXPECT_EQ(LeadBytes(t), Bytes({{0x21, 0x28}, {0x30, 0x74}}));
  unsigned short u = 0;
  ASSERT_TRUE(t.Lookup(0x3021, u, 0));
  EXPECT_EQ(u, 0x4E9C);
  EXPECT_EQ(t.GetAction(0, 0x41).output, MBCStoUnicodeTable::kNoOutput);
  EXPECT_EQ(t.GetAction(0, 0x0A).output, MBCStoUnicodeTable::kInvalid);
}

}  // namespace
