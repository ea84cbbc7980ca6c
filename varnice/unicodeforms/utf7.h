// UTF-7 (RFC 2152): Unicode in 7-bit bytes. Characters outside the direct
// sets travel in base64 runs opened by "+" and closed by "-" or by any byte
// that is not a base64 character; "+-" stands for "+" itself.
//
// The variation makes one variant per internal encoding, always writing Set O
// characters encoded and always closing runs with "-"; the Unicode 2.0
// variant is called "UTF-7".
#ifndef VARNICE_UNICODEFORMS_UTF7_H_
#define VARNICE_UNICODEFORMS_UTF7_H_

#include <cstdint>

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/external_encoding_detector.h"
#include "varnice/varnice_export.h"

class InternalEncoding;

namespace varnice::internal {
struct UTF7Tables;
// Where the decoding automaton stands; the decoder and the detector share it.
struct UTF7RunState {
  bool inRun = false;
  bool justOpened = false;  // nothing since the "+"
  bool produced = false;    // the run has produced a code unit
  std::uint32_t bits = 0;   // left-aligned
  int bitCount = 0;
};
}  // namespace varnice::internal

// UTF-7 bytes to UTF-16 code units. Every step asks for four units of room.
// kIllegalInput, with the converter reset: a byte above 0x7F; a run that
// ends before producing a unit ("+!", "+AG-"); a run whose leftover bits are
// not all zero ("+AGF-"). A "+" inside a run is the base64 digit 62.
// ("Whatever": the 16-bit side is whichever internal encoding the variant
// serves, Unicode 2.0, 1.1 or a decorated one; the converter only moves units.)
class VARNICE_API UTF7toWhatever : public BlockConverter_8_to_16 {
 public:
  UTF7toWhatever();
  ~UTF7toWhatever() override;

  int Convert(const char*& in, const char* inEnd, unsigned short*& out,
              const unsigned short* outEnd) override;
  // Closes a run left open at the end (needs two units of room); an empty
  // run or non-zero leftover bits are illegal there too.
  int Finish(unsigned short*& out, const unsigned short* outEnd) override;
  void Reset() override;

 private:
  const varnice::internal::UTF7Tables& tables_;
  varnice::internal::UTF7RunState run_;
};

// UTF-16 code units to UTF-7 bytes. Every step asks for seven bytes of room,
// Finish for five. There is no byte budget in this form: the output of a run
// is not made of whole characters.
class VARNICE_API UTF7fromWhatever : public BlockConverter_16_to_8 {
 public:
  // setODirect writes the Set O characters directly; alwaysClose ends every
  // run with "-" even where the next byte would end it anyway.
  UTF7fromWhatever(bool setODirect, bool alwaysClose);
  ~UTF7fromWhatever() override;

  int Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* outEnd,
              long capacity) override;
  // Closes a run left open.
  int Finish(char*& out, const char* outEnd) override;
  void Reset() override;

 private:
  // Pads the bits held to whole base64 digits and writes them.
  void FlushBits(char*& out);

  bool alwaysClose_;
  const signed char* direct_;  // 0 = may be written directly
  std::uint32_t bits_ = 0;     // left-aligned
  int bitCount_ = 0;
  bool inRun_ = false;
};

// Scores bytes as UTF-7: the decoder's automaton without output. Every place
// where the decoder would report illegal input costs a point, and so does
// every byte above 0x7F (on top of that). An unterminated run costs nothing.
class VARNICE_API UTF7Detector : public ExternalEncodingDetector {
 public:
  explicit UTF7Detector(const ExternalEncoding& encoding);
  ~UTF7Detector() override;
  void Scan(const char* bufferStart, const char* begin, const char* end) override;

  // One point off, and the run state cleared.
  void Loser();

 private:
  const varnice::internal::UTF7Tables& tables_;
  varnice::internal::UTF7RunState run_;
};

// The UTF-7 form of one internal encoding.
class VARNICE_API UTF7EncodingVariant : public ExternalEncoding {
 public:
  UTF7EncodingVariant(const InternalEncoding& internal, const EncodingVariation& variation, bool setODirect,
                      bool alwaysClose, const char** names, const char* mimeName);
  ~UTF7EncodingVariant();

  VARNICE_EXTERNAL_ENCODING_OVERRIDES;

  const InternalEncoding& Internal() const { return internal_; }
  bool WritesSetODirectly() const { return setODirect_; }
  bool AlwaysClosesRuns() const { return alwaysClose_; }

 private:
  const InternalEncoding& internal_;
  bool setODirect_;
  bool alwaysClose_;
};

// Variation 2: a UTF-7 variant of every internal encoding.
class VARNICE_API UTF7Variation : public RealEncodingVariation {
 public:
  UTF7Variation();
  ~UTF7Variation() override;
  void GenerateVariantOf(const InternalEncoding& encoding) override;
  using RealEncodingVariation::GenerateVariantOf;
};

#endif  // VARNICE_UNICODEFORMS_UTF7_H_
