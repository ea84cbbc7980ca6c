// CharacterProperty: a set of allowed categories, scripts and widths, kept as
// three masks (bit v for the enumeration value v of character_enums.h), and
// the library's ready-made property objects.
//
// Within one kind the bits are alternatives; between kinds every non-zero
// mask must hold. A zero mask sets no condition, so the all-zero property
// accepts every character, even one above U+FFFF, while any non-zero mask
// rejects such a character (the tables cover UTF-16 code units only).
#ifndef VARNICE_CHARPROPS_CHARACTER_PROPERTY_H_
#define VARNICE_CHARPROPS_CHARACTER_PROPERTY_H_

#include <cstdint>

#include "varnice/charprops/types/character_enums.h"
#include "varnice/charprops/types/character_script.h"
#include "varnice/charprops/types/character_test.h"
#include "varnice/varnice_export.h"

class VARNICE_API CharacterProperty : public CharacterTest {
 public:
  constexpr CharacterProperty() : categories_(0), scripts_(0), widths_(0) {}
  constexpr CharacterProperty(unsigned long categories, unsigned long scripts,
                              unsigned long widths)
      : categories_(static_cast<std::uint32_t>(categories)),
        scripts_(static_cast<std::uint32_t>(scripts)),
        widths_(static_cast<std::uint32_t>(widths)) {}
  CharacterProperty(CharacterProperty const&) = default;
  CharacterProperty& operator=(CharacterProperty const&) = default;
  // The union of all of them.
  CharacterProperty(CharacterProperty const& a, CharacterProperty const& b);
  CharacterProperty(CharacterProperty const& a, CharacterProperty const& b,
                    CharacterProperty const& c);
  CharacterProperty(CharacterProperty const& a, CharacterProperty const& b,
                    CharacterProperty const& c, CharacterProperty const& d);
  CharacterProperty(CharacterProperty const& a, CharacterProperty const& b,
                    CharacterProperty const& c, CharacterProperty const& d,
                    CharacterProperty const& e);
  CharacterProperty(CharacterProperty const& a, CharacterProperty const& b,
                    CharacterProperty const& c, CharacterProperty const& d,
                    CharacterProperty const& e, CharacterProperty const& f);
  // Script mask only; implicit so that scripts join unions like properties.
  CharacterProperty(CharacterScript const& scripts);  // NOLINT(google-explicit-constructor)

  CharacterProperty operator+(CharacterProperty const& other) const;
  CharacterProperty& operator+=(CharacterProperty const& other);
  bool operator==(CharacterProperty const& other) const;
  bool operator!=(CharacterProperty const& other) const { return !(*this == other); }

  bool Test(unsigned long c) const override;

  unsigned long Categories() const { return categories_; }
  unsigned long Scripts() const { return scripts_; }
  unsigned long Widths() const { return widths_; }

 private:
  std::uint32_t categories_;
  std::uint32_t scripts_;
  std::uint32_t widths_;
};

class VARNICE_API NamedCharacterProperty : public CharacterProperty {
 public:
  constexpr NamedCharacterProperty(unsigned long categories, unsigned long scripts,
                                   unsigned long widths, char const* name)
      : CharacterProperty(categories, scripts, widths), name_(name) {}

  bool HasName(qz_string const& name) const override;  // ignoring case
  qz_string Name() const override;

 private:
  char const* name_;
};

// The ready-made properties, each registered as a named test under its own
// identifier. The objects are constant data, so these pointers are valid from
// program start, before any initialiser has run.
VARNICE_API extern NamedCharacterProperty const* const AnyCharacterProperty;

VARNICE_API extern NamedCharacterProperty const* const UppercaseLetter;
VARNICE_API extern NamedCharacterProperty const* const LowercaseLetter;
VARNICE_API extern NamedCharacterProperty const* const TitlecaseLetter;
VARNICE_API extern NamedCharacterProperty const* const ModifierLetter;
VARNICE_API extern NamedCharacterProperty const* const OtherLetter;
VARNICE_API extern NamedCharacterProperty const* const NonSpacingMark;
VARNICE_API extern NamedCharacterProperty const* const CombiningMark;
VARNICE_API extern NamedCharacterProperty const* const EnclosingMark;
VARNICE_API extern NamedCharacterProperty const* const DecimalNumber;
VARNICE_API extern NamedCharacterProperty const* const LetterNumber;
VARNICE_API extern NamedCharacterProperty const* const OtherNumber;
VARNICE_API extern NamedCharacterProperty const* const ConnectorPunctuation;
VARNICE_API extern NamedCharacterProperty const* const DashPunctuation;
VARNICE_API extern NamedCharacterProperty const* const OpenPunctuation;
VARNICE_API extern NamedCharacterProperty const* const ClosePunctuation;
VARNICE_API extern NamedCharacterProperty const* const InitialPunctuation;
VARNICE_API extern NamedCharacterProperty const* const FinalPunctuation;
VARNICE_API extern NamedCharacterProperty const* const OtherPunctuation;
VARNICE_API extern NamedCharacterProperty const* const MathSymbol;
VARNICE_API extern NamedCharacterProperty const* const CurrencySymbol;
VARNICE_API extern NamedCharacterProperty const* const ModifierSymbol;
VARNICE_API extern NamedCharacterProperty const* const OtherSymbol;
VARNICE_API extern NamedCharacterProperty const* const SpaceSeparator;
VARNICE_API extern NamedCharacterProperty const* const LineSeparator;
VARNICE_API extern NamedCharacterProperty const* const ParagraphSeparator;
VARNICE_API extern NamedCharacterProperty const* const ControlCharacter;
VARNICE_API extern NamedCharacterProperty const* const FormatCharacter;
VARNICE_API extern NamedCharacterProperty const* const OtherCharacter;
VARNICE_API extern NamedCharacterProperty const* const SurrogateCharacter;
VARNICE_API extern NamedCharacterProperty const* const NonCharacter;

VARNICE_API extern NamedCharacterScript const* const UndefinedScript;
VARNICE_API extern NamedCharacterScript const* const GeneralScript;
VARNICE_API extern NamedCharacterScript const* const LatinScript;
VARNICE_API extern NamedCharacterScript const* const GreekScript;
VARNICE_API extern NamedCharacterScript const* const CyrillicScript;
VARNICE_API extern NamedCharacterScript const* const ArmenianScript;
VARNICE_API extern NamedCharacterScript const* const HebrewScript;
VARNICE_API extern NamedCharacterScript const* const ArabicScript;
VARNICE_API extern NamedCharacterScript const* const DevanagariScript;
VARNICE_API extern NamedCharacterScript const* const BengaliScript;
VARNICE_API extern NamedCharacterScript const* const GurmukhiScript;
VARNICE_API extern NamedCharacterScript const* const GujaratiScript;
VARNICE_API extern NamedCharacterScript const* const OriyaScript;
VARNICE_API extern NamedCharacterScript const* const TamilScript;
VARNICE_API extern NamedCharacterScript const* const TeluguScript;
VARNICE_API extern NamedCharacterScript const* const KannadaScript;
VARNICE_API extern NamedCharacterScript const* const MalayalamScript;
VARNICE_API extern NamedCharacterScript const* const ThaiScript;
VARNICE_API extern NamedCharacterScript const* const LaoScript;
VARNICE_API extern NamedCharacterScript const* const TibetanScript;
VARNICE_API extern NamedCharacterScript const* const GeorgianScript;
VARNICE_API extern NamedCharacterScript const* const HangulJamoScript;
VARNICE_API extern NamedCharacterScript const* const HiraganaScript;
VARNICE_API extern NamedCharacterScript const* const KatakanaScript;
VARNICE_API extern NamedCharacterScript const* const BopomofoScript;
VARNICE_API extern NamedCharacterScript const* const CJKScript;
VARNICE_API extern NamedCharacterScript const* const HangulScript;

VARNICE_API extern NamedCharacterProperty const* const UndefinedWidth;
VARNICE_API extern NamedCharacterProperty const* const Fullwidth;
VARNICE_API extern NamedCharacterProperty const* const Halfwidth;

VARNICE_API extern NamedCharacterProperty const* const AnyLetter;
VARNICE_API extern NamedCharacterProperty const* const AnyMark;
VARNICE_API extern NamedCharacterProperty const* const AnyNumber;
VARNICE_API extern NamedCharacterProperty const* const AnyPunctuation;
VARNICE_API extern NamedCharacterProperty const* const AnySymbol;
VARNICE_API extern NamedCharacterProperty const* const AnySeparator;
// Every category except EnclosingMark, ControlCharacter, OtherCharacter and
// NonCharacter (SurrogateCharacter is in).
VARNICE_API extern NamedCharacterProperty const* const AnyDefinedCharacter;
VARNICE_API extern NamedCharacterProperty const* const KanaScript;  // hiragana and katakana

#endif  // VARNICE_CHARPROPS_CHARACTER_PROPERTY_H_
