// ISO-2022-JP: reading and writing through ISO2022JPEncoding's converters,
// its detector, and the stream stages built from it.
#include "varnice/codepages/iso2022_encoding.h"

#include <gtest/gtest.h>

#include "tests/codepages/converter_test_support.h"
#include "tests/stream/stream_test_support.h"
#include "varnice/encoding/unicode_lib_behavior.h"

namespace {

using namespace codepage_test;

ISO2022toUnicode& Reader(Converters& c) { return dynamic_cast<ISO2022toUnicode&>(*c.to); }
ISO2022fromUnicode& Writer(Converters& c) { return dynamic_cast<ISO2022fromUnicode&>(*c.from); }

TEST(ISO2022JPEncoding, RegistryEntryAndSubencodings) {
  ExternalEncoding* jp = ExternalEncoding::ISO2022JP();
  EXPECT_EQ(ExternalEncoding::Lookup(TextEncodingID(14)), jp);
  EXPECT_EQ(ExternalEncoding::Lookup("csISO2022JP"), jp);
  EXPECT_TRUE(jp->IsTextModeSafe());
  EXPECT_EQ(jp->SubstituteChar(), 0x1A);
  auto& generic = dynamic_cast<GenericISO2022Encoding&>(*jp);
  ASSERT_EQ(generic.CountSubencodings(), 4);
  const ISO2022Subencoding* list = generic.GetSubencodings();
  const ExternalEncoding* expected[] = {ExternalEncoding::ASCII(), ExternalEncoding::HalfWidthKatakana(),
                                        ExternalEncoding::ISO87JISX0208(), ExternalEncoding::ISO87JISX0208(), nullptr};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(list[i].encoding, expected[i]) << i;
  EXPECT_EQ(list[4].escape, nullptr);
}

TEST(ISO2022toUnicode, EscapesSelectSubencodings) {
  Converters c(ExternalEncoding::ISO2022JP());
  EXPECT_EQ(Decode(*c.to, "\x1B$B\x30\x21\x1B(BA"), (Decoded{kInputUsedUp, u"\u4E9CA", 9}));
  EXPECT_EQ(Reader(c).CurrentSubencoding(), 0);
  // The old JIS X 0208 escape reads the same table; JIS X 0201 Roman has the
  // yen sign where ASCII has the backslash.
  EXPECT_EQ(Decode(*c.to, "\x1B$@\x30\x21\x1B(J\x5C").units, u"\u4E9C\u00A5");
  c.to->Reset();
  EXPECT_EQ(Decode(*c.to, "\x5C").units, u"\\") << "Reset returns to ASCII";
}

TEST(ISO2022toUnicode, EscapeAndCharacterSplitAcrossBlocks) {
  Converters c(ExternalEncoding::ISO2022JP());
  EXPECT_EQ(Decode(*c.to, "A\x1B$"), (Decoded{kInputUsedUp, u"A", 3})) << "the partial escape waits";
  EXPECT_EQ(Decode(*c.to, "B\x30").units, u"");
  EXPECT_EQ(Reader(c).CurrentSubencoding(), 3);
  EXPECT_EQ(Decode(*c.to, "\x21").units, u"\u4E9C");
}

TEST(ISO2022toUnicode, UnknownOrIncompleteEscapeIsAnEscapeCharacter) {
  Converters c(ExternalEncoding::ISO2022JP());
  EXPECT_EQ(Decode(*c.to, "\x1B(IA").units, u"\x1B(IA");
  EXPECT_EQ(Decode(*c.to, "\x1B").units, u"");
  EXPECT_EQ(Finish(*c.to), (Decoded{kConversionDone, u"\x1B", 0}));
}

TEST(ISO2022toUnicode, HeldBytesConvertOnTheNextCallWithoutNewInput) {
  Converters c(ExternalEncoding::ISO2022JP());
  // 0x30 0x7F has no character in JIS X 0208; all of the block is taken in.
  EXPECT_EQ(Decode(*c.to, "\x1B$B\x30\x7F\x30\x21"), (Decoded{kNoCharacterDefined, u"", 7}));
  EXPECT_EQ(Decode(*c.to, ""), (Decoded{kInputUsedUp, u"\u4E9C", 0}));
  // Output full: the rest comes with the next call.
  c.to->Reset();
  EXPECT_EQ(Decode(*c.to, "ABC", 1), (Decoded{kOutputFull, u"A", 3}));
  EXPECT_EQ(Decode(*c.to, "").units, u"BC");
}

TEST(ISO2022fromUnicode, RomanForYenAndBackAtTheEnd) {
  Converters c(ExternalEncoding::ISO2022JP());
  EXPECT_EQ(Encode(*c.from, u"A\u00A5B"), (Encoded{kInputUsedUp, "41 1B 28 4A 5C 42", 3}));
  EXPECT_EQ(Finish(*c.from), (Encoded{kConversionDone, "1B 28 42", 0}));
  EXPECT_EQ(Finish(*c.from), (Encoded{kConversionDone, "", 0})) << "nothing more once back in ASCII";
}

TEST(ISO2022fromUnicode, BackslashLeavesRoman) {
  Converters c(ExternalEncoding::ISO2022JP());
  EXPECT_EQ(Encode(*c.from, u"\u00A5\\\u4E9C").hex, "1B 28 4A 5C 1B 28 42 5C 1B 24 42 30 21");
  EXPECT_EQ(Writer(c).CurrentSubencoding(), 3);
}

TEST(ISO2022fromUnicode, NoRoomWritesNoEscape) {
  Converters c(ExternalEncoding::ISO2022JP());
  EXPECT_EQ(Encode(*c.from, u"\u4E9C", -1, 2), (Encoded{kOutputFull, "", 0}));
  EXPECT_EQ(Writer(c).CurrentSubencoding(), 0);
  // Finish never writes past the room it is given.
  Encode(*c.from, u"\u4E9C");
  EXPECT_EQ(Finish(*c.from, 2), (Encoded{kOutputFull, "", 0}));
}

TEST(ISO2022fromUnicode, CapacityKeepsRoomForTheFinalEscape) {
  Converters c(ExternalEncoding::ISO2022JP());
  // Escape (3) + kept for the way back (3) + the kanji (2) = 8.
  EXPECT_EQ(Encode(*c.from, u"\u4E9C", 7), (Encoded{kCapacityReached, "1B 24 42", 1})) << "the escape fits, the kanji does not";
  EXPECT_TRUE(c.from->CapacityWasReached());
  EXPECT_EQ(Encode(*c.from, u"A", 100).result, kCapacityReached) << "refused until Reset";
  c.from->Reset();
  EXPECT_EQ(Writer(c).CurrentSubencoding(), 0);
  EXPECT_EQ(Encode(*c.from, u"\u4E9C", 8), (Encoded{kInputUsedUp, "1B 24 42 30 21", 1}));
}

TEST(ISO2022fromUnicode, UnmappableCharacterPassesUp) {
  Converters c(ExternalEncoding::ISO2022JP());
  // e-acute is chosen for JIS X 0208, which lacks it.
  EXPECT_EQ(Encode(*c.from, u"\u00E9A"), (Encoded{kNotInTargetRepertoire, "1B 24 42", 1}));
}

TEST(ISO2022JPDetector, CountsSwitchingEscapesOncePenalisesHighBytes) {
  const std::string text = "ab\x1B$B\x30\x21\x1B(B\x1B(J\x80";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    const Scores s = Detect(ExternalEncoding::ISO2022JP(), text, cut);
    EXPECT_EQ(s.score, 2 - 1) << cut;
    EXPECT_EQ(s.tieBreaker, 0);
  }
}

TEST(ISO2022JPEncoding, StreamStagesRoundTripAndShareTheBehaviour) {
  using namespace testing_streams;
  const std::string bytes = EncodeStream(*ExternalEncoding::ISO2022JP(), {u"A\u4E9C", u"\u00A5B"});
  EXPECT_EQ(Hex(bytes), "41 1B 24 42 30 21 1B 28 4A 5C 42 1B 28 42");

  // Read back in blocks that split both escapes; the behaviour given to the
  // stage reaches the subencodings' converters (0x80 passes through ASCII).
  UnicodeLibBehavior passThrough;
  passThrough.SetForcedDirectMapping("\x80");
  const std::string all = bytes + "\x80";
  ChunkSource pieces({all.substr(0, 2), all.substr(2, 9), all.substr(11)});
  LinearAllocator arena(16384, __FILE__, __LINE__);
  std::unique_ptr<ExternalEncoding::ToUnicodeSource> decoded(
      ExternalEncoding::ISO2022JP()->CreateCharSourceToUnicode(pieces, arena));
  decoded->SetBehavior(&passThrough);
  EXPECT_EQ(ReadAll(*decoded), u"A\u4E9C\u00A5B\u0080");

  // A sink ends the text in ASCII only when flushed.
  Collect8 sunk;
  std::unique_ptr<Char16Sink> encode(ExternalEncoding::ISO2022JP()->CreateCharSinkFromUnicode(sunk, arena));
  encode->Put(U(u"A\u4E9C"));
  EXPECT_EQ(Hex(sunk.text), "41 1B 24 42 30 21");
  encode->Flush();
  EXPECT_EQ(Hex(sunk.text), "41 1B 24 42 30 21 1B 28 42");
}

// Bytes with the high bit set are never ISO-2022-JP; each one becomes U+FFFD
// and the text after it is read on, however the input is split into blocks
// and whether it is pulled through a source or pushed through a sink.
TEST(ISO2022JPEncoding, InvalidBytesLoseNothingAfterThemAtAnySplit) {
  using namespace testing_streams;
  const ExternalEncoding& jp = *ExternalEncoding::ISO2022JP();
  auto viaSource = [&](std::vector<std::string> chunks) { return DecodeStream(jp, std::move(chunks)); };
  auto viaSink = [&](const std::vector<std::string>& chunks) {
    LinearAllocator arena(16384, __FILE__, __LINE__);
    Collect16 units;
    std::unique_ptr<CharSink> decode(jp.CreateCharSinkToUnicode(units, arena));
    for (const std::string& chunk : chunks) decode->PutBuffer(chunk.data(), chunk.data() + chunk.size());
    decode->Flush();
    return units.text;
  };

  EXPECT_EQ(viaSource({"\x80\x80" "ABC"}), u"\uFFFD\uFFFDABC");
  EXPECT_EQ(viaSource({"x\xFF\xFE" "hello world"}), u"x\uFFFD\uFFFDhello world");

  std::string text;
  std::u16string expected;
  for (int i = 0; i < 60; ++i) {
    text += "line \x80\x81\x1B$B\x30\x21\x1B(B ok\xFE\n";
    expected += u"line \uFFFD\uFFFD\u4E9C ok\uFFFD\n";
  }
  ASSERT_GT(text.size(), 1024u) << "longer than the reader's own buffer";
  EXPECT_EQ(viaSource({text}), expected);
  EXPECT_EQ(viaSink({text}), expected);
  for (std::size_t cut = 1; cut < text.size(); ++cut) {
    const std::vector<std::string> halves{text.substr(0, cut), text.substr(cut)};
    ASSERT_EQ(viaSource(halves), expected) << "source split at " << cut;
    ASSERT_EQ(viaSink(halves), expected) << "sink split at " << cut;
  }
}

}  // namespace
