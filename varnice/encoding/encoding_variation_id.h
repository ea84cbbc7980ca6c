// EncodingVariationID: a chain of up to four variation numbers (byte-order
// mark, UTF-8 form, big-endian, ...) packed five bits each into one 32-bit
// word, the first variation in the lowest bits. The registry walks from a base
// encoding to a variant by peeling one group at a time.
#ifndef VARNICE_ENCODING_ENCODING_VARIATION_ID_H_
#define VARNICE_ENCODING_ENCODING_VARIATION_ID_H_

#include <cstdint>

#include "varnice/encoding/unicode_library.h"
#include "varnice/varnice_export.h"

class VARNICE_API EncodingVariationID {
 public:
  class VARNICE_API Malformed : public UnicodeLibraryException {
   public:
    explicit Malformed(unsigned long value);
    ~Malformed() override;
    const char* what() const noexcept override;

    std::uint32_t value;
    char message[256];
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

  // Throws Malformed unless the word is a well-formed chain. Bits above 32
  // make it malformed too.
  EncodingVariationID(unsigned long value);  // NOLINT: identifiers convert from words freely

  // 0 for the empty chain, else 5 per group up to the highest non-zero one.
  unsigned int BitsUsed() const;

  // Appends `other` after this chain; throws TooManyVariations past 4 groups.
  EncodingVariationID operator+(EncodingVariationID other) const;
  EncodingVariationID& operator+=(EncodingVariationID other);

  EncodingVariationID GetFirstVariationID() const { return EncodingVariationID(value_ & 31); }
  EncodingVariationID GetRemainingVariationIDs() const { return EncodingVariationID(value_ >> 5); }
  bool IsWellFormed() const;

  unsigned long Value() const { return value_; }
  bool operator!=(const EncodingVariationID& other) const { return value_ != other.value_; }
  bool operator==(const EncodingVariationID& other) const { return value_ == other.value_; }

 private:
  std::uint32_t value_;
};

#endif  // VARNICE_ENCODING_ENCODING_VARIATION_ID_H_
