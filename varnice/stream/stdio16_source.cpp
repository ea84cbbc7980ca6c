#include "varnice/stream/stdio16_source.h"

#include "varnice/stream/char16_source.h"
#include "varnice/stream/stdio_line_reader.h"

Stdio16Source::Stdio16Source(Char16Source& source) : source_(source) {}

long Stdio16Source::fgetc() {
  if (pushed_back_ != -1) {
    const long c = pushed_back_;
    pushed_back_ = -1;
    return c;
  }
  const unsigned short* b;
  const unsigned short* e;
  if (!source_.GetBuffer(b, e)) return -1;
  source_.DoneWith(b + 1);
  return *b;
}

long Stdio16Source::ungetc(long c) {
  if (pushed_back_ != -1) return -1;
  pushed_back_ = c;
  return c;
}

unsigned short* Stdio16Source::fgets(unsigned short* buf, int n) {
  return varnice::internal::ReadLineKeepingNewline(source_, pushed_back_, buf, n);
}

unsigned short* Stdio16Source::gets(unsigned short* buf, int n) {
  return varnice::internal::ReadLineDroppingNewline(source_, pushed_back_, buf, n);
}

bool Stdio16Source::feof_() {
  if (pushed_back_ != -1) return false;
  const unsigned short* b;
  const unsigned short* e;
  return !source_.GetBuffer(b, e);
}
