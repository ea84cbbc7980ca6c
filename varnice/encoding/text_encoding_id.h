// TextEncodingID: a base encoding number (0-141) in bits 0-11 with up to three
// variation numbers packed five bits each above it. A variant's identifier is
// its base's identifier plus the variations applied, in order.
#ifndef VARNICE_ENCODING_TEXT_ENCODING_ID_H_
#define VARNICE_ENCODING_TEXT_ENCODING_ID_H_

#include <cstdint>

#include "varnice/encoding/encoding_variation_id.h"
#include "varnice/encoding/unicode_library.h"
#include "varnice/varnice_export.h"

class VARNICE_API TextEncodingID {
 public:
  // The message deliberately reads "malformed EncodingVariationID ...": logs and
  // callers match on that text.
  class VARNICE_API Malformed : public UnicodeLibraryException {
   public:
    explicit Malformed(unsigned long value);
    ~Malformed() override;
    const char* what() const noexcept override;

    char message[256];
    std::uint32_t value;
  };

  class VARNICE_API TooManyVariations : public UnicodeLibraryException {
   public:
    TooManyVariations(unsigned long left, unsigned long right);
    ~TooManyVariations() override;
    const char* what() const noexcept override;

    std::uint32_t left;
    std::uint32_t right;
    char message[256];
  };

  static constexpr unsigned int kLargestBaseEncoding = 141;

  // Throws Malformed unless the word is well formed (base number at most 141,
  // at most three variation groups of 0-9, bits 27-31 clear).
  TextEncodingID(unsigned long value);  // NOLINT: identifiers convert from words freely

  // 12 plus 5 per variation group up to the highest non-zero one.
  unsigned int BitsUsed() const;

  // Applies the chain `v` after this identifier's own variations; throws
  // TooManyVariations past three groups.
  TextEncodingID operator+(EncodingVariationID v) const;
  TextEncodingID& operator+=(EncodingVariationID v);

  TextEncodingID GetBaseEncodingID() const { return TextEncodingID(value_ & 0xfff); }
  EncodingVariationID GetVariationIDs() const { return EncodingVariationID(value_ >> 12); }
  bool IsWellFormed() const;

  unsigned long Value() const { return value_; }
  bool operator!=(const TextEncodingID& other) const { return value_ != other.value_; }
  bool operator==(const TextEncodingID& other) const { return value_ == other.value_; }

 private:
  std::uint32_t value_;
};

#endif  // VARNICE_ENCODING_TEXT_ENCODING_ID_H_
