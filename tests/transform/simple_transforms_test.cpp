// The one-unit transforms, select and filter: the stated rows, the test that
// limits them, and block handling.
#include <gtest/gtest.h>

#include "tests/transform/transform_test_support.h"
#include "varnice/capi/varnice_c.h"
#include "varnice/charprops/character_property.h"
#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/transform/simple_transforms.h"

using testing_transforms::PieceSource;
using testing_transforms::ReadAll;
using testing_transforms::Through;

namespace {

// The case rows are those of qz_towupper and qz_towlower (checked with the
// case tables), which the next test ties to these transforms unit by unit.
TEST(SimpleTransforms, StatedRows) {
  struct Row {
    unsigned long (*map)(unsigned long);
    unsigned long in, out;
  } const rows[] = {
      {&ToUppercaseTransform::Transform, 0x1D41A, 0x1D41A},  // above the BMP
      {&ToHalfwidthTransform::Transform, 0x30AC, 0x30AC},  {&ToHalfwidthTransform::Transform, 0x3099, 0xFF9E},
      {&ToFullwidthTransform::Transform, 0xFF9E, 0x3099},  {&ToFullwidthTransform::Transform, 0x0020, 0x3000},
      {&ToHiraganaTransform::Transform, 0xFF71, 0x3042},   {&ToHiraganaTransform::Transform, 0x30F5, 0x304B},
      {&ToHiraganaTransform::Transform, 0x30F4, 0x3094},   {&ToHiraganaTransform::Transform, 0xFF70, 0x30FC},
      {&ToHiraganaTransform::Transform, 0x30F7, 0x30F7},   {&ToKatakanaTransform::Transform, 0x309D, 0x30FD},
      {&ToKatakanaTransform::Transform, 0x3095, 0x3095},
  };
  for (const Row& r : rows) EXPECT_EQ(r.map(r.in), r.out) << std::hex << r.in;
}

TEST(SimpleTransforms, StreamMatchesTheOneCharacterFormAndQzTowctrans) {
  struct Case {
    const char* name;
    unsigned long (*one)(unsigned long);
    int mapping;  // qz_towctrans's number
  };
  const Case cases[] = {{"upper", &ToUppercaseTransform::Transform, 2},
                        {"lower", &ToLowercaseTransform::Transform, 1},
                        {"fullwidth", &ToFullwidthTransform::Transform, 5},
                        {"halfwidth", &ToHalfwidthTransform::Transform, 6},
                        {"katakana", &ToKatakanaTransform::Transform, 7},
                        {"hiragana", &ToHiraganaTransform::Transform, 8}};
  std::u16string all;
  for (unsigned c = 1; c <= 0xFFFF; ++c) all.push_back(static_cast<char16_t>(c));
  for (const Case& k : cases) {
    const std::u16string out = Through(k.name, all, {333});
    ASSERT_EQ(out.size(), all.size()) << k.name;
    for (std::size_t i = 0; i < all.size(); ++i) {
      ASSERT_EQ(out[i], k.one(all[i])) << k.name << " " << std::hex << unsigned(all[i]);
      ASSERT_EQ(qz_towctrans(all[i], k.mapping), out[i]) << k.name;
    }
  }
}

TEST(SimpleTransforms, OnlyCharactersThatPassTheTestChange) {
  // Upper case limited to Greek: the Latin letters stay.
  EXPECT_EQ(Through("upper", u"abc\u03b1\u03b2", {}, *GreekScript), u"abc\u0391\u0392");
  EXPECT_EQ(Through("hiragana", u"\u30A2\uFF71", {}, *Fullwidth), u"\u3042\uFF71");
}

TEST(SelectAndFilter, KeepOrDropWhatPasses) {
  EXPECT_EQ(Through("select", u"a1b2c3", {1}, *DecimalNumber), u"123");
  EXPECT_EQ(Through("filter", u"a1b2c3", {1}, *DecimalNumber), u"abc");
  // A test that passes nothing: select yields nothing after reading everything.
  PieceSource in(std::u16string(5000, u'x'), {7});
  SelectTransform none(in, *InternalEncoding::Unicode(), *DecimalNumber);
  const unsigned short* b;
  const unsigned short* e;
  EXPECT_FALSE(none.GetBuffer(b, e));
  EXPECT_EQ(Through("filter", std::u16string(5000, u'x'), {7}, *DecimalNumber),
            std::u16string(5000, u'x'));
}

TEST(SimpleTransforms, BlocksHoldAtMost512Units) {
  std::vector<long> blocks;
  const std::u16string text(1300, u'a');
  EXPECT_EQ(Through("upper", text, {1300}, *AnyCharacterProperty, &blocks),
            std::u16string(1300, u'A'));
  EXPECT_EQ(blocks, (std::vector<long>{512, 512, 276}));
}

// A host's own subclass keeps its own TransformChar, however the library's
// classes are sped up.
class RotUpper : public ToUppercaseTransform {
 public:
  using ToUppercaseTransform::ToUppercaseTransform;
  void TransformChar(unsigned short& c) const override {
    if (c >= u'a' && c <= u'z') c = static_cast<unsigned short>(u'a' + (c - u'a' + 13) % 26);
  }
};

TEST(SimpleTransforms, DerivedClassesKeepTheirMappingAndTakeTheDefaultBehaviour) {
  PieceSource in(u"abc XYZ", {});
  UnicodeLibBehavior other;
  in.SetBehavior(&other);
  RotUpper rot(in, *InternalEncoding::Unicode(), *AnyCharacterProperty);
  EXPECT_EQ(&rot.Behavior(), UnicodeLibBehavior::GetDefaultBehavior());  // not the source's
  EXPECT_EQ(ReadAll(rot), u"nop XYZ");
}

}  // namespace
