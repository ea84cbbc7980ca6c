// Numbers of the variations and internal encodings the Unicode forms work
// with, and the test every variation of this folder makes before generating a
// variant. Internal to the library.
#ifndef VARNICE_UNICODEFORMS_UNICODE_FORM_IDS_H_
#define VARNICE_UNICODEFORMS_UNICODE_FORM_IDS_H_

#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/text_encoding.h"

namespace varnice::internal {

inline constexpr unsigned long kByteOrderMarkVariation = 1;
inline constexpr unsigned long kUTF7Variation = 2;
inline constexpr unsigned long kUTF8Variation = 3;
inline constexpr unsigned long kBigEndianVariation = 4;
inline constexpr unsigned long kLittleEndianVariation = 5;
inline constexpr unsigned long kPlatformByteOrderVariation = 6;

inline constexpr unsigned long kUnicode11Number = 1;
inline constexpr unsigned long kUnicode20Number = 2;

// False when the variation already occurs in the encoding's chain, and also
// when the encoding already has its variant under this variation, so that a
// second request (whichever of the two was made first) cannot replace it.
inline bool ShouldGenerate(const EncodingVariation& variation, const TextEncoding& encoding) {
  return !variation.AlreadyAppliedTo(encoding) &&
         encoding.LookupVariant(variation.GetEncodingVariationID()) == nullptr;
}

}  // namespace varnice::internal

#endif  // VARNICE_UNICODEFORMS_UNICODE_FORM_IDS_H_
