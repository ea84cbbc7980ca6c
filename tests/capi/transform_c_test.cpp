// TransformUnicodeString's return rules.
#include <gtest/gtest.h>

#include <string>

#include "varnice/capi/varnice_c.h"

namespace {

constexpr int kUpper = 17;
constexpr int kAnyLetter = 50;
constexpr int kAnyCharacter = 999;
const unsigned short kSentinel = 0xBEEF;

struct Dest {
  unsigned short units[8] = {kSentinel, kSentinel, kSentinel, kSentinel,
                             kSentinel, kSentinel, kSentinel, kSentinel};
  std::u16string Text(int n) const { return std::u16string(units, units + n); }
};

const unsigned short kAbc[] = {u'a', u'b', u'c', 0};

TEST(TransformUnicodeString, FitsOrSignalsOverflow) {
  Dest d;
  EXPECT_EQ(TransformUnicodeString(kUpper, kAnyLetter, kAbc, 3, d.units, 4), 3);
  EXPECT_EQ(d.Text(4), std::u16string(u"ABC\0", 4));
  Dest small;
  EXPECT_EQ(TransformUnicodeString(kUpper, kAnyLetter, kAbc, 3, small.units, 3), -1);
  EXPECT_EQ(small.Text(4), (std::u16string{u'A', u'B', 0, kSentinel}));
}

TEST(TransformUnicodeString, NoRoomEmptyInputAndBadSelectors) {
  Dest d;
  EXPECT_EQ(TransformUnicodeString(kUpper, kAnyLetter, kAbc, 3, d.units, 0), -1);
  EXPECT_EQ(TransformUnicodeString(kUpper, kAnyLetter, kAbc, 3, d.units, -5), -1);
  EXPECT_EQ(d.units[0], kSentinel);
  EXPECT_EQ(TransformUnicodeString(99, kAnyLetter, kAbc, 0, d.units, 4), 0);
  EXPECT_EQ(d.units[0], 0);
  Dest e;
  const unsigned short empty[] = {0};
  EXPECT_EQ(TransformUnicodeString(kUpper, kAnyLetter, empty, -1, e.units, 4), 0);
  EXPECT_EQ(e.units[0], 0);
  for (int bad : {0, 29, -1}) {
    Dest f;
    EXPECT_EQ(TransformUnicodeString(bad, kAnyLetter, kAbc, 3, f.units, 8), -1);
    EXPECT_EQ(f.units[0], kSentinel) << bad;
  }
}

TEST(TransformUnicodeString, NulTerminatedSourceAndEverySelectorThatExists) {
  Dest d;
  EXPECT_EQ(TransformUnicodeString(kUpper, kAnyCharacter, kAbc, -1, d.units, 8), 3);
  EXPECT_EQ(d.Text(3), u"ABC");
  const unsigned short crlf[] = {u'a', u'\r', u'\n', u'b'};
  EXPECT_EQ(TransformUnicodeString(23, 0, crlf, 4, d.units, 8), 3);  // LF
  EXPECT_EQ(d.Text(3), u"a\nb");
  const unsigned short pair[] = {u'A', 0x030A};
  EXPECT_EQ(TransformUnicodeString(4, kAnyLetter, pair, 2, d.units, 8), 1);  // compose
  EXPECT_EQ(d.units[0], 0x00C5);
  for (int selector = 1; selector <= 28; ++selector) {
    Dest g;
    const int n = TransformUnicodeString(selector, kAnyCharacter, kAbc, 3, g.units, 8);
    EXPECT_TRUE(n == -1 || (n >= 0 && g.units[n] == 0)) << selector;
  }
}

}  // namespace
