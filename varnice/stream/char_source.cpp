#include "varnice/stream/char_source.h"

CharSource::CharSource(const CharSource& other) : UnicodeLibActor(other) {}
CharSource::CharSource(const UnicodeLibActor& actor) : UnicodeLibActor(actor) {}
CharSource::CharSource(const UnicodeLibActor* actor) : UnicodeLibActor(actor) {}
CharSource::~CharSource() = default;

bool CharSource::GetBuffer(const char*& begin, const char*& end) {
  if (position_ >= end_ && !FillBuffer()) return false;
  begin = position_;
  end = end_;
  return true;
}

bool CharSource::GetBuffer(const unsigned char*& begin, const unsigned char*& end) {
  const char* b;
  const char* e;
  if (!GetBuffer(b, e)) return false;
  begin = reinterpret_cast<const unsigned char*>(b);
  end = reinterpret_cast<const unsigned char*>(e);
  return true;
}

