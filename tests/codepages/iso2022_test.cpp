// ISO-2022-JP reading and writing over the JIS tables.
#include <gtest/gtest.h>

#include <string>

#include "tests/codepages/engine_adapters.h"
#include "varnice/codepages/iso2022_engine.h"

namespace {

using namespace codepage_test;

const ISO2022Subencoding kJP[] = {
    {"\x1B(B", nullptr}, {"\x1B(J", nullptr}, {"\x1B$@", nullptr}, {"\x1B$B", nullptr}, {nullptr, nullptr}};

struct Reader {
  Decoder ascii{ASCIIToUnicodeTable()};
  Decoder roman{HalfWidthKatakanaToUnicodeTable()};
  Decoder kanji1{ISO87JISX0208ToUnicodeTable()};
  Decoder kanji2{ISO87JISX0208ToUnicodeTable()};
  Decoder* subs[4] = {&ascii, &roman, &kanji1, &kanji2};
  ISO2022Reader<Decoder*> reader{kJP, 4, subs};
  unsigned short buf[64];
  unsigned short* out = buf;

  int Feed(std::string const& bytes) {
    char const* in = bytes.data();
    int r = reader.Convert(in, in + bytes.size(), out, buf + 64);
    EXPECT_TRUE(r != 1 || in == bytes.data() + bytes.size());
    return r;
  }
  std::u16string Units() const { return std::u16string(buf, static_cast<unsigned short const*>(out)); }
};

TEST(ISO2022JPRead, EscapesSelectSubencodings) {
  Reader r;
  EXPECT_EQ(r.Feed("\x1B$B\x30\x21\x1B(BA"), 1);
  EXPECT_EQ(r.Units(), u"\u4E9CA");
  EXPECT_EQ(r.reader.Current(), 0);
  // The old JIS X 0208 escape reads the same table; JIS X 0201 Roman has the yen sign.
  EXPECT_EQ(r.Feed("\x1B$@\x30\x21\x1B(J\x5C"), 1);
  EXPECT_EQ(r.Units(), u"\u4E9CA\u4E9C\u00A5");
}

TEST(ISO2022JPRead, EscapeAndCharacterSplitAcrossBlocks) {
  Reader r;
  EXPECT_EQ(r.Feed("A\x1B$"), 1);
  EXPECT_EQ(r.Units(), u"A") << "partial escape stays pending";
  EXPECT_EQ(r.Feed("B\x30"), 1);
  EXPECT_EQ(r.reader.Current(), 3);
  EXPECT_EQ(r.Feed("\x21"), 1);
  EXPECT_EQ(r.Units(), u"A\u4E9C");
}

TEST(ISO2022JPRead, UnknownOrIncompleteEscapeIsAnEscapeCharacter) {
  Reader r;
  EXPECT_EQ(r.Feed("\x1B(IA"), 1);
  EXPECT_EQ(r.Units(), u"\x1B(IA");
  EXPECT_EQ(r.Feed("\x1B"), 1);
  EXPECT_EQ(r.Units().size(), 4u);
  EXPECT_EQ(r.reader.Finish(r.out, r.buf + 64), 0);
  EXPECT_EQ(r.Units(), u"\x1B(IA\x1B");
}

TEST(ISO2022JPRead, SubconverterCodesPassUpAndResume) {
  Reader r;
  // 0x30 0x7F has no character in JIS X 0208.
  std::string bytes = "\x1B$B\x30\x7F\x30\x21";
  char const* in = bytes.data();
  char const* end = in + bytes.size();
  EXPECT_EQ(r.reader.Convert(in, end, r.out, r.buf + 64), 4);
  EXPECT_EQ(in, end) << "all of it went into the buffer";
  // With no input left the rest waits in the buffer for more input or Finish.
  EXPECT_EQ(r.reader.Convert(in, end, r.out, r.buf + 64), 1);
  EXPECT_EQ(r.reader.Finish(r.out, r.buf + 64), 0);
  EXPECT_EQ(r.Units(), u"\u4E9C");
  // Output full: nothing lost, the rest converts on the next call.
  Reader small;
  std::string two = "AB";
  in = two.data();
  EXPECT_EQ(small.reader.Convert(in, in + 2, small.out, small.buf + 1), 2);
  EXPECT_EQ(small.reader.Finish(small.out, small.buf + 64), 0);
  EXPECT_EQ(small.Units(), u"AB");
}

struct Writer {
  Encoder ascii{ASCIIFromUnicodeTable()};
  Encoder roman{HalfWidthKatakanaFromUnicodeTable()};
  Encoder kanji1{ISO87JISX0208FromUnicodeTable()};
  Encoder kanji2{ISO87JISX0208FromUnicodeTable()};
  Encoder* subs[4] = {&ascii, &roman, &kanji1, &kanji2};
  ISO2022Writer<Encoder*> writer{kJP, 4, subs};
  bool flag = false;
  char buf[64];
  char* out = buf;

  int Write(std::u16string const& text, long capacity = -1, long room = 64) {
    auto const* in = reinterpret_cast<unsigned short const*>(text.data());
    return writer.Convert(
        in, in + text.size(), out, out + room, capacity, ChooseISO2022JP,
        [&](long n, long reserve, long& cap) { return Reached(flag, n, reserve, cap); }, [&] { flag = true; });
  }
  std::string Bytes() const { return Hex(buf, out); }
};

TEST(ISO2022JPWrite, RomanForYenAndBackAtTheEnd) {
  Writer w;
  EXPECT_EQ(w.Write(u"A\u00A5B"), 1);
  EXPECT_EQ(w.Bytes(), "41 1B 28 4A 5C 42");
  EXPECT_EQ(w.writer.Finish(w.out), 0);
  EXPECT_EQ(w.Bytes(), "41 1B 28 4A 5C 42 1B 28 42");
}

TEST(ISO2022JPWrite, BackslashLeavesRoman) {
  Writer w;
  EXPECT_EQ(w.Write(u"\u00A5\\\u4E9C"), 1);
  EXPECT_EQ(w.Bytes(), "1B 28 4A 5C 1B 28 42 5C 1B 24 42 30 21");
  EXPECT_EQ(w.writer.Finish(w.out), 0);
  EXPECT_EQ(w.Bytes(), "1B 28 4A 5C 1B 28 42 5C 1B 24 42 30 21 1B 28 42");
}

TEST(ISO2022JPWrite, NoRoomWritesNoEscape) {
  Writer w;
  EXPECT_EQ(w.Write(u"\u4E9C", -1, 2), 2);
  EXPECT_EQ(w.out, w.buf);
  EXPECT_EQ(w.writer.Current(), 0);
}

TEST(ISO2022JPWrite, CapacityKeepsRoomForTheFinalEscape) {
  Writer w;
  // Escape (3) + kept for the way back (3) + the kanji (2) = 8.
  EXPECT_EQ(w.Write(u"\u4E9C", 7), 7);
  EXPECT_EQ(w.Bytes(), "1B 24 42") << "the escape fits, the kanji does not";
  EXPECT_TRUE(w.flag);
  EXPECT_EQ(w.writer.Finish(w.out), 0);
  EXPECT_EQ(w.Bytes(), "1B 24 42 1B 28 42");

  Writer fits;
  EXPECT_EQ(fits.Write(u"\u4E9C", 8), 1);
  EXPECT_EQ(fits.Bytes(), "1B 24 42 30 21");
}

TEST(ISO2022JPWrite, UnmappableCharacterPassesUp) {
  Writer w;
  EXPECT_EQ(w.Write(u"\u00E9A"), 5) << "e-acute is chosen for JIS X 0208, which lacks it";
  EXPECT_EQ(w.Bytes(), "1B 24 42");
}

TEST(ISO2022JPDetect, CountsSwitchingEscapesOncePenalisesHighBytes) {
  std::string text = "ab\x1B$B\x30\x21\x1B(B\x1B(J\x80";
  char const* s = text.data();
  EXPECT_EQ(ScoreISO2022JP(s, s, s + text.size()), 2 - 1);
  // Split inside the second escape: each scan sees it once in all.
  int total = 0;
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    total = ScoreISO2022JP(s, s, s + cut) + ScoreISO2022JP(s, s + cut, s + text.size());
    EXPECT_EQ(total, 1) << cut;
  }
}

}  // namespace
