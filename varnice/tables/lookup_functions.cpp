#include "varnice/tables/lookup_functions.h"

#include "varnice/tables/lookup_search.h"

using varnice::internal::FindChunk;
using varnice::internal::FindInPlanes;
using varnice::internal::FindInRange;
using varnice::internal::FindSparse;
using varnice::internal::TakeUnlessMissing;

namespace {

// The range slot a gap table sends key to, or null when no gap run holds it.
template <class GapEntry, class Stored>
inline Stored const* FindThroughGap(GapEntry const* gaps, long gapCount, unsigned short base,
                                    long count, Stored const* values, unsigned long key) {
  GapEntry const* gap = FindChunk(gaps, gapCount, key);
  if (gap == nullptr) return nullptr;
  return FindInRange(base, count, values, static_cast<unsigned short>(key + gap->value));
}

template <class Entry, class Out>
inline bool TakeChunk(Entry const* entries, long count, unsigned long key, Out& value) {
  Entry const* e = FindChunk(entries, count, key);
  if (e == nullptr) return false;
  value = static_cast<Out>(e->value);
  return true;
}

template <class Entry, class Out>
inline bool TakeSparse(Entry const* entries, long count, unsigned long key, Out& value) {
  Entry const* e = FindSparse(entries, count, key);
  if (e == nullptr) return false;
  value = static_cast<Out>(e->value);
  return true;
}

template <class Entry, class V>
inline V ChunkOrDefault(Entry const* entries, long count, unsigned long key, V defaultValue) {
  Entry const* e = FindChunk(entries, count, key);
  return e == nullptr ? defaultValue : static_cast<V>(e->value);
}

template <class Stored, class V>
inline V PlaneOrDefault(V missing, Stored const* const* planes, unsigned short key,
                        V defaultValue) {
  V value;
  return TakeUnlessMissing(FindInPlanes(planes, key), missing, value) ? value : defaultValue;
}

}  // namespace

// Range tables.

unsigned short RangeTableLookupWithDefault(unsigned short defaultValue, unsigned short base,
                                           long count, unsigned short const* values,
                                           unsigned short key) {
  unsigned short const* slot = FindInRange(base, count, values, key);
  return slot == nullptr ? defaultValue : *slot;
}

unsigned long RangeTableLookupWithDefault(unsigned short defaultValue, unsigned short base,
                                          long count, std::uint32_t const* values,
                                          unsigned short key) {
  std::uint32_t const* slot = FindInRange(base, count, values, key);
  return slot == nullptr ? defaultValue : *slot;
}

bool RangeTableLookup(unsigned char missing, unsigned short base, long count,
                      unsigned char const* values, unsigned short key, unsigned char& value) {
  return TakeUnlessMissing(FindInRange(base, count, values, key), missing, value);
}

bool RangeTableLookup(unsigned char missing, unsigned short base, long count,
                      unsigned char const* values, unsigned short key, unsigned long& value) {
  return TakeUnlessMissing(FindInRange(base, count, values, key), missing, value);
}

bool RangeTableLookup(unsigned short missing, unsigned short base, long count,
                      unsigned short const* values, unsigned short key, unsigned short& value) {
  return TakeUnlessMissing(FindInRange(base, count, values, key), missing, value);
}

bool RangeTableLookup(unsigned long missing, unsigned short base, long count,
                      std::uint32_t const* values, unsigned short key, unsigned long& value) {
  return TakeUnlessMissing(FindInRange(base, count, values, key), missing, value);
}

// Chunk tables.

bool ChunkTableLookup(ChunkTableEntryUSL const* entries, long count, unsigned short key,
                      long& value) {
  return TakeChunk(entries, count, key, value);
}

bool ChunkTableLookup(ChunkTableEntryULL const* entries, long count, unsigned long key,
                      long& value) {
  return TakeChunk(entries, count, key, value);
}

bool ChunkTableLookup(ChunkTableEntryUSUS const* entries, long count, unsigned short key,
                      unsigned short& value) {
  return TakeChunk(entries, count, key, value);
}

bool ChunkTableLookup(ChunkTableEntryUSCharCat const* entries, long count, unsigned short key,
                      CharacterCategory& value) {
  return TakeChunk(entries, count, key, value);
}

bool ChunkTableLookup(ChunkTableEntryUSScrSys const* entries, long count, unsigned short key,
                      ScriptSystem& value) {
  return TakeChunk(entries, count, key, value);
}

bool ChunkTableLookup(ChunkTableEntryUSCharWid const* entries, long count, unsigned short key,
                      CharacterWidth& value) {
  return TakeChunk(entries, count, key, value);
}

unsigned short ChunkTableLookupWithDefault(ChunkTableEntryUSUS const* entries, long count,
                                           unsigned short key, unsigned short defaultValue) {
  return ChunkOrDefault(entries, count, key, defaultValue);
}

unsigned char ChunkTableLookupWithDefault(ChunkTableEntryUSUC const* entries, long count,
                                          unsigned short key, unsigned char defaultValue) {
  return ChunkOrDefault(entries, count, key, defaultValue);
}

long ChunkTableLookupWithDefault(ChunkTableEntryULL const* entries, long count,
                                 unsigned long key, long defaultValue) {
  return ChunkOrDefault(entries, count, key, defaultValue);
}

ScriptSystem ChunkTableLookupWithDefault(ChunkTableEntryUSScrSys const* entries, long count,
                                         unsigned short key, ScriptSystem defaultValue) {
  return ChunkOrDefault(entries, count, key, defaultValue);
}

CharacterCategory ChunkTableLookupWithDefault(ChunkTableEntryUSCharCat const* entries,
                                              long count, unsigned short key,
                                              CharacterCategory defaultValue) {
  return ChunkOrDefault(entries, count, key, defaultValue);
}

CharacterWidth ChunkTableLookupWithDefault(ChunkTableEntryUSCharWid const* entries, long count,
                                           unsigned short key, CharacterWidth defaultValue) {
  return ChunkOrDefault(entries, count, key, defaultValue);
}

// Gap tables.

bool GapTableLookup(ChunkTableEntryUSL const* gaps, long gapCount, unsigned char missing,
                    unsigned short base, long count, unsigned char const* values,
                    unsigned short key, unsigned char& value) {
  return TakeUnlessMissing(FindThroughGap(gaps, gapCount, base, count, values, key), missing,
                           value);
}

bool GapTableLookup(ChunkTableEntryUSL const* gaps, long gapCount, unsigned char missing,
                    unsigned short base, long count, unsigned char const* values,
                    unsigned short key, unsigned long& value) {
  return TakeUnlessMissing(FindThroughGap(gaps, gapCount, base, count, values, key), missing,
                           value);
}

bool GapTableLookup(ChunkTableEntryUSL const* gaps, long gapCount, unsigned short missing,
                    unsigned short base, long count, unsigned short const* values,
                    unsigned short key, unsigned short& value) {
  return TakeUnlessMissing(FindThroughGap(gaps, gapCount, base, count, values, key), missing,
                           value);
}

bool GapTableLookup(ChunkTableEntryUSL const* gaps, long gapCount, unsigned long missing,
                    unsigned short base, long count, std::uint32_t const* values,
                    unsigned short key, unsigned long& value) {
  return TakeUnlessMissing(FindThroughGap(gaps, gapCount, base, count, values, key), missing,
                           value);
}

unsigned short GapTableLookupWithDefault(ChunkTableEntryUSL const* gaps, long gapCount,
                                         unsigned short defaultValue, unsigned short base,
                                         long count, unsigned short const* values,
                                         unsigned short key) {
  unsigned short const* slot = FindThroughGap(gaps, gapCount, base, count, values, key);
  return slot == nullptr ? defaultValue : *slot;
}

unsigned short GapTableLookupWithDefault(ChunkTableEntryULL const* gaps, long gapCount,
                                         unsigned short defaultValue, unsigned short base,
                                         long count, unsigned short const* values,
                                         unsigned long key) {
  unsigned short const* slot = FindThroughGap(gaps, gapCount, base, count, values, key);
  return slot == nullptr ? defaultValue : *slot;
}

// Sparse tables.

bool SparseTableLookup(SparseTableEntryUSUS const* entries, long count, unsigned short key,
                       unsigned short& value) {
  return TakeSparse(entries, count, key, value);
}

bool SparseTableLookup(SparseTableEntryUSUC const* entries, long count, unsigned short key,
                       unsigned char& value) {
  return TakeSparse(entries, count, key, value);
}

bool SparseTableLookup(SparseTableEntryUSUL const* entries, long count, unsigned short key,
                       unsigned long& value) {
  return TakeSparse(entries, count, key, value);
}

bool SparseTableLookup(SparseTableEntryULUS const* entries, long count, unsigned long key,
                       unsigned short& value) {
  return TakeSparse(entries, count, key, value);
}

// Delta tables.

bool DeltaTableLookup(ChunkTableEntryUSL const* entries, long count, unsigned short key,
                      unsigned short& value) {
  ChunkTableEntryUSL const* e = FindChunk(entries, count, key);
  if (e == nullptr) return false;
  value = static_cast<unsigned short>(key + e->value);
  return true;
}

bool DeltaTableLookup(ChunkTableEntryUSL const* entries, long count, unsigned short key,
                      unsigned long& value) {
  ChunkTableEntryUSL const* e = FindChunk(entries, count, key);
  if (e == nullptr) return false;
  value = static_cast<std::uint32_t>(key + e->value);
  return true;
}

unsigned short DeltaTableLookupWithDefault(ChunkTableEntryUSL const* entries, long count,
                                           unsigned short key, unsigned short defaultValue) {
  ChunkTableEntryUSL const* e = FindChunk(entries, count, key);
  return e == nullptr ? defaultValue : static_cast<unsigned short>(key + e->value);
}

// Plane tables.

unsigned short PlaneTableLookupWithDefault(unsigned short missing,
                                           unsigned short const* const* planes,
                                           unsigned short key, unsigned short defaultValue) {
  return PlaneOrDefault(missing, planes, key, defaultValue);
}

unsigned long PlaneTableLookupWithDefault(unsigned long missing,
                                          std::uint32_t const* const* planes, unsigned short key,
                                          unsigned long defaultValue) {
  return PlaneOrDefault(missing, planes, key, defaultValue);
}

unsigned char PlaneTableLookupWithDefault(unsigned char missing,
                                          unsigned char const* const* planes, unsigned short key,
                                          unsigned char defaultValue) {
  return PlaneOrDefault(missing, planes, key, defaultValue);
}

bool PlaneTableLookup(unsigned long missing, std::uint32_t const* const* planes,
                      unsigned short key, unsigned long& value) {
  return TakeUnlessMissing(FindInPlanes(planes, key), missing, value);
}

bool PlaneTableLookup(unsigned short missing, unsigned short const* plane, long index,
                      unsigned short& value) {
  return TakeUnlessMissing(plane + (index & 0xFF), missing, value);
}

bool PlaneTableLookup(CharacterCategory missing, CharacterCategory const* const* planes,
                      unsigned short key, CharacterCategory& value) {
  return TakeUnlessMissing(FindInPlanes(planes, key), missing, value);
}

bool PlaneTableLookup(unsigned short missing, unsigned short const* const* const* const* levels,
                      unsigned long key, unsigned short& value) {
  if (key > 0xFFFFFFFFul) return false;
  unsigned short const* const* const* level2 = levels[(key >> 24) & 0xFF];
  if (level2 == nullptr) return false;
  unsigned short const* const* level3 = level2[(key >> 16) & 0xFF];
  if (level3 == nullptr) return false;
  return TakeUnlessMissing(FindInPlanes(level3, key), missing, value);
}

// Array tables.

bool ArrayTableLookup(unsigned short missing, unsigned long count, unsigned short const* values,
                      unsigned long index, unsigned short& value) {
  return index < count && TakeUnlessMissing(values + index, missing, value);
}

bool ArrayTableLookup(unsigned char missing, unsigned long count, unsigned char const* values,
                      unsigned long index, unsigned long& value) {
  return index < count && TakeUnlessMissing(values + index, missing, value);
}
