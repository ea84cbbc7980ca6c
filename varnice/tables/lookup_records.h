// The record shapes in which the library's constant character data (code
// pages, properties, transforms) is stored. Each shape is chosen per table to
// keep the data small, so the layouts are fixed and checked below.
//
// Chunk records map a run of keys first..last (inclusive) to one value; sparse
// records map one key to one value. Arrays of either are sorted by ascending
// key and their runs do not overlap. Padding is implicit: static tables are
// zero-initialised, so it reads as zero.
#ifndef VARNICE_TABLES_LOOKUP_RECORDS_H_
#define VARNICE_TABLES_LOOKUP_RECORDS_H_

#include <cstddef>
#include <cstdint>

#include "varnice/charprops/types/character_enums.h"

// Chunk records. USL is also the shape of every delta and gap table, whose
// value is a signed difference added to the key.
struct ChunkTableEntryUSL {
  std::uint16_t first;
  std::uint16_t last;
  std::int32_t value;
};

struct ChunkTableEntryULL {
  std::uint32_t first;
  std::uint32_t last;
  std::int32_t value;
};

struct ChunkTableEntryUSUS {
  std::uint16_t first;
  std::uint16_t last;
  std::uint16_t value;
};

struct ChunkTableEntryUSUC {
  std::uint16_t first;
  std::uint16_t last;
  std::uint8_t value;
};

// The property records keep a 16-bit first but a 32-bit last; the stored
// property tables have this shape.
struct ChunkTableEntryUSCharCat {
  std::uint16_t first;
  std::uint32_t last;
  CharacterCategory value;
};

struct ChunkTableEntryUSScrSys {
  std::uint16_t first;
  std::uint32_t last;
  ScriptSystem value;
};

struct ChunkTableEntryUSCharWid {
  std::uint16_t first;
  std::uint32_t last;
  CharacterWidth value;
};

// Sparse records.
struct SparseTableEntryUSUS {
  std::uint16_t key;
  std::uint16_t value;
};

struct SparseTableEntryUSUC {
  std::uint16_t key;
  std::uint8_t value;
};

struct SparseTableEntryUSUL {
  std::uint16_t key;
  std::uint32_t value;
};

struct SparseTableEntryULUS {
  std::uint32_t key;
  std::uint16_t value;
};

static_assert(sizeof(ChunkTableEntryUSL) == 8 && offsetof(ChunkTableEntryUSL, value) == 4);
static_assert(sizeof(ChunkTableEntryULL) == 12 && offsetof(ChunkTableEntryULL, value) == 8);
static_assert(sizeof(ChunkTableEntryUSUS) == 6 && offsetof(ChunkTableEntryUSUS, value) == 4);
static_assert(sizeof(ChunkTableEntryUSUC) == 6 && offsetof(ChunkTableEntryUSUC, value) == 4);
static_assert(sizeof(ChunkTableEntryUSCharCat) == 12 &&
              offsetof(ChunkTableEntryUSCharCat, last) == 4 &&
              offsetof(ChunkTableEntryUSCharCat, value) == 8);
static_assert(sizeof(ChunkTableEntryUSScrSys) == 12 &&
              offsetof(ChunkTableEntryUSScrSys, last) == 4 &&
              offsetof(ChunkTableEntryUSScrSys, value) == 8);
static_assert(sizeof(ChunkTableEntryUSCharWid) == 12 &&
              offsetof(ChunkTableEntryUSCharWid, last) == 4 &&
              offsetof(ChunkTableEntryUSCharWid, value) == 8);
static_assert(sizeof(SparseTableEntryUSUS) == 4 && offsetof(SparseTableEntryUSUS, value) == 2);
static_assert(sizeof(SparseTableEntryUSUC) == 4 && offsetof(SparseTableEntryUSUC, value) == 2);
static_assert(sizeof(SparseTableEntryUSUL) == 8 && offsetof(SparseTableEntryUSUL, value) == 4);
static_assert(sizeof(SparseTableEntryULUS) == 8 && offsetof(SparseTableEntryULUS, value) == 4);

#endif  // VARNICE_TABLES_LOOKUP_RECORDS_H_
