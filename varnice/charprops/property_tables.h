// Constant character data of the property subsystem, generated from data/ by
// tools/gen/gen_charprops.py, and the lookups over it. Internal to the library.
#ifndef VARNICE_CHARPROPS_PROPERTY_TABLES_H_
#define VARNICE_CHARPROPS_PROPERTY_TABLES_H_

#include <bit>
#include <cstdint>
#include <initializer_list>

#include "varnice/charprops/types/character_enums.h"
#include "varnice/tables/lookup_functions.h"
#include "varnice/tables/lookup_records.h"

namespace varnice::internal {

// Sorted runs of the category, script and width of UTF-16 code units. A code
// unit in no run has category NonCharacter, script UndefinedScript and width
// UndefinedWidth.
//
// Each table comes with a page index: for each high byte, the runs that touch
// that page of 256 units, so that a lookup searches a handful of runs instead
// of all of them.
struct RunPage {
  std::uint16_t first;  // index of the first run reaching into the page
  std::uint16_t count;  // runs touching the page
};

extern const ChunkTableEntryUSCharCat kCategoryRuns[];
extern const long kCategoryRunsCount;
extern const RunPage kCategoryRunsPages[256];
extern const ChunkTableEntryUSScrSys kScriptRuns[];
extern const long kScriptRunsCount;
extern const RunPage kScriptRunsPages[256];
extern const ChunkTableEntryUSCharWid kWidthRuns[];
extern const long kWidthRunsCount;
extern const RunPage kWidthRunsPages[256];

// Case rows, indexed by the high byte of a code unit and then its low byte.
// Upper-case rows exist for the pages that hold some upper-case mapping and
// store a character without one as itself; the UTF-8 rows hold the same
// characters as UTF-8 bytes packed in memory order. Lower-case rows hold 0
// where a character has no lower-case mapping.
extern const unsigned short* const kUcs2UpperRows[256];
extern const std::uint32_t* const kUtf8UpperRows[256];
extern const unsigned short* const kLowerRows[256];

inline CharacterCategory CategoryOf(unsigned short c) {
  RunPage const& page = kCategoryRunsPages[c >> 8];
  return ChunkTableLookupWithDefault(kCategoryRuns + page.first, page.count, c,
                                     CharacterCategory::NonCharacter);
}

inline ScriptSystem ScriptOf(unsigned short c) {
  RunPage const& page = kScriptRunsPages[c >> 8];
  return ChunkTableLookupWithDefault(kScriptRuns + page.first, page.count, c,
                                     ScriptSystem::UndefinedScript);
}

inline CharacterWidth WidthOf(unsigned short c) {
  RunPage const& page = kWidthRunsPages[c >> 8];
  return ChunkTableLookupWithDefault(kWidthRuns + page.first, page.count, c,
                                     CharacterWidth::UndefinedWidth);
}

// The simple case mappings of one code unit; a unit without one is returned
// as it is.
inline unsigned short SimpleUppercase(unsigned short c) {
  const unsigned short* row = kUcs2UpperRows[c >> 8];
  const unsigned short mapped = row != nullptr ? row[c & 0xFF] : 0;
  return mapped != 0 ? mapped : c;
}

inline unsigned short SimpleLowercase(unsigned short c) {
  const unsigned short* row = kLowerRows[c >> 8];
  const unsigned short mapped = row != nullptr ? row[c & 0xFF] : 0;
  return mapped != 0 ? mapped : c;
}

// Up to four bytes as the 32-bit word that holds them, in the order given, in
// memory; unused trailing bytes are 0.
constexpr std::uint32_t PackBytesInMemoryOrder(std::initializer_list<std::uint8_t> bytes) {
  std::uint32_t word = 0;
  int shift = 24;
  for (std::uint8_t b : bytes) {
    word |= static_cast<std::uint32_t>(b) << shift;
    shift -= 8;
  }
  if constexpr (std::endian::native == std::endian::little) {
    word = ((word & 0xFF) << 24) | ((word & 0xFF00) << 8) | ((word >> 8) & 0xFF00) | (word >> 24);
  }
  return word;
}

}  // namespace varnice::internal

#endif  // VARNICE_CHARPROPS_PROPERTY_TABLES_H_
