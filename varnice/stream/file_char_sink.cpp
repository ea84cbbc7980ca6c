#include "varnice/stream/file_char_sink.h"

// The virtual base's constructor is chosen here (see BufferCharSink).
FileCharSink::FileCharSink(std::FILE* file, WriteFunction write, FlushFunction flush)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      CharSink(static_cast<const UnicodeLibActor*>(nullptr)),
      file_(file),
      write_(write),
      flush_(flush) {}

FileCharSink::~FileCharSink() = default;

void FileCharSink::Flush() { flush_(file_); }

void FileCharSink::PutBuffer(const char* begin, const char* end) {
  write_(begin, 1, static_cast<std::size_t>(end - begin), file_);
}
