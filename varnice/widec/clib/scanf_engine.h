// ScanfEngine: C scanf reading UTF-16 code units from a Char16Source; the
// twin of PrintfEngine.
//
// Directives are those of C scanf: white space (any qz_iswspace unit, in the
// format or the input), ordinary units matched exactly, and conversions with
// assignment suppression "*", a width, length modifiers hh h l ll z j t L,
// and d i u o x X p f F e E g G a A c s [ n %. Numbers are gathered as C's
// scanf gathers them and converted by the C library's strtoll, strtoull,
// strtof, strtod or strtold, so values, overflow and rounding are C's.
//
// Text conversions follow the library's wide character, as in PrintfEngine:
// %ls, %lc and %l[ store code units (unsigned short*); %s, %c and %[ store
// bytes (char*), a unit above 0xFF becoming '?'.
//
// Scan stops at the first unit that does not match and returns the number
// of assignments, or -1 (EOF) when the input ends before the first one. Only
// what the directives used is consumed from the source: the unit that ended
// a number or a text stays there for the next reader.
#ifndef VARNICE_WIDEC_CLIB_SCANF_ENGINE_H_
#define VARNICE_WIDEC_CLIB_SCANF_ENGINE_H_

#include <cstdarg>

#include "varnice/varnice_export.h"

class Char16Source;

// FormatChar is char or unsigned short; instantiated for exactly those two.
template <class FormatChar>
class VARNICE_API ScanfEngine {
 public:
  explicit ScanfEngine(Char16Source& source) : source_(source) {}

  // Reads the arguments from a copy of `args`: the caller's list is left
  // where it was and the caller still ends it.
  int Scan(const FormatChar* format, std::va_list args);

  // Code units consumed by the last Scan.
  long long Consumed() const { return consumed_; }

 private:
  Char16Source& source_;
  long long consumed_ = 0;
};

extern template class ScanfEngine<char>;
extern template class ScanfEngine<unsigned short>;

#endif  // VARNICE_WIDEC_CLIB_SCANF_ENGINE_H_
