// StringChar16Source: owns a copy of its UTF-16 text and lends that copy; the
// twin of StringCharSource.
#ifndef VARNICE_STREAM_STRING_CHAR16_SOURCE_H_
#define VARNICE_STREAM_STRING_CHAR16_SOURCE_H_

#include "varnice/stream/char16_source.h"
#include "varnice/varnice_export.h"
#include "varnice/widec/qz_wstring.h"

class VARNICE_API StringChar16Source : public virtual Char16Source {
 public:
  explicit StringChar16Source(const qz_wstring& text);
  // A null `end` means text terminated by a 16-bit NUL; a null `begin` is empty.
  StringChar16Source(const unsigned short* begin, const unsigned short* end);
  // Copying takes only what the other has not yet consumed, and reads it from
  // its start. Assignment keeps this source's behaviour.
  StringChar16Source(const StringChar16Source& other);
  StringChar16Source& operator=(const StringChar16Source& other);

  ~StringChar16Source() override;
  bool FillBuffer() override;

 private:
  void Lend();

  qz_wstring text_;
};

#endif  // VARNICE_STREAM_STRING_CHAR16_SOURCE_H_
