// The constant tables of the transforms, generated from the Unicode 2.1.8
// character database by tools/gen/gen_transforms.py. Every table is searched
// in place; none is copied or built at run time.
#ifndef VARNICE_TRANSFORM_TRANSFORM_TABLES_H_
#define VARNICE_TRANSFORM_TRANSFORM_TABLES_H_

#include <cstdint>

#include "varnice/tables/lookup_records.h"
#include "varnice/tables/lookup_search.h"
#include "varnice/varnice_export.h"

// A gap table (runs of code units, each moved by its offset into one value
// array; the value 0 means "no mapping").
struct GapMappingTable {
  ChunkTableEntryUSL const* gaps;
  long gapCount;
  unsigned short const* values;
  long valueCount;

  // The mapped unit, or 0 when c has none.
  unsigned short Find(unsigned short c) const {
    ChunkTableEntryUSL const* run = varnice::internal::FindChunk(gaps, gapCount, c);
    if (run == nullptr) return 0;
    const long index = static_cast<unsigned short>(c + run->value);
    return index < valueCount ? values[index] : 0;
  }
};

// Width: each maps 224 characters, and each is the exact inverse of the other.
VARNICE_API extern const GapMappingTable HalfwidthMappingTable;
VARNICE_API extern const GapMappingTable FullwidthMappingTable;

// Plane tables of 32-bit values, 0 where a character has no entry. A value
// holds two units (high half first) or, in the canonical table, one unit when
// it is below 0x10000.
VARNICE_API extern std::uint32_t const* const DecompositionTable[256];
VARNICE_API extern const long DecompositionTableEntries;
VARNICE_API extern std::uint32_t const* const CanonicalTable[256];
VARNICE_API extern const long CanonicalTableEntries;

// Sorted sparse tables: (first unit << 16 | second unit) -> composed unit;
// spacing diacritic -> combining mark; combining mark -> spacing diacritic.
VARNICE_API extern const SparseTableEntryULUS CompositionTable[];
VARNICE_API extern const long CompositionTableCount;
VARNICE_API extern const SparseTableEntryUSUS CombiningMarkTable[];
VARNICE_API extern const long CombiningMarkTableCount;
VARNICE_API extern const SparseTableEntryUSUS SpacingMarkTable[];
VARNICE_API extern const long SpacingMarkTableCount;

namespace varnice::internal {

// Bit sets of 256 units per page: the units that are the second of some
// composition pair, so that most pairs are ruled out without a search.
extern std::uint8_t const* const kCompositionSeconds[256];

// No composition pair ends in a unit below U+0300 (checked by the tests).
constexpr unsigned short kFirstCompositionSecond = 0x0300;

inline bool MayComposeAsSecond(unsigned short c) {
  if (c < kFirstCompositionSecond) return false;
  std::uint8_t const* page = kCompositionSeconds[c >> 8];
  return page != nullptr && (page[(c & 0xFF) >> 3] >> (c & 7) & 1) != 0;
}

// The plane table value of c, 0 when it has none.
inline std::uint32_t PlaneValue(std::uint32_t const* const* planes, unsigned short c) {
  std::uint32_t const* plane = planes[c >> 8];
  return plane != nullptr ? plane[c & 0xFF] : 0;
}

}  // namespace varnice::internal

#endif  // VARNICE_TRANSFORM_TRANSFORM_TABLES_H_
