// BufferCharSink: writes into a caller's buffer of fixed capacity and cuts the
// output silently when it is full.
//
// The text is kept NUL-terminated while there is room for the NUL, but the
// NUL never takes a byte from the capacity: a buffer filled to its last byte
// carries no terminator. Once a range has been cut (or MarkAsTruncated was
// called) the sink accepts nothing more, even data that would still fit, so
// the output never has a hole in the middle.
#ifndef VARNICE_STREAM_BUFFER_CHAR_SINK_H_
#define VARNICE_STREAM_BUFFER_CHAR_SINK_H_

#include "varnice/stream/char_sink.h"
#include "varnice/varnice_export.h"

class VARNICE_API BufferCharSink : public CharSink {
 public:
  // `capacity` bytes at `buffer`; 0 (or less) writes nothing at all.
  BufferCharSink(char* buffer, long capacity);
  BufferCharSink(unsigned char* buffer, long capacity);

  void Flush() override;
  long RemainingCapacity() const override;
  void MarkAsTruncated() override;
  void PutBuffer(const char* begin, const char* end) override;

  char* data() const { return start_; }
  // Terminates the text if there is room for the NUL; a full buffer is
  // returned as it is.
  const char* c_str() const;
  long size() const { return position_ - start_; }
  bool truncated() const { return truncated_; }

 private:
  char* start_;
  char* position_;
  char* limit_;
  bool truncated_;
};

#endif  // VARNICE_STREAM_BUFFER_CHAR_SINK_H_
