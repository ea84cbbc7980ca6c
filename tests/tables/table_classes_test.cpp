#include <gtest/gtest.h>

#include <cstdint>

#include "varnice/tables/chunk_table.h"
#include "varnice/tables/delta_table.h"
#include "varnice/tables/gap_table.h"
#include "varnice/tables/plane_table.h"
#include "varnice/tables/range_table.h"

namespace {

// What a code page sees: only the narrow interface.
bool Narrow(LookupUnsignedLongTable<unsigned short> const& table, unsigned short key,
            unsigned long& value) {
  return table.LookupUnsignedLong(key, value);
}

ChunkTableEntryUSL const kRuns[] = {{0x0041, 0x005A, 0x20}, {0x00C0, 0x00D6, 0x20},
                                    {0xFF21, 0xFF3A, -0xFEE0}};

TEST(ChunkTable, LookupsAndBounds) {
  ChunkTable<unsigned short, long> table(-1, kRuns, 3);
  long v = 0;
  EXPECT_TRUE(table.Lookup(0xFF3A, v));
  EXPECT_EQ(v, -0xFEE0);
  EXPECT_FALSE(table.Lookup(0x5B, v));
  EXPECT_EQ(table.LookupWithDefault(0x5B), -1);
  EXPECT_EQ(table.SmallestIndex(), 0x41);
  EXPECT_EQ(table.LargestIndex(), 0xFF3A);
  unsigned long ul = 0;
  EXPECT_TRUE(Narrow(table, 0x41, ul));
  EXPECT_EQ(ul, 0x20u);

  ChunkTable<unsigned short, long> empty(-1, kRuns, 0);
  EXPECT_FALSE(empty.Lookup(0x41, v));
  EXPECT_EQ(empty.SmallestIndex(), 0);
  EXPECT_EQ(empty.LargestIndex(), 0);
}

TEST(RangeTable, BoundsSkipMissingValues) {
  std::uint32_t const values[] = {0, 0, 0x8140, 0, 0x8142, 0};
  RangeTable<unsigned short, unsigned long> table(0, 0x3000, 6, values);
  unsigned long v = 1;
  EXPECT_TRUE(table.Lookup(0x3002, v));
  EXPECT_EQ(v, 0x8140u);
  EXPECT_FALSE(table.Lookup(0x3003, v));
  EXPECT_FALSE(table.Lookup(0x3006, v));
  EXPECT_EQ(table.LookupWithDefault(0x3006), 0u);
  EXPECT_TRUE(Narrow(table, 0x3004, v));
  EXPECT_EQ(v, 0x8142u);
  EXPECT_EQ(table.SmallestIndex(), 0x3002);
  EXPECT_EQ(table.LargestIndex(), 0x3004);

  std::uint32_t const allMissing[] = {0, 0};
  RangeTable<unsigned short, unsigned long> none(0, 0x3000, 2, allMissing);
  EXPECT_EQ(none.SmallestIndex(), 0);
  EXPECT_EQ(none.LargestIndex(), 0);
}

TEST(PlaneTable, LookupsAndBounds) {
  std::uint32_t plane02[256] = {};
  plane02[0x07] = 0xA1A1;
  plane02[0xF0] = 0xA1A2;
  std::uint32_t const* planes[256] = {};
  planes[0x02] = plane02;
  PlaneTable<unsigned short, unsigned long> table(0, planes);
  unsigned long v = 0;
  EXPECT_TRUE(table.Lookup(0x0207, v));
  EXPECT_EQ(v, 0xA1A1u);
  EXPECT_FALSE(table.Lookup(0x0208, v));
  EXPECT_EQ(table.LookupWithDefault(0x0307), 0u);
  EXPECT_TRUE(Narrow(table, 0x02F0, v));
  EXPECT_EQ(table.SmallestIndex(), 0x0207);
  EXPECT_EQ(table.LargestIndex(), 0x02F0);

  std::uint32_t const* noPlanes[256] = {};
  PlaneTable<unsigned short, unsigned long> empty(0, noPlanes);
  EXPECT_EQ(empty.SmallestIndex(), 0);
  EXPECT_EQ(empty.LargestIndex(), 0);
}

// The first (last) present plane holding only missing values yields its plane
// number, unshifted, even though a later (earlier) plane has values.
TEST(PlaneTable, BoundsOfAnAllMissingPlaneAreThePlaneNumber) {
  std::uint32_t allMissing[256] = {};
  std::uint32_t plane05[256] = {};
  plane05[0x10] = 1;
  std::uint32_t const* planes[256] = {};
  planes[0x03] = allMissing;
  planes[0x05] = plane05;
  planes[0xFE] = allMissing;
  PlaneTable<unsigned short, unsigned long> table(0, planes);
  EXPECT_EQ(table.SmallestIndex(), 0x03);
  EXPECT_EQ(table.LargestIndex(), 0xFE);
}

TEST(DeltaTable, AddsDeltaOfTheInnerTable) {
  ChunkTable<unsigned short, long> deltas(0, kRuns, 3);
  DeltaTable<unsigned short, unsigned long> table(0xFFFF, &deltas);
  unsigned long v = 0;
  EXPECT_TRUE(table.Lookup(0x41, v));
  EXPECT_EQ(v, 0x61u);
  EXPECT_TRUE(table.Lookup(0xFF21, v));
  EXPECT_EQ(v, 0x41u);
  EXPECT_FALSE(table.Lookup(0x40, v));
  EXPECT_EQ(table.LookupWithDefault(0x40), 0xFFFFu);
  EXPECT_TRUE(Narrow(table, 0xC0, v));
  EXPECT_EQ(v, 0xE0u);
  EXPECT_EQ(table.GetMissingValue(), 0xFFFFu);
  EXPECT_EQ(table.SmallestIndex(), 0x41);
  EXPECT_EQ(table.LargestIndex(), 0xFF3A);
}

TEST(GapTable, MovesKeysThenAsksTheValueTable) {
  // 0x4E00-0x4E02 and 0x9FA0-0x9FA1 close up onto range positions 0-4.
  ChunkTableEntryUSL const gapRuns[] = {{0x4E00, 0x4E02, -0x4E00}, {0x9FA0, 0x9FA1, -0x9FA0 + 3}};
  std::uint32_t const values[] = {0xB0A1, 0, 0xB0A3, 0xF7FD, 0xF7FE};
  ChunkTable<unsigned short, long> gaps(0, gapRuns, 2);
  RangeTable<unsigned short, unsigned long> range(0, 0, 5, values);
  GapTable<unsigned short, unsigned long> table(&gaps, &range);
  unsigned long v = 0;
  EXPECT_TRUE(table.Lookup(0x4E02, v));
  EXPECT_EQ(v, 0xB0A3u);
  EXPECT_TRUE(table.Lookup(0x9FA1, v));
  EXPECT_EQ(v, 0xF7FEu);
  EXPECT_FALSE(table.Lookup(0x4E01, v));  // missing in the range
  EXPECT_FALSE(table.Lookup(0x4E03, v));  // no gap run
  EXPECT_TRUE(Narrow(table, 0x9FA0, v));
  EXPECT_EQ(v, 0xF7FDu);
  EXPECT_EQ(table.LookupWithDefault(0x4E03), 0u);
  EXPECT_EQ(table.LookupWithDefault(0x4E00), 0xB0A1u);
  EXPECT_EQ(table.GetMissingValue(), 0u);
  EXPECT_EQ(table.SmallestIndex(), 0x4E00);
  EXPECT_EQ(table.LargestIndex(), 0x9FA1);
}

}  // namespace
