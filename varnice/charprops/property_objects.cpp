// The library's property and classification objects, and the one place that
// fixes their registry order.
//
// The objects are constant-initialised (constexpr constructors), so the
// exported pointers are valid before any dynamic initialiser runs; the
// registry adds them on its own first use (character_test.cpp). No start-up
// code therefore depends on the order in which translation units start.
#include <iterator>
#include <vector>

#include "varnice/charprops/builtin_tests.h"
#include "varnice/charprops/character_property.h"
#include "varnice/charprops/classification.h"

namespace {

constexpr unsigned long Bit(CharacterCategory v) { return 1ul << static_cast<unsigned>(v); }
constexpr unsigned long Bit(ScriptSystem v) { return 1ul << static_cast<unsigned>(v); }
constexpr unsigned long Bit(CharacterWidth v) { return 1ul << static_cast<unsigned>(v); }

constexpr unsigned long Bits(CharacterCategory first, CharacterCategory last) {
  unsigned long mask = 0;
  for (auto v = static_cast<unsigned>(first); v <= static_cast<unsigned>(last); ++v) {
    mask |= 1ul << v;
  }
  return mask;
}

}  // namespace

#define VARNICE_CATEGORY_OBJECT(name)                                                   \
  static constinit NamedCharacterProperty g##name(Bit(CharacterCategory::name), 0, 0, \
                                                  #name);                            \
  NamedCharacterProperty const* const name = &g##name;

#define VARNICE_SCRIPT_OBJECT(name)                                                       \
  static constinit NamedCharacterScript g##name(Bit(ScriptSystem::name), #name); \
  NamedCharacterScript const* const name = &g##name;

#define VARNICE_WIDTH_OBJECT(name)                                                     \
  static constinit NamedCharacterProperty g##name(0, 0, Bit(CharacterWidth::name), \
                                                  #name);                           \
  NamedCharacterProperty const* const name = &g##name;

#define VARNICE_GROUP_OBJECT(name, categories, scripts)                                 \
  static constinit NamedCharacterProperty g##name(categories, scripts, 0, #name); \
  NamedCharacterProperty const* const name = &g##name;

#define VARNICE_CTYPE_OBJECT(name, categories)                                                 \
  static constinit NamedCharacterProperty gCtype_##name(categories, 0, 0, #name); \
  NamedCharacterProperty const* const Ctype_##name = &gCtype_##name;

VARNICE_GROUP_OBJECT(AnyCharacterProperty, 0, 0)

VARNICE_CATEGORY_OBJECT(UppercaseLetter)
VARNICE_CATEGORY_OBJECT(LowercaseLetter)
VARNICE_CATEGORY_OBJECT(TitlecaseLetter)
VARNICE_CATEGORY_OBJECT(ModifierLetter)
VARNICE_CATEGORY_OBJECT(OtherLetter)
VARNICE_CATEGORY_OBJECT(NonSpacingMark)
VARNICE_CATEGORY_OBJECT(CombiningMark)
VARNICE_CATEGORY_OBJECT(EnclosingMark)
VARNICE_CATEGORY_OBJECT(DecimalNumber)
VARNICE_CATEGORY_OBJECT(LetterNumber)
VARNICE_CATEGORY_OBJECT(OtherNumber)
VARNICE_CATEGORY_OBJECT(ConnectorPunctuation)
VARNICE_CATEGORY_OBJECT(DashPunctuation)
VARNICE_CATEGORY_OBJECT(OpenPunctuation)
VARNICE_CATEGORY_OBJECT(ClosePunctuation)
VARNICE_CATEGORY_OBJECT(InitialPunctuation)
VARNICE_CATEGORY_OBJECT(FinalPunctuation)
VARNICE_CATEGORY_OBJECT(OtherPunctuation)
VARNICE_CATEGORY_OBJECT(MathSymbol)
VARNICE_CATEGORY_OBJECT(CurrencySymbol)
VARNICE_CATEGORY_OBJECT(ModifierSymbol)
VARNICE_CATEGORY_OBJECT(OtherSymbol)
VARNICE_CATEGORY_OBJECT(SpaceSeparator)
VARNICE_CATEGORY_OBJECT(LineSeparator)
VARNICE_CATEGORY_OBJECT(ParagraphSeparator)
VARNICE_CATEGORY_OBJECT(ControlCharacter)
VARNICE_CATEGORY_OBJECT(FormatCharacter)
VARNICE_CATEGORY_OBJECT(OtherCharacter)
VARNICE_CATEGORY_OBJECT(SurrogateCharacter)
VARNICE_CATEGORY_OBJECT(NonCharacter)

VARNICE_SCRIPT_OBJECT(UndefinedScript)
VARNICE_SCRIPT_OBJECT(GeneralScript)
VARNICE_SCRIPT_OBJECT(LatinScript)
VARNICE_SCRIPT_OBJECT(GreekScript)
VARNICE_SCRIPT_OBJECT(CyrillicScript)
VARNICE_SCRIPT_OBJECT(ArmenianScript)
VARNICE_SCRIPT_OBJECT(HebrewScript)
VARNICE_SCRIPT_OBJECT(ArabicScript)
VARNICE_SCRIPT_OBJECT(DevanagariScript)
VARNICE_SCRIPT_OBJECT(BengaliScript)
VARNICE_SCRIPT_OBJECT(GurmukhiScript)
VARNICE_SCRIPT_OBJECT(GujaratiScript)
VARNICE_SCRIPT_OBJECT(OriyaScript)
VARNICE_SCRIPT_OBJECT(TamilScript)
VARNICE_SCRIPT_OBJECT(TeluguScript)
VARNICE_SCRIPT_OBJECT(KannadaScript)
VARNICE_SCRIPT_OBJECT(MalayalamScript)
VARNICE_SCRIPT_OBJECT(ThaiScript)
VARNICE_SCRIPT_OBJECT(LaoScript)
VARNICE_SCRIPT_OBJECT(TibetanScript)
VARNICE_SCRIPT_OBJECT(GeorgianScript)
VARNICE_SCRIPT_OBJECT(HangulJamoScript)
VARNICE_SCRIPT_OBJECT(HiraganaScript)
VARNICE_SCRIPT_OBJECT(KatakanaScript)
VARNICE_SCRIPT_OBJECT(BopomofoScript)
VARNICE_SCRIPT_OBJECT(CJKScript)
VARNICE_SCRIPT_OBJECT(HangulScript)

VARNICE_WIDTH_OBJECT(UndefinedWidth)
VARNICE_WIDTH_OBJECT(Fullwidth)
VARNICE_WIDTH_OBJECT(Halfwidth)

using Cat = CharacterCategory;
VARNICE_GROUP_OBJECT(AnyLetter, Bits(Cat::UppercaseLetter, Cat::OtherLetter), 0)
VARNICE_GROUP_OBJECT(AnyMark, Bits(Cat::NonSpacingMark, Cat::EnclosingMark), 0)
VARNICE_GROUP_OBJECT(AnyNumber, Bits(Cat::DecimalNumber, Cat::OtherNumber), 0)
VARNICE_GROUP_OBJECT(AnyPunctuation, Bits(Cat::ConnectorPunctuation, Cat::OtherPunctuation), 0)
VARNICE_GROUP_OBJECT(AnySymbol, Bits(Cat::MathSymbol, Cat::OtherSymbol), 0)
VARNICE_GROUP_OBJECT(AnySeparator, Bits(Cat::SpaceSeparator, Cat::ParagraphSeparator), 0)
// Enclosing marks, controls and private use are deliberately outside, while
// surrogates are inside: callers rely on exactly this set.
VARNICE_GROUP_OBJECT(AnyDefinedCharacter,
                     Bits(Cat::UppercaseLetter, Cat::NonCharacter) & ~Bit(Cat::EnclosingMark) &
                         ~Bit(Cat::ControlCharacter) & ~Bit(Cat::OtherCharacter) &
                         ~Bit(Cat::NonCharacter),
                     0)
VARNICE_GROUP_OBJECT(KanaScript, 0,
                     Bit(ScriptSystem::HiraganaScript) | Bit(ScriptSystem::KatakanaScript))

VARNICE_CTYPE_OBJECT(alnum, Bits(Cat::UppercaseLetter, Cat::OtherLetter) | Bit(Cat::DecimalNumber))
VARNICE_CTYPE_OBJECT(alpha, Bits(Cat::UppercaseLetter, Cat::OtherLetter))
VARNICE_CTYPE_OBJECT(cntrl, Bit(Cat::ControlCharacter))
VARNICE_CTYPE_OBJECT(digit, Bit(Cat::DecimalNumber))
VARNICE_CTYPE_OBJECT(graph, Bits(Cat::UppercaseLetter, Cat::OtherSymbol))
VARNICE_CTYPE_OBJECT(lower, Bit(Cat::LowercaseLetter))
VARNICE_CTYPE_OBJECT(print, Bits(Cat::UppercaseLetter, Cat::SpaceSeparator))
// ModifierSymbol (^, `, diacritics standing alone) is left out on purpose.
VARNICE_CTYPE_OBJECT(punct, Bits(Cat::NonSpacingMark, Cat::EnclosingMark) |
                                Bits(Cat::ConnectorPunctuation, Cat::CurrencySymbol) |
                                Bit(Cat::OtherSymbol))
VARNICE_CTYPE_OBJECT(upper, Bit(Cat::UppercaseLetter))

static constinit SpaceCharacterTest gCtype_space;
SpaceCharacterTest const* const Ctype_space = &gCtype_space;
static constinit HexadecimalCharacterTest gCtype_xdigit;
HexadecimalCharacterTest const* const Ctype_xdigit = &gCtype_xdigit;

#undef VARNICE_CATEGORY_OBJECT
#undef VARNICE_SCRIPT_OBJECT
#undef VARNICE_WIDTH_OBJECT
#undef VARNICE_GROUP_OBJECT
#undef VARNICE_CTYPE_OBJECT

static_assert(Bits(Cat::UppercaseLetter, Cat::NonCharacter) == 0x3FFFFFFF);

namespace varnice::internal {

// This order gives every named test its qz_wctype number; append new tests at
// the end only. The categories are not in enumeration order.
void AppendBuiltInTests(std::vector<CharacterTest const*>& registry) {
  CharacterTest const* const order[] = {
      AnyCharacterProperty,
      UppercaseLetter, LowercaseLetter, TitlecaseLetter, ModifierLetter, OtherLetter,
      NonSpacingMark, CombiningMark, EnclosingMark, DecimalNumber, OtherNumber,
      DashPunctuation, OpenPunctuation, ClosePunctuation, OtherPunctuation, MathSymbol,
      CurrencySymbol, OtherSymbol, SpaceSeparator, LineSeparator, ParagraphSeparator,
      ControlCharacter, OtherCharacter, NonCharacter, LetterNumber, ConnectorPunctuation,
      InitialPunctuation, FinalPunctuation, ModifierSymbol, FormatCharacter, SurrogateCharacter,
      UndefinedScript, GeneralScript, LatinScript, GreekScript, CyrillicScript, ArmenianScript,
      HebrewScript, ArabicScript, DevanagariScript, BengaliScript, GurmukhiScript,
      GujaratiScript, OriyaScript, TamilScript, TeluguScript, KannadaScript, MalayalamScript,
      ThaiScript, LaoScript, TibetanScript, GeorgianScript, HangulJamoScript, HiraganaScript,
      KatakanaScript, BopomofoScript, CJKScript, HangulScript,
      UndefinedWidth, Fullwidth, Halfwidth,
      AnyLetter, AnyMark, AnyNumber, AnyPunctuation, AnySymbol, AnySeparator,
      AnyDefinedCharacter, KanaScript,
      Ctype_alnum, Ctype_alpha, Ctype_cntrl, Ctype_digit, Ctype_graph, Ctype_lower,
      Ctype_print, Ctype_punct, Ctype_space, Ctype_upper, Ctype_xdigit,
  };
  registry.insert(registry.end(), std::begin(order), std::end(order));
}

}  // namespace varnice::internal
