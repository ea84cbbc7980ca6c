// The integer codes by which the C interface names properties
// (TestUnicodeCharacter and the transform entry). Internal.
#ifndef VARNICE_CHARPROPS_PROPERTY_CODES_H_
#define VARNICE_CHARPROPS_PROPERTY_CODES_H_

#include "varnice/charprops/character_property.h"

namespace varnice::internal {

// The property a code stands for; AnyCharacterProperty for a code that stands
// for nothing. A script code's property lives in a slot of its own that is
// rewritten on every call; a combination's lives in the combination list, so
// the reference holds only until the next combination is made.
CharacterProperty const& PropertyForCode(int code);

// The code of an equal property in the combination list, appending it first
// if there is none. Not locked.
int CodeForCombination(CharacterProperty const& property);

}  // namespace varnice::internal

#endif  // VARNICE_CHARPROPS_PROPERTY_CODES_H_
