#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <type_traits>

#include "varnice/tables/chunk_table.h"
#include "varnice/tables/delta_table.h"
#include "varnice/tables/gap_table.h"
#include "varnice/tables/plane_table.h"
#include "varnice/tables/range_table.h"

namespace {

// The value a table finds, or nothing.
template <class K, class V>
std::optional<V> Found(Table<K, V> const& table, std::type_identity_t<K> key) {
  V v{};
  return table.Lookup(key, v) ? std::optional<V>(v) : std::nullopt;
}

// What a code page sees: only the narrow interface.
std::optional<unsigned long> Narrow(LookupUnsignedLongTable<unsigned short> const& table, unsigned short key) {
  unsigned long v = 0;
  return table.LookupUnsignedLong(key, v) ? std::optional(v) : std::nullopt;
}

ChunkTableEntryUSL const kRuns[] = {{0x0041, 0x005A, 0x20}, {0x00C0, 0x00D6, 0x20},
                                    {0xFF21, 0xFF3A, -0xFEE0}};

TEST(ChunkTable, LookupsAndBounds) {
  ChunkTable<unsigned short, long> table(-1, kRuns, 3);
  EXPECT_EQ(Found(table, 0xFF3A), -0xFEE0);
  EXPECT_EQ(Found(table, 0x5B), std::nullopt);
  EXPECT_EQ(table.LookupWithDefault(0x5B), -1);
  EXPECT_EQ(table.SmallestIndex(), 0x41);
  EXPECT_EQ(table.LargestIndex(), 0xFF3A);
  EXPECT_EQ(Narrow(table, 0x41), 0x20u);

  ChunkTable<unsigned short, long> empty(-1, kRuns, 0);
  EXPECT_EQ(Found(empty, 0x41), std::nullopt);
  EXPECT_EQ(empty.SmallestIndex(), 0);
  EXPECT_EQ(empty.LargestIndex(), 0);
}

TEST(RangeTable, BoundsSkipMissingValues) {
  std::uint32_t const values[] = {0, 0, 0x8140, 0, 0x8142, 0};
  RangeTable<unsigned short, unsigned long> table(0, 0x3000, 6, values);
  EXPECT_EQ(Found(table, 0x3002), 0x8140u);
  EXPECT_EQ(Found(table, 0x3003), std::nullopt);
  EXPECT_EQ(Found(table, 0x3006), std::nullopt);
  EXPECT_EQ(table.LookupWithDefault(0x3006), 0u);
  EXPECT_EQ(Narrow(table, 0x3004), 0x8142u);
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
  EXPECT_EQ(Found(table, 0x0207), 0xA1A1u);
  EXPECT_EQ(Found(table, 0x0208), std::nullopt);
  EXPECT_EQ(table.LookupWithDefault(0x0307), 0u);
  EXPECT_EQ(Narrow(table, 0x02F0), 0xA1A2u);
  EXPECT_EQ(table.SmallestIndex(), 0x0207);
  EXPECT_EQ(table.LargestIndex(), 0x02F0);

  std::uint32_t const* noPlanes[256] = {};
  PlaneTable<unsigned short, unsigned long> empty(0, noPlanes);
  EXPECT_EQ(empty.SmallestIndex(), 0);
  EXPECT_EQ(empty.LargestIndex(), 0);

  // The first (last) present plane holding only missing values yields its plane
  // number, unshifted, even though a later (earlier) plane has values.
  std::uint32_t allMissing[256] = {};
  std::uint32_t plane05[256] = {};
  plane05[0x10] = 1;
  std::uint32_t const* sparse[256] = {};
  sparse[0x03] = allMissing;
  sparse[0x05] = plane05;
  sparse[0xFE] = allMissing;
  PlaneTable<unsigned short, unsigned long> bounds(0, sparse);
  EXPECT_EQ(bounds.SmallestIndex(), 0x03);
  EXPECT_EQ(bounds.LargestIndex(), 0xFE);
}

TEST(DeltaTable, AddsDeltaOfTheInnerTable) {
  ChunkTable<unsigned short, long> deltas(0, kRuns, 3);
  DeltaTable<unsigned short, unsigned long> table(0xFFFF, &deltas);
  EXPECT_EQ(Found(table, 0x41), 0x61u);
  EXPECT_EQ(Found(table, 0xFF21), 0x41u);
  EXPECT_EQ(Found(table, 0x40), std::nullopt);
  EXPECT_EQ(table.LookupWithDefault(0x40), 0xFFFFu);
  EXPECT_EQ(Narrow(table, 0xC0), 0xE0u);
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
  EXPECT_EQ(Found(table, 0x4E02), 0xB0A3u);
  EXPECT_EQ(Found(table, 0x9FA1), 0xF7FEu);
  EXPECT_EQ(Found(table, 0x4E01), std::nullopt);  // missing in the range
  EXPECT_EQ(Found(table, 0x4E03), std::nullopt);  // no gap run
  EXPECT_EQ(Narrow(table, 0x9FA0), 0xF7FDu);
  EXPECT_EQ(table.LookupWithDefault(0x4E03), 0u);
  EXPECT_EQ(table.LookupWithDefault(0x4E00), 0xB0A1u);
  EXPECT_EQ(table.GetMissingValue(), 0u);
  EXPECT_EQ(table.SmallestIndex(), 0x4E00);
  EXPECT_EQ(table.LargestIndex(), 0x9FA1);
}

}  // namespace
