#include "varnice/stream/char16_source.h"

Char16Source::Char16Source(const Char16Source& other) : UnicodeLibActor(other) {}
Char16Source::Char16Source(const UnicodeLibActor& actor) : UnicodeLibActor(actor) {}
Char16Source::Char16Source(const UnicodeLibActor* actor) : UnicodeLibActor(actor) {}
Char16Source::~Char16Source() = default;

bool Char16Source::GetBuffer(const unsigned short*& begin, const unsigned short*& end) {
  if (position_ >= end_ && !FillBuffer()) return false;
  begin = position_;
  end = end_;
  return true;
}
