// FileChar16Sink: writes UTF-16 code units to a C stream raw, in the host's
// byte order and without a byte-order mark; pipelines that need a defined
// byte order convert to bytes first and use a FileCharSink. The FILE is
// neither opened nor closed here, and destroying the sink does not flush it.
#ifndef VARNICE_STREAM_FILE_CHAR16_SINK_H_
#define VARNICE_STREAM_FILE_CHAR16_SINK_H_

#include <cstdio>

#include "varnice/stream/char16_sink.h"
#include "varnice/varnice_export.h"

class VARNICE_API FileChar16Sink : public Char16Sink {
 public:
  explicit FileChar16Sink(std::FILE* file);

  void Flush() override;
  void PutBuffer(const unsigned short* begin, const unsigned short* end) override;

 private:
  std::FILE* file_;
};

#endif  // VARNICE_STREAM_FILE_CHAR16_SINK_H_
