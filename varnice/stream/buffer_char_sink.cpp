#include "varnice/stream/buffer_char_sink.h"

#include <cstring>

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
  if (truncated_) return;
  long n = end - begin;
  const long room = limit_ - position_;
  if (n > room) {
    n = room;
    truncated_ = true;
  }
  if (n > 0) {
    std::memcpy(position_, begin, static_cast<std::size_t>(n));
    position_ += n;
  }
  if (position_ < limit_) *position_ = '\0';
}

const char* BufferCharSink::c_str() const {
  if (position_ < limit_) *position_ = '\0';
  return start_;
}
