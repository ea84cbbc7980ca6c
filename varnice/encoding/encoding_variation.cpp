#include "varnice/encoding/encoding_variation.h"

#include <cstdlib>

#include "varnice/encoding/encoding_registry.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/encoding/text_encoding.h"
#include "varnice/widec/qz_exception.h"

EncodingVariation* EncodingVariation::gAllVariations[kSlots];

EncodingVariation::EncodingVariation(EncodingVariationID id, const char** names)
    : id_(id), names_(names) {
  gAllVariations[id_.Value()] = this;
}

EncodingVariation::~EncodingVariation() = default;

void EncodingVariation::GenerateVariantOf(const InternalEncoding&) {}
void EncodingVariation::GenerateVariantOf(const ExternalEncoding&) {}

EncodingVariation* EncodingVariation::Lookup(const char* name) {
  if (name == nullptr) return nullptr;
  for (EncodingVariation* variation : gAllVariations) {
    if (variation != nullptr && variation->HasName(name)) return variation;
  }
  return nullptr;
}

EncodingVariation* EncodingVariation::Lookup(EncodingVariationID id) {
  if (id.GetRemainingVariationIDs() != EncodingVariationID(0)) return nullptr;
  return gAllVariations[id.Value()];
}

void EncodingVariation::GenerateVariantsOf(const InternalEncoding& encoding) {
  for (EncodingVariation* variation : gAllVariations) {
    if (variation != nullptr) variation->GenerateVariantOf(encoding);
  }
}

void EncodingVariation::GenerateVariantsOf(const ExternalEncoding& encoding) {
  for (EncodingVariation* variation : gAllVariations) {
    if (variation != nullptr) variation->GenerateVariantOf(encoding);
  }
}

const unsigned short* EncodingVariation::NameInUnicode() const {
  if (nameInUnicode_.empty()) nameInUnicode_ = varnice::internal::WidenName(Name());
  return nameInUnicode_.c_str();
}

unsigned int EncodingVariation::CountNames() const {
  unsigned int n = 0;
  while (names_[n] != nullptr) ++n;
  return n;
}

const char* EncodingVariation::GetName(unsigned int i) const {
  return i < CountNames() ? names_[i] : nullptr;
}

bool EncodingVariation::HasName(const char* name, const char* end) const {
  for (const char** known = names_; *known != nullptr; ++known) {
    if (TextEncoding::SameName(*known, name, end)) return true;
  }
  return false;
}

bool EncodingVariation::AlreadyAppliedTo(const TextEncoding& encoding) const {
  for (EncodingVariationID chain = encoding.GetTextEncodingID().GetVariationIDs();
       chain != EncodingVariationID(0); chain = chain.GetRemainingVariationIDs()) {
    if (chain.GetFirstVariationID() == id_) return true;
  }
  return false;
}

void EncodingVariation::GenerateVariantsForExistingEncodings() {
  // Index loops: generating a variant appends to the very lists being walked,
  // and the new variants get their turn too.
  auto& internals = varnice::internal::InternalEncodings();
  for (std::size_t i = 0; i < internals.size(); ++i) GenerateVariantOf(*internals[i]);
  auto& externals = varnice::internal::ExternalEncodings();
  for (std::size_t i = 0; i < externals.size(); ++i) GenerateVariantOf(*externals[i]);
}

RealEncodingVariation::RealEncodingVariation(EncodingVariationID id, const char** names)
    : EncodingVariation(id, names), variants_(nullptr), count_(0), capacity_(0) {}

RealEncodingVariation::~RealEncodingVariation() { std::free(variants_); }

unsigned int RealEncodingVariation::CountVariants() const { return count_; }

const TextEncoding* RealEncodingVariation::GetVariant(unsigned int i) const {
  return i < count_ ? variants_[i] : nullptr;
}

void RealEncodingVariation::AddVariant(const TextEncoding* variant) {
  if (count_ == capacity_) {
    const unsigned int capacity = capacity_ == 0 ? 10 : capacity_ * 2;
    void* grown = std::realloc(variants_, capacity * sizeof *variants_);
    if (grown == nullptr) throw qz_sw_out_of_memory();
    variants_ = static_cast<const TextEncoding**>(grown);
    capacity_ = capacity;
  }
  variants_[count_++] = variant;
}
