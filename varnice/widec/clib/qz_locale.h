// Locale: the library's locale is one choice, the external encoding its text
// I/O uses. qz_setlocale (qz_wchar.h) changes it; it starts as ISO Latin-1.
#ifndef VARNICE_WIDEC_CLIB_QZ_LOCALE_H_
#define VARNICE_WIDEC_CLIB_QZ_LOCALE_H_

#include "varnice/varnice_export.h"

class ExternalEncoding;

class VARNICE_API Locale {
 public:
  // The current external encoding, made ISO Latin-1 on first use. Not locked:
  // settle it before threads start using it.
  static const ExternalEncoding& CurrentExternalEncoding();
};

#endif  // VARNICE_WIDEC_CLIB_QZ_LOCALE_H_
