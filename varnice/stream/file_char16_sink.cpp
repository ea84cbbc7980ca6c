#include "varnice/stream/file_char16_sink.h"

// The virtual base's constructor is chosen here (see BufferCharSink).
FileChar16Sink::FileChar16Sink(std::FILE* file)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      Char16Sink(static_cast<const UnicodeLibActor*>(nullptr)),
      file_(file) {}

void FileChar16Sink::Flush() { std::fflush(file_); }

void FileChar16Sink::PutBuffer(const unsigned short* begin, const unsigned short* end) {
  std::fwrite(begin, sizeof(unsigned short), static_cast<std::size_t>(end - begin), file_);
}
