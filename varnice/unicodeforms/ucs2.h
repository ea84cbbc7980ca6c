// UCS-2: UTF-16 code units serialised as two bytes each, in big-endian,
// little-endian or the host's order. The decoder honours a byte-order mark at
// the very start of the text; the encoder writes none (the byte-order-mark
// variation of the internal encoding adds it). "UCS-2" itself is the
// host-order form of Unicode 2.0 with a byte-order mark.
#ifndef VARNICE_UNICODEFORMS_UCS2_H_
#define VARNICE_UNICODEFORMS_UCS2_H_

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/external_encoding_detector.h"
#include "varnice/varnice_export.h"

class InternalEncoding;

// The host's byte order.
class VARNICE_API PlatformByteOrder {
 public:
  // Whether the bytes 0x02 0x01 read as the 16-bit value 0x0201.
  static bool ComputeIsBigEndian();
  // ComputeIsBigEndian, computed once.
  static bool IsBigEndian();
};

// Pairs of bytes to code units. Only the first two bytes after construction
// or Reset are looked at for a mark: FE FF switches to big-endian, FF FE to
// little-endian, and the mark is consumed. A byte left over at the end of a
// block waits for the next; an odd last byte is dropped.
// ("Whatever": the 16-bit side is whichever internal encoding the variant
// serves, Unicode 2.0, 1.1 or a decorated one; the converter only moves units.)
class VARNICE_API UCS2toWhatever : public BlockConverter_8_to_16 {
 public:
  explicit UCS2toWhatever(bool bigEndian);
  ~UCS2toWhatever() override;
  int Convert(const char*& in, const char* inEnd, unsigned short*& out,
              const unsigned short* outEnd) override;
  void Reset() override;

 private:
  bool initialBigEndian_;
  bool bigEndian_;
  bool hasPending_ = false;
  unsigned char pending_ = 0;
  bool atStart_ = true;
};

// Code units to pairs of bytes; every unit is written as it is, surrogates
// and non-characters included. The budget is checked before the unit is
// consumed.
class VARNICE_API UCS2fromWhatever : public BlockConverter_16_to_8 {
 public:
  explicit UCS2fromWhatever(bool bigEndian);
  ~UCS2fromWhatever() override;
  int Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* outEnd,
              long capacity) override;
  void Reset() override;

 private:
  bool bigEndian_;
  bool atStart_ = true;  // kept for symmetry with the decoder; nothing reads it
};

// Chooses UCS-2 only for text that starts with a byte-order mark (score 1);
// otherwise the score stays at the lowest int. Decides once two bytes exist.
class VARNICE_API UCS2Detector : public ExternalEncodingDetector {
 public:
  explicit UCS2Detector(const ExternalEncoding& encoding);
  ~UCS2Detector() override;
  void Scan(const char* bufferStart, const char* begin, const char* end) override;

 private:
  bool decided_ = false;
};

// The two-byte form of one internal encoding in one byte order.
class VARNICE_API UCS2variant : public ExternalEncoding {
 public:
  enum ByteOrder { kPlatformOrder = 0, kBigEndianOrder = 1, kLittleEndianOrder = 2 };

  UCS2variant(const InternalEncoding& internal, const EncodingVariation& variation, ByteOrder order,
              const char** names);
  ~UCS2variant();

  // IsTextModeSafe: false, the bytes may hold NUL, CR and LF halves.
  VARNICE_EXTERNAL_ENCODING_OVERRIDES;

  const InternalEncoding& Internal() const { return internal_; }
  bool IsBigEndian() const { return bigEndian_; }

 private:
  const InternalEncoding& internal_;
  bool bigEndian_;
};

// Variation 6 ("UCS2"): the host-order form of every internal encoding.
class VARNICE_API PlatformByteOrderVariation : public RealEncodingVariation {
 public:
  PlatformByteOrderVariation();
  ~PlatformByteOrderVariation() override;
  void GenerateVariantOf(const InternalEncoding& encoding) override;
  using RealEncodingVariation::GenerateVariantOf;
};

// Variation 4 ("big-endian").
class VARNICE_API BigEndianVariation : public RealEncodingVariation {
 public:
  BigEndianVariation();
  ~BigEndianVariation() override;
  void GenerateVariantOf(const InternalEncoding& encoding) override;
  using RealEncodingVariation::GenerateVariantOf;
};

// Variation 5 ("little-endian").
class VARNICE_API LittleEndianVariation : public RealEncodingVariation {
 public:
  LittleEndianVariation();
  ~LittleEndianVariation() override;
  void GenerateVariantOf(const InternalEncoding& encoding) override;
  using RealEncodingVariation::GenerateVariantOf;
};

#endif  // VARNICE_UNICODEFORMS_UCS2_H_
