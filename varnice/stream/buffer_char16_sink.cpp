#include "varnice/stream/buffer_char16_sink.h"

#include "varnice/stream/buffer_fill.h"

// The virtual base's constructor is chosen here (see BufferCharSink).
BufferChar16Sink::BufferChar16Sink(unsigned short* buffer, long capacity)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      Char16Sink(static_cast<const UnicodeLibActor*>(nullptr)),
      start_(buffer),
      position_(buffer),
      limit_(capacity > 0 ? buffer + capacity : buffer),
      truncated_(false) {
  if (capacity > 0) *buffer = 0;
}

void BufferChar16Sink::Flush() {}

long BufferChar16Sink::RemainingCapacity() const { return limit_ - position_; }

void BufferChar16Sink::PutBuffer(const unsigned short* begin, const unsigned short* end) {
  varnice::internal::PutTruncating(begin, end, position_, limit_, truncated_);
}

const unsigned short* BufferChar16Sink::c_str() const {
  if (position_ < limit_) *position_ = 0;
  return start_;
}
