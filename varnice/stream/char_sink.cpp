#include "varnice/stream/char_sink.h"

#include <cstring>

#include "varnice/stream/char_source.h"

CharSink::CharSink(const UnicodeLibActor& actor) : UnicodeLibActor(actor) {}
CharSink::CharSink(const UnicodeLibActor* actor) : UnicodeLibActor(actor) {}
CharSink::~CharSink() = default;

long CharSink::RemainingCapacity() const { return -1; }
void CharSink::MarkAsTruncated() {}

void CharSink::Put(const char* begin, const char* end) {
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
