#include "varnice/charprops/property_codes.h"

#include <vector>

namespace varnice::internal {

namespace {

constexpr int kFirstScriptCode = 257;
constexpr int kScriptCount = 27;
constexpr int kFirstCombinationCode = 4096;

// The tables hold the addresses of the exported pointers, so that they are
// constant data whatever order the translation units start in.

// Codes 2-30, in the order of the C interface (not the enumeration order).
NamedCharacterProperty const* const* const kCategoryCodes[] = {
    &UppercaseLetter,  &LowercaseLetter,      &TitlecaseLetter,    &ModifierLetter,
    &OtherLetter,      &NonSpacingMark,       &CombiningMark,      &DecimalNumber,
    &LetterNumber,     &OtherNumber,          &DashPunctuation,    &OpenPunctuation,
    &ClosePunctuation, &OtherPunctuation,     &ConnectorPunctuation, &InitialPunctuation,
    &FinalPunctuation, &MathSymbol,           &CurrencySymbol,     &ModifierSymbol,
    &OtherSymbol,      &SpaceSeparator,       &LineSeparator,      &ParagraphSeparator,
    &ControlCharacter, &OtherCharacter,       &FormatCharacter,    &SurrogateCharacter,
    &NonCharacter,
};
static_assert(sizeof kCategoryCodes / sizeof kCategoryCodes[0] == 29);

// Codes 31-33 and 50-57.
NamedCharacterProperty const* const* const kWidthCodes[] = {&UndefinedWidth, &Fullwidth,
                                                            &Halfwidth};
NamedCharacterProperty const* const* const kGroupCodes[] = {
    &AnyLetter, &AnyMark, &AnyNumber, &AnyPunctuation,
    &AnySymbol, &AnySeparator, &AnyDefinedCharacter, &KanaScript,
};

// Starts with room for 50 and doubles as it fills; never shrinks.
std::vector<CharacterProperty>& Combinations() {
  static std::vector<CharacterProperty> list = [] {
    std::vector<CharacterProperty> l;
    l.reserve(50);
    return l;
  }();
  return list;
}

}  // namespace

CharacterProperty const& PropertyForCode(int code) {
  if (code >= 2 && code <= 30) return **kCategoryCodes[code - 2];
  if (code >= 31 && code <= 33) return **kWidthCodes[code - 31];
  if (code >= 50 && code <= 57) return **kGroupCodes[code - 50];
  if (code >= kFirstScriptCode && code < kFirstScriptCode + kScriptCount) {
    static CharacterProperty slots[kScriptCount];
    const int script = code - kFirstScriptCode;
    slots[script] = CharacterProperty(CharacterScript(1ul << script));
    return slots[script];
  }
  if (code >= kFirstCombinationCode) {
    std::vector<CharacterProperty> const& list = Combinations();
    const unsigned long index = static_cast<unsigned long>(code - kFirstCombinationCode);
    if (index < list.size()) return list[index];
  }
  return *AnyCharacterProperty;
}

int CodeForCombination(CharacterProperty const& property) {
  std::vector<CharacterProperty>& list = Combinations();
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (list[i] == property) return kFirstCombinationCode + static_cast<int>(i);
  }
  list.push_back(property);
  return kFirstCombinationCode + static_cast<int>(list.size() - 1);
}

}  // namespace varnice::internal
