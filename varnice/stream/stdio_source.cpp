#include "varnice/stream/stdio_source.h"

#include "varnice/stream/char_source.h"
#include "varnice/stream/stdio_line_reader.h"

StdioSource::StdioSource(CharSource& source) : source_(source) {}

int StdioSource::fgetc() {
  if (pushed_back_ != -1) {
    const int c = pushed_back_;
    pushed_back_ = -1;
    return c;
  }
  const char* b;
  const char* e;
  if (!source_.GetBuffer(b, e)) return -1;
  source_.DoneWith(b + 1);
  return static_cast<signed char>(*b);
}

int StdioSource::ungetc(int c) {
  if (pushed_back_ != -1) return -1;
  pushed_back_ = c;
  return c;
}

char* StdioSource::fgets(char* buf, int n) {
  return varnice::internal::ReadLineKeepingNewline(source_, pushed_back_, buf, n);
}

char* StdioSource::gets(char* buf, int n) {
  return varnice::internal::ReadLineDroppingNewline(source_, pushed_back_, buf, n);
}

bool StdioSource::feof_() {
  if (pushed_back_ != -1) return false;
  const char* b;
  const char* e;
  return !source_.GetBuffer(b, e);
}
