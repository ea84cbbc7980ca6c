// StdioSource: the C library's character-input face (fgetc, ungetc, fgets,
// gets, feof) over a CharSource, for code written against <stdio.h>. It does
// not own the source, and holds one character of push-back.
//
// Two departures from <stdio.h> are relied on by callers and kept:
// - fgetc returns the byte as a signed char, so 0xFF reads as -1, the same
//   value as end of input (and 0x80..0xFE read as negative values);
// - gets, when the push-back slot holds a character other than a newline,
//   stores it but leaves it in the slot, so the next read delivers it again.
#ifndef VARNICE_STREAM_STDIO_SOURCE_H_
#define VARNICE_STREAM_STDIO_SOURCE_H_

#include <cstdint>

#include "varnice/varnice_export.h"

class CharSource;

class VARNICE_API StdioSource {
 public:
  explicit StdioSource(CharSource& source);

  // The next byte, sign-extended from char; -1 at end of input.
  int fgetc();
  // Pushes `c` back and returns it; -1 if a character is already pushed back.
  int ungetc(int c);
  // Reads a line of at most n - 1 bytes into buf, keeping the newline, and
  // NUL-terminates it. Null when n < 2 or nothing was read.
  char* fgets(char* buf, int n);
  // Reads a line of at most n - 1 bytes into buf, dropping the newline, and
  // NUL-terminates it; n == -1 means no limit (the caller guarantees room).
  // Null when n == 0 or n < -1, or at end of input with nothing read; an
  // empty line gives buf.
  char* gets(char* buf, int n);
  // End of input; a pushed-back character is never at end. May fill the
  // source but consumes nothing.
  bool feof_();

 private:
  CharSource& source_;
  std::int32_t pushed_back_ = -1;  // -1: empty
};

#endif  // VARNICE_STREAM_STDIO_SOURCE_H_
