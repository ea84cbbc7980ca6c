// The three per-character properties stored in the property tables: general
// category, script and display width. The numbers are those held in the stored
// tables, and a property mask's bit for value v is 1 << v, so the order and
// values are fixed.
//
// The enumerations are scoped because the library also exports property
// objects named after each enumerator (UppercaseLetter, LatinScript, ...);
// unscoped enumerators would collide with them in the global namespace.
#ifndef VARNICE_CHARPROPS_TYPES_CHARACTER_ENUMS_H_
#define VARNICE_CHARPROPS_TYPES_CHARACTER_ENUMS_H_

#include <cstdint>

enum class CharacterCategory : std::uint32_t {
  UppercaseLetter = 0,
  LowercaseLetter = 1,
  TitlecaseLetter = 2,
  ModifierLetter = 3,
  OtherLetter = 4,
  NonSpacingMark = 5,
  CombiningMark = 6,
  EnclosingMark = 7,
  DecimalNumber = 8,
  LetterNumber = 9,
  OtherNumber = 10,
  ConnectorPunctuation = 11,
  DashPunctuation = 12,
  OpenPunctuation = 13,
  ClosePunctuation = 14,
  InitialPunctuation = 15,
  FinalPunctuation = 16,
  OtherPunctuation = 17,
  MathSymbol = 18,
  CurrencySymbol = 19,
  ModifierSymbol = 20,
  OtherSymbol = 21,
  SpaceSeparator = 22,
  LineSeparator = 23,
  ParagraphSeparator = 24,
  ControlCharacter = 25,
  FormatCharacter = 26,
  OtherCharacter = 27,
  SurrogateCharacter = 28,
  NonCharacter = 29,
};

enum class ScriptSystem : std::uint32_t {
  UndefinedScript = 0,
  GeneralScript = 1,
  LatinScript = 2,
  GreekScript = 3,
  CyrillicScript = 4,
  ArmenianScript = 5,
  HebrewScript = 6,
  ArabicScript = 7,
  DevanagariScript = 8,
  BengaliScript = 9,
  GurmukhiScript = 10,
  GujaratiScript = 11,
  OriyaScript = 12,
  TamilScript = 13,
  TeluguScript = 14,
  KannadaScript = 15,
  MalayalamScript = 16,
  ThaiScript = 17,
  LaoScript = 18,
  TibetanScript = 19,
  GeorgianScript = 20,
  HangulJamoScript = 21,
  HiraganaScript = 22,
  KatakanaScript = 23,
  BopomofoScript = 24,
  CJKScript = 25,
  HangulScript = 26,
};

enum class CharacterWidth : std::uint32_t {
  UndefinedWidth = 0,
  Fullwidth = 1,
  Halfwidth = 2,
};

static_assert(sizeof(CharacterCategory) == 4 && sizeof(ScriptSystem) == 4 &&
              sizeof(CharacterWidth) == 4);

#endif  // VARNICE_CHARPROPS_TYPES_CHARACTER_ENUMS_H_
