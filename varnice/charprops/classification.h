// The two hand-written character tests and the classification objects behind
// the qz_isw* functions.
#ifndef VARNICE_CHARPROPS_CLASSIFICATION_H_
#define VARNICE_CHARPROPS_CLASSIFICATION_H_

#include "varnice/charprops/character_property.h"
#include "varnice/charprops/types/character_test.h"
#include "varnice/varnice_export.h"

// Space, line and paragraph separators, U+0009-U+000D and U+0020. Other
// controls such as U+0085 are not white space here.
class VARNICE_API SpaceCharacterTest : public CharacterTest {
 public:
  constexpr SpaceCharacterTest() = default;
  bool HasName(qz_string const& name) const override;  // "space"
  qz_string Name() const override;
  bool Test(unsigned long c) const override;
};

// The ASCII hexadecimal digits only; full-width digits and letters are not.
class VARNICE_API HexadecimalCharacterTest : public CharacterTest {
 public:
  constexpr HexadecimalCharacterTest() = default;
  bool HasName(qz_string const& name) const override;  // "xdigit"
  qz_string Name() const override;
  bool Test(unsigned long c) const override;
};

// Registered after all property objects, under the names alnum ... xdigit.
VARNICE_API extern NamedCharacterProperty const* const Ctype_alnum;
VARNICE_API extern NamedCharacterProperty const* const Ctype_alpha;
VARNICE_API extern NamedCharacterProperty const* const Ctype_cntrl;
VARNICE_API extern NamedCharacterProperty const* const Ctype_digit;
VARNICE_API extern NamedCharacterProperty const* const Ctype_graph;
VARNICE_API extern NamedCharacterProperty const* const Ctype_lower;
VARNICE_API extern NamedCharacterProperty const* const Ctype_print;
// Marks, punctuation and symbols, but not ModifierSymbol (U+005E, U+0060 ...).
VARNICE_API extern NamedCharacterProperty const* const Ctype_punct;
VARNICE_API extern SpaceCharacterTest const* const Ctype_space;
VARNICE_API extern NamedCharacterProperty const* const Ctype_upper;
VARNICE_API extern HexadecimalCharacterTest const* const Ctype_xdigit;

#endif  // VARNICE_CHARPROPS_CLASSIFICATION_H_
