// BufferCharSource: lends a caller's byte buffer as it lies (no copy); the
// caller keeps the buffer alive for as long as the source is read. The buffer
// is the whole input: once it is consumed, the source is at end.
//
// A copy starts empty (CharSource copies take the behaviour, not the
// position); the 16-bit twin, BufferChar16Source, copies its position instead.
#ifndef VARNICE_STREAM_BUFFER_CHAR_SOURCE_H_
#define VARNICE_STREAM_BUFFER_CHAR_SOURCE_H_

#include "varnice/stream/char_source.h"
#include "varnice/varnice_export.h"

class VARNICE_API BufferCharSource : public virtual CharSource {
 public:
  // A null `end` means NUL-terminated text (the NUL is not part of the data);
  // a null `begin` is an empty source.
  BufferCharSource(const char* begin, const char* end);
  BufferCharSource(const unsigned char* begin, const unsigned char* end);

  ~BufferCharSource() override;
  // There is never more than the one buffer.
  bool FillBuffer() override;
};

#endif  // VARNICE_STREAM_BUFFER_CHAR_SOURCE_H_
