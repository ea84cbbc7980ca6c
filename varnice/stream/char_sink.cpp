#include "varnice/stream/char_sink.h"

#include <cstdarg>
#include <cstring>

#include "varnice/stream/char_source.h"
#include "varnice/stream/printf_engine.h"

CharSink::CharSink(const UnicodeLibActor& actor) : UnicodeLibActor(actor) {}
CharSink::CharSink(const UnicodeLibActor* actor) : UnicodeLibActor(actor) {}
CharSink::~CharSink() = default;

long CharSink::RemainingCapacity() const { return -1; }
void CharSink::MarkAsTruncated() {}

void CharSink::Put(const char* begin, const char* end) {
  if (begin == nullptr) return;  // an empty range, as an empty vector's data() gives
  if (end == nullptr) end = begin + std::strlen(begin);
  PutBuffer(begin, end);
}

void CharSink::Put(CharSource& source) {
  const char* b;
  const char* e;
  while (source.GetBuffer(b, e)) {
    PutBuffer(b, e);
    source.DoneWith(e);
  }
}

int CharSink::printf(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  const int n = PrintfEngine<CharSink, char>(*this).Print(format, args);
  va_end(args);
  return n;
}

int CharSink::vprintf(const char* format, void* args) {
  return PrintfEngine<CharSink, char>(*this).Print(format, *static_cast<std::va_list*>(args));
}
