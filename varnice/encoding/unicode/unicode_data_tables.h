// Constant data of the two internal encodings, generated from data/ by
// tools/gen (gen_unicode11_mapping.py, gen_line_break.py). Internal to the
// library.
#ifndef VARNICE_ENCODING_UNICODE_UNICODE_DATA_TABLES_H_
#define VARNICE_ENCODING_UNICODE_UNICODE_DATA_TABLES_H_

#include "varnice/tables/lookup_records.h"

namespace varnice::internal {

// Code points that moved between Unicode 1.1 and 2.0 (the Hangul syllables).
// Indexed by the high byte of a code unit, then by its low byte; a null row
// or a zero entry means the code unit is the same in both versions.
extern const unsigned short* const kUnicode11to20Rows[256];
extern const unsigned short* const kUnicode20to11Rows[256];

// Line-break votes of the side before and the side after each character:
// 0 allow, 1 object, 2 force, 3 veto; code points not listed object (1).
extern const ChunkTableEntryUSUC kLineBreakBefore[];
extern const long kLineBreakBeforeCount;
extern const ChunkTableEntryUSUC kLineBreakAfter[];
extern const long kLineBreakAfterCount;

// The row-table lookup shared by Unicode11Encoding and its block converters.
inline unsigned short MapThroughRows(const unsigned short* const* rows, unsigned short unit) {
  const unsigned short* row = rows[unit >> 8];
  const unsigned short mapped = row != nullptr ? row[unit & 0xFF] : 0;
  return mapped != 0 ? mapped : unit;
}

}  // namespace varnice::internal

#endif  // VARNICE_ENCODING_UNICODE_UNICODE_DATA_TABLES_H_
