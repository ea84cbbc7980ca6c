// Composition, marks, canonical forms and line ends: the stated cases, state
// kept across blocks, and the 511-unit limit of transforms that may write two
// units for one.
#include <gtest/gtest.h>

#include "tests/transform/transform_test_support.h"

using testing_transforms::Through;

namespace {

TEST(ComposeTransform, JoinsOnlyTwoUnits) {
  EXPECT_EQ(Through("compose", u"A\u030A"), u"\u00C5");
  EXPECT_EQ(Through("compose", u"A\u030A\u0301"), u"\u00C5\u0301");
  EXPECT_EQ(Through("compose", u"xA"), u"xA");  // a lone base at the end is written
  EXPECT_EQ(Through("compose", u"\u30AB\u3099\u30AB"), u"\u30AC\u30AB");
  // The pending unit is held across upstream blocks.
  EXPECT_EQ(Through("compose", u"aaA\u030Ab", {3, 1}), u"aa\u00C5b");
  // The test applies to the first unit of a pair only.
  EXPECT_EQ(Through("compose", u"A\u030A", {}, *AnyMark), u"A\u030A");
  EXPECT_EQ(Through("compose", u"A\u030A", {}, *LatinScript), u"\u00C5");
}

TEST(ComposeTransform, PendingUnitAtAFullBufferComesNext) {
  std::vector<long> blocks;
  const std::u16string text = std::u16string(513, u'a');
  EXPECT_EQ(Through("compose", text, {513}, *AnyCharacterProperty, &blocks), text);
  EXPECT_EQ(blocks, (std::vector<long>{512, 1}));
}

TEST(DecomposeTransform, TwoUnitsAndTheLastPlace) {
  EXPECT_EQ(Through("decompose", u"\u212BA\u00C0"), u"A\u030AAA\u0300");
  EXPECT_EQ(Through("decompose", u"\u1E08"), u"\u1E08");  // three units: no entry
  // 511 units fill a block; a pair never straddles two blocks.
  std::vector<long> blocks;
  std::u16string text = std::u16string(510, u'a') + u"\u00C0\u00C0";
  std::u16string out = Through("decompose", text, {}, *AnyCharacterProperty, &blocks);
  EXPECT_EQ(out, std::u16string(510, u'a') + u"A\u0300A\u0300");
  EXPECT_EQ(blocks, (std::vector<long>{512, 2}));
  blocks.clear();
  text = std::u16string(511, u'a') + u"\u00C0";
  Through("decompose", text, {}, *AnyCharacterProperty, &blocks);
  EXPECT_EQ(blocks, (std::vector<long>{511, 2}));
}

TEST(MarkTransforms, TheDeliberateSpaceAsymmetry) {
  EXPECT_EQ(Through("combining-marks", u" ^"), u"  \u0302");
  EXPECT_EQ(Through("combining-marks", u"^a^"), u"\u0302a\u0302");
  EXPECT_EQ(Through("spacing-marks", u"  \u0302"), u" ^");
  EXPECT_EQ(Through("spacing-marks", u" \u0301"), u"\u00B4");
  EXPECT_EQ(Through("spacing-marks", u"a "), u"a ");  // a held space is written at the end
  EXPECT_EQ(Through("spacing-marks", u"a  b"), u"a  b");
  // The after-space flag and the held space survive block boundaries.
  EXPECT_EQ(Through("combining-marks", u"x ^", {2, 1}), u"x  \u0302");
  EXPECT_EQ(Through("spacing-marks", u"x \u0301", {2, 1}), u"x\u00B4");
}

TEST(ToCanonicalTransform, OneOrTwoUnits) {
  EXPECT_EQ(Through("canonical", u"\uF900\uFF21\uFB00\uFFEF"), u"\u8C48Aff\uFFEF");
  std::vector<long> blocks;
  Through("canonical", std::u16string(511, u'a') + u"\uFB00", {}, *AnyCharacterProperty,
          &blocks);
  EXPECT_EQ(blocks, (std::vector<long>{511, 2}));
}

TEST(LineEndTransforms, EveryLineEndAlike) {
  EXPECT_EQ(Through("crlf", u"a\r\nb\rc\nd\u2028e\u2029"), u"a\r\nb\r\nc\r\nd\r\ne\r\n");
  EXPECT_EQ(Through("crlf", u"\r\n\n"), u"\r\n\r\n");
  EXPECT_EQ(Through("lf", u"\u2028\n"), u"\n\n");  // only CR LF is merged
  EXPECT_EQ(Through("cr", u"a\r\nb\n"), u"a\rb\r");
  EXPECT_EQ(Through("ls", u"a\r\nb"), u"a\u2028b");
  EXPECT_EQ(Through("ps", u"a\nb"), u"a\u2029b");
  EXPECT_EQ(Through("lf", u"a\u0085\f\vb"), u"a\u0085\f\vb");  // not line ends
  // CR at the end of one block, LF at the start of the next: one line end.
  EXPECT_EQ(Through("lf", u"a\r\nb", {2, 2}), u"a\nb");
  EXPECT_EQ(Through("crlf", u"a\r\nb", {2, 2}), u"a\r\nb");
  // The test is ignored.
  EXPECT_EQ(Through("lf", u"\r", {}, *DecimalNumber), u"\n");
  std::vector<long> blocks;
  Through("crlf", std::u16string(511, u'a') + u"\n", {}, *AnyCharacterProperty, &blocks);
  EXPECT_EQ(blocks, (std::vector<long>{511, 2}));
}

}  // namespace
