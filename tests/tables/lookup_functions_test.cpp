#include "varnice/tables/lookup_functions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace {

// Each lookup as value-or-nothing, so that one EXPECT_EQ checks both.
#define VALUE_OR_NOTHING(Name, Lookup)                          \
  template <class V, class... A>                                \
  std::optional<V> Name(A... a) {                               \
    V v{};                                                      \
    return Lookup(a..., v) ? std::optional<V>(v) : std::nullopt; \
  }
VALUE_OR_NOTHING(Chunk, ChunkTableLookup)
VALUE_OR_NOTHING(Sparse, SparseTableLookup)
VALUE_OR_NOTHING(Range, RangeTableLookup)
VALUE_OR_NOTHING(Gap, GapTableLookup)
VALUE_OR_NOTHING(Delta, DeltaTableLookup)
VALUE_OR_NOTHING(Plane, PlaneTableLookup)
VALUE_OR_NOTHING(Array, ArrayTableLookup)
#undef VALUE_OR_NOTHING

using US = unsigned short;
using UL = unsigned long;
constexpr std::nullopt_t kNone = std::nullopt;

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
  EXPECT_EQ(Chunk<US>(usus, 2, 0x17F), 0);
  EXPECT_EQ(ChunkTableLookupWithDefault(usus, 2, 0x5B, 0xFFFF), 0xFFFF);

  // 32-bit keys: a key beyond 32 bits must not be truncated into a run.
  ChunkTableEntryULL ull[] = {{0x10, 0x20, -5}, {0x8140, 0x817E, 0x3000}};
  EXPECT_EQ(Chunk<long>(ull, 2, 0x817E), 0x3000);
  EXPECT_EQ(Chunk<long>(ull, 2, 0x100000010ul), kNone);
  EXPECT_EQ(ChunkTableLookupWithDefault(ull, 2, 0x15, 0), -5);

  // The property records compare a 16-bit key against a 32-bit last.
  ChunkTableEntryUSCharCat cat[] = {{0x0000, 0x001F, CharacterCategory::ControlCharacter},
                                    {0xF000, 0x10FFFF, CharacterCategory::OtherSymbol}};
  EXPECT_EQ(Chunk<CharacterCategory>(cat, 2, 0xFFFF), CharacterCategory::OtherSymbol);
  EXPECT_EQ(ChunkTableLookupWithDefault(cat, 2, 0x20, CharacterCategory::NonCharacter),
            CharacterCategory::NonCharacter);
}

TEST(SparseTableLookup, ExactKeysOnly) {
  SparseTableEntryUSUS usus[] = {{3, 30}, {7, 70}, {9, 90}, {0xFFFF, 1}};
  for (US absent : {0, 2, 4, 8, 10, 0xFFFE}) EXPECT_EQ(Sparse<US>(usus, 4, absent), kNone) << absent;
  EXPECT_EQ(Sparse<US>(usus, 4, 3), 30);
  EXPECT_EQ(Sparse<US>(usus, 4, 0xFFFF), 1);
  EXPECT_EQ(Sparse<US>(usus, 0, 3), kNone);
  EXPECT_EQ(Sparse<US>(usus, 1, 3), 30);

  SparseTableEntryULUS ulus[] = {{0x0, 5}, {0x10001, 6}};
  EXPECT_EQ(Sparse<US>(ulus, 2, 0x10000ul), kNone);
  EXPECT_EQ(Sparse<US>(ulus, 2, 0x100000000ul), kNone);
  EXPECT_EQ(Sparse<US>(ulus, 2, 0x10001ul), 6);
}

TEST(RangeTableLookup, BoundsAndMissingValue) {
  US const values[] = {5, 0xFFFF, 7};
  // Below base, at base + count, far below, stored missing.
  for (int key : {99, 103, 0, 101}) EXPECT_EQ(Range<US>(0xFFFF, 100, 3, values, key), kNone) << key;
  EXPECT_EQ(Range<US>(0xFFFF, 100, 3, values, 102), 7);
  // WithDefault hands back what is stored, even the missing value.
  EXPECT_EQ(RangeTableLookupWithDefault(0x1234, 100, 3, values, 101), 0xFFFF);
  EXPECT_EQ(RangeTableLookupWithDefault(0x1234, 100, 3, values, 103), 0x1234);
  EXPECT_EQ(RangeTableLookupWithDefault(0x1234, 100, 0, values, 100), 0x1234);

  std::uint32_t const wide[] = {0x8140, 0};
  EXPECT_EQ(Range<UL>(0ul, 0x3000, 2, wide, 0x3000), 0x8140u);
  EXPECT_EQ(Range<UL>(0ul, 0x3000, 2, wide, 0x3001), kNone);
  EXPECT_EQ(RangeTableLookupWithDefault(0xFFFF, 0x3000, 2, wide, 0x3001), 0u);
  EXPECT_EQ(RangeTableLookupWithDefault(0xFFFF, 0x3000, 2, wide, 0x3002), 0xFFFFu);

  unsigned char const bytes[] = {0xA4, 0};
  EXPECT_EQ(Range<UL>(static_cast<unsigned char>(0), 0x20, 2, bytes, 0x20), 0xA4u);
  EXPECT_EQ(Range<UL>(static_cast<unsigned char>(0), 0x20, 2, bytes, 0x21), kNone);
}

// Gap runs 0x100-0x1FF and 0x1000-0x10FF close up onto range positions 0-0x1FF;
// 0x7000 moves past the end of the range, 0x0005 wraps round 65536.
ChunkTableEntryUSL const kGaps[] = {
    {0x0005, 0x0005, 0xFFFF}, {0x0100, 0x01FF, -0x100}, {0x1000, 0x10FF, -0x1000 + 0x100},
    {0x7000, 0x7000, -0x6000}};

TEST(GapTableLookup, MovesKeysIntoTheRange) {
  std::vector<US> values(0x200);
  for (int i = 0; i < 0x200; ++i) values[i] = static_cast<US>(0x4000 + i);
  values[0x101] = 0xFFFF;
  const US* v = values.data();
  EXPECT_EQ(Gap<US>(kGaps, 4, 0xFFFF, 0, 0x200, v, 0x0100), 0x4000);
  EXPECT_EQ(Gap<US>(kGaps, 4, 0xFFFF, 0, 0x200, v, 0x10FF), 0x41FF);
  EXPECT_EQ(Gap<US>(kGaps, 4, 0xFFFF, 0, 0x200, v, 0x0005), 0x4004);  // (5 + 0xFFFF) mod 65536
  for (int key : {0x00FF, 0x1100, 0x7000, 0x1001}) {
    EXPECT_EQ(Gap<US>(kGaps, 4, 0xFFFF, 0, 0x200, v, key), kNone) << key;
  }
  // A stored missing value is returned as stored.
  EXPECT_EQ(GapTableLookupWithDefault(kGaps, 4, 0xFFFD, 0, 0x200, v, 0x1001), 0xFFFF);
  EXPECT_EQ(GapTableLookupWithDefault(kGaps, 4, 0xFFFD, 0, 0x200, v, 0x00FF), 0xFFFD);
  EXPECT_EQ(GapTableLookupWithDefault(kGaps, 4, 0xFFFD, 0, 0x200, v, 0x7000), 0xFFFD);
  // Moved key 0 is below the range's base.
  EXPECT_EQ(GapTableLookupWithDefault(kGaps, 4, 0xFFFD, 0x100, 0x100, v, 0x0100), 0xFFFD);

  ChunkTableEntryULL const wideGaps[] = {{0x8140, 0x817E, -0x8140}, {0x8940, 0x897E, -0x8940 + 63}};
  EXPECT_EQ(GapTableLookupWithDefault(wideGaps, 2, 0, 0, 0x200, v, 0x8941ul), 0x4000 + 64);
  EXPECT_EQ(GapTableLookupWithDefault(wideGaps, 2, 0, 0, 0x200, v, 0x1008140ul), 0);

  // Other value widths.
  unsigned char const bytes[] = {0x41, 0x00, 0x43};
  std::uint32_t const wide[] = {0x8FA2B1, 0};
  EXPECT_EQ(Gap<UL>(kGaps, 4, static_cast<unsigned char>(0), 0, 3, bytes, 0x100), 0x41u);
  EXPECT_EQ(Gap<UL>(kGaps, 4, static_cast<unsigned char>(0), 0, 3, bytes, 0x101), kNone);
  EXPECT_EQ(Gap<UL>(kGaps, 4, 0ul, 0, 2, wide, 0x100), 0x8FA2B1u);
}

TEST(DeltaTableLookup, AddsTheRunsDifference) {
  ChunkTableEntryUSL const runs[] = {{0x0041, 0x005A, 0x20}, {0x0100, 0x0100, -0x105}};
  EXPECT_EQ(Delta<US>(runs, 2, 0x41), 0x61);
  EXPECT_EQ(Delta<US>(runs, 2, 0x5B), kNone);
  // Results are cut to their own width.
  EXPECT_EQ(Delta<US>(runs, 2, 0x100), 0xFFFB);
  EXPECT_EQ(Delta<UL>(runs, 2, 0x100), 0xFFFFFFFBu);
  EXPECT_EQ(DeltaTableLookupWithDefault(runs, 2, 0x5A, 0xFFFD), 0x7A);
  EXPECT_EQ(DeltaTableLookupWithDefault(runs, 2, 0x40, 0xFFFD), 0xFFFD);
  EXPECT_EQ(DeltaTableLookupWithDefault(runs, 0, 0x41, 0xFFFD), 0xFFFD);
}

TEST(PlaneTableLookup, PlanesAndMissingValues) {
  US plane30[256] = {};
  plane30[0x42] = 0x2422;
  US const* planes[256] = {};
  planes[0x30] = plane30;
  EXPECT_EQ(PlaneTableLookupWithDefault(0, planes, 0x3042, 0xFFFD), 0x2422);
  // A stored missing value gives the default here, unlike range and gap.
  EXPECT_EQ(PlaneTableLookupWithDefault(0, planes, 0x3043, 0xFFFD), 0xFFFD);
  EXPECT_EQ(PlaneTableLookupWithDefault(0, planes, 0x3142, 0xFFFD), 0xFFFD);  // null plane

  // One plane: only the low 8 bits of the index count.
  EXPECT_EQ(Plane<US>(0, plane30, 0x1242), 0x2422);
  EXPECT_EQ(Plane<US>(0, plane30, 0x43), kNone);

  std::uint32_t wide30[256] = {};
  wide30[0xFF] = 0x8FA2A1;
  std::uint32_t const* widePlanes[256] = {};
  widePlanes[0x30] = wide30;
  EXPECT_EQ(Plane<UL>(0ul, widePlanes, 0x30FF), 0x8FA2A1u);
  EXPECT_EQ(Plane<UL>(0ul, widePlanes, 0x30FE), kNone);
  EXPECT_EQ(Plane<UL>(0ul, widePlanes, 0x31FF), kNone);
  EXPECT_EQ(PlaneTableLookupWithDefault(0ul, widePlanes, 0x30FE, 7ul), 7u);
}

TEST(PlaneTableLookup, FourLevels) {
  US plane[256] = {};
  plane[0x56] = 0x1234;
  US const* level3[256] = {};
  level3[0x34] = plane;
  US const* const* level2[256] = {};
  level2[0x12] = level3;
  US const* const* const* level1[256] = {};
  level1[0x8F] = level2;
  EXPECT_EQ(Plane<US>(0, level1, 0x8F123456ul), 0x1234);
  // Missing value, null plane, null third level, null second level, beyond 32 bits.
  for (UL key : {0x8F123457ul, 0x8F123556ul, 0x8F133456ul, 0x8E123456ul, 0x18F123456ul}) {
    EXPECT_EQ(Plane<US>(0, level1, key), kNone) << std::hex << key;
  }
}

TEST(ArrayTableLookup, CountAndMissingValue) {
  US const values[] = {0x3000, 0xFFFF, 0x3002};
  EXPECT_EQ(Array<US>(0xFFFF, 3, values, 2), 0x3002);
  for (UL key : {1ul, 3ul, 0x100000000ul}) EXPECT_EQ(Array<US>(0xFFFF, 3, values, key), kNone) << key;

  unsigned char const bytes[] = {0, 0xC8};
  EXPECT_EQ(Array<UL>(static_cast<unsigned char>(0), 2, bytes, 1), 0xC8u);
  EXPECT_EQ(Array<UL>(static_cast<unsigned char>(0), 2, bytes, 0), kNone);
}

}  // namespace
