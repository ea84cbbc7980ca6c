#include "varnice/stream/buffer_char16_source.h"

BufferChar16Source::BufferChar16Source(const unsigned short* begin, const unsigned short* end) {
  if (begin == nullptr) return;
  if (end == nullptr) {
    end = begin;
    while (*end != 0) ++end;
  }
  position_ = begin;
  end_ = end;
}

// UnicodeLibActor is a virtual base: name it here, or the copy would take the
// default behaviour instead of the other's.
BufferChar16Source::BufferChar16Source(const BufferChar16Source& other)
    : UnicodeLibActor(other), Char16Source(other) {
  position_ = other.position_;
  end_ = other.end_;
}

BufferChar16Source& BufferChar16Source::operator=(const BufferChar16Source& other) {
  position_ = other.position_;
  end_ = other.end_;
  return *this;
}

BufferChar16Source::~BufferChar16Source() = default;

bool BufferChar16Source::FillBuffer() { return false; }
