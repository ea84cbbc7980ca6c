#include "varnice/tables/lookup_functions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

// Linear reference for the chunk search: the run holding key, or null.
ChunkTableEntryUSL const* LinearFind(std::vector<ChunkTableEntryUSL> const& runs, int key) {
  for (auto const& r : runs) {
    if (r.first <= key && key <= r.last) return &r;
  }
  return nullptr;
}

// Every count from 0 to 7 and every key around the runs, so each narrowing
// path (odd and even counts, first and last entry) meets the boundaries.
TEST(ChunkTableLookup, AgreesWithLinearSearchForEveryCount) {
  for (int count = 0; count <= 7; ++count) {
    std::vector<ChunkTableEntryUSL> runs;
    for (int i = 0; i < count; ++i) {
      // Runs of varying length with gaps: [10,10], [20,22], [30,33], ...
      runs.push_back({static_cast<std::uint16_t>(10 * (i + 1)),
                      static_cast<std::uint16_t>(10 * (i + 1) + i), 1000 + i});
    }
    for (int key = 0; key <= 90; ++key) {
      long value = -1;
      ChunkTableEntryUSL const* expected = LinearFind(runs, key);
      bool found = ChunkTableLookup(count ? runs.data() : nullptr, count,
                                    static_cast<unsigned short>(key), value);
      ASSERT_EQ(found, expected != nullptr) << "count " << count << " key " << key;
      EXPECT_EQ(value, expected ? expected->value : -1) << "count " << count << " key " << key;
    }
  }
}

TEST(ChunkTableLookup, ValueShapes) {
  // Chunk lookups know no missing value: a stored 0 is found.
  ChunkTableEntryUSUS usus[] = {{0x41, 0x5A, 0x61}, {0x100, 0x17F, 0}};
  unsigned short us = 7;
  EXPECT_TRUE(ChunkTableLookup(usus, 2, 0x17F, us));
  EXPECT_EQ(us, 0);
  EXPECT_EQ(ChunkTableLookupWithDefault(usus, 2, 0x5B, 0xFFFF), 0xFFFF);

  // 32-bit keys: a key beyond 32 bits must not be truncated into a run.
  ChunkTableEntryULL ull[] = {{0x10, 0x20, -5}, {0x8140, 0x817E, 0x3000}};
  long l = 0;
  EXPECT_TRUE(ChunkTableLookup(ull, 2, 0x817E, l));
  EXPECT_EQ(l, 0x3000);
  EXPECT_FALSE(ChunkTableLookup(ull, 2, 0x100000010ul, l));
  EXPECT_EQ(ChunkTableLookupWithDefault(ull, 2, 0x15, 0), -5);

  // The property records compare a 16-bit key against a 32-bit last.
  ChunkTableEntryUSCharCat cat[] = {{0x0000, 0x001F, CharacterCategory::ControlCharacter},
                                    {0xF000, 0x10FFFF, CharacterCategory::OtherSymbol}};
  CharacterCategory c{};
  EXPECT_TRUE(ChunkTableLookup(cat, 2, 0xFFFF, c));
  EXPECT_EQ(c, CharacterCategory::OtherSymbol);
  EXPECT_EQ(ChunkTableLookupWithDefault(cat, 2, 0x20, CharacterCategory::NonCharacter),
            CharacterCategory::NonCharacter);
}

TEST(SparseTableLookup, ExactKeysOnly) {
  SparseTableEntryUSUS usus[] = {{3, 30}, {7, 70}, {9, 90}, {0xFFFF, 1}};
  unsigned short v = 0;
  for (unsigned short absent : {0, 2, 4, 8, 10, 0xFFFE}) {
    EXPECT_FALSE(SparseTableLookup(usus, 4, absent, v)) << absent;
  }
  EXPECT_TRUE(SparseTableLookup(usus, 4, 3, v));
  EXPECT_EQ(v, 30);
  EXPECT_TRUE(SparseTableLookup(usus, 4, 0xFFFF, v));
  EXPECT_EQ(v, 1);
  EXPECT_FALSE(SparseTableLookup(usus, 0, 3, v));
  EXPECT_TRUE(SparseTableLookup(usus, 1, 3, v));

  SparseTableEntryULUS ulus[] = {{0x0, 5}, {0x10001, 6}};
  EXPECT_FALSE(SparseTableLookup(ulus, 2, 0x10000ul, v));
  EXPECT_FALSE(SparseTableLookup(ulus, 2, 0x100000000ul, v));
  EXPECT_TRUE(SparseTableLookup(ulus, 2, 0x10001ul, v));
  EXPECT_EQ(v, 6);
}

TEST(RangeTableLookup, BoundsAndMissingValue) {
  unsigned short const values[] = {5, 0xFFFF, 7};
  unsigned short v = 0;
  EXPECT_FALSE(RangeTableLookup(0xFFFF, 100, 3, values, 99, v));  // below base
  EXPECT_FALSE(RangeTableLookup(0xFFFF, 100, 3, values, 103, v));  // base + count
  EXPECT_FALSE(RangeTableLookup(0xFFFF, 100, 3, values, 0, v));
  EXPECT_FALSE(RangeTableLookup(0xFFFF, 100, 3, values, 101, v));  // stored missing
  EXPECT_TRUE(RangeTableLookup(0xFFFF, 100, 3, values, 102, v));
  EXPECT_EQ(v, 7);
  // WithDefault hands back what is stored, even the missing value.
  EXPECT_EQ(RangeTableLookupWithDefault(0x1234, 100, 3, values, 101), 0xFFFF);
  EXPECT_EQ(RangeTableLookupWithDefault(0x1234, 100, 3, values, 103), 0x1234);
  EXPECT_EQ(RangeTableLookupWithDefault(0x1234, 100, 0, values, 100), 0x1234);

  std::uint32_t const wide[] = {0x8140, 0};
  unsigned long ul = 0;
  EXPECT_TRUE(RangeTableLookup(0ul, 0x3000, 2, wide, 0x3000, ul));
  EXPECT_EQ(ul, 0x8140u);
  EXPECT_FALSE(RangeTableLookup(0ul, 0x3000, 2, wide, 0x3001, ul));
  EXPECT_EQ(RangeTableLookupWithDefault(0xFFFF, 0x3000, 2, wide, 0x3001), 0u);
  EXPECT_EQ(RangeTableLookupWithDefault(0xFFFF, 0x3000, 2, wide, 0x3002), 0xFFFFu);

  unsigned char const bytes[] = {0xA4, 0};
  EXPECT_TRUE(RangeTableLookup(static_cast<unsigned char>(0), 0x20, 2, bytes, 0x20, ul));
  EXPECT_EQ(ul, 0xA4u);
  EXPECT_FALSE(RangeTableLookup(static_cast<unsigned char>(0), 0x20, 2, bytes, 0x21, ul));
}

// Gap runs 0x100-0x1FF and 0x1000-0x10FF close up onto range positions 0-0x1FF;
// 0x7000 moves past the end of the range, 0x0005 wraps round 65536.
ChunkTableEntryUSL const kGaps[] = {
    {0x0005, 0x0005, 0xFFFF}, {0x0100, 0x01FF, -0x100}, {0x1000, 0x10FF, -0x1000 + 0x100},
    {0x7000, 0x7000, -0x6000}};

TEST(GapTableLookup, MovesKeysIntoTheRange) {
  std::vector<unsigned short> values(0x200);
  for (int i = 0; i < 0x200; ++i) values[i] = static_cast<unsigned short>(0x4000 + i);
  values[0x101] = 0xFFFF;
  unsigned short v = 0;
  EXPECT_FALSE(GapTableLookup(kGaps, 4, 0xFFFF, 0, 0x200, values.data(), 0x00FF, v));
  EXPECT_TRUE(GapTableLookup(kGaps, 4, 0xFFFF, 0, 0x200, values.data(), 0x0100, v));
  EXPECT_EQ(v, 0x4000);
  EXPECT_TRUE(GapTableLookup(kGaps, 4, 0xFFFF, 0, 0x200, values.data(), 0x10FF, v));
  EXPECT_EQ(v, 0x41FF);
  EXPECT_TRUE(GapTableLookup(kGaps, 4, 0xFFFF, 0, 0x200, values.data(), 0x0005, v));
  EXPECT_EQ(v, 0x4004);  // (5 + 0xFFFF) mod 65536
  EXPECT_FALSE(GapTableLookup(kGaps, 4, 0xFFFF, 0, 0x200, values.data(), 0x1100, v));
  EXPECT_FALSE(GapTableLookup(kGaps, 4, 0xFFFF, 0, 0x200, values.data(), 0x7000, v));
  EXPECT_FALSE(GapTableLookup(kGaps, 4, 0xFFFF, 0, 0x200, values.data(), 0x1001, v));

  EXPECT_EQ(GapTableLookupWithDefault(kGaps, 4, 0xFFFD, 0, 0x200, values.data(), 0x1001),
            0xFFFF);  // stored missing is returned as stored
  EXPECT_EQ(GapTableLookupWithDefault(kGaps, 4, 0xFFFD, 0, 0x200, values.data(), 0x00FF),
            0xFFFD);
  EXPECT_EQ(GapTableLookupWithDefault(kGaps, 4, 0xFFFD, 0, 0x200, values.data(), 0x7000),
            0xFFFD);
  EXPECT_EQ(GapTableLookupWithDefault(kGaps, 4, 0xFFFD, 0x100, 0x100, values.data(), 0x0100),
            0xFFFD);  // moved key 0 is below the range's base

  ChunkTableEntryULL const wideGaps[] = {{0x8140, 0x817E, -0x8140}, {0x8940, 0x897E, -0x8940 + 63}};
  EXPECT_EQ(GapTableLookupWithDefault(wideGaps, 2, 0, 0, 0x200, values.data(), 0x8941ul),
            0x4000 + 64);
  EXPECT_EQ(GapTableLookupWithDefault(wideGaps, 2, 0, 0, 0x200, values.data(), 0x1008140ul),
            0);
}

TEST(GapTableLookup, OtherValueWidths) {
  unsigned char const bytes[] = {0x41, 0x00, 0x43};
  std::uint32_t const wide[] = {0x8FA2B1, 0};
  unsigned long ul = 0;
  EXPECT_TRUE(GapTableLookup(kGaps, 4, static_cast<unsigned char>(0), 0, 3, bytes, 0x100, ul));
  EXPECT_EQ(ul, 0x41u);
  EXPECT_FALSE(GapTableLookup(kGaps, 4, static_cast<unsigned char>(0), 0, 3, bytes, 0x101, ul));
  EXPECT_TRUE(GapTableLookup(kGaps, 4, 0ul, 0, 2, wide, 0x100, ul));
  EXPECT_EQ(ul, 0x8FA2B1u);
}

TEST(DeltaTableLookup, AddsTheRunsDifference) {
  ChunkTableEntryUSL const runs[] = {{0x0041, 0x005A, 0x20}, {0x0100, 0x0100, -0x105}};
  unsigned short us = 0;
  unsigned long ul = 0;
  EXPECT_TRUE(DeltaTableLookup(runs, 2, 0x41, us));
  EXPECT_EQ(us, 0x61);
  EXPECT_FALSE(DeltaTableLookup(runs, 2, 0x5B, us));
  // Results are cut to their own width.
  EXPECT_TRUE(DeltaTableLookup(runs, 2, 0x100, us));
  EXPECT_EQ(us, 0xFFFB);
  EXPECT_TRUE(DeltaTableLookup(runs, 2, 0x100, ul));
  EXPECT_EQ(ul, 0xFFFFFFFBu);
  EXPECT_EQ(DeltaTableLookupWithDefault(runs, 2, 0x5A, 0xFFFD), 0x7A);
  EXPECT_EQ(DeltaTableLookupWithDefault(runs, 2, 0x40, 0xFFFD), 0xFFFD);
  EXPECT_EQ(DeltaTableLookupWithDefault(runs, 0, 0x41, 0xFFFD), 0xFFFD);
}

TEST(PlaneTableLookup, PlanesAndMissingValues) {
  unsigned short plane30[256] = {};
  plane30[0x42] = 0x2422;
  unsigned short const* planes[256] = {};
  planes[0x30] = plane30;
  unsigned short v = 0;
  EXPECT_EQ(PlaneTableLookupWithDefault(0, planes, 0x3042, 0xFFFD), 0x2422);
  // A stored missing value gives the default here, unlike range and gap.
  EXPECT_EQ(PlaneTableLookupWithDefault(0, planes, 0x3043, 0xFFFD), 0xFFFD);
  EXPECT_EQ(PlaneTableLookupWithDefault(0, planes, 0x3142, 0xFFFD), 0xFFFD);  // null plane

  // One plane: only the low 8 bits of the index count.
  EXPECT_TRUE(PlaneTableLookup(0, plane30, 0x1242, v));
  EXPECT_EQ(v, 0x2422);
  EXPECT_FALSE(PlaneTableLookup(0, plane30, 0x43, v));

  std::uint32_t wide30[256] = {};
  wide30[0xFF] = 0x8FA2A1;
  std::uint32_t const* widePlanes[256] = {};
  widePlanes[0x30] = wide30;
  unsigned long ul = 0;
  EXPECT_TRUE(PlaneTableLookup(0ul, widePlanes, 0x30FF, ul));
  EXPECT_EQ(ul, 0x8FA2A1u);
  EXPECT_FALSE(PlaneTableLookup(0ul, widePlanes, 0x30FE, ul));
  EXPECT_FALSE(PlaneTableLookup(0ul, widePlanes, 0x31FF, ul));
  EXPECT_EQ(PlaneTableLookupWithDefault(0ul, widePlanes, 0x30FE, 7ul), 7u);
}

TEST(PlaneTableLookup, FourLevels) {
  unsigned short plane[256] = {};
  plane[0x56] = 0x1234;
  unsigned short const* level3[256] = {};
  level3[0x34] = plane;
  unsigned short const* const* level2[256] = {};
  level2[0x12] = level3;
  unsigned short const* const* const* level1[256] = {};
  level1[0x8F] = level2;
  unsigned short v = 0;
  EXPECT_TRUE(PlaneTableLookup(0, level1, 0x8F123456ul, v));
  EXPECT_EQ(v, 0x1234);
  EXPECT_FALSE(PlaneTableLookup(0, level1, 0x8F123457ul, v));  // missing value
  EXPECT_FALSE(PlaneTableLookup(0, level1, 0x8F123556ul, v));  // null plane
  EXPECT_FALSE(PlaneTableLookup(0, level1, 0x8F133456ul, v));  // null third level
  EXPECT_FALSE(PlaneTableLookup(0, level1, 0x8E123456ul, v));  // null second level
  EXPECT_FALSE(PlaneTableLookup(0, level1, 0x18F123456ul, v));  // beyond 32 bits
}

TEST(ArrayTableLookup, CountAndMissingValue) {
  unsigned short const values[] = {0x3000, 0xFFFF, 0x3002};
  unsigned short v = 0;
  EXPECT_TRUE(ArrayTableLookup(0xFFFF, 3, values, 2, v));
  EXPECT_EQ(v, 0x3002);
  EXPECT_FALSE(ArrayTableLookup(0xFFFF, 3, values, 1, v));
  EXPECT_FALSE(ArrayTableLookup(0xFFFF, 3, values, 3, v));
  EXPECT_FALSE(ArrayTableLookup(0xFFFF, 3, values, 0x100000000ul, v));

  unsigned char const bytes[] = {0, 0xC8};
  unsigned long ul = 0;
  EXPECT_TRUE(ArrayTableLookup(static_cast<unsigned char>(0), 2, bytes, 1, ul));
  EXPECT_EQ(ul, 0xC8u);
  EXPECT_FALSE(ArrayTableLookup(static_cast<unsigned char>(0), 2, bytes, 0, ul));
}

}  // namespace
