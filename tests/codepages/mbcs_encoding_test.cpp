// The code-page encodings: their registry entries, their converters at the
// edges of the block contract, their detector, and the stream stages built
// from them.
#include "varnice/codepages/mbcs_encoding.h"

#include <gtest/gtest.h>

#include "tests/codepages/code_page_data.h"
#include "tests/codepages/converter_test_support.h"
#include "tests/stream/stream_test_support.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/stream/converting/converting_sources.h"

namespace {

using namespace codepage_test;

TEST(CodePageCatalogue, FactoriesRegisterTheirEntries) {
  for (const Page& e : kPages) {
    SCOPED_TRACE(e.name);
    ExternalEncoding* encoding = e.factory();
    ASSERT_NE(dynamic_cast<MBCSEncoding*>(encoding), nullptr);
    EXPECT_EQ(e.factory(), encoding) << "one object per code page";
    EXPECT_EQ(ExternalEncoding::Lookup(TextEncodingID(e.number)), encoding);
    EXPECT_STREQ(encoding->Name(), e.registeredName);
    EXPECT_STREQ(encoding->MimeName(), e.mime);
    EXPECT_EQ(encoding->CodePage(), e.codePage);
    EXPECT_EQ(encoding->IsBasedOnASCII(), e.ascii);
    EXPECT_EQ(encoding->IsTextModeSafe(), e.ascii);
    // 0x1A is a character of the EBCDIC pages.
    EXPECT_EQ(encoding->SubstituteChar(), e.ascii ? 0x1A : 0x7F);
  }
}

TEST(CodePageCatalogue, NamesAndCodePagesFindTheEncodings) {
  ExternalEncoding* sjis = ExternalEncoding::ShiftJIS();
  EXPECT_EQ(TextEncoding::Lookup("shift jis", 0), sjis);
  EXPECT_EQ(TextEncoding::Lookup("SHIFT_JIS", 1), sjis);
  EXPECT_EQ(TextEncoding::Lookup("MS-Kanji", 0), sjis);
  EXPECT_EQ(TextEncoding::Lookup("Shift_JIS", 2), nullptr);
  // The encodings exist only once their factories ran: make them first, so
  // the result does not hang on which operand is evaluated first.
  ExternalEncoding* cp1252 = ExternalEncoding::CP1252();
  ExternalEncoding* latin9 = ExternalEncoding::ISO_8859_15();
  EXPECT_EQ(ExternalEncoding::LookupCodePage(1252), cp1252);
  EXPECT_EQ(ExternalEncoding::Lookup("ISO/IEC 8859-15"), latin9);
}

TEST(MBCStoUnicode, CharacterSplitAcrossBlocksAndDroppedAtTheEnd) {
  Converters c(ExternalEncoding::ShiftJIS());
  EXPECT_EQ(Decode(*c.to, "A\x81"), (Decoded{kInputUsedUp, u"A", 2})) << "the lead byte waits in the state";
  EXPECT_EQ(Decode(*c.to, "\x40").units, u"\u3000");
  Decode(*c.to, "\x81");
  EXPECT_EQ(Finish(*c.to), (Decoded{kConversionDone, u"", 0})) << "an incomplete character is dropped";
  EXPECT_EQ(Decode(*c.to, "\x40").result, kInputUsedUp) << "and the next text starts afresh";
}

TEST(MBCStoUnicode, InvalidBytesAreConsumedAndReported) {
  Converters c(ExternalEncoding::ShiftJIS());
  EXPECT_EQ(Decode(*c.to, "\x80" "B"), (Decoded{kNoCharacterDefined, u"", 1}));
  EXPECT_EQ(Decode(*c.to, "B").units, u"B");
  // An unassigned trail byte is consumed with its lead.
  EXPECT_EQ(Decode(*c.to, "\x81\x7F" "C"), (Decoded{kNoCharacterDefined, u"", 2}));
  EXPECT_EQ(Decode(*c.to, "C").units, u"C");
}

TEST(MBCStoUnicode, NoOutputRoomConsumesNothing) {
  Converters c(ExternalEncoding::ShiftJIS());
  EXPECT_EQ(Decode(*c.to, "\x81\x40", 0), (Decoded{kOutputFull, u"", 0})) << "not even a lead byte that would write nothing";
  EXPECT_EQ(Decode(*c.to, "", 0).result, kInputUsedUp) << "input used up is checked first";
}

TEST(MBCStoUnicode, ForcedDirectMappingBetweenCharactersOnASCIIPagesOnly) {
  UnicodeLibBehavior behavior;
  behavior.SetForcedDirectMapping("\x80\xC1");
  Converters sjis(ExternalEncoding::ShiftJIS());
  sjis.to->SetBehavior(&behavior);
  // 0x81 0x80 is a character.
  EXPECT_EQ(Decode(*sjis.to, std::string("\x80\x00\x81\x80", 4)), (Decoded{kInputUsedUp, std::u16string(u"\u0080\0\u00F7", 3), 4}));
  // EBCDIC: 0xC1 is the letter A, mapping or not.
  Converters ebcdic(ExternalEncoding::CP870());
  ebcdic.to->SetBehavior(&behavior);
  EXPECT_EQ(Decode(*ebcdic.to, "\xC1").units, u"A");
}

TEST(MBCSfromUnicode, NeedsFourBytesOfRoomAndReportsUnmappedUnits) {
  Converters latin1(ExternalEncoding::ISOLatin1());
  EXPECT_EQ(Encode(*latin1.from, u"A", -1, 3), (Encoded{kOutputFull, "", 0}));
  EXPECT_EQ(Encode(*latin1.from, u"A", -1, 4), (Encoded{kInputUsedUp, "41", 1}));

  Converters c(ExternalEncoding::ShiftJIS());
  EXPECT_EQ(Encode(*c.from, u"\u00E9\u3000"), (Encoded{kNotInTargetRepertoire, "", 1}));
  EXPECT_EQ(Encode(*c.from, u"\u3000").hex, "81 40");
}

// Runs of units a page writes as themselves take a short cut; it must stop
// exactly where a unit needs the table (or has no code), wherever that falls
// in a block of eight, and where the room ends.
TEST(MBCSfromUnicode, IdentityRunsStopAtTheFirstOtherUnit) {
  for (ExternalEncoding* e : {ExternalEncoding::ISOLatin1(), ExternalEncoding::CP1252(), ExternalEncoding::ASCII(),
                              ExternalEncoding::ShiftJIS()}) {
    SCOPED_TRACE(e->Name());
    const auto& page = dynamic_cast<const MBCSEncoding&>(*e);
    Converters c(e);
    std::uint32_t seed = 7;
    for (int trial = 0; trial < 200; ++trial) {
      std::u16string text;
      const char16_t others[] = {u'\u0080', u'\u00E9', u'\u0152', u'\u20AC', u'\u3042'};
      for (int i = 0; i < 40; ++i) {
        seed = seed * 1103515245 + 12345;
        text += (seed >> 16) % 16 == 0 ? others[(seed >> 8) % 5] : static_cast<char16_t>(0x20 + (seed >> 20) % 0x5F);
      }
      // The reference: unit by unit up to the first without a code.
      std::string expected;
      std::size_t consumed = 0;
      for (char16_t u : text) {
        ++consumed;
        const unsigned long code = page.FromUnicode(u);
        if (code == 0xFFFD) break;
        for (int shift = code > 0xFF ? 8 : 0; shift >= 0; shift -= 8) expected += static_cast<char>(code >> shift);
      }
      const std::size_t room = 4 + trial % 40;
      const Encoded got = Encode(*c.from, text, -1, room);
      const Encoded whole = Encode(*c.from, text, -1, 200);
      EXPECT_EQ(whole.hex, codepage_test::Hex(expected));
      EXPECT_EQ(whole.consumed, consumed);
      EXPECT_EQ(whole.hex.substr(0, got.hex.size()), got.hex);
      const std::size_t written = (got.hex.size() + 1) / 3;
      EXPECT_TRUE(written == expected.size() || room - written < 4) << written;  // stopped only for want of room
    }
  }
}

TEST(MBCSfromUnicode, CapacityRefusesWholeCharactersUntilReset) {
  Converters c(ExternalEncoding::EUCPkdFmtJapanese());
  // The two-byte code does not fit the one byte left; the refused unit is consumed.
  EXPECT_EQ(Encode(*c.from, u"A\u4E9CB", 2), (Encoded{kCapacityReached, "41", 2}));
  EXPECT_EQ(Encode(*c.from, u"B", 100).result, kCapacityReached) << "refused from then on";
  EXPECT_TRUE(c.from->CapacityWasReached());
  c.from->Reset();
  EXPECT_EQ(Encode(*c.from, u"B", 100).result, kInputUsedUp);
  // JIS X 0212 characters take three bytes.
  EXPECT_EQ(Encode(*c.from, u"\u02D8", 3).hex, "8F A2 AF");

  // Budgets from none to more than the call could ever write (where the
  // converter stops asking) end on the same whole characters.
  const char* expected[] = {"", "41", "41", "41 B0 A1"};
  for (long budget = 0; budget <= 14; ++budget) {
    Converters fresh(ExternalEncoding::EUCPkdFmtJapanese());
    const Encoded e = Encode(*fresh.from, u"A\u4E9CB", budget);
    EXPECT_EQ(e.result, budget < 4 ? kCapacityReached : kInputUsedUp) << budget;
    EXPECT_EQ(e.hex, budget < 4 ? expected[budget] : "41 B0 A1 42") << budget;
  }
}

TEST(MBCSfromUnicode, ForcedDirectMappingWritesTheByte) {
  UnicodeLibBehavior behavior;
  behavior.SetForcedDirectMapping("\x80");
  Converters c(ExternalEncoding::ShiftJIS());
  c.from->SetBehavior(&behavior);
  EXPECT_EQ(Encode(*c.from, std::u16string(u"\u0080") + u'\0' + u"\u3000").hex, "80 00 81 40");
  EXPECT_EQ(Encode(*c.from, u"\u0080", 0), (Encoded{kCapacityReached, "", 0})) << "a refused pass-through byte stays unread";
}

TEST(MBCSDetector, ErrorsAndUnlikelyCharactersLowerTheScores) {
  // 0x80 is invalid; 0xB1 is halfwidth katakana; 0xF0 0x40 is private use;
  // the final lead byte is a character cut short.
  const std::string text = "A\x80\xB1\xF0\x40\x81\x40\x81";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    Scores s = Detect(ExternalEncoding::ShiftJIS(), text, cut);
    EXPECT_EQ(s.score, -2) << cut;
    EXPECT_EQ(s.tieBreaker, -2) << cut;
  }
  Scores latin1 = Detect(ExternalEncoding::ISOLatin1(), text, 3);
  EXPECT_EQ(latin1.score, 0);
  EXPECT_EQ(latin1.tieBreaker, 0);
}

TEST(MBCSEncoding, StreamStagesConvertWithTheDefaultPolicy) {
  using namespace testing_streams;
  LinearAllocator arena(8192, __FILE__, __LINE__);
  // Split inside a character, with an invalid byte that becomes U+FFFD.
  ChunkSource bytes({"A\x81", "\x40\x80" "B"});
  std::unique_ptr<ExternalEncoding::ToUnicodeSource> source(
      ExternalEncoding::ShiftJIS()->CreateCharSourceToUnicode(bytes, arena));
  EXPECT_EQ(source->ActualInputEncoding(), ExternalEncoding::ShiftJIS());
  EXPECT_EQ(ReadAll(*source), u"A\u3000\uFFFDB");

  // An unrepresentable character becomes the page's substitute byte.
  for (auto [encoding, substitute] : {std::pair{ExternalEncoding::ShiftJIS(), "41 1A"},
                                      std::pair{ExternalEncoding::CP870(), "C1 7F"}}) {
    Collect8 out;
    std::unique_ptr<Char16Sink> sink(encoding->CreateCharSinkFromUnicode(out, arena));
    sink->Put(U(u"A\u263A"));
    EXPECT_EQ(Hex(out.text), substitute);
  }
}

}  // namespace
