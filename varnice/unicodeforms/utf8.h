// UTF-8: the byte form of an internal encoding. The decoder is lenient where
// old data needs it (overlong forms, encoded lone surrogates, five- and
// six-byte forms are read) and strict about structure (a stray continuation
// byte or an interrupted sequence is illegal input).
//
// The variation makes one variant per internal encoding: "UTF-8" for
// Unicode 2.0, "Unicode11UTF8" (surrogates not allowed) for Unicode 1.1, and
// composed names for the decorated internal encodings.
#ifndef VARNICE_UNICODEFORMS_UTF8_H_
#define VARNICE_UNICODEFORMS_UTF8_H_

#include <cstdint>

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/external_encoding_detector.h"
#include "varnice/varnice_export.h"

class InternalEncoding;

// Total sequence length by lead byte: 1 for ASCII, 0 for a continuation byte,
// 2-6 for the leads of longer forms.
extern VARNICE_API const unsigned char UTF8_CHAR_LENGTHS_FROM_LEAD[256];

// UTF-8 bytes to UTF-16 code units.
//
// Every step asks for room for two code units (a surrogate pair), even for an
// ASCII byte. A byte that interrupts a sequence is consumed with it and
// reported as kIllegalInput; it is not read again as a lead. A value above
// U+FFFF becomes a surrogate pair when surrogates are allowed and it is at
// most U+10FFFF, else it is reported as kNoCharacterDefined after the whole
// sequence. A sequence cut by the end of a block is carried to the next call.
// ("Whatever": the 16-bit side is whichever internal encoding the variant
// serves, Unicode 2.0, 1.1 or a decorated one; the converter only moves units.)
class VARNICE_API UTF8toWhatever : public BlockConverter_8_to_16 {
 public:
  explicit UTF8toWhatever(bool allowSurrogates);
  ~UTF8toWhatever() override;

  int Convert(const char*& in, const char* inEnd, unsigned short*& out,
              const unsigned short* outEnd) override;
  void Reset() override;

  // The plain loop, one byte per step. Convert takes whole characters in
  // larger steps where it can and ends in exactly the same place with the
  // same result; this one is kept as the reference it is tested against.
  int ConvertByteAtATime(const char*& in, const char* inEnd, unsigned short*& out,
                         const unsigned short* outEnd);

 private:
  // One step of the plain loop: a result code, or kKeepConverting to go on.
  int Step(const unsigned char*& in, const unsigned char* inEnd, unsigned short*& out,
           const unsigned short* outEnd);

  bool allowSurrogates_;
  int expected_ = 0;       // continuation bytes still to come
  std::uint32_t value_ = 0;
};

// UTF-16 code units to UTF-8 bytes.
//
// Every step asks for six bytes of room. With pairing on, a high surrogate
// waits for its low surrogate; anything else after it is reported as illegal
// UTF-16 (kIllegalUTF16), both units consumed. Lone surrogates, and all surrogates with
// pairing off, are written as three-byte forms of their own value. The byte
// budget is checked after the unit has been consumed (kCapacityReached).
class VARNICE_API UTF8fromWhatever : public BlockConverter_16_to_8 {
 public:
  explicit UTF8fromWhatever(bool pairSurrogates);
  ~UTF8fromWhatever() override;

  int Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* outEnd,
              long capacity) override;
  void Reset() override;

  // The plain loop, one code unit per step; see UTF8toWhatever.
  int ConvertUnitAtATime(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                         const char* outEnd, long capacity);

 private:
  int Step(const unsigned short*& in, const unsigned short* inEnd, unsigned char*& out,
           const unsigned char* outEnd, long& capacity);

  bool pairSurrogates_;
  std::uint32_t pendingHigh_ = 0;  // 0 = none
};

// Scores bytes as UTF-8: one point off for each byte out of place. A stray
// continuation byte is followed by nine bytes that are expected to be
// continuation bytes, so it costs dearly in ordinary text.
class VARNICE_API UTF8Detector : public ExternalEncodingDetector {
 public:
  explicit UTF8Detector(const ExternalEncoding& encoding);
  ~UTF8Detector() override;
  void Scan(const char* bufferStart, const char* begin, const char* end) override;
  // A sequence left open at the end costs one more point.
  void Finish(const char* bufferStart, const char* end) override;

 private:
  int expected_ = 0;
};

// The UTF-8 form of one internal encoding.
class VARNICE_API UTF8EncodingVariant : public ExternalEncoding {
 public:
  UTF8EncodingVariant(const InternalEncoding& internal, const EncodingVariation& variation,
                      bool allowSurrogates, const char** names);
  ~UTF8EncodingVariant();

  // Each stage also passes the text through the internal encoding's own
  // stage, so the Unicode side is always Unicode 2.0.
  VARNICE_EXTERNAL_ENCODING_OVERRIDES;

  // The block converters every stage above runs; the C functions also run
  // them, on the stack, straight over their callers' buffers.
  UTF8toWhatever Decoder() const { return UTF8toWhatever(allowSurrogates_); }
  UTF8fromWhatever Encoder() const { return UTF8fromWhatever(allowSurrogates_); }

  const InternalEncoding& Internal() const { return internal_; }
  bool AllowsSurrogates() const { return allowSurrogates_; }

 private:
  const InternalEncoding& internal_;
  bool allowSurrogates_;
};

// Variation 3: a UTF-8 variant of every internal encoding.
class VARNICE_API UTF8Variation : public RealEncodingVariation {
 public:
  UTF8Variation();
  ~UTF8Variation() override;
  void GenerateVariantOf(const InternalEncoding& encoding) override;
  using RealEncodingVariation::GenerateVariantOf;
};

#endif  // VARNICE_UNICODEFORMS_UTF8_H_
