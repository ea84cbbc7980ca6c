// Char16Source: a pull stream of UTF-16 code units; the twin of CharSource
// (see char_source.h for the GetBuffer / DoneWith protocol).
#ifndef VARNICE_STREAM_CHAR16_SOURCE_H_
#define VARNICE_STREAM_CHAR16_SOURCE_H_

#include "varnice/encoding/actors/unicode_lib_actor.h"
#include "varnice/varnice_export.h"

class VARNICE_API Char16Source : public virtual UnicodeLibActor {
 public:
  Char16Source() = default;
  // A copy takes the other's behaviour but not its position: both pointers start null.
  Char16Source(const Char16Source& other);
  explicit Char16Source(const UnicodeLibActor& actor);
  explicit Char16Source(const UnicodeLibActor* actor);

  virtual bool FillBuffer() = 0;
  ~Char16Source() override;

  bool GetBuffer(const unsigned short*& begin, const unsigned short*& end);
  void DoneWith(const unsigned short* p) {
    if (p != nullptr) position_ = p;
  }

 protected:
  Char16Source& operator=(const Char16Source&) { return *this; }

  const unsigned short* position_ = nullptr;
  const unsigned short* end_ = nullptr;
};

#endif  // VARNICE_STREAM_CHAR16_SOURCE_H_
