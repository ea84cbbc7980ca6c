// The named-test registry and the qz_ classification and case functions.
#include "varnice/charprops/classification.h"

#include <gtest/gtest.h>

#include "tests/fresh_process.h"

#include <string>
#include <vector>

#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/widec/same_ignoring_case.h"

namespace {

// The registration order: these numbers are what hosts store from qz_wctype.
const char* const kRegistered[] = {
    "AnyCharacterProperty",
    "UppercaseLetter", "LowercaseLetter", "TitlecaseLetter", "ModifierLetter", "OtherLetter",
    "NonSpacingMark", "CombiningMark", "EnclosingMark", "DecimalNumber", "OtherNumber",
    "DashPunctuation", "OpenPunctuation", "ClosePunctuation", "OtherPunctuation", "MathSymbol",
    "CurrencySymbol", "OtherSymbol", "SpaceSeparator", "LineSeparator", "ParagraphSeparator",
    "ControlCharacter", "OtherCharacter", "NonCharacter", "LetterNumber", "ConnectorPunctuation",
    "InitialPunctuation", "FinalPunctuation", "ModifierSymbol", "FormatCharacter",
    "SurrogateCharacter",
    "UndefinedScript", "GeneralScript", "LatinScript", "GreekScript", "CyrillicScript",
    "ArmenianScript", "HebrewScript", "ArabicScript", "DevanagariScript", "BengaliScript",
    "GurmukhiScript", "GujaratiScript", "OriyaScript", "TamilScript", "TeluguScript",
    "KannadaScript", "MalayalamScript", "ThaiScript", "LaoScript", "TibetanScript",
    "GeorgianScript", "HangulJamoScript", "HiraganaScript", "KatakanaScript", "BopomofoScript",
    "CJKScript", "HangulScript",
    "UndefinedWidth", "Fullwidth", "Halfwidth",
    "AnyLetter", "AnyMark", "AnyNumber", "AnyPunctuation", "AnySymbol", "AnySeparator",
    "AnyDefinedCharacter", "KanaScript",
    "alnum", "alpha", "cntrl", "digit", "graph", "lower", "print", "punct", "space", "upper",
    "xdigit",
};
constexpr unsigned kRegisteredCount = sizeof kRegistered / sizeof kRegistered[0];

FRESH_PROCESS_TEST(CharacterTestRegistry, HoldsTheLibraryTestsInTheirFixedOrder) {
  ASSERT_EQ(CharacterTest::Count(), kRegisteredCount);
  for (unsigned i = 0; i < kRegisteredCount; ++i) {
    ASSERT_NE(CharacterTest::Lookup(i), nullptr);
    EXPECT_EQ(std::string(CharacterTest::Lookup(i)->Name().c_str()), kRegistered[i]) << i;
  }
  EXPECT_EQ(CharacterTest::Lookup(kRegisteredCount), nullptr);
  EXPECT_EQ(CharacterTest::Lookup(0xFFFFFFFFu), nullptr);
  EXPECT_EQ(CharacterTest::Lookup(33), LatinScript);
  EXPECT_EQ(CharacterTest::Lookup(77), Ctype_space);
}

TEST(CharacterTestRegistry, FindsNamesIgnoringCase) {
  EXPECT_EQ(CharacterTest::Lookup(qz_string("latinscript")), LatinScript);
  EXPECT_EQ(CharacterTest::Lookup(qz_string("KANASCRIPT")), KanaScript);
  EXPECT_EQ(CharacterTest::Lookup(qz_string("Space")), Ctype_space);
  EXPECT_EQ(CharacterTest::IndexOf(qz_string("XDIGIT")), 79);
  EXPECT_EQ(CharacterTest::IndexOf(qz_string("alnum")), 69);
  EXPECT_EQ(CharacterTest::IndexOf(qz_string("no such test")), -1);
  EXPECT_EQ(CharacterTest::IndexOf(qz_string("")), -1);
  EXPECT_EQ(CharacterTest::Lookup(qz_string("LatinScrip")), nullptr);
  EXPECT_TRUE(UppercaseLetter->HasName(qz_string("uppercaseletter")));
  EXPECT_FALSE(UppercaseLetter->HasName(qz_string("UppercaseLetters")));
  // Tests made on the spot have no name.
  const CharacterProperty unnamed(1, 0, 0);
  EXPECT_FALSE(unnamed.HasName(qz_string("")));
  EXPECT_FALSE(unnamed.HasName(qz_string("UppercaseLetter")));
  EXPECT_TRUE(unnamed.Name().empty());
}

struct OddDigit : CharacterTest {
  bool HasName(qz_string const& name) const override {
    return SameIgnoringCase(name.c_str(), "odd");
  }
  qz_string Name() const override { return qz_string("odd"); }
  bool Test(unsigned long c) const override { return c >= '1' && c <= '9' && (c & 1); }
};

FRESH_PROCESS_TEST(CharacterTestRegistry, RegisteredTestsFollowTheLibraryOnesAndServeQzWctype) {
  static const OddDigit odd;
  odd.RegisterAsNamedTest();
  ASSERT_EQ(CharacterTest::Count(), kRegisteredCount + 1);
  EXPECT_EQ(CharacterTest::Lookup(kRegisteredCount), &odd);
  const int type = qz_wctype("ODD");
  EXPECT_EQ(type, static_cast<int>(kRegisteredCount) + 1);
  EXPECT_EQ(qz_iswctype('3', type), 1);
  EXPECT_EQ(qz_iswctype('4', type), 0);
}

TEST(CharacterTestRegistry, MapsThroughTheInternalEncodingBeforeTesting) {
  // U+3400 is a Hangul syllable in Unicode 1.1 and an ideograph extension
  // code point (unassigned here) in 2.0.
  EXPECT_TRUE((*HangulScript)(0x3400, *InternalEncoding::Unicode11()));
  EXPECT_FALSE((*HangulScript)(0x3400, *InternalEncoding::Unicode20()));
  EXPECT_TRUE((*UppercaseLetter)('A', *InternalEncoding::Unicode20()));
}

TEST(QzWctype, NumbersAreRegistryPositionsPlusOne) {
  EXPECT_EQ(qz_wctype("alnum"), CharacterTest::IndexOf(qz_string("alnum")) + 1);
  EXPECT_EQ(qz_wctype("ALNUM"), qz_wctype("alnum"));
  EXPECT_EQ(qz_wctype("HiraganaScript"), 54);
  EXPECT_EQ(qz_wctype("AnyCharacterProperty"), 1);
  EXPECT_EQ(qz_wctype("unknown"), 0);
  EXPECT_EQ(qz_wctype(""), 0);
  EXPECT_EQ(qz_iswctype('A', 0), 0);
  EXPECT_EQ(qz_iswctype('A', -3), 0);
  EXPECT_EQ(qz_iswctype('A', 1000), 0);
  EXPECT_EQ(qz_iswctype('A', qz_wctype("upper")), 1);
  EXPECT_EQ(qz_iswctype('a', qz_wctype("upper")), 0);
  EXPECT_EQ(qz_iswctype(0x3042, qz_wctype("hiraganascript")), 1);
}

TEST(QzIswFunctions, FollowTheCategoriesWithTheirDeliberateQuirks) {
  struct Row {
    int (*function)(unsigned short);
    const char* name;
    std::vector<unsigned short> yes, no;
  };
  const Row rows[] = {
      // Ideographic space and the separators count; controls only in 0x09-0x0D.
      {qz_iswspace, "space", {0x3000, 0x2028, 0x2029, 0x09, 0x0A, 0x0B, 0x0C, 0x0D}, {0x85, 0x1C, 'a'}},
      {qz_iswxdigit, "xdigit", {'f', 'F'}, {'g', 0xFF10, 0xFF21}},  // no full-width digits
      // ModifierSymbol is left out; marks and OtherSymbol count.
      {qz_iswpunct, "punct", {'!', '+', '$', 0x0301, 0x00A9}, {'^', '`', 'a'}},
      {qz_iswdigit, "digit", {0x0660}, {0x00B2}},  // Arabic-Indic digits yes, superscript two no
      {qz_iswalpha, "alpha", {0x3042}, {}},
      {qz_iswalnum, "alnum", {}, {'_'}},
      {qz_iswupper, "upper", {}, {0x01C5}},  // titlecase is neither upper nor lower
      {qz_iswlower, "lower", {}, {0x01C5}},
      {qz_iswcntrl, "cntrl", {0x85}, {}},
      {qz_iswgraph, "graph", {}, {' '}},
      {qz_iswprint, "print", {' '}, {0x2028}},
  };
  for (const Row& r : rows) {
    for (unsigned short c : r.yes) EXPECT_EQ(r.function(c), 1) << r.name << " " << std::hex << c;
    for (unsigned short c : r.no) EXPECT_EQ(r.function(c), 0) << r.name << " " << std::hex << c;
  }
}

TEST(QzCaseFunctions, MappingNamesAndNumbers) {
  const char* names[] = {"", "tolower", "TOUPPER", "touppercasetransform", "ToLowercaseTransform",
                         "ToFullwidthTransform", "ToHalfwidthTransform", "ToKatakanaTransform", "ToHiraganaTransform"};
  for (int n = 1; n <= 8; ++n) EXPECT_EQ(qz_wctrans(names[n]), n) << names[n];
  EXPECT_EQ(qz_wctrans("totitle"), 0);
  EXPECT_EQ(qz_wctrans(""), 0);

  EXPECT_EQ(qz_towctrans('a', 2), 'A');
  EXPECT_EQ(qz_towctrans('a', 3), 'A');
  EXPECT_EQ(qz_towctrans('A', 1), 'a');
  EXPECT_EQ(qz_towctrans('A', 4), 'a');
  EXPECT_EQ(qz_towctrans(0x0130, 1), 0x0069);
  for (int t : {0, 9, -1, 100}) EXPECT_EQ(qz_towctrans('a', t), 'a') << t;
  EXPECT_EQ(qz_towupper(0x3042), 0x3042);
  EXPECT_EQ(qz_towlower(0xFFFF), 0xFFFF);
}

TEST(SameIgnoringCase, FoldsAsciiLettersOnly) {
  EXPECT_TRUE(SameIgnoringCase("Space", "sPACE"));
  EXPECT_TRUE(SameIgnoringCase(nullptr, ""));
  EXPECT_FALSE(SameIgnoringCase("space", "spaces"));
  EXPECT_FALSE(SameIgnoringCase("spaces", "space"));
  EXPECT_FALSE(SameIgnoringCase("[", "{"));  // not letters: no folding
  EXPECT_FALSE(SameIgnoringCase("\xC3\xA9", "\xC3\x89"));
}

}  // namespace
