// The factories of the built-in variations and of the Unicode forms.
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/unicodeforms/byte_order_mark.h"
#include "varnice/unicodeforms/ucs2.h"
#include "varnice/unicodeforms/unicode_form_ids.h"
#include "varnice/unicodeforms/utf7.h"
#include "varnice/unicodeforms/utf8.h"

namespace {

// The variation is registered by its constructor and then generates its
// variants of what exists. Variations live until unload, like the encodings
// that point at them.
template <class Variation>
EncodingVariation* MakeVariation() {
  Variation* variation = new Variation;
  variation->GenerateVariantsForExistingEncodings();
  return variation;
}

ExternalEncoding* VariantOf(const InternalEncoding& base, EncodingVariationID chain) {
  const TextEncoding* variant = base.LookupVariant(chain);
  return variant != nullptr ? const_cast<TextEncoding*>(variant)->AsExternalEncoding() : nullptr;
}

EncodingVariationID Single(unsigned long number) { return EncodingVariationID(number); }

ExternalEncoding* ByteStreamOf(const InternalEncoding& base) {
  EncodingVariation::ByteOrderMark();
  EncodingVariation::PlatformByteOrder();
  return VariantOf(base, Single(varnice::internal::kByteOrderMarkVariation) +
                             Single(varnice::internal::kPlatformByteOrderVariation));
}

}  // namespace

EncodingVariation* EncodingVariation::ByteOrderMark() {
  static EncodingVariation* const variation = MakeVariation<ByteOrderMarkVariation>();
  return variation;
}

EncodingVariation* EncodingVariation::UTF7() {
  static EncodingVariation* const variation = MakeVariation<UTF7Variation>();
  return variation;
}

EncodingVariation* EncodingVariation::UTF8() {
  static EncodingVariation* const variation = MakeVariation<UTF8Variation>();
  return variation;
}

EncodingVariation* EncodingVariation::BigEndian() {
  static EncodingVariation* const variation = MakeVariation<BigEndianVariation>();
  return variation;
}

EncodingVariation* EncodingVariation::LittleEndian() {
  static EncodingVariation* const variation = MakeVariation<LittleEndianVariation>();
  return variation;
}

EncodingVariation* EncodingVariation::PlatformByteOrder() {
  static EncodingVariation* const variation = MakeVariation<PlatformByteOrderVariation>();
  return variation;
}

ExternalEncoding* ExternalEncoding::Unicode20UTF8() {
  EncodingVariation::UTF8();
  return VariantOf(*InternalEncoding::Unicode20(), Single(varnice::internal::kUTF8Variation));
}

ExternalEncoding* ExternalEncoding::Unicode11UTF8() {
  EncodingVariation::UTF8();
  return VariantOf(*InternalEncoding::Unicode11(), Single(varnice::internal::kUTF8Variation));
}

ExternalEncoding* ExternalEncoding::Unicode20UTF7() {
  EncodingVariation::UTF7();
  return VariantOf(*InternalEncoding::Unicode20(), Single(varnice::internal::kUTF7Variation));
}

ExternalEncoding* ExternalEncoding::Unicode11UTF7() {
  EncodingVariation::UTF7();
  return VariantOf(*InternalEncoding::Unicode11(), Single(varnice::internal::kUTF7Variation));
}

ExternalEncoding* ExternalEncoding::Unicode20BigEndian() {
  EncodingVariation::BigEndian();
  return VariantOf(*InternalEncoding::Unicode20(), Single(varnice::internal::kBigEndianVariation));
}

ExternalEncoding* ExternalEncoding::Unicode11BigEndian() {
  EncodingVariation::BigEndian();
  return VariantOf(*InternalEncoding::Unicode11(), Single(varnice::internal::kBigEndianVariation));
}

ExternalEncoding* ExternalEncoding::Unicode20ByteStream() { return ByteStreamOf(*InternalEncoding::Unicode20()); }

ExternalEncoding* ExternalEncoding::Unicode11ByteStream() { return ByteStreamOf(*InternalEncoding::Unicode11()); }
