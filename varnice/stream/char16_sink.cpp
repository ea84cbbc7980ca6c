#include "varnice/stream/char16_sink.h"

#include <cstdarg>

#include "varnice/stream/char16_source.h"
#include "varnice/stream/printf_engine.h"

Char16Sink::Char16Sink(const UnicodeLibActor& actor) : UnicodeLibActor(actor) {}
Char16Sink::Char16Sink(const UnicodeLibActor* actor) : UnicodeLibActor(actor) {}
Char16Sink::~Char16Sink() = default;

long Char16Sink::RemainingCapacity() const { return -1; }

void Char16Sink::Put(const unsigned short* begin, const unsigned short* end) {
  if (begin == nullptr) return;  // an empty range, as an empty vector's data() gives
  if (end == nullptr) {
    end = begin;
    while (*end != 0) ++end;
  }
  PutBuffer(begin, end);
}

void Char16Sink::Put(Char16Source& source) {
  const unsigned short* b;
  const unsigned short* e;
  while (source.GetBuffer(b, e)) {
    PutBuffer(b, e);
    source.DoneWith(e);
  }
}

int Char16Sink::printf(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  const int n = PrintfEngine<Char16Sink, char>(*this).Print(format, args);
  va_end(args);
  return n;
}

int Char16Sink::printf(const unsigned short* format, ...) {
  std::va_list args;
  va_start(args, format);
  const int n = PrintfEngine<Char16Sink, unsigned short>(*this).Print(format, args);
  va_end(args);
  return n;
}

int Char16Sink::vprintf(const char* format, void* args) {
  return PrintfEngine<Char16Sink, char>(*this).Print(format, *static_cast<std::va_list*>(args));
}

int Char16Sink::vprintf(const unsigned short* format, void* args) {
  return PrintfEngine<Char16Sink, unsigned short>(*this).Print(format,
                                                                *static_cast<std::va_list*>(args));
}
