#include "varnice/charprops/character_property.h"

#include "varnice/charprops/property_tables.h"
#include "varnice/widec/same_ignoring_case.h"

namespace {

using varnice::internal::CategoryOf;
using varnice::internal::ScriptOf;
using varnice::internal::WidthOf;

template <class Enum>
bool InMask(std::uint32_t mask, Enum value) {
  return ((mask >> static_cast<unsigned>(value)) & 1u) != 0;
}

}  // namespace

// CharacterProperty.

CharacterProperty::CharacterProperty(CharacterProperty const& a, CharacterProperty const& b)
    : CharacterProperty(a) {
  *this += b;
}

CharacterProperty::CharacterProperty(CharacterProperty const& a, CharacterProperty const& b,
                                     CharacterProperty const& c)
    : CharacterProperty(a, b) {
  *this += c;
}

CharacterProperty::CharacterProperty(CharacterProperty const& a, CharacterProperty const& b,
                                     CharacterProperty const& c, CharacterProperty const& d)
    : CharacterProperty(a, b, c) {
  *this += d;
}

CharacterProperty::CharacterProperty(CharacterProperty const& a, CharacterProperty const& b,
                                     CharacterProperty const& c, CharacterProperty const& d,
                                     CharacterProperty const& e)
    : CharacterProperty(a, b, c, d) {
  *this += e;
}

CharacterProperty::CharacterProperty(CharacterProperty const& a, CharacterProperty const& b,
                                     CharacterProperty const& c, CharacterProperty const& d,
                                     CharacterProperty const& e, CharacterProperty const& f)
    : CharacterProperty(a, b, c, d, e) {
  *this += f;
}

CharacterProperty::CharacterProperty(CharacterScript const& scripts)
    : CharacterProperty(0, scripts.Scripts(), 0) {}

CharacterProperty CharacterProperty::operator+(CharacterProperty const& other) const {
  CharacterProperty sum(*this);
  sum += other;
  return sum;
}

CharacterProperty& CharacterProperty::operator+=(CharacterProperty const& other) {
  categories_ |= other.categories_;
  scripts_ |= other.scripts_;
  widths_ |= other.widths_;
  return *this;
}

bool CharacterProperty::operator==(CharacterProperty const& other) const {
  return categories_ == other.categories_ && scripts_ == other.scripts_ &&
         widths_ == other.widths_;
}

bool CharacterProperty::Test(unsigned long c) const {
  const auto unit = static_cast<unsigned short>(c);
  if (categories_ != 0 && (c > 0xFFFF || !InMask(categories_, CategoryOf(unit)))) return false;
  if (scripts_ != 0 && (c > 0xFFFF || !InMask(scripts_, ScriptOf(unit)))) return false;
  return widths_ == 0 || (c <= 0xFFFF && InMask(widths_, WidthOf(unit)));
}

bool NamedCharacterProperty::HasName(qz_string const& name) const {
  return SameIgnoringCase(name.c_str(), name_);
}

qz_string NamedCharacterProperty::Name() const { return qz_string(name_); }

// CharacterScript.

CharacterScript CharacterScript::Of(unsigned long c) {
  const ScriptSystem script =
      c > 0xFFFF ? ScriptSystem::UndefinedScript : ScriptOf(static_cast<unsigned short>(c));
  return CharacterScript(1ul << static_cast<unsigned>(script));
}

bool CharacterScript::Test(unsigned long c) const {
  if (scripts_ == 0) return true;
  return c <= 0xFFFF && InMask(scripts_, ScriptOf(static_cast<unsigned short>(c)));
}

CharacterProperty CharacterScript::operator+(CharacterProperty const& other) const {
  return CharacterProperty(other.Categories(), other.Scripts() | scripts_, other.Widths());
}

bool NamedCharacterScript::HasName(qz_string const& name) const {
  return SameIgnoringCase(name.c_str(), name_);
}

qz_string NamedCharacterScript::Name() const { return qz_string(name_); }
