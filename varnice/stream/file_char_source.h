// FileCharSource: reads a C stream 1024 bytes at a time through a function of
// fread's shape (the host may route reads through its own I/O layer). The
// FILE is neither opened nor closed here. A read error ends the input just
// as end of file does; callers who care ask ferror() on their FILE.
#ifndef VARNICE_STREAM_FILE_CHAR_SOURCE_H_
#define VARNICE_STREAM_FILE_CHAR_SOURCE_H_

#include <cstddef>
#include <cstdio>

#include "varnice/stream/char_source.h"
#include "varnice/varnice_export.h"

class VARNICE_API FileCharSource : public virtual CharSource {
 public:
  using ReadFunction = std::size_t (*)(void* buffer, std::size_t size, std::size_t count,
                                       std::FILE* file);
  static constexpr std::size_t kBufferSize = 1024;

  explicit FileCharSource(std::FILE* file, ReadFunction read = &std::fread);

  ~FileCharSource() override;
  // True exactly when the read function delivered at least one byte.
  bool FillBuffer() override;

 private:
  std::FILE* file_;
  ReadFunction read_;
  char buffer_[kBufferSize];
};

#endif  // VARNICE_STREAM_FILE_CHAR_SOURCE_H_
