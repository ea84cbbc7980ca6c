// The transform tables against the rows and shapes the library promises.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "varnice/tables/lookup_functions.h"
#include "varnice/transform/transform_tables.h"

using varnice::internal::PlaneValue;

namespace {

std::map<unsigned short, unsigned short> AllOf(const GapMappingTable& table) {
  std::map<unsigned short, unsigned short> out;
  for (unsigned c = 0; c <= 0xFFFF; ++c) {
    if (unsigned short v = table.Find(static_cast<unsigned short>(c))) out[c] = v;
  }
  return out;
}

TEST(WidthTables, EachIsTheOthersInverse) {
  const auto half = AllOf(HalfwidthMappingTable);
  const auto full = AllOf(FullwidthMappingTable);
  ASSERT_EQ(half.size(), 224u);
  ASSERT_EQ(full.size(), 224u);
  for (auto [from, to] : half) EXPECT_EQ(full.at(to), from) << std::hex << from;
}

TEST(WidthTables, HalfwidthRuns) {
  struct Run {
    unsigned short from, last, to;
  };
  const Run runs[] = {
      {0x3000, 0x3000, 0x0020}, {0xFF01, 0xFF5E, 0x0021}, {0xFFE0, 0xFFE1, 0x00A2},
      {0xFFE2, 0xFFE2, 0x00AC}, {0xFFE3, 0xFFE3, 0x00AF}, {0xFFE4, 0xFFE4, 0x00A6},
      {0xFFE5, 0xFFE5, 0x00A5}, {0xFFE6, 0xFFE6, 0x20A9}, {0x2190, 0x2193, 0xFFE9},
      {0x2502, 0x2502, 0xFFE8}, {0x25A0, 0x25A0, 0xFFED}, {0x25CB, 0x25CB, 0xFFEE},
      {0x3001, 0x3001, 0xFF64}, {0x3002, 0x3002, 0xFF61}, {0x300C, 0x300D, 0xFF62},
      {0x3099, 0x309A, 0xFF9E}, {0x30FB, 0x30FB, 0xFF65}, {0x30FC, 0x30FC, 0xFF70},
      {0x30A2, 0x30A2, 0xFF71}, {0x30A1, 0x30A1, 0xFF67}, {0x30C3, 0x30C3, 0xFF6F},
      {0x30F2, 0x30F2, 0xFF66}, {0x30F3, 0x30F3, 0xFF9D}, {0x3131, 0x314E, 0xFFA1},
      {0x314F, 0x3154, 0xFFC2}, {0x3155, 0x315A, 0xFFCA}, {0x315B, 0x3160, 0xFFD2},
      {0x3161, 0x3163, 0xFFDA}, {0x3164, 0x3164, 0xFFA0},
  };
  for (Run r : runs) {
    for (unsigned c = r.from; c <= r.last; ++c) {
      EXPECT_EQ(HalfwidthMappingTable.Find(c), r.to + (c - r.from)) << std::hex << c;
    }
  }
  // No single halfwidth form: left to the katakana width transforms.
  for (unsigned short c : {0x30AC, 0x30EE, 0x30F0, 0x30F1, 0x30F4, 0x30F5, 0x30F6}) {
    EXPECT_EQ(HalfwidthMappingTable.Find(c), 0) << std::hex << c;
  }
  EXPECT_EQ(FullwidthMappingTable.Find(0xFF9E), 0x3099);  // combining, not U+309B
}

std::pair<unsigned short, unsigned short> Halves(std::uint32_t v) {
  return {static_cast<unsigned short>(v >> 16), static_cast<unsigned short>(v)};
}

TEST(DecompositionTable, QuotedRowsAndPages) {
  const unsigned short rows[][3] = {{0x00C0, 0x0041, 0x0300}, {0x0344, 0x0308, 0x0301}, {0x00C5, 0x0041, 0x030A},
                                    {0x212B, 0x0041, 0x030A}, {0x0958, 0x0915, 0x093C}, {0x1F71, 0x03B1, 0x0301},
                                    {0x30AC, 0x30AB, 0x3099}, {0xFB4B, 0x05D5, 0x05B9}};
  for (auto [c, first, second] : rows) {
    EXPECT_EQ(Halves(PlaneValue(DecompositionTable, c)), std::make_pair(first, second)) << std::hex << c;
  }
  EXPECT_EQ(PlaneValue(DecompositionTable, 0x2126), 0u);  // one unit
  EXPECT_EQ(PlaneValue(DecompositionTable, 0x1E08), 0u);  // three units
  const std::set<int> pages = {0x00, 0x01, 0x02, 0x03, 0x04, 0x09, 0x0A, 0x0B, 0x0C, 0x0D,
                               0x0E, 0x0F, 0x1E, 0x1F, 0x21, 0x22, 0x30, 0xFB};
  for (int p = 0; p < 256; ++p) {
    EXPECT_EQ(DecompositionTable[p] != nullptr, pages.count(p) == 1) << p;
  }
  EXPECT_NEAR(DecompositionTableEntries, 701, 15);
}

TEST(CompositionTable, SortedFromFirstRowToLast) {
  ASSERT_GT(CompositionTableCount, 600);
  EXPECT_EQ(CompositionTable[0].key, 0x003C0338u);
  EXPECT_EQ(CompositionTable[0].value, 0x226E);
  EXPECT_EQ(CompositionTable[CompositionTableCount - 1].key, 0x30FD3099u);
  EXPECT_EQ(CompositionTable[CompositionTableCount - 1].value, 0x30FE);
  for (long i = 1; i < CompositionTableCount; ++i) {
    EXPECT_LT(CompositionTable[i - 1].key, CompositionTable[i].key);
  }
  unsigned short composed = 0;
  ASSERT_TRUE(SparseTableLookup(CompositionTable, CompositionTableCount, 0x0041030AUL, composed));
  EXPECT_EQ(composed, 0x00C5);  // not the ANGSTROM SIGN
  // The shortcuts of the transforms: nothing below these takes part.
  EXPECT_GE(CompositionTable[0].key & 0xFFFF, varnice::internal::kFirstCompositionSecond);
  for (long i = 0; i < CompositionTableCount; ++i) {
    const unsigned short second = CompositionTable[i].key & 0xFFFF;
    EXPECT_GE(second, varnice::internal::kFirstCompositionSecond);
    EXPECT_TRUE(varnice::internal::MayComposeAsSecond(second));
  }
  for (unsigned c = 0; c < 0xC0; ++c) EXPECT_EQ(PlaneValue(DecompositionTable, c), 0u) << c;
  // Every pair decomposes back to itself.
  for (long i = 0; i < CompositionTableCount; ++i) {
    EXPECT_EQ(PlaneValue(DecompositionTable, CompositionTable[i].value), CompositionTable[i].key);
  }
}

TEST(MarkTables, ExactPairsAndNearInverse) {
  const std::map<unsigned short, unsigned short> combining = {
      {0x005E, 0x0302}, {0x005F, 0x0332}, {0x0060, 0x0300}, {0x00A8, 0x0308}, {0x00AF, 0x0304},
      {0x00B4, 0x0301}, {0x00B8, 0x0327}, {0x02D8, 0x0306}, {0x02D9, 0x0307}, {0x02DA, 0x030A},
      {0x02DB, 0x0328}, {0x02DC, 0x0303}, {0x02DD, 0x030B}, {0x037A, 0x0345}, {0x0384, 0x0301},
      {0x1FBD, 0x0313}, {0x1FBF, 0x0313}, {0x1FC0, 0x0342}, {0x1FFE, 0x0314}, {0x2017, 0x0333},
      {0x203E, 0x0305}, {0x309B, 0x3099}, {0x309C, 0x309A}, {0xFE70, 0x064B}, {0xFE72, 0x064C},
      {0xFE74, 0x064D}, {0xFE76, 0x064E}, {0xFE78, 0x064F}, {0xFE7A, 0x0650}, {0xFE7C, 0x0651},
      {0xFE7E, 0x0652}};
  ASSERT_EQ(CombiningMarkTableCount, 31);
  std::map<unsigned short, unsigned short> table;
  for (long i = 0; i < CombiningMarkTableCount; ++i) {
    table[CombiningMarkTable[i].key] = CombiningMarkTable[i].value;
  }
  EXPECT_EQ(table, combining);

  ASSERT_EQ(SpacingMarkTableCount, 29);
  std::map<unsigned short, unsigned short> inverse;
  for (auto [spacing, mark] : combining) {
    if (spacing != 0x0384 && spacing != 0x1FBF) inverse[mark] = spacing;
  }
  std::map<unsigned short, unsigned short> spacing;
  for (long i = 0; i < SpacingMarkTableCount; ++i) {
    if (i > 0) EXPECT_LT(SpacingMarkTable[i - 1].key, SpacingMarkTable[i].key);
    spacing[SpacingMarkTable[i].key] = SpacingMarkTable[i].value;
  }
  EXPECT_EQ(spacing, inverse);
}

TEST(CanonicalTable, QuotedRowsAndPages) {
  EXPECT_EQ(PlaneValue(CanonicalTable, 0xF900), 0x8C48u);
  EXPECT_EQ(PlaneValue(CanonicalTable, 0xFFE8), 0x2502u);
  EXPECT_EQ(PlaneValue(CanonicalTable, 0xFFEF), 0xFFEFu);  // kept mapping to itself
  EXPECT_EQ(PlaneValue(CanonicalTable, 0xFF21), 0x0041u);
  EXPECT_EQ(PlaneValue(CanonicalTable, 0xFB00), 0x00660066u);  // ff ligature: two units
  for (int p = 0; p < 0xF9; ++p) EXPECT_EQ(CanonicalTable[p], nullptr) << p;
  long pairs = 0;
  for (int p = 0xF9; p < 256; ++p) {
    for (int i = 0; CanonicalTable[p] != nullptr && i < 256; ++i) {
      pairs += CanonicalTable[p][i] > 0xFFFF ? 1 : 0;
    }
  }
  EXPECT_EQ(pairs, 430);
}

}  // namespace
