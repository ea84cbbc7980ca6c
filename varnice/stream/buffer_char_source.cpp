#include "varnice/stream/buffer_char_source.h"

#include <cstring>

BufferCharSource::BufferCharSource(const char* begin, const char* end) {
  if (begin == nullptr) return;
  position_ = begin;
  end_ = end != nullptr ? end : begin + std::strlen(begin);
}

BufferCharSource::BufferCharSource(const unsigned char* begin, const unsigned char* end)
    : BufferCharSource(reinterpret_cast<const char*>(begin), reinterpret_cast<const char*>(end)) {}

BufferCharSource::~BufferCharSource() = default;

bool BufferCharSource::FillBuffer() { return false; }
