#include "varnice/stream/char16_sink.h"

#include "varnice/stream/char16_source.h"

Char16Sink::Char16Sink(const UnicodeLibActor& actor) : UnicodeLibActor(actor) {}
Char16Sink::Char16Sink(const UnicodeLibActor* actor) : UnicodeLibActor(actor) {}
Char16Sink::~Char16Sink() = default;

long Char16Sink::RemainingCapacity() const { return -1; }

void Char16Sink::Put(const unsigned short* begin, const unsigned short* end) {
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
