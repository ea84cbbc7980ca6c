// Unicode11Encoding: 16-bit code units of Unicode 1.1. It differs from
// Unicode 2.0 by the characters that moved between the versions (the Hangul
// syllables), so its conversions map code units through two row tables and
// can never fail.
#ifndef VARNICE_ENCODING_UNICODE_UNICODE11_ENCODING_H_
#define VARNICE_ENCODING_UNICODE_UNICODE11_ENCODING_H_

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/varnice_export.h"

class VARNICE_API Unicode11Encoding : public InternalEncoding {
 public:
  // GetCharacterScript, MayBreakLineBefore/After: those of the character's
  // Unicode 2.0 form. ToUnicode/FromUnicode: values above 0xFFFF pass through
  // unchanged. The stream factories make CharSource_16_to_16 / CharSink_16_to_16
  // with a Unicode11to20 or Unicode20to11 converter.
  VARNICE_INTERNAL_ENCODING_OVERRIDES;

 private:
  friend class InternalEncoding;
  Unicode11Encoding();
  ~Unicode11Encoding();
};

// Maps each code unit from Unicode 1.1 to 2.0; never reports a problem.
class VARNICE_API Unicode11to20 : public BlockConverter_16_to_16 {
 public:
  int Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
              const unsigned short* outEnd) override;
  void Reset() override;
};

// Maps each code unit from Unicode 2.0 to 1.1; never reports a problem.
class VARNICE_API Unicode20to11 : public BlockConverter_16_to_16 {
 public:
  int Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
              const unsigned short* outEnd) override;
  void Reset() override;
};

#endif  // VARNICE_ENCODING_UNICODE_UNICODE11_ENCODING_H_
