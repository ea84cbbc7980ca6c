#include <gtest/gtest.h>

#include "tests/fresh_process.h"

#include <string>

#include "tests/stream/stream_test_support.h"
#include "varnice/charprops/types/character_script.h"
#include "varnice/encoding/linear_allocator.h"
#include "varnice/encoding/unicode/unicode11_encoding.h"
#include "varnice/encoding/unicode/unicode20_encoding.h"
#include "varnice/stream/converting/converting_sources.h"
#include "varnice/stream/converting/proxy_streams.h"

namespace {

using namespace testing_streams;

TEST(InternalEncodings, FactoriesAreRegisteredSingletons) {
  InternalEncoding* u20 = InternalEncoding::Unicode20();
  EXPECT_EQ(InternalEncoding::Unicode(), u20);
  EXPECT_EQ(InternalEncoding::Lookup("ISO-10646-UCS-2"), u20);
  EXPECT_EQ(InternalEncoding::Lookup(TextEncodingID(2)), u20);
  InternalEncoding* u11 = InternalEncoding::Unicode11();
  EXPECT_EQ(InternalEncoding::Lookup("unicode 1-1"), u11);
  EXPECT_STREQ(u11->Name(), "Unicode11");
  EXPECT_EQ(u11->TokenSize(), 2u);
}

TEST(Unicode11Encoding, HangulMovesAndEverythingElseStays) {
  const InternalEncoding& u11 = *InternalEncoding::Unicode11();
  EXPECT_EQ(u11.ToUnicode(0x3400), 0xAC00u);     // KIYEOK A
  EXPECT_EQ(u11.ToUnicode(0x3401), 0xAC01u);     // KIYEOK A KIYEOK
  EXPECT_EQ(u11.ToUnicode(0x4DFF), 0xBB5Du);     // MIEUM WEO RIEUL-THIEUTH
  EXPECT_EQ(u11.FromUnicode(0xBB5E), 0xBB5Eu);   // a 2.0 syllable 1.1 lacked
  EXPECT_EQ(u11.FromUnicode(0x10000), 0x10000u);
  EXPECT_EQ(u11.ToUnicode(0x00C6), 0x00C6u);     // renamed, not moved
  int moved = 0;
  for (unsigned long c = 0; c <= 0xFFFF; ++c) {
    const unsigned long to20 = u11.ToUnicode(c);
    if (to20 != c) {
      ++moved;
      EXPECT_EQ(u11.FromUnicode(to20), c);
    }
  }
  EXPECT_EQ(moved, 6656);
}

TEST(Unicode11Encoding, StreamsConvertThroughTheRowTables) {
  LinearAllocator arena(4096, __FILE__, __LINE__);
  const InternalEncoding& u11 = *InternalEncoding::Unicode11();
  Chunk16Source input({u"A\u3400", u"\u3401"});
  Char16Source* toUnicode = u11.CreateCharSourceToUnicode(input, arena);
  EXPECT_EQ(ReadAll(*toUnicode), u"A\uAC00\uAC01");
  delete toUnicode;

  Collect16 sinkOut;
  Char16Sink* fromUnicode = u11.CreateCharSinkFromUnicode(sinkOut, arena);
  fromUnicode->Put(U(u"\uAC00B"));
  EXPECT_EQ(sinkOut.text, u"\u3400B");
  delete fromUnicode;

  // Unicode 2.0 needs no conversion: a proxy lends the input's own units.
  Chunk16Source same({u"xyz"});
  Char16Source* proxy = InternalEncoding::Unicode20()->CreateCharSourceFromUnicode(same, arena);
  const unsigned short* b;
  const unsigned short* e;
  ASSERT_TRUE(proxy->GetBuffer(b, e));
  const unsigned short* sb;
  const unsigned short* se;
  ASSERT_TRUE(same.GetBuffer(sb, se));
  EXPECT_EQ(b, sb);
  delete proxy;
}

bool Between(char16_t a, char16_t b) { return InternalEncoding::Unicode20()->MayBreakLineBetween(a, b); }

TEST(LineBreaks, PairsOfCommonClasses) {
  EXPECT_FALSE(Between(u'a', u'b'));
  EXPECT_FALSE(Between(u'a', u' '));
  EXPECT_TRUE(Between(u' ', u'b'));
  EXPECT_FALSE(Between(u' ', u' '));
  EXPECT_FALSE(Between(u' ', u')'));      // no break before closing punctuation
  EXPECT_TRUE(Between(u' ', u'"'));       // a quote may start the next line
  EXPECT_TRUE(Between(u'-', u'b'));
  EXPECT_FALSE(Between(u'a', u'-'));
  EXPECT_FALSE(Between(u'1', u'2'));
  EXPECT_TRUE(Between(u'漢', u'字'));
  EXPECT_TRUE(Between(u'a', u'漢'));
  EXPECT_TRUE(Between(u'漢', u'a'));
  EXPECT_FALSE(Between(u'（', u'漢'));    // never after an opening bracket
  EXPECT_FALSE(Between(u'漢', u'。'));    // never before a closing full stop
  EXPECT_TRUE(Between(u'。', u'漢'));
  EXPECT_FALSE(Between(u'\r', u'\n'));
  EXPECT_TRUE(Between(u'\n', u'a'));
  EXPECT_FALSE(Between(u'a', u'\u00A0'));  // no-break space glues
  EXPECT_FALSE(Between(u'\u00A0', u'a'));
  EXPECT_FALSE(Between(u'a', u'\u0301'));  // combining mark
  EXPECT_FALSE(Between(u'\u0378', u'\u0378'));  // unassigned in 2.1: both sides object
}

// An encoding whose votes the test sets, to pin down how they combine.
class Votes : public InternalEncoding {
 public:
  Votes() : InternalEncoding(TextEncodingID(121), nullptr, nullptr, 0) {}
  CharacterScript GetCharacterScript(unsigned long) const override { return CharacterScript(); }
  unsigned long ToUnicode(unsigned long c) const override { return c; }
  unsigned long FromUnicode(unsigned long c) const override { return c; }
  unsigned long MayBreakLineBefore(unsigned short c) const override { return c; }
  unsigned long MayBreakLineAfter(unsigned short c) const override { return c; }
  Char16Source* CreateCharSourceToUnicode(Char16Source&, UnicodeLibAllocator&) const override { return nullptr; }
  Char16Source* CreateCharSourceFromUnicode(Char16Source&, UnicodeLibAllocator&) const override { return nullptr; }
  Char16Sink* CreateCharSinkToUnicode(Char16Sink&, UnicodeLibAllocator&) const override { return nullptr; }
  Char16Sink* CreateCharSinkFromUnicode(Char16Sink&, UnicodeLibAllocator&) const override { return nullptr; }
};

FRESH_PROCESS_TEST(LineBreaks, TheLargerVoteDecidesByItsLowestBit) {
  static const Votes& v = *new Votes;  // registered encodings live as long as the registry
  EXPECT_TRUE(v.MayBreakLineBetween(0, 0));
  EXPECT_FALSE(v.MayBreakLineBetween(0, 1));
  EXPECT_TRUE(v.MayBreakLineBetween(2, 1));   // force beats object
  EXPECT_TRUE(v.MayBreakLineBetween(1, 2));
  EXPECT_FALSE(v.MayBreakLineBetween(2, 3));  // veto beats force
  EXPECT_FALSE(v.MayBreakLineBetween(3, 0));
  EXPECT_TRUE(v.MayBreakLineBetween(4, 3));   // any larger even value breaks
}

TEST(LineBreaks, Unicode11AsksAboutTheCharactersUnicode20Form) {
  const InternalEncoding& u11 = *InternalEncoding::Unicode11();
  const InternalEncoding& u20 = *InternalEncoding::Unicode20();
  EXPECT_EQ(u11.MayBreakLineBefore(0x3400), u20.MayBreakLineBefore(0xAC00));
  EXPECT_TRUE(u11.MayBreakLineBetween(0x3400, 0x3401));
  EXPECT_FALSE(u20.MayBreakLineBetween(0x3400, 0x3401));  // unassigned in 2.0
}

TEST(BlockExternalEncoding, StreamFactoriesWrapFreshConverters) {
  LinearAllocator arena(8192, __FILE__, __LINE__);
  const TestBlockEncoding& encoding = TestEncoding();
  ChunkSource bytes({"a\x80", "\x41"});
  ExternalEncoding::ToUnicodeSource* decoded = encoding.CreateCharSourceToUnicode(bytes, arena);
  EXPECT_EQ(decoded->ActualInputEncoding(), &encoding);
  EXPECT_EQ(ReadAll(*decoded), u"a\u1041");

  Collect8 encoded;
  Char16Sink* encoder = encoding.CreateCharSinkFromUnicode(encoded, arena);
  encoder->Put(U(u"\u0141z"));
  EXPECT_EQ(encoded.text, "\x01\x41z");

  Chunk16Source wide({u"ok"});
  CharSource* encoderSource = encoding.CreateCharSourceFromUnicode(wide, arena);
  EXPECT_EQ(ReadAll(*encoderSource), "ok");

  Collect16 sinkUnits;
  CharSink* decoder = encoding.CreateCharSinkToUnicode(sinkUnits, arena);
  decoder->Put("\xFF");
  EXPECT_EQ(sinkUnits.text, u"\uFFFD");
  for (UnicodeLibActor* stage : std::initializer_list<UnicodeLibActor*>{decoded, encoder, encoderSource, decoder}) {
    delete stage;
  }
}

}  // namespace
