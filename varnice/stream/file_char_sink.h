// FileCharSink: writes bytes to a C stream through functions of fwrite's and
// fflush's shape (the host may route output through its own I/O layer). The
// FILE is neither opened nor closed here, and destroying the sink does not
// flush it. Results of the write and flush functions are ignored; callers who
// care ask ferror() on their FILE.
#ifndef VARNICE_STREAM_FILE_CHAR_SINK_H_
#define VARNICE_STREAM_FILE_CHAR_SINK_H_

#include <cstddef>
#include <cstdio>

#include "varnice/stream/char_sink.h"
#include "varnice/varnice_export.h"

class VARNICE_API FileCharSink : public CharSink {
 public:
  using WriteFunction = std::size_t (*)(const void* buffer, std::size_t size, std::size_t count,
                                        std::FILE* file);
  using FlushFunction = int (*)(std::FILE* file);

  explicit FileCharSink(std::FILE* file, WriteFunction write = &std::fwrite,
                        FlushFunction flush = &std::fflush);

  void Flush() override;
  void PutBuffer(const char* begin, const char* end) override;
  ~FileCharSink() override;

 private:
  std::FILE* file_;
  WriteFunction write_;
  FlushFunction flush_;
};

#endif  // VARNICE_STREAM_FILE_CHAR_SINK_H_
