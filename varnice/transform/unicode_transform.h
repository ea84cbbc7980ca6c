// UnicodeTransform: a Char16Source that reads another Char16Source and hands
// on a changed version of its text. Transforms stack like any other source:
//
//   CharSource bytes -> decoder -> ToHalfwidthTransform -> ToUppercaseTransform -> sink
//
// Every transform is limited by a CharacterTest: only characters that pass it
// are changed (or, for SelectTransform and FilterTransform, kept or dropped).
// The data a transform lends its readers always lies in its own 512-unit
// buffer, so a transform never allocates per character or per block.
#ifndef VARNICE_TRANSFORM_UNICODE_TRANSFORM_H_
#define VARNICE_TRANSFORM_UNICODE_TRANSFORM_H_

#include "varnice/stream/char16_source.h"
#include "varnice/varnice_export.h"

class CharacterTest;
class InternalEncoding;

class VARNICE_API UnicodeTransform : public virtual Char16Source {
 public:
  static constexpr long kBufferSize = 512;

  // None of the three is owned; all must outlive the transform. The transform
  // takes the library's default behaviour, not that of its source.
  UnicodeTransform(Char16Source& source, const InternalEncoding& encoding,
                   const CharacterTest& test);
  ~UnicodeTransform() override;

  UnicodeTransform(const UnicodeTransform&) = delete;
  UnicodeTransform& operator=(const UnicodeTransform&) = delete;

  // The test for the units of one block: a test that passes every character
  // (AnyCharacterProperty, the common case) is not asked at all.
  class Gate {
   public:
    bool operator()(unsigned short c) const { return all_ || transform_->Passes(c); }

   private:
    friend class UnicodeTransform;
    Gate(const UnicodeTransform* transform, bool all) : transform_(transform), all_(all) {}
    const UnicodeTransform* transform_;
    bool all_;
  };
 protected:
  Gate TestGate() const;
  // True when the test lets c be changed.
  bool Passes(unsigned short c) const;

  // Lends [buffer_, end) to readers; true when it is not empty.
  bool Lend(const unsigned short* end) {
    position_ = buffer_;
    end_ = end;
    return end != buffer_;
  }

  Char16Source& source_;
  const InternalEncoding& encoding_;
  const CharacterTest& test_;
  unsigned short buffer_[kBufferSize];
};

#endif  // VARNICE_TRANSFORM_UNICODE_TRANSFORM_H_
