#include "varnice/charprops/character_property.h"

#include <gtest/gtest.h>

#include <vector>

#include "varnice/capi/varnice_c.h"
#include "varnice/charprops/classification.h"

namespace {

constexpr unsigned long kAboveBmp = 0x10000;
constexpr unsigned short kEnclosingCircle = 0x20DD;  // the EnclosingMark used below
constexpr unsigned short kUnassigned = 0x0700;

TEST(CharacterProperty, ObjectsHoldTheirExactMasks) {
  EXPECT_EQ(*EnclosingMark, CharacterProperty(1ul << 7, 0, 0));
  EXPECT_EQ(*NonCharacter, CharacterProperty(1ul << 29, 0, 0));
  EXPECT_EQ(HangulScript->Scripts(), 1ul << 26);
  EXPECT_EQ(*Halfwidth, CharacterProperty(0, 0, 4));
  EXPECT_EQ(AnyCharacterProperty->Categories() | AnyCharacterProperty->Scripts() |
                AnyCharacterProperty->Widths(),
            0ul);
  EXPECT_EQ(AnyLetter->Categories(), 0x1Ful);
  EXPECT_EQ(AnyMark->Categories(), 0xE0ul);
  EXPECT_EQ(AnyNumber->Categories(), 0x700ul);
  EXPECT_EQ(AnyPunctuation->Categories(), 0x3F800ul);
  EXPECT_EQ(AnySymbol->Categories(), 0x3C0000ul);
  EXPECT_EQ(AnySeparator->Categories(), 0x1C00000ul);
  EXPECT_EQ(*AnyDefinedCharacter, CharacterProperty(0x15FFFF7F, 0, 0));
  EXPECT_EQ(*KanaScript, CharacterProperty(0, 0xC00000, 0));
  EXPECT_EQ(Ctype_alnum->Categories(), 0x11Ful);
  EXPECT_EQ(Ctype_graph->Categories(), 0x3FFFFFul);
  EXPECT_EQ(Ctype_print->Categories(), 0x7FFFFFul);
  EXPECT_EQ(Ctype_punct->Categories(), 0x2FF8E0ul);
}

TEST(CharacterProperty, CodePointsAboveFFFFPassOnlyAnEmptyCondition) {
  EXPECT_TRUE(AnyCharacterProperty->Test(kAboveBmp));
  EXPECT_TRUE(CharacterProperty().Test(0xFFFFFFFFul));
  EXPECT_TRUE(CharacterScript().Test(kAboveBmp));
  // No category at all, not NonCharacter; no script or width either.
  for (const CharacterTest* p : std::initializer_list<const CharacterTest*>{AnyLetter, NonCharacter, UndefinedScript, UndefinedWidth}) {
    EXPECT_FALSE(p->Test(kAboveBmp));
  }
  EXPECT_EQ(CharacterScript::Of(kAboveBmp).Scripts(), 1ul);
  EXPECT_EQ(CharacterScript::Of(0x3042).Scripts(), HiraganaScript->Scripts());
}

TEST(CharacterProperty, KindsAreJoinedByAndBitsOfOneKindByOr) {
  const CharacterProperty latinCapitals = *LatinScript + *UppercaseLetter;
  EXPECT_TRUE(latinCapitals.Test('A'));
  EXPECT_FALSE(latinCapitals.Test(0x0391));  // Greek capital alpha
  EXPECT_FALSE(latinCapitals.Test('a'));

  const CharacterProperty wideCapitals(*UppercaseLetter, *Fullwidth);
  EXPECT_TRUE(wideCapitals.Test(0xFF21));
  EXPECT_FALSE(wideCapitals.Test('A'));

  const CharacterProperty letterOrDigit = *AnyLetter + *DecimalNumber;
  EXPECT_TRUE(letterOrDigit.Test('a'));
  EXPECT_TRUE(letterOrDigit.Test('7'));
  EXPECT_FALSE(letterOrDigit.Test('-'));

  const CharacterProperty kanaOrHangul(*HiraganaScript, *KatakanaScript, *HangulScript);
  EXPECT_TRUE(kanaOrHangul.Test(0x3042));
  EXPECT_TRUE(kanaOrHangul.Test(0xAC00));
  EXPECT_FALSE(kanaOrHangul.Test(0x4E00));

  // Unions compose and compare by all three masks.
  const CharacterProperty six(*UppercaseLetter, *LowercaseLetter, *LatinScript, *GreekScript,
                              *Fullwidth, *Halfwidth);
  EXPECT_EQ(six, CharacterProperty(0x3, 0xC, 0x6));
  CharacterProperty built = *UppercaseLetter + *LowercaseLetter;
  built += *LatinScript + *GreekScript;
  EXPECT_NE(built, six);  // widths differ
  built += *Fullwidth + *Halfwidth;
  EXPECT_EQ(built, six);
}

TEST(CharacterProperty, DefinedCharactersLeaveOutEnclosingMarksControlsAndPrivateUse) {
  EXPECT_TRUE(AnyMark->Test(kEnclosingCircle));
  EXPECT_TRUE(EnclosingMark->Test(kEnclosingCircle));
  EXPECT_TRUE(NonCharacter->Test(kUnassigned));
  for (unsigned long c : {0x20DDul, 0x0009ul, 0xE000ul, 0x0700ul}) EXPECT_FALSE(AnyDefinedCharacter->Test(c)) << c;
  for (unsigned long c : {0xD800ul, 0x200Eul, 0x41ul}) EXPECT_TRUE(AnyDefinedCharacter->Test(c)) << c;
}

TEST(CharacterPropertyCodes, SingleCodesFollowTheInterfaceOrder) {
  struct Row {
    unsigned long c;
    int code, result;
  };
  const Row rows[] = {
      {'A', 2, 1},          {'a', 2, 0},
      {'-', 12, 1},         {'!', 15, 1},  {'_', 16, 1},  // Dash-, Other-, ConnectorPunctuation
      {0x0009, 26, 1},      {0xE000, 27, 1},              // ControlCharacter, OtherCharacter
      {0x200E, 28, 1},      {kUnassigned, 30, 1},         // FormatCharacter, NonCharacter
      {0x3042, 32, 1},      {'A', 33, 1},  {0x00E9, 31, 1},  // Fullwidth, Halfwidth, UndefinedWidth
      {kEnclosingCircle, 51, 1}, {kEnclosingCircle, 56, 0}, {0x30A2, 57, 1}, {0x4E00, 57, 0},
      {kUnassigned, 257, 1}, {'A', 259, 1},               // UndefinedScript, LatinScript
      {0xAC00, 283, 1},     {0x4E00, 283, 0},             // HangulScript
  };
  for (const Row& r : rows) EXPECT_EQ(TestUnicodeCharacter(r.c, r.code), r.result) << std::hex << r.c << " " << std::dec << r.code;
  for (int code = 2; code <= 30; ++code) {
    EXPECT_EQ(TestUnicodeCharacter(kEnclosingCircle, code), 0) << "no code for EnclosingMark";
  }
}

TEST(CharacterPropertyCodes, UnknownCodesAcceptEverything) {
  for (int code : {-1, 0, 1, 34, 49, 58, 256, 284, 999, 4095, 4096 + 100000}) {
    EXPECT_EQ(TestUnicodeCharacter(kUnassigned, code), 1) << code;
    EXPECT_EQ(TestUnicodeCharacter(0x0009, code), 1) << code;
  }
}

TEST(CharacterPropertyCodes, CombinationsAreListedOnceAndKeepTheirCodes) {
  const int lowerLatin = Combine2Charprops(3, 259);
  EXPECT_GE(lowerLatin, 4096);
  EXPECT_EQ(Combine2Charprops(3, 259), lowerLatin);
  EXPECT_EQ(Combine2Charprops(259, 3), lowerLatin);
  const int codes[] = {3, 259};
  EXPECT_EQ(CombineNCharprops(codes, 2), lowerLatin);
  EXPECT_EQ(TestUnicodeCharacter('a', lowerLatin), 1);
  EXPECT_EQ(TestUnicodeCharacter('A', lowerLatin), 0);
  EXPECT_EQ(TestUnicodeCharacter(0x03B1, lowerLatin), 0);  // Greek small alpha

  // Combinations combine further; two scripts in one call use two slots.
  const int anyCase = Combine2Charprops(lowerLatin, 2);
  EXPECT_NE(anyCase, lowerLatin);
  EXPECT_EQ(TestUnicodeCharacter('A', anyCase), 1);
  const int kana = Combine2Charprops(279, 280);
  EXPECT_EQ(TestUnicodeCharacter(0x3042, kana), 1);
  EXPECT_EQ(TestUnicodeCharacter(0x30A2, kana), 1);
  EXPECT_EQ(Combine2Charprops(57, 57), kana);  // KanaScript has the same masks

  const int empty = CombineNCharprops(nullptr, 0);
  EXPECT_EQ(TestUnicodeCharacter(kUnassigned, empty), 1);

  // The list grows past its first room without renumbering.
  std::vector<int> made;
  for (int script = 257; script <= 283; ++script) {
    made.push_back(Combine2Charprops(2, script));
    made.push_back(Combine2Charprops(3, script));
  }
  EXPECT_EQ(Combine2Charprops(3, 259), lowerLatin);
  EXPECT_EQ(Combine2Charprops(2, 283), made[2 * 26]);
  EXPECT_EQ(TestUnicodeCharacter(0x0391, made[2 * (260 - 257)]), 1);  // Greek capital
}

}  // namespace
