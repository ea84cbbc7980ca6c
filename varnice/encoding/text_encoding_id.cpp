#include "varnice/encoding/text_encoding_id.h"

#include <cstdio>

#include "varnice/encoding/variation_groups.h"

namespace {

constexpr unsigned int kBaseBits = 12;
constexpr unsigned int kMaxIdBits = 29;  // base plus three groups

}  // namespace

TextEncodingID::Malformed::Malformed(unsigned long v) : value(static_cast<std::uint32_t>(v)) {
  std::snprintf(message, sizeof message, "malformed EncodingVariationID 0x%08lx", v);
}
TextEncodingID::Malformed::~Malformed() = default;
const char* TextEncodingID::Malformed::what() const noexcept { return message; }

TextEncodingID::TooManyVariations::TooManyVariations(unsigned long l, unsigned long r)
    : left(static_cast<std::uint32_t>(l)), right(static_cast<std::uint32_t>(r)) {
  std::snprintf(message, sizeof message,
                "adding TextEncodingID 0x%08lx and EncodingVariationID 0x%08lx would exceed the "
                "maximum number of variations",
                l, r);
}
TextEncodingID::TooManyVariations::~TooManyVariations() = default;
const char* TextEncodingID::TooManyVariations::what() const noexcept { return message; }

TextEncodingID::TextEncodingID(unsigned long value) : value_(static_cast<std::uint32_t>(value)) {
  if (value > 0xFFFFFFFFul || !IsWellFormed()) throw Malformed(value);
}

unsigned int TextEncodingID::BitsUsed() const { return varnice::internal::VariationBitsUsed(value_, kBaseBits); }

TextEncodingID TextEncodingID::operator+(EncodingVariationID v) const {
  const unsigned int used = BitsUsed();
  if (used + v.BitsUsed() >= kMaxIdBits) throw TooManyVariations(value_, v.Value());
  return TextEncodingID(value_ | (v.Value() << used));
}

TextEncodingID& TextEncodingID::operator+=(EncodingVariationID v) {
  *this = *this + v;
  return *this;
}

bool TextEncodingID::IsWellFormed() const {
  return (value_ & 0xfff) <= kLargestBaseEncoding &&
         varnice::internal::VariationGroupsWellFormed(value_, kBaseBits, kMaxIdBits);
}
