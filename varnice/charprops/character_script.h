// PLACEHOLDER, to be replaced by the character-property subsystem's header of
// the same name. It declares only what the internal encodings use: a script
// set held as a mask (bit v for ScriptSystem value v) and CharacterScript::Of.
// Of answers UndefinedScript for every character until the script tables
// exist; nothing in the library relies on its answer yet.
#ifndef VARNICE_CHARPROPS_CHARACTER_SCRIPT_H_
#define VARNICE_CHARPROPS_CHARACTER_SCRIPT_H_

#include <cstdint>

#include "varnice/charprops/character_enums.h"
#include "varnice/varnice_export.h"

class VARNICE_API CharacterScript {
 public:
  explicit CharacterScript(unsigned long scripts = 0) : scripts_(static_cast<std::uint32_t>(scripts)) {}

  static CharacterScript Of(unsigned long) {
    return CharacterScript(1ul << static_cast<unsigned>(ScriptSystem::UndefinedScript));
  }

  unsigned long Scripts() const { return scripts_; }

 private:
  std::uint32_t scripts_;
};

#endif  // VARNICE_CHARPROPS_CHARACTER_SCRIPT_H_
