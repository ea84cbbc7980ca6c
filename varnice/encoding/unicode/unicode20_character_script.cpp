// The script answers of the two internal encodings, kept apart from the rest
// of them because they depend on the character-property subsystem.
#include "varnice/charprops/types/character_script.h"
#include "varnice/encoding/unicode/unicode11_encoding.h"
#include "varnice/encoding/unicode/unicode20_encoding.h"

CharacterScript Unicode20Encoding::GetCharacterScript(unsigned long ch) const {
  return CharacterScript::Of(ch);
}

CharacterScript Unicode11Encoding::GetCharacterScript(unsigned long ch) const {
  return CharacterScript::Of(ToUnicode(ch));
}
