// Stdio16Source: the twin of StdioSource (see stdio_source.h) over a
// Char16Source: fgetc returns the code unit zero-extended (0..65535) or -1 at
// end of input, and lines are arrays of code units ended by a 16-bit NUL.
// gets leaves a pushed-back unit other than a newline in its slot, as
// StdioSource does.
#ifndef VARNICE_STREAM_STDIO16_SOURCE_H_
#define VARNICE_STREAM_STDIO16_SOURCE_H_

#include "varnice/varnice_export.h"

class Char16Source;

class VARNICE_API Stdio16Source {
 public:
  explicit Stdio16Source(Char16Source& source);

  long fgetc();
  // Pushes `c` back and returns it; -1 if a unit is already pushed back.
  long ungetc(long c);
  // As StdioSource::fgets, counting code units.
  unsigned short* fgets(unsigned short* buf, int n);
  // As StdioSource::gets, counting code units.
  unsigned short* gets(unsigned short* buf, int n);
  bool feof_();

 private:
  Char16Source& source_;
  long pushed_back_ = -1;  // -1: empty
};

#endif  // VARNICE_STREAM_STDIO16_SOURCE_H_
