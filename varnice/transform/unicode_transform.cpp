#include "varnice/transform/unicode_transform.h"

#include "varnice/charprops/character_property.h"
#include "varnice/charprops/types/character_test.h"

UnicodeTransform::UnicodeTransform(Char16Source& source, const InternalEncoding& encoding,
                                   const CharacterTest& test)
    : source_(source), encoding_(encoding), test_(test) {}

UnicodeTransform::~UnicodeTransform() = default;

bool UnicodeTransform::Passes(unsigned short c) const { return test_(c, encoding_); }

UnicodeTransform::Gate UnicodeTransform::TestGate() const {
  const auto* property = dynamic_cast<const CharacterProperty*>(&test_);
  return Gate(this, property != nullptr && *property == *AnyCharacterProperty);
}
