#include "varnice/encoding/internal_encoding.h"

#include "varnice/encoding/encoding_registry.h"
#include "varnice/encoding/encoding_variation.h"

InternalEncoding::InternalEncoding(TextEncodingID id, const char** nicknames, const char* mimeName,
                                   unsigned int codePage)
    : TextEncoding(id, nicknames, mimeName, codePage) {
  varnice::internal::Register(varnice::internal::InternalEncodings(), this, [this] { EncodingVariation::GenerateVariantsOf(*this); });
}

InternalEncoding::InternalEncoding(const TextEncoding& parent, const EncodingVariation& variation,
                                   const char** nicknames, const char* mimeName,
                                   unsigned int codePage)
    : TextEncoding(parent, variation, nicknames, mimeName, codePage) {
  varnice::internal::Register(varnice::internal::InternalEncodings(), this, [this] { EncodingVariation::GenerateVariantsOf(*this); });
}

InternalEncoding::~InternalEncoding() { varnice::internal::Forget(varnice::internal::InternalEncodings(), this); }

unsigned int InternalEncoding::TokenSize() const { return 2; }
bool InternalEncoding::IsValidForInput() const { return true; }
bool InternalEncoding::IsValidForOutput() const { return true; }

bool InternalEncoding::MayBreakLineBetween(unsigned short a, unsigned short b) const {
  const unsigned long after = MayBreakLineAfter(a);
  const unsigned long before = MayBreakLineBefore(b);
  return ((after > before ? after : before) & 1) == 0;
}

unsigned int InternalEncoding::Count() {
  return static_cast<unsigned int>(varnice::internal::InternalEncodings().size());
}

InternalEncoding* InternalEncoding::Lookup(unsigned int index) {
  return index < Count() ? varnice::internal::InternalEncodings()[index] : nullptr;
}

InternalEncoding* InternalEncoding::Lookup(TextEncodingID id) {
  TextEncoding* encoding = TextEncoding::Lookup(id);
  return encoding != nullptr ? encoding->AsInternalEncoding() : nullptr;
}

InternalEncoding* InternalEncoding::Lookup(const char* name) {
  TextEncoding* encoding = TextEncoding::Lookup(name, 2);
  return encoding != nullptr ? encoding->AsInternalEncoding() : nullptr;
}

InternalEncoding* InternalEncoding::Lookup(const unsigned short* name) {
  TextEncoding* encoding = TextEncoding::Lookup(name, 2);
  return encoding != nullptr ? encoding->AsInternalEncoding() : nullptr;
}

InternalEncoding* InternalEncoding::LookupCodePage(unsigned int cp) {
  TextEncoding* encoding = TextEncoding::LookupCodePage(cp);
  return encoding != nullptr ? encoding->AsInternalEncoding() : nullptr;
}
