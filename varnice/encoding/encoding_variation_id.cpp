#include "varnice/encoding/encoding_variation_id.h"

#include <cstdio>

#include "varnice/encoding/variation_groups.h"

namespace {

constexpr unsigned int kMaxChainBits = 21;  // four groups

}  // namespace

EncodingVariationID::Malformed::Malformed(unsigned long v) : value(static_cast<std::uint32_t>(v)) {
  std::snprintf(message, sizeof message, "malformed EncodingVariationID 0x%08lx", v);
}
EncodingVariationID::Malformed::~Malformed() = default;
const char* EncodingVariationID::Malformed::what() const noexcept { return message; }

EncodingVariationID::TooManyVariations::TooManyVariations(unsigned long l, unsigned long r)
    : left(static_cast<std::uint32_t>(l)), right(static_cast<std::uint32_t>(r)) {
  std::snprintf(message, sizeof message,
                "adding EncodingVariationIDs 0x%08lx and 0x%08lx would exceed the maximum "
                "number of variations",
                l, r);
}
EncodingVariationID::TooManyVariations::~TooManyVariations() = default;
const char* EncodingVariationID::TooManyVariations::what() const noexcept { return message; }

EncodingVariationID::EncodingVariationID(unsigned long value)
    : value_(static_cast<std::uint32_t>(value)) {
  if (value > 0xFFFFFFFFul || !IsWellFormed()) throw Malformed(value);
}

unsigned int EncodingVariationID::BitsUsed() const { return varnice::internal::VariationBitsUsed(value_, 0); }

EncodingVariationID EncodingVariationID::operator+(EncodingVariationID other) const {
  const unsigned int used = BitsUsed();
  if (used + other.BitsUsed() >= kMaxChainBits) throw TooManyVariations(value_, other.value_);
  return EncodingVariationID(value_ | (static_cast<unsigned long>(other.value_) << used));
}

EncodingVariationID& EncodingVariationID::operator+=(EncodingVariationID other) {
  *this = *this + other;
  return *this;
}

bool EncodingVariationID::IsWellFormed() const {
  return varnice::internal::VariationGroupsWellFormed(value_, 0, kMaxChainBits);
}
