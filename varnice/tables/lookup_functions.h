// Free functions that search the stored table shapes of lookup_records.h and
// the dense shapes (range, array, plane). Code pages, property and transform
// tables call these directly on their constant data.
//
// Found/not-found forms return true and write the value only when the key has
// one; a stored value equal to the table's missing value counts as absent.
// WithDefault forms never fail: range and gap tables return whatever is stored
// (even a value equal to some missing value), the others the default.
//
// Cost: chunk, sparse, delta and gap lookups are binary searches over the
// records; range, array and plane lookups are constant time. None allocates.
//
// Values said to be 32-bit are stored as std::uint32_t and handed out as
// unsigned long; keys given as unsigned long that do not fit the stored key
// width are simply absent.
#ifndef VARNICE_TABLES_LOOKUP_FUNCTIONS_H_
#define VARNICE_TABLES_LOOKUP_FUNCTIONS_H_

#include <cstdint>

#include "varnice/charprops/types/character_enums.h"
#include "varnice/tables/lookup_records.h"
#include "varnice/varnice_export.h"

// Range tables: key k maps to values[k - base] for base <= k < base + count.
VARNICE_API unsigned short RangeTableLookupWithDefault(unsigned short defaultValue,
                                                       unsigned short base, long count,
                                                       unsigned short const* values,
                                                       unsigned short key);
VARNICE_API unsigned long RangeTableLookupWithDefault(unsigned short defaultValue,
                                                      unsigned short base, long count,
                                                      std::uint32_t const* values,
                                                      unsigned short key);

VARNICE_API bool RangeTableLookup(unsigned char missing, unsigned short base, long count,
                                  unsigned char const* values, unsigned short key,
                                  unsigned char& value);
VARNICE_API bool RangeTableLookup(unsigned char missing, unsigned short base, long count,
                                  unsigned char const* values, unsigned short key,
                                  unsigned long& value);
VARNICE_API bool RangeTableLookup(unsigned short missing, unsigned short base, long count,
                                  unsigned short const* values, unsigned short key,
                                  unsigned short& value);
VARNICE_API bool RangeTableLookup(unsigned long missing, unsigned short base, long count,
                                  std::uint32_t const* values, unsigned short key,
                                  unsigned long& value);

// Chunk tables: the run first..last that holds the key gives the value.
VARNICE_API bool ChunkTableLookup(ChunkTableEntryUSL const* entries, long count,
                                  unsigned short key, long& value);
VARNICE_API bool ChunkTableLookup(ChunkTableEntryULL const* entries, long count,
                                  unsigned long key, long& value);
VARNICE_API bool ChunkTableLookup(ChunkTableEntryUSUS const* entries, long count,
                                  unsigned short key, unsigned short& value);
VARNICE_API bool ChunkTableLookup(ChunkTableEntryUSCharCat const* entries, long count,
                                  unsigned short key, CharacterCategory& value);
VARNICE_API bool ChunkTableLookup(ChunkTableEntryUSScrSys const* entries, long count,
                                  unsigned short key, ScriptSystem& value);
VARNICE_API bool ChunkTableLookup(ChunkTableEntryUSCharWid const* entries, long count,
                                  unsigned short key, CharacterWidth& value);

VARNICE_API unsigned short ChunkTableLookupWithDefault(ChunkTableEntryUSUS const* entries,
                                                       long count, unsigned short key,
                                                       unsigned short defaultValue);
VARNICE_API unsigned char ChunkTableLookupWithDefault(ChunkTableEntryUSUC const* entries,
                                                      long count, unsigned short key,
                                                      unsigned char defaultValue);
VARNICE_API long ChunkTableLookupWithDefault(ChunkTableEntryULL const* entries, long count,
                                             unsigned long key, long defaultValue);
VARNICE_API ScriptSystem ChunkTableLookupWithDefault(ChunkTableEntryUSScrSys const* entries,
                                                     long count, unsigned short key,
                                                     ScriptSystem defaultValue);
VARNICE_API CharacterCategory ChunkTableLookupWithDefault(
    ChunkTableEntryUSCharCat const* entries, long count, unsigned short key,
    CharacterCategory defaultValue);
VARNICE_API CharacterWidth ChunkTableLookupWithDefault(ChunkTableEntryUSCharWid const* entries,
                                                       long count, unsigned short key,
                                                       CharacterWidth defaultValue);

// Gap tables: the delta of the gap run holding the key moves it (mod 65536)
// into a range table. Closes the empty stretches of a sparse key space.
VARNICE_API bool GapTableLookup(ChunkTableEntryUSL const* gaps, long gapCount,
                                unsigned char missing, unsigned short base, long count,
                                unsigned char const* values, unsigned short key,
                                unsigned char& value);
VARNICE_API bool GapTableLookup(ChunkTableEntryUSL const* gaps, long gapCount,
                                unsigned char missing, unsigned short base, long count,
                                unsigned char const* values, unsigned short key,
                                unsigned long& value);
VARNICE_API bool GapTableLookup(ChunkTableEntryUSL const* gaps, long gapCount,
                                unsigned short missing, unsigned short base, long count,
                                unsigned short const* values, unsigned short key,
                                unsigned short& value);
VARNICE_API bool GapTableLookup(ChunkTableEntryUSL const* gaps, long gapCount,
                                unsigned long missing, unsigned short base, long count,
                                std::uint32_t const* values, unsigned short key,
                                unsigned long& value);

VARNICE_API unsigned short GapTableLookupWithDefault(ChunkTableEntryUSL const* gaps,
                                                     long gapCount, unsigned short defaultValue,
                                                     unsigned short base, long count,
                                                     unsigned short const* values,
                                                     unsigned short key);
VARNICE_API unsigned short GapTableLookupWithDefault(ChunkTableEntryULL const* gaps,
                                                     long gapCount, unsigned short defaultValue,
                                                     unsigned short base, long count,
                                                     unsigned short const* values,
                                                     unsigned long key);

// Sparse tables: one record per key, found by exact match.
VARNICE_API bool SparseTableLookup(SparseTableEntryUSUS const* entries, long count,
                                   unsigned short key, unsigned short& value);
VARNICE_API bool SparseTableLookup(SparseTableEntryUSUC const* entries, long count,
                                   unsigned short key, unsigned char& value);
VARNICE_API bool SparseTableLookup(SparseTableEntryUSUL const* entries, long count,
                                   unsigned short key, unsigned long& value);
VARNICE_API bool SparseTableLookup(SparseTableEntryULUS const* entries, long count,
                                   unsigned long key, unsigned short& value);

// Delta tables: a key inside a run maps to key + the run's value, cut to the
// width of the result (16 or 32 bits).
VARNICE_API bool DeltaTableLookup(ChunkTableEntryUSL const* entries, long count,
                                  unsigned short key, unsigned short& value);
VARNICE_API bool DeltaTableLookup(ChunkTableEntryUSL const* entries, long count,
                                  unsigned short key, unsigned long& value);
VARNICE_API unsigned short DeltaTableLookupWithDefault(ChunkTableEntryUSL const* entries,
                                                       long count, unsigned short key,
                                                       unsigned short defaultValue);

// Plane tables: 256 pointers to planes of 256 values, indexed by the high and
// low byte of the key; a null plane holds only missing values. Here a missing
// value is absent for the WithDefault forms too.
VARNICE_API unsigned short PlaneTableLookupWithDefault(unsigned short missing,
                                                       unsigned short const* const* planes,
                                                       unsigned short key,
                                                       unsigned short defaultValue);
VARNICE_API unsigned long PlaneTableLookupWithDefault(unsigned long missing,
                                                      std::uint32_t const* const* planes,
                                                      unsigned short key,
                                                      unsigned long defaultValue);
VARNICE_API unsigned char PlaneTableLookupWithDefault(unsigned char missing,
                                                      unsigned char const* const* planes,
                                                      unsigned short key,
                                                      unsigned char defaultValue);

VARNICE_API bool PlaneTableLookup(unsigned long missing, std::uint32_t const* const* planes,
                                  unsigned short key, unsigned long& value);
// One plane only: the low 8 bits of index select the value.
VARNICE_API bool PlaneTableLookup(unsigned short missing, unsigned short const* plane,
                                  long index, unsigned short& value);
VARNICE_API bool PlaneTableLookup(CharacterCategory missing,
                                  CharacterCategory const* const* planes, unsigned short key,
                                  CharacterCategory& value);
// Four levels for 32-bit keys: pointer arrays indexed by bits 31-24, 23-16 and
// 15-8, then a plane indexed by bits 7-0; a null pointer at any level is absent.
VARNICE_API bool PlaneTableLookup(unsigned short missing,
                                  unsigned short const* const* const* const* levels,
                                  unsigned long key, unsigned short& value);

// Array tables: values indexed directly by the key, absent at or beyond count.
VARNICE_API bool ArrayTableLookup(unsigned short missing, unsigned long count,
                                  unsigned short const* values, unsigned long index,
                                  unsigned short& value);
VARNICE_API bool ArrayTableLookup(unsigned char missing, unsigned long count,
                                  unsigned char const* values, unsigned long index,
                                  unsigned long& value);

#endif  // VARNICE_TABLES_LOOKUP_FUNCTIONS_H_
