// WideFileInfo: what the wide file functions of qz_wchar.h remember about a C
// FILE: its wide orientation and one pushed-back code unit. Records are made
// on a file's first use, looked up by the FILE's address, and kept until the
// library is unloaded.
#ifndef VARNICE_WIDEC_CLIB_WIDE_FILE_INFO_H_
#define VARNICE_WIDEC_CLIB_WIDE_FILE_INFO_H_

#include <cstdio>

#include "varnice/varnice_export.h"
#include "varnice/widec/qz_auto_ptr.h"
#include "varnice/widec/qz_vector.h"

class VARNICE_API WideFileInfo {
 public:
  explicit WideFileInfo(std::FILE* file) : fFile(file) {}

  // The record of `file`, made and appended to sFileTable when there is none
  // (a linear search: hosts touch few files). Throws qz_sw_out_of_memory when
  // the table cannot grow. Not locked.
  static WideFileInfo* FindFile(std::FILE* file);

  std::FILE* fFile;
  bool fWide = false;
  bool fHasPushedBack = false;
  unsigned short fPushedBack = 0;

  // Grows only; a closed file's record is found again by a new FILE at the
  // same address.
  static qz_vector<qz_auto_ptr<WideFileInfo>> sFileTable;
};

#endif  // VARNICE_WIDEC_CLIB_WIDE_FILE_INFO_H_
