// BufferChar16Sink: writes UTF-16 code units into a caller's buffer of fixed
// capacity, with the same cutting and termination rules as BufferCharSink
// (capacity and sizes count code units). It cannot be told of truncation
// from upstream: code-unit sinks have no MarkAsTruncated.
#ifndef VARNICE_STREAM_BUFFER_CHAR16_SINK_H_
#define VARNICE_STREAM_BUFFER_CHAR16_SINK_H_

#include "varnice/stream/char16_sink.h"
#include "varnice/varnice_export.h"

class VARNICE_API BufferChar16Sink : public Char16Sink {
 public:
  // `capacity` code units at `buffer`; 0 (or less) writes nothing at all.
  BufferChar16Sink(unsigned short* buffer, long capacity);

  void Flush() override;
  long RemainingCapacity() const override;
  void PutBuffer(const unsigned short* begin, const unsigned short* end) override;

  unsigned short* data() const { return start_; }
  // Terminates the text if there is room for the 16-bit NUL.
  const unsigned short* c_str() const;
  long size() const { return position_ - start_; }
  bool truncated() const { return truncated_; }

 private:
  unsigned short* start_;
  unsigned short* position_;
  unsigned short* limit_;
  bool truncated_;
};

#endif  // VARNICE_STREAM_BUFFER_CHAR16_SINK_H_
