// Strict reading and the Transcoder's error modes. Every case runs with the
// input cut into pieces of every size from one byte up, so characters and
// broken sequences split across blocks are covered everywhere.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/catalogue/strict_decoder.h"
#include "varnice/encoding/catalogue/transcoder.h"

namespace {

using Units = std::u16string;

struct Collect : Transcoder::Receiver {
  std::string bytes;
  Units units;
  bool toUnicode = true;
  void Take(const void* data, std::size_t n) override {
    if (toUnicode) {
      units.append(static_cast<const char16_t*>(data), n);
    } else {
      bytes.append(static_cast<const char*>(data), n);
    }
  }
};

struct Decoded {
  Units units;
  Transcoder::Status status;
};

// Feeds `in` to a Transcoder in pieces of `piece` bytes, then finishes.
Transcoder::Status Transcode(const ExternalEncoding* from, const ExternalEncoding* to, const std::string& in,
                             Transcoder::ErrorMode mode, std::size_t piece, Collect& out) {
  out.toUnicode = to == nullptr;
  Transcoder t(from, to, mode, out);
  EXPECT_TRUE(t.Ready());
  for (std::size_t at = 0; at < in.size(); at += piece) {
    if (!t.Put(in.data() + at, std::min(piece, in.size() - at))) break;
  }
  t.Finish();
  return t.GetStatus();
}

Decoded Decode(const ExternalEncoding* from, const std::string& in, Transcoder::ErrorMode mode, std::size_t piece) {
  Collect out;
  const Transcoder::Status status = Transcode(from, nullptr, in, mode, piece, out);
  return {out.units, status};
}

// Decodes in pieces of every size and checks each gives the same answer.
Decoded DecodeAllWays(const ExternalEncoding* from, const std::string& in,
                      Transcoder::ErrorMode mode = Transcoder::kReplace) {
  const Decoded whole = Decode(from, in, mode, in.size() + 1);
  for (std::size_t piece = 1; piece <= in.size(); ++piece) {
    const Decoded split = Decode(from, in, mode, piece);
    EXPECT_EQ(split.units, whole.units) << "pieces of " << piece;
    EXPECT_EQ(split.status.problemOffset, whole.status.problemOffset) << "pieces of " << piece;
    EXPECT_EQ(split.status.replacements, whole.status.replacements) << "pieces of " << piece;
    EXPECT_EQ(split.status.consumed, whole.status.consumed) << "pieces of " << piece;
  }
  return whole;
}

const char16_t kR = 0xFFFD;

struct Case {
  const char* label;
  std::string bytes;
  Units expected;  // replace mode
  long long firstProblem;
};

void CheckCases(const ExternalEncoding* e, const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const Decoded d = DecodeAllWays(e, c.bytes);
    EXPECT_EQ(d.units, c.expected);
    EXPECT_EQ(d.status.problemOffset, c.firstProblem);
  }
}

TEST(StrictDecoding, Utf8OneReplacementPerMaximalSubpartAndNothingSwallowed) {
  CheckCases(ExternalEncoding::Unicode20UTF8(),
             {
                 {"valid", "a\xC3\xA9\xE3\x81\x82\xF0\x9F\x98\x80", u"a\u00E9\u3042\U0001F600", -1},
                 {"stray byte keeps the next", "a\xFF" "b", Units(u"a") + kR + u"b", 1},
                 {"interrupted keeps the newline", "a\xC3\nb", Units(u"a") + kR + u"\nb", 1},
                 {"interrupted by a lead", "\xE3\x81\xE3\x81\x82", Units(1, kR) + u"\u3042", 0},
                 {"overlong slash", "\xC0\xAF", Units(2, kR), 0},
                 {"overlong three bytes", "\xE0\x80\xAF", Units(3, kR), 0},
                 {"encoded surrogate", "\xED\xA0\x80", Units(3, kR), 0},
                 {"above U+10FFFF", "\xF4\x90\x80\x80", Units(4, kR), 0},
                 {"five-byte form", "\xF8\x88\x80\x80\x80", Units(5, kR), 0},
                 // The Unicode Standard's own example of maximal subparts.
                 {"standard example", "\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",
                  Units(u"a") + kR + kR + kR + u"b" + kR + u"c" + kR + kR + u"d", 1},
                 {"cut off at the end", "ab\xE3\x81", Units(u"ab") + kR, 2},
                 {"four bytes cut off", "\xF0\x9F\x98", Units(1, kR), 0},
             });
}

TEST(StrictDecoding, CodePagesNeverConsumeAByteThatStartsACharacter) {
  CheckCases(ExternalEncoding::ShiftJIS(),
             {
                 {"valid", "a\x81\x40\x82\xA0\xB1", u"a\u3000\u3042\uFF71", -1},
                 {"lead then newline", "a\x82\nb", Units(u"a") + kR + u"\nb", 1},
                 {"lead then space", "a\x82 b", Units(u"a") + kR + u" b", 1},
                 {"lead then quote", "\x82\"", Units(1, kR) + u"\"", 0},
                 {"invalid first byte", "\x80" "a", Units(1, kR) + u"a", 0},
                 {"lead then a byte that starts nothing", "\x82\xFD" "a", Units(1, kR) + u"a", 0},
                 {"cut off at the end", "a\x82", Units(u"a") + kR, 1},
             });
  CheckCases(ExternalEncoding::CP932(), {{"lead then newline", "\x88\n", Units(1, kR) + u"\n", 0}});
  CheckCases(ExternalEncoding::EUCPkdFmtJapanese(),
             {
                 {"invalid first byte keeps the next character", "a\xA9\xA1" "b",
                  Units(u"a") + kR + kR + u"b", 1},
                 {"three-byte code cut off", "\x8F\xB0", Units(1, kR), 0},
                 {"valid", "\xB0\xA1\x8E\xB1", u"\u4E9C\uFF71", -1},
             });
}

TEST(StrictDecoding, Iso2022JpEscapesAndTwoByteSets) {
  const ExternalEncoding* jp = ExternalEncoding::ISO2022JP();
  ASSERT_NE(jp, nullptr);
  CheckCases(jp, {
                     {"valid", "\x1B$B0!\x1B(BA", u"\u4E9CA", -1},
                     {"cut off inside a character", "\x1B$B$", Units(1, kR), 3},
                     {"cut off inside an escape", "a\x1B$", Units(u"a") + kR, 1},
                     {"unknown escape keeps what follows", "\x1B(Zab", Units(1, kR) + u"Zab", 0},
                     {"line end in the two-byte set", "\x1B$B0!\n0!", u"\u4E9C\n\u4E9C", -1},
                     {"line end inside a character", "\x1B$B0\n", Units(1, kR) + u"\n", 3},
                     {"eight-bit byte", "a\xB1" "b", Units(u"a") + kR + u"b", 1},
                 });
}

TEST(StrictDecoding, TwoByteFormsRejectLoneSurrogatesAndOddEnds) {
  const ExternalEncoding* be = ExternalEncoding::Unicode20BigEndian();
  CheckCases(be, {
                     {"pair", std::string("\xD8\x3D\xDE\x00", 4), u"\U0001F600", -1},
                     {"high then letter", std::string("\xD8\x3D\x00\x41", 4), Units(1, kR) + u"A", 0},
                     {"lone low", std::string("\x00\x41\xDC\x00", 4), Units(u"A") + kR, 2},
                     {"odd byte at the end", std::string("\x00\x41\x00", 3), Units(u"A") + kR, 2},
                     {"high at the end", std::string("\xD8\x3D", 2), Units(1, kR), 0},
                 });
}

TEST(StrictDecoding, ModesSkipStopAndStrict) {
  const ExternalEncoding* utf8 = ExternalEncoding::Unicode20UTF8();
  const std::string in = "ab\xFF" "cd\xC3";
  const Decoded skip = DecodeAllWays(utf8, in, Transcoder::kSkip);
  EXPECT_EQ(skip.units, u"abcd");
  EXPECT_EQ(skip.status.replacements, 2u);
  for (auto mode : {Transcoder::kStop, Transcoder::kStrict}) {
    const Decoded stop = DecodeAllWays(utf8, in, mode);
    EXPECT_EQ(stop.units, u"ab");
    EXPECT_TRUE(stop.status.stopped);
    EXPECT_EQ(stop.status.consumed, 2u);
    EXPECT_EQ(stop.status.problem, Transcoder::kIllFormed);
  }
  const Decoded cut = DecodeAllWays(utf8, "abc\xE3\x81", Transcoder::kStop);
  EXPECT_EQ(cut.status.problem, Transcoder::kIncomplete);
  EXPECT_EQ(cut.status.problemOffset, 3);
}

// Whole blocks take the fast path for complete characters; one-byte pieces
// take the byte-at-a-time loop. Both must read every text alike.
TEST(StrictDecoding, FastPathAgreesWithTheByteLoopOnRandomText) {
  const std::string pieces[] = {"a", "\n", "\xC3\xA9", "\xE3\x81\x82", "\xF0\x9F\x98\x80", "\xC0", "\xC3",
                                "\xE3\x81", "\xED\xA0", "\xF4\x90", "\x80", "\xBF", "\xFF", "\xF0\x9F",
                                "0123456789abcdef"};
  unsigned seed = 12345;
  for (int round = 0; round < 300; ++round) {
    std::string text;
    for (int k = 0; k < 12; ++k) {
      seed = seed * 1103515245 + 12345;
      text += pieces[(seed >> 16) % (sizeof pieces / sizeof pieces[0])];
    }
    const Decoded whole = Decode(ExternalEncoding::Unicode20UTF8(), text, Transcoder::kReplace, text.size());
    const Decoded bytes = Decode(ExternalEncoding::Unicode20UTF8(), text, Transcoder::kReplace, 1);
    ASSERT_EQ(whole.units, bytes.units) << round;
    ASSERT_EQ(whole.status.replacements, bytes.status.replacements) << round;
    ASSERT_EQ(whole.status.problemOffset, bytes.status.problemOffset) << round;
  }
}

std::string Encode(const ExternalEncoding* to, const Units& in, Transcoder::ErrorMode mode,
                   Transcoder::Status* status = nullptr, const Units& subst = Units()) {
  Collect out;
  out.toUnicode = false;
  Transcoder t(nullptr, to, mode, out);
  EXPECT_TRUE(t.Ready());
  if (!subst.empty()) t.SetSubstitute(reinterpret_cast<const unsigned short*>(subst.data()), subst.size());
  // One unit at a time splits every pair.
  for (char16_t u : in) {
    if (!t.Put(&u, 1)) break;
  }
  t.Finish();
  if (status != nullptr) *status = t.GetStatus();
  return out.bytes;
}

TEST(StrictEncoding, SubstitutesAreWholeCharactersOfTheTarget) {
  Transcoder::Status st;
  // One substitute for a pair, not two.
  EXPECT_EQ(Encode(ExternalEncoding::ShiftJIS(), u"a\U0001F600b", Transcoder::kReplace, &st), "a\x1A" "b");
  EXPECT_EQ(st.replacements, 1u);
  EXPECT_EQ(st.problemOffset, 1);
  // ISO-2022-JP leaves the two-byte set before writing SUB.
  EXPECT_EQ(Encode(ExternalEncoding::ISO2022JP(), u"\u4E9C\u00E9\u4E9C", Transcoder::kReplace),
            "\x1B$B0!\x1B(B\x1A\x1B$B0!\x1B(B");
  // EBCDIC gets its own SUB.
  EXPECT_EQ(Encode(ExternalEncoding::CP870(), u"\u4E9C", Transcoder::kReplace), "\x3F");
  // A substitute given as Unicode is written in the target.
  EXPECT_EQ(Encode(ExternalEncoding::CP932(), u"x\u00E9", Transcoder::kReplace, nullptr, u"\u3013"),
            "x\x81\xAC");
  EXPECT_EQ(Encode(ExternalEncoding::ShiftJIS(), u"a\u00E9b", Transcoder::kSkip), "ab");
  EXPECT_EQ(Encode(ExternalEncoding::ShiftJIS(), u"a\u00E9b", Transcoder::kStop, &st), "a");
  EXPECT_EQ(st.consumed, 1u);
  EXPECT_EQ(st.problem, Transcoder::kUnmappable);
}

TEST(StrictEncoding, LoneSurrogatesNeverReachUtf8) {
  Transcoder::Status st;
  const Units lone = Units(u"a") + char16_t(0xD800) + u"b" + char16_t(0xDC00);
  EXPECT_EQ(Encode(ExternalEncoding::Unicode20UTF8(), lone, Transcoder::kReplace, &st),
            "a\xEF\xBF\xBD" "b\xEF\xBF\xBD");
  EXPECT_EQ(st.problem, Transcoder::kLoneSurrogate);
  EXPECT_EQ(st.problemOffset, 1);
  EXPECT_EQ(Encode(ExternalEncoding::Unicode20UTF8(), Units(u"a") + char16_t(0xD800), Transcoder::kReplace),
            "a\xEF\xBF\xBD");
}

TEST(StrictTranscoding, UnmappableCharacterIsLocatedByItsByteOffset) {
  const ExternalEncoding* utf8 = ExternalEncoding::Unicode20UTF8();
  const ExternalEncoding* sjis = ExternalEncoding::ShiftJIS();
  const std::string in = "ab\xC3\xA9\xF0\x9F\x98\x80z";
  for (std::size_t piece : {std::size_t{1}, std::size_t{3}, in.size()}) {
    Collect out;
    EXPECT_EQ(Transcode(utf8, sjis, in, Transcoder::kStop, piece, out).problemOffset, 2) << piece;
    EXPECT_EQ(out.bytes, "ab");
  }
  // An ill-formed byte and a character the target lacks: two replacements.
  Collect out;
  EXPECT_EQ(Transcode(utf8, sjis, "\xFF" "a\xF0\x9F\x98\x80", Transcoder::kReplace, 6, out).replacements, 2u);
  EXPECT_EQ(out.bytes, "\x1A" "a\x1A");
}

}  // namespace
