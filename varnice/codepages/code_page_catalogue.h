// The registry entries of the table-driven code pages: number, names, code
// page, whether the bytes are ASCII-based, and the tables behind them. The
// encoding factories build their singletons from these.
#ifndef VARNICE_CODEPAGES_CODE_PAGE_CATALOGUE_H_
#define VARNICE_CODEPAGES_CODE_PAGE_CATALOGUE_H_

#include "varnice/codepages/mbcs_to_unicode_table.h"
#include "varnice/tables/table.h"

namespace varnice::internal {

struct CodePageEntry {
  unsigned int number;
  char const** nicknames;  // null-terminated
  char const* mimeName;    // may be null
  unsigned int codePage;   // 0 for none
  bool asciiBased;
  MBCStoUnicodeTable const& (*toUnicode)();
  LookupUnsignedLongTable<unsigned short> const& (*fromUnicode)();
};

inline constexpr int kCodePageCount = 28;
extern CodePageEntry const kCodePages[kCodePageCount];

// The entry with that encoding number, or null.
CodePageEntry const* FindCodePage(unsigned int number);

}  // namespace varnice::internal

#endif  // VARNICE_CODEPAGES_CODE_PAGE_CATALOGUE_H_
