// BufferChar16Source: lends a caller's buffer of UTF-16 code units as it lies
// (no copy), like BufferCharSource. Unlike the 8-bit source, a copy carries
// on where the original stands: both then lend the same caller buffer.
#ifndef VARNICE_STREAM_BUFFER_CHAR16_SOURCE_H_
#define VARNICE_STREAM_BUFFER_CHAR16_SOURCE_H_

#include "varnice/stream/char16_source.h"
#include "varnice/varnice_export.h"

class VARNICE_API BufferChar16Source : public virtual Char16Source {
 public:
  // A null `end` means text terminated by a 16-bit NUL; a null `begin` is an
  // empty source.
  BufferChar16Source(const unsigned short* begin, const unsigned short* end);
  // Copy the read position and end (and, for construction, the behaviour).
  BufferChar16Source(const BufferChar16Source& other);
  BufferChar16Source& operator=(const BufferChar16Source& other);

  ~BufferChar16Source() override;
  bool FillBuffer() override;
};

#endif  // VARNICE_STREAM_BUFFER_CHAR16_SOURCE_H_
