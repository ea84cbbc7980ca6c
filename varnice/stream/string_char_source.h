// StringCharSource: owns a copy of its text and lends that copy, so the
// caller's text may go away as soon as the source is built.
#ifndef VARNICE_STREAM_STRING_CHAR_SOURCE_H_
#define VARNICE_STREAM_STRING_CHAR_SOURCE_H_

#include "varnice/stream/char_source.h"
#include "varnice/varnice_export.h"
#include "varnice/widec/qz_string.h"

class VARNICE_API StringCharSource : public virtual CharSource {
 public:
  explicit StringCharSource(const qz_string& text);
  // A null `end` means NUL-terminated text; a null `begin` is empty.
  StringCharSource(const char* begin, const char* end);
  StringCharSource(const unsigned char* begin, const unsigned char* end);
  // Copying takes only what the other has not yet lent out and consumed, and
  // reads it from its start. Assignment keeps this source's behaviour.
  StringCharSource(const StringCharSource& other);
  StringCharSource& operator=(const StringCharSource& other);

  ~StringCharSource() override;
  bool FillBuffer() override;

 private:
  void Lend();

  qz_string text_;
};

#endif  // VARNICE_STREAM_STRING_CHAR_SOURCE_H_
