#include "varnice/encoding/text_encoding.h"

#include <cctype>
#include <cstring>

#include "varnice/encoding/encoding_registry.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/internal_encoding.h"

using varnice::internal::AllEncodings;

TextEncoding* TextEncoding::gBaseEncodings[kBaseEncodingCount];

namespace {

bool IsSeparator(char c) { return c == '-' || c == '_' || c == ' '; }

int Fold(char c) { return std::tolower(static_cast<unsigned char>(c)); }

// The last colon in [name, end), or null.
const char* LastColon(const char* name, const char* end) {
  const char* colon = nullptr;
  for (const char* p = name; end != nullptr ? p < end : *p != 0; ++p) {
    if (*p == ':') colon = p;
  }
  return colon;
}

}  // namespace

TextEncoding::TextEncoding(TextEncodingID id, const char** nicknames, const char* mimeName,
                           unsigned int codePage)
    : id_(id), parent_(nullptr), parentVariation_(nullptr), nicknames_(nicknames),
      mimeName_(mimeName), codePage_(codePage), variants_{} {
  gBaseEncodings[id_.Value()] = this;
  AllEncodings().push_back(this);
}

TextEncoding::TextEncoding(const TextEncoding& parent, const EncodingVariation& variation,
                           const char** nicknames, const char* mimeName, unsigned int codePage)
    : id_(parent.id_ + variation.GetEncodingVariationID()), parent_(&parent),
      parentVariation_(&variation), nicknames_(nicknames), mimeName_(mimeName),
      codePage_(codePage), variants_{} {
  parent.variants_[variation.GetEncodingVariationID().Value()] = this;
  AllEncodings().push_back(this);
}

// Encodings live until unload; one is destroyed early only when a derived
// constructor throws after this base registered it. Then nothing may keep
// finding it: it leaves the lists and its number's slot, and the variants
// already generated of it become unreachable orphans (still owned by their
// variation, so they stay allocated, but no longer findable or named after a
// parent that is gone).
TextEncoding::~TextEncoding() {
  using varnice::internal::Forget;
  Forget(AllEncodings(), this);
  if (parent_ == nullptr) {
    TextEncoding*& slot = gBaseEncodings[id_.Value()];
    if (slot == this) slot = nullptr;
  } else {
    for (TextEncoding*& slot : parent_->variants_) {
      if (slot == this) slot = nullptr;
    }
  }
  for (TextEncoding*& variant : variants_) {
    if (variant == nullptr) continue;
    variant->parent_ = nullptr;
    Forget(AllEncodings(), variant);
    Forget(varnice::internal::ExternalEncodings(), variant);
    Forget(varnice::internal::InternalEncodings(), variant);
    variant = nullptr;
  }
}

bool TextEncoding::IsValidForInput() const { return true; }
bool TextEncoding::IsValidForOutput() const { return true; }

unsigned int TextEncoding::Count() { return static_cast<unsigned int>(AllEncodings().size()); }

TextEncoding* TextEncoding::Lookup(unsigned int index) {
  return index < Count() ? AllEncodings()[index] : nullptr;
}

TextEncoding* TextEncoding::Lookup(TextEncodingID id) {
  const TextEncoding* base = gBaseEncodings[id.GetBaseEncodingID().Value()];
  if (base == nullptr) return nullptr;
  return const_cast<TextEncoding*>(base->LookupVariant(id.GetVariationIDs()));
}

TextEncoding* TextEncoding::Lookup(const char* name, unsigned int tokenSize) {
  if (name == nullptr) return nullptr;
  for (TextEncoding* encoding : AllEncodings()) {
    if (encoding->HasTokenSize(tokenSize) && encoding->HasName(name)) return encoding;
  }
  return nullptr;
}

TextEncoding* TextEncoding::Lookup(const unsigned short* name, unsigned int tokenSize) {
  char narrow[1023];
  if (name == nullptr || !varnice::internal::NarrowName(name, narrow)) return nullptr;
  return Lookup(narrow, tokenSize);
}

TextEncoding* TextEncoding::LookupCodePage(unsigned int cp) {
  for (TextEncoding* encoding : AllEncodings()) {
    if (encoding->codePage_ == cp) return encoding;
  }
  return nullptr;
}

bool TextEncoding::SameName(const char* known, const char* given, const char* givenEnd) {
  auto givenDone = [&] { return givenEnd != nullptr ? given >= givenEnd : *given == 0; };
  for (;;) {
    while (IsSeparator(*known)) ++known;
    while (!givenDone() && IsSeparator(*given)) ++given;
    if (*known == 0) return givenDone();
    if (givenDone()) return false;
    if (Fold(*known) != Fold(*given)) return false;
    ++known;
    ++given;
  }
}

const char* TextEncoding::Name() const {
  if (nicknames_ != nullptr && nicknames_[0] != nullptr) return nicknames_[0];
  if (mimeName_ != nullptr) return mimeName_;
  if (name_.empty() && parent_ != nullptr && parentVariation_ != nullptr) {
    name_ = qz_string(parent_->Name());
    name_ += parentVariation_->Name();
  }
  return name_.c_str();
}

const unsigned short* TextEncoding::NameInUnicode() const {
  if (nameInUnicode_.empty()) nameInUnicode_ = varnice::internal::WidenName(Name());
  return nameInUnicode_.c_str();
}

const unsigned short* TextEncoding::MimeNameInUnicode() const {
  if (mimeName_ == nullptr) return nullptr;
  if (mimeNameInUnicode_.empty()) mimeNameInUnicode_ = varnice::internal::WidenName(mimeName_);
  return mimeNameInUnicode_.c_str();
}

unsigned int TextEncoding::CountNicknames() const {
  unsigned int n = 0;
  if (nicknames_ != nullptr) {
    while (nicknames_[n] != nullptr) ++n;
  }
  return n;
}

const char* TextEncoding::GetNickname(unsigned int i) const {
  return i < CountNicknames() ? nicknames_[i] : nullptr;
}

bool TextEncoding::HasSimpleName(const char* name, const char* end) const {
  if (mimeName_ != nullptr && SameName(mimeName_, name, end)) return true;
  for (unsigned int i = 0, n = CountNicknames(); i < n; ++i) {
    if (SameName(nicknames_[i], name, end)) return true;
  }
  return false;
}

bool TextEncoding::HasName(const char* name, const char* end) const {
  const char* colon = LastColon(name, end);
  if (colon == nullptr) return HasSimpleName(name, end);
  return parent_ != nullptr && parentVariation_ != nullptr &&
         parentVariation_->HasName(colon + 1, end) && parent_->HasName(name, colon);
}

bool TextEncoding::HasName(const unsigned short* name) const {
  char narrow[1023];
  return name != nullptr && varnice::internal::NarrowName(name, narrow) && HasName(narrow);
}

const TextEncoding* TextEncoding::LookupVariant(EncodingVariationID chain) const {
  const TextEncoding* encoding = this;
  for (; chain != EncodingVariationID(0); chain = chain.GetRemainingVariationIDs()) {
    encoding = encoding->variants_[chain.GetFirstVariationID().Value()];
    if (encoding == nullptr) return nullptr;
  }
  return encoding;
}

InternalEncoding* TextEncoding::AsInternalEncoding() {
  return TokenSize() == 2 ? static_cast<InternalEncoding*>(this) : nullptr;
}
const InternalEncoding* TextEncoding::AsInternalEncoding() const {
  return TokenSize() == 2 ? static_cast<const InternalEncoding*>(this) : nullptr;
}
ExternalEncoding* TextEncoding::AsExternalEncoding() {
  return TokenSize() == 1 ? static_cast<ExternalEncoding*>(this) : nullptr;
}
const ExternalEncoding* TextEncoding::AsExternalEncoding() const {
  return TokenSize() == 1 ? static_cast<const ExternalEncoding*>(this) : nullptr;
}
