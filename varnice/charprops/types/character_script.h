// CharacterScript: a set of scripts, held as a mask with bit v for the
// ScriptSystem value v, and the script of a character (CharacterScript::Of).
#ifndef VARNICE_CHARPROPS_TYPES_CHARACTER_SCRIPT_H_
#define VARNICE_CHARPROPS_TYPES_CHARACTER_SCRIPT_H_

#include <cstdint>

#include "varnice/charprops/types/character_enums.h"
#include "varnice/charprops/types/character_test.h"
#include "varnice/varnice_export.h"

class CharacterProperty;

class VARNICE_API CharacterScript : public CharacterTest {
 public:
  constexpr explicit CharacterScript(unsigned long scripts = 0)
      : scripts_(static_cast<std::uint32_t>(scripts)) {}

  // The script of c as a one-bit set; UndefinedScript above U+FFFF.
  static CharacterScript Of(unsigned long c);

  // A zero mask accepts everything; otherwise c must be a UTF-16 code unit
  // whose script is in the set.
  bool Test(unsigned long c) const override;

  // A property with the other's masks and this set added to its scripts.
  CharacterProperty operator+(CharacterProperty const& other) const;

  unsigned long Scripts() const { return scripts_; }

 private:
  std::uint32_t scripts_;
};

class VARNICE_API NamedCharacterScript : public CharacterScript {
 public:
  constexpr NamedCharacterScript(unsigned long scripts, char const* name)
      : CharacterScript(scripts), name_(name) {}

  bool HasName(qz_string const& name) const override;  // ignoring case
  qz_string Name() const override;

 private:
  char const* name_;
};

#endif  // VARNICE_CHARPROPS_TYPES_CHARACTER_SCRIPT_H_
