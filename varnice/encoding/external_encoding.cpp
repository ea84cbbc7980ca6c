#include "varnice/encoding/external_encoding.h"

#include "varnice/encoding/encoding_registry.h"
#include "varnice/encoding/encoding_variation.h"

ExternalEncoding::ExternalEncoding(TextEncodingID id, const char** nicknames, const char* mimeName,
                                   unsigned int codePage)
    : TextEncoding(id, nicknames, mimeName, codePage) {
  varnice::internal::Register(varnice::internal::ExternalEncodings(), this, [this] { EncodingVariation::GenerateVariantsOf(*this); });
}

ExternalEncoding::ExternalEncoding(const TextEncoding& parent, const EncodingVariation& variation,
                                   const char** nicknames, const char* mimeName,
                                   unsigned int codePage)
    : TextEncoding(parent, variation, nicknames, mimeName, codePage) {
  varnice::internal::Register(varnice::internal::ExternalEncodings(), this, [this] { EncodingVariation::GenerateVariantsOf(*this); });
}

ExternalEncoding::~ExternalEncoding() { varnice::internal::Forget(varnice::internal::ExternalEncodings(), this); }

ExternalEncoding::ToUnicodeSource::~ToUnicodeSource() = default;

unsigned int ExternalEncoding::TokenSize() const { return 1; }
bool ExternalEncoding::IsValidForInput() const { return true; }
bool ExternalEncoding::IsValidForOutput() const { return true; }
char ExternalEncoding::SubstituteChar() const { return 0x1A; }
bool ExternalEncoding::IsBasedOnASCII() const { return true; }
ExternalEncodingDetector* ExternalEncoding::CreateEncodingDetector(UnicodeLibAllocator&) const {
  return nullptr;
}

unsigned int ExternalEncoding::Count() {
  return static_cast<unsigned int>(varnice::internal::ExternalEncodings().size());
}

ExternalEncoding* ExternalEncoding::Lookup(unsigned int index) {
  return index < Count() ? varnice::internal::ExternalEncodings()[index] : nullptr;
}

ExternalEncoding* ExternalEncoding::Lookup(TextEncodingID id) {
  TextEncoding* encoding = TextEncoding::Lookup(id);
  return encoding != nullptr ? encoding->AsExternalEncoding() : nullptr;
}

ExternalEncoding* ExternalEncoding::Lookup(const char* name) {
  TextEncoding* encoding = TextEncoding::Lookup(name, 1);
  return encoding != nullptr ? encoding->AsExternalEncoding() : nullptr;
}

ExternalEncoding* ExternalEncoding::Lookup(const unsigned short* name) {
  TextEncoding* encoding = TextEncoding::Lookup(name, 1);
  return encoding != nullptr ? encoding->AsExternalEncoding() : nullptr;
}

ExternalEncoding* ExternalEncoding::LookupCodePage(unsigned int cp) {
  TextEncoding* encoding = TextEncoding::LookupCodePage(cp);
  return encoding != nullptr ? encoding->AsExternalEncoding() : nullptr;
}
