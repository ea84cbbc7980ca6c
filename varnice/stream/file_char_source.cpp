#include "varnice/stream/file_char_source.h"

FileCharSource::FileCharSource(std::FILE* file, ReadFunction read) : file_(file), read_(read) {}

FileCharSource::~FileCharSource() = default;

bool FileCharSource::FillBuffer() {
  const std::size_t n = read_(buffer_, 1, kBufferSize, file_);
  position_ = buffer_;
  end_ = buffer_ + n;
  return n > 0;
}
