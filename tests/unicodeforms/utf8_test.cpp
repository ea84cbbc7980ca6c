#include "varnice/unicodeforms/utf8.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/unicodeforms/form_test_support.h"
#include "varnice/encoding/internal_encoding.h"

namespace {

using namespace testing_forms;

Decoded Decode8(const std::string& bytes, bool allowSurrogates = true, std::size_t piece = 1 << 20) {
  UTF8toWhatever decoder(allowSurrogates);
  return Decode(decoder, bytes, piece);
}

Encoded Encode8(const std::u16string& units, bool pair = true, std::size_t piece = 1 << 20) {
  UTF8fromWhatever encoder(pair);
  return Encode(encoder, units, piece);
}

using Problems = std::vector<std::pair<std::size_t, int>>;

TEST(UTF8toWhatever, LenientWithOverlongFormsAndEncodedSurrogates) {
  EXPECT_EQ(Decode8(Bytes({0xC0, 0x80})).text, std::u16string(1, u'\0'));
  EXPECT_EQ(Decode8(Bytes({0xE0, 0x80, 0xC1})).problems, (Problems{{0, kIllegalInput}}));
  EXPECT_EQ(Decode8(Bytes({0xED, 0xA0, 0x80})).text, u"\xD800");
  EXPECT_EQ(Decode8(Bytes({0xF0, 0x80, 0x81, 0x81})).text, u"A");  // four-byte overlong
  EXPECT_EQ(Decode8("a\xC3\xA9\xE6\x97\xA5").text, u"a\u00E9\u65E5");
}

TEST(UTF8toWhatever, ValuesAboveTheBasicPlane) {
  const std::string g = Bytes({0xF0, 0x90, 0x80, 0x80});
  EXPECT_EQ(Decode8(g).text, u"\xD800\xDC00");
  EXPECT_EQ(Decode8(Bytes({0xF4, 0x8F, 0xBF, 0xBF})).text, u"\xDBFF\xDFFF");

  // Without surrogates the whole sequence is consumed, then reported.
  UTF8toWhatever noPairs(false);
  EXPECT_EQ(DecodeStep(noPairs, g + "x", 8), (Step16{kNoCharacterDefined, 4, u""}));

  // Beyond U+10FFFF, and the five- and six-byte forms, are undefined rather
  // than illegal.
  EXPECT_EQ(Decode8(Bytes({0xF4, 0x90, 0x80, 0x80, 'z'})).problems, (Problems{{0, kNoCharacterDefined}}));
  EXPECT_EQ(Decode8(Bytes({0xF8, 0x88, 0x80, 0x80, 0x80, 'z'})), (Decoded{u"z", {{0, kNoCharacterDefined}}, false}));
  EXPECT_EQ(Decode8(Bytes({0xFC, 0x84, 0x80, 0x80, 0x80, 0x80})).problems, (Problems{{0, kNoCharacterDefined}}));
}

TEST(UTF8toWhatever, TheInterruptingByteIsConsumedWithTheBrokenSequence) {
  UTF8toWhatever decoder(true);
  EXPECT_EQ(DecodeStep(decoder, Bytes({0xC3, 0x41, 0x42}), 8), (Step16{kIllegalInput, 2, u""}));
  // The decoder was reset: the next byte starts afresh.
  EXPECT_EQ(DecodeStep(decoder, "B", 8), (Step16{kInputUsedUp, 1, u"B"}));

  // A stray continuation byte, and a lead interrupting a sequence.
  EXPECT_EQ(Decode8("a\x80" "b"), (Decoded{u"ab", {{1, kIllegalInput}}, false}));
  EXPECT_EQ(Decode8("\xE6\x97" "ab"), (Decoded{u"b", {{0, kIllegalInput}}, false}));
}

TEST(UTF8toWhatever, SequencesSplitAcrossBlocksAndOneBytePerCall) {
  const std::string text =
      "Grüße, 日本語 " + Bytes({0xF0, 0x9F, 0x98, 0x80}) + Bytes({0xC3, 'x', 0x80, 0xF8, 0x88, 0x80, 0x80, 0x80}) + "!";
  const Decoded whole = Decode8(text);
  EXPECT_EQ(whole.problems.size(), 3u);
  for (std::size_t piece : {1, 2, 3, 5}) EXPECT_EQ(Decode8(text, true, piece), whole) << "piece " << piece;

  // A sequence left open at the very end is dropped without a report.
  EXPECT_EQ(Decode8("ab\xE6\x97"), (Decoded{u"ab", {}, false}));
}

TEST(UTF8toWhatever, AlwaysDemandsRoomForAPair) {
  UTF8toWhatever decoder(true);
  // One unit of room: nothing is consumed, even for ASCII.
  EXPECT_EQ(DecodeStep(decoder, "ab", 1), (Step16{kOutputFull, 0, u""}));
  // Two units: one ASCII byte, then the room is too small again.
  EXPECT_EQ(DecodeStep(decoder, "ab", 2), (Step16{kOutputFull, 1, u"a"}));
  // Exactly two units take a whole pair.
  const std::string g = Bytes({0xF0, 0x90, 0x80, 0x80});
  EXPECT_EQ(DecodeStep(decoder, g, 2), (Step16{kInputUsedUp, 4, u"\xD800\xDC00"}));

  // Output blocks of two units give the same text as large ones.
  const std::string mixed = "a" + g + "é日b";
  UTF8toWhatever small(true);
  EXPECT_EQ(Decode(small, mixed, 1 << 20, 2).text, Decode8(mixed).text);
  UTF8toWhatever tiny(true);
  EXPECT_TRUE(Decode(tiny, mixed, 1 << 20, 1).stuck);
}

TEST(UTF8fromWhatever, ByteLengthsAndSurrogates) {
  EXPECT_EQ(Encode8(u"A\u00E9\u65E5").text, "A\xC3\xA9\xE6\x97\xA5");
  EXPECT_EQ(Encode8(u"\xD800\xDC00\xDBFF\xDFFF").text, Bytes({0xF0, 0x90, 0x80, 0x80, 0xF4, 0x8F, 0xBF, 0xBF}));
  EXPECT_EQ(Encode8(std::u16string(1, u'\0')).text, std::string(1, '\0'));
  // A lone low surrogate is written as its own three-byte form.
  EXPECT_EQ(Encode8(u"\xDC00").text, Bytes({0xED, 0xB0, 0x80}));
  // With pairing off, so is every surrogate.
  EXPECT_EQ(Encode8(u"\xD800" u"A", false).text, Bytes({0xED, 0xA0, 0x80, 'A'}));
  // With pairing on, a high surrogate must be followed by a low one; the
  // unit after it is consumed with it.
  const Encoded broken = Encode8(u"\xD800" u"AB");
  EXPECT_EQ(broken.text, "B");
  EXPECT_EQ(broken.problems, (Problems{{0, kIllegalUTF16}}));
  // A pair split between two calls, and a high surrogate left at the end.
  EXPECT_EQ(Encode8(u"x\xD83D\xDE00y", true, 2).text, "x\xF0\x9F\x98\x80y");
  EXPECT_EQ(Encode8(u"x\xD83D").text, "x");
}

TEST(UTF8fromWhatever, SixBytesOfRoomAndTheByteBudget) {
  UTF8fromWhatever encoder(true);
  EXPECT_EQ(EncodeStep(encoder, u"ab", 5), (Step8{kOutputFull, 0, ""}));
  EXPECT_EQ(EncodeStep(encoder, u"ab", 6), (Step8{kOutputFull, 1, "a"}));  // then five bytes of room left

  // A budget of 3 refuses a four-byte character, which stays consumed.
  const std::u16string pair = u"\xD83D\xDE00z";
  EXPECT_EQ(EncodeStep(encoder, pair, 8, 3), (Step8{kCapacityReached, 2, ""}));
  // Once reached, nothing more is written until Reset.
  const Step8 refused = EncodeStep(encoder, u"z", 8, 100);
  EXPECT_EQ(refused.result, kCapacityReached);
  EXPECT_EQ(refused.written, "");
  encoder.Reset();
  EXPECT_EQ(EncodeStep(encoder, pair, 16, 5), (Step8{kInputUsedUp, 3, "\xF0\x9F\x98\x80z"}));
  // The budget is per call and spent exactly: "aé" fits 3, "aéb" does not.
  EXPECT_EQ(EncodeStep(encoder, u"a\u00E9b", 16, 3), (Step8{kCapacityReached, 3, "a\xC3\xA9"}));
}

TEST(UTF8Detector, PenalisesBytesOutOfPlace) {
  const ExternalEncoding& utf8 = *ExternalEncoding::Unicode20UTF8();
  auto score = [&](const std::string& text, std::size_t split) {
    UTF8Detector d(utf8);
    d.Scan(text.data(), text.data(), text.data() + split);
    d.Scan(text.data(), text.data() + split, text.data() + text.size());
    d.Finish(text.data(), text.data() + text.size());
    return d.Score();
  };
  EXPECT_EQ(score("plain ASCII", 3), 0);
  EXPECT_EQ(score("caf\xC3\xA9 \xE6\x97\xA5", 4), 0);  // split inside a sequence
  // A stray continuation byte makes the next nine bytes suspects.
  EXPECT_EQ(score("\x80" "abcdefghi", 5), -10);
  EXPECT_EQ(score("\x80" "abcdefghijkl", 5), -10);
  EXPECT_EQ(score("\xE6\x97" "a", 1), -1);  // interrupted
  EXPECT_EQ(score("abc\xE6\x97", 1), -1);   // left open at the end
}

TEST(UTF8Tables, ExportedLengthsAgreeWithTheDecoder) {
  // Every lead followed by as many continuation bytes as the table says makes
  // one character (or one undefined value), and the next byte starts afresh.
  for (int lead = 0; lead < 256; ++lead) {
    const int length = UTF8_CHAR_LENGTHS_FROM_LEAD[lead];
    std::string text(1, static_cast<char>(lead));
    text.append(length > 1 ? length - 1 : 0, '\x80');
    text += "z";
    const Decoded run = Decode8(text, false);  // no pairs: one unit or one problem each
    ASSERT_EQ(run.text.back(), u'z') << lead;
    if (length == 0) {
      EXPECT_EQ(run.problems, (Problems{{0, kIllegalInput}})) << lead;
    } else {
      EXPECT_EQ(run.text.size() + run.problems.size(), 2u) << lead;
    }
  }
}

// --- The fast paths against the plain loops ---------------------------------

// Text that exercises every branch: ASCII runs long and short, well-formed
// sequences of every length, overlong and out-of-range forms, stray and
// missing continuation bytes.
std::string RandomUTF8(std::mt19937& rng, std::size_t pieces) {
  std::string s;
  std::uniform_int_distribution<int> kind(0, 9), byte(0, 255), len(0, 40);
  auto cont = [&] { return static_cast<char>(0x80 | (byte(rng) & 0x3F)); };
  for (std::size_t i = 0; i < pieces; ++i) {
    switch (kind(rng)) {
      case 0:
      case 1:
      case 2:
        for (int n = len(rng); n > 0; --n) s.push_back(static_cast<char>(0x20 + byte(rng) % 95));
        break;
      case 3:
        s.push_back(static_cast<char>(0xC0 | (byte(rng) & 0x1F)));
        s.push_back(cont());
        break;
      case 4:
      case 5:
        s.push_back(static_cast<char>(0xE0 | (byte(rng) & 0x0F)));
        s.push_back(cont());
        s.push_back(cont());
        break;
      case 6:
        s.push_back(static_cast<char>(0xF0 | (byte(rng) & 0x07)));
        for (int k = 0; k < 3; ++k) s.push_back(cont());
        break;
      case 7:
        s.push_back(static_cast<char>(0xF8 | (byte(rng) & 0x07)));
        for (int k = byte(rng) % 6; k > 0; --k) s.push_back(cont());
        break;
      default:
        s.push_back(static_cast<char>(byte(rng)));
        break;
    }
  }
  return s;
}

std::u16string RandomUTF16(std::mt19937& rng, std::size_t pieces) {
  std::u16string s;
  std::uniform_int_distribution<int> kind(0, 9), len(0, 40), unit(0, 0xFFFF);
  for (std::size_t i = 0; i < pieces; ++i) {
    switch (kind(rng)) {
      case 0:
      case 1:
      case 2:
        for (int n = len(rng); n > 0; --n) s.push_back(static_cast<char16_t>(unit(rng) & 0x7F));
        break;
      case 3:
        s.push_back(static_cast<char16_t>(0x80 + unit(rng) % 0x780));
        break;
      case 4:
      case 5:
        s.push_back(static_cast<char16_t>(0x3000 + unit(rng) % 0x7000));
        break;
      case 6:
        s.push_back(static_cast<char16_t>(0xD800 + unit(rng) % 0x400));
        s.push_back(static_cast<char16_t>(0xDC00 + unit(rng) % 0x400));
        break;
      case 7:
        s.push_back(static_cast<char16_t>(0xD800 + unit(rng) % 0x800));  // a lone surrogate
        break;
      default:
        s.push_back(static_cast<char16_t>(unit(rng)));
        break;
    }
  }
  return s;
}

// Splits [0, n) at random points.
std::vector<std::size_t> RandomCuts(std::mt19937& rng, std::size_t n) {
  std::vector<std::size_t> cuts{0};
  std::uniform_int_distribution<std::size_t> step(1, 64);
  while (cuts.back() < n) cuts.push_back(std::min(n, cuts.back() + step(rng)));
  return cuts;
}

std::size_t RandomRoom(std::mt19937& rng) {
  std::uniform_int_distribution<int> pick(0, 9);
  const int p = pick(rng);
  return p < 3 ? 1 + pick(rng) : p < 8 ? 1 + std::uniform_int_distribution<int>(0, 99)(rng) : 1024;
}

TEST(UTF8FastPath, DecoderMatchesTheByteAtATimeLoopCallForCall) {
  std::mt19937 rng(20240607);
  for (int round = 0; round < 300; ++round) {
    const bool allow = round % 3 != 0;
    UTF8toWhatever fast(allow), plain(allow);
    const std::string text = RandomUTF8(rng, 60);
    const std::vector<std::size_t> cuts = RandomCuts(rng, text.size());
    unsigned short fastOut[1024], plainOut[1024];
    for (std::size_t c = 1; c < cuts.size(); ++c) {
      const char* fastIn = text.data() + cuts[c - 1];
      const char* plainIn = fastIn;
      const char* const end = text.data() + cuts[c];
      for (int calls = 0; calls < 10000; ++calls) {
        const std::size_t room = RandomRoom(rng);
        unsigned short* fo = fastOut;
        unsigned short* po = plainOut;
        const int fr = fast.Convert(fastIn, end, fo, fastOut + room);
        const int pr = plain.ConvertByteAtATime(plainIn, end, po, plainOut + room);
        ASSERT_EQ(fr, pr) << "round " << round;
        ASSERT_EQ(fastIn, plainIn) << "round " << round;
        ASSERT_EQ(fo - fastOut, po - plainOut) << "round " << round;
        ASSERT_TRUE(std::equal(fastOut, fo, plainOut)) << "round " << round;
        if (fr == kInputUsedUp) break;
      }
    }
  }
}

TEST(UTF8FastPath, EncoderMatchesTheUnitAtATimeLoopCallForCall) {
  std::mt19937 rng(1999);
  std::uniform_int_distribution<int> pick(0, 19);
  for (int round = 0; round < 300; ++round) {
    const bool pair = round % 3 != 0;
    UTF8fromWhatever fast(pair), plain(pair);
    const std::u16string text = RandomUTF16(rng, 60);
    const auto* data = U(text);
    const std::vector<std::size_t> cuts = RandomCuts(rng, text.size());
    char fastOut[1024], plainOut[1024];
    for (std::size_t c = 1; c < cuts.size(); ++c) {
      const unsigned short* fastIn = data + cuts[c - 1];
      const unsigned short* plainIn = fastIn;
      const unsigned short* const end = data + cuts[c];
      for (int calls = 0; calls < 10000; ++calls) {
        const std::size_t room = RandomRoom(rng);
        // Mostly unlimited; sometimes a small budget, which sticks once spent.
        const int p = pick(rng);
        const long capacity = p < 15 ? -1 : p < 19 ? std::uniform_int_distribution<long>(0, 30)(rng) : -5;
        if (p == 18) {
          fast.Reset();
          plain.Reset();
        }
        char* fo = fastOut;
        char* po = plainOut;
        const int fr = fast.Convert(fastIn, end, fo, fastOut + room, capacity);
        const int pr = plain.ConvertUnitAtATime(plainIn, end, po, plainOut + room, capacity);
        ASSERT_EQ(fr, pr) << "round " << round;
        ASSERT_EQ(fastIn, plainIn) << "round " << round;
        ASSERT_EQ(fo - fastOut, po - plainOut) << "round " << round;
        ASSERT_TRUE(std::equal(fastOut, fo, plainOut)) << "round " << round;
        ASSERT_EQ(fast.CapacityWasReached(), plain.CapacityWasReached());
        if (fr == kInputUsedUp) break;
      }
    }
  }
}

TEST(UTF8FastPath, LongASCIIRunsEndExactlyWhereTheRoomDoes) {
  // Runs longer than a vector register, stopped by room, by input and by a
  // non-ASCII byte at every offset.
  for (std::size_t at = 0; at < 40; ++at) {
    std::string text(40, 'q');
    text[at] = '\xC3';
    text.insert(at + 1, "\xA9");
    const Decoded expected = Decode8(text, true, 1);
    for (std::size_t room : {2, 3, 16, 17, 18, 33, 1024}) {
      UTF8toWhatever d(true);
      EXPECT_EQ(Decode(d, text, 1 << 20, room), expected) << at << " " << room;
    }
    std::u16string units(40, u'q');
    units[at] = u'\u00E9';
    UTF8fromWhatever plain(true);
    const Encoded expectedBytes = Encode(plain, units, 1);
    for (std::size_t room : {6, 7, 21, 22, 1024}) {
      UTF8fromWhatever e(true);
      EXPECT_EQ(Encode(e, units, 1 << 20, room), expectedBytes) << at << " " << room;
    }
  }
}

}  // namespace
