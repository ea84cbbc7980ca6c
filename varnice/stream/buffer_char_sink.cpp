#include "varnice/stream/buffer_char_sink.h"

#include "varnice/stream/buffer_fill.h"

// UnicodeLibActor is a virtual base, so this constructor, not CharSink's,
// decides which behaviour the sink gets: the default one.
BufferCharSink::BufferCharSink(char* buffer, long capacity)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      CharSink(static_cast<const UnicodeLibActor*>(nullptr)),
      start_(buffer),
      position_(buffer),
      limit_(capacity > 0 ? buffer + capacity : buffer),
      truncated_(false) {
  if (capacity > 0) *buffer = '\0';
}

BufferCharSink::BufferCharSink(unsigned char* buffer, long capacity)
    : BufferCharSink(reinterpret_cast<char*>(buffer), capacity) {}

void BufferCharSink::Flush() {}

long BufferCharSink::RemainingCapacity() const { return limit_ - position_; }

void BufferCharSink::MarkAsTruncated() { truncated_ = true; }

void BufferCharSink::PutBuffer(const char* begin, const char* end) {
  varnice::internal::PutTruncating(begin, end, position_, limit_, truncated_);
}

const char* BufferCharSink::c_str() const {
  if (position_ < limit_) *position_ = '\0';
  return start_;
}
