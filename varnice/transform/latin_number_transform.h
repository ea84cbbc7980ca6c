// Decimal digits of every script to the ASCII digits 0-9: fullwidth ０-９,
// Arabic-Indic ٠-٩, Devanagari ०-९, Thai ๐-๙, the mathematical digits of
// plane 1 and the rest of the 680 characters of general category Nd (Unicode
// 15.0). Nothing else is folded: superscript, circled and parenthesised
// numbers, Roman numerals and CJK numerals are not decimal digits and are left
// as they are, since rewriting ① or Ⅻ as ASCII would change what they mean.
// A digit outside the BMP is one surrogate pair in and one unit out; its high
// half is held across blocks. The test is asked with the full code point.
#ifndef VARNICE_TRANSFORM_LATIN_NUMBER_TRANSFORM_H_
#define VARNICE_TRANSFORM_LATIN_NUMBER_TRANSFORM_H_

#include "varnice/transform/unicode_transform.h"
#include "varnice/varnice_export.h"

class VARNICE_API ToLatinNumberTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToLatinNumberTransform() override;
  bool FillBuffer() override;

  // The ASCII digit of a decimal digit, or c itself.
  static unsigned long Transform(unsigned long c);

 private:
  unsigned short heldHigh_ = 0;  // a high surrogate waiting for its low half, or 0
};

#endif  // VARNICE_TRANSFORM_LATIN_NUMBER_TRANSFORM_H_
