#include "varnice/unicodeforms/ucs2.h"

#include <gtest/gtest.h>

#include <climits>

#include "tests/unicodeforms/form_test_support.h"
#include "varnice/unicodeforms/byte_order_mark.h"

namespace {

using namespace testing_forms;

std::u16string DecodeUCS2(bool bigEndian, const std::string& bytes, std::size_t piece = 1 << 20) {
  UCS2toWhatever decoder(bigEndian);
  const Decoded run = Decode(decoder, bytes, piece);
  EXPECT_TRUE(run.problems.empty());
  return run.text;
}

TEST(UCS2toWhatever, OnlyALeadingMarkSetsTheOrder) {
  EXPECT_EQ(DecodeUCS2(true, Bytes({0xFF, 0xFE, 0x41, 0x00})), u"A");
  EXPECT_EQ(DecodeUCS2(false, Bytes({0xFE, 0xFF, 0x00, 0x41})), u"A");
  EXPECT_EQ(DecodeUCS2(true, Bytes({0x00, 0x41, 0xFE, 0xFF})), u"A\uFEFF");
  EXPECT_EQ(DecodeUCS2(false, Bytes({0x41, 0x00, 0xFF, 0xFE})), u"A\uFEFF");
  // Surrogates and non-characters are units like any other; an odd last
  // byte is dropped.
  EXPECT_EQ(DecodeUCS2(true, Bytes({0xD8, 0x00, 0xFF, 0xFF, 0x12})), u"\xD800\xFFFF");

  const std::string text = Bytes({0xFF, 0xFE, 0x41, 0x00, 0xE5, 0x65, 0x3D, 0xD8, 0x00, 0xDE});
  const std::u16string whole = DecodeUCS2(true, text);
  EXPECT_EQ(whole, u"A\u65E5\xD83D\xDE00");
  for (std::size_t piece : {1, 3}) EXPECT_EQ(DecodeUCS2(true, text, piece), whole);

  // Reset brings back the initial order and looks for a mark again.
  UCS2toWhatever decoder(true);
  EXPECT_EQ(Decode(decoder, Bytes({0xFF, 0xFE, 0x41, 0x00, 0x42})).text, u"A");
  decoder.Reset();
  EXPECT_EQ(Decode(decoder, Bytes({0x00, 0x43})).text, u"C");
}

TEST(UCS2toWhatever, NeedsRoomForOneUnit) {
  UCS2toWhatever decoder(true);
  const std::string text = Bytes({0x00, 0x41, 0x00, 0x42});
  EXPECT_EQ(DecodeStep(decoder, text, 0), (Step16{kOutputFull, 0, u""}));
  // With one unit of room, the first byte of the next pair is not taken.
  EXPECT_EQ(DecodeStep(decoder, text, 1), (Step16{kOutputFull, 2, u"A"}));
}

TEST(UCS2fromWhatever, ByteOrderRoomAndBudget) {
  UCS2fromWhatever big(true), little(false);
  EXPECT_EQ(Encode(big, u"\u1234\xD800").text, Bytes({0x12, 0x34, 0xD8, 0x00}));
  EXPECT_EQ(Encode(little, u"\u1234\xD800").text, Bytes({0x34, 0x12, 0x00, 0xD8}));

  UCS2fromWhatever encoder(true);
  EXPECT_EQ(EncodeStep(encoder, u"ab", 1), (Step8{kOutputFull, 0, ""}));
  // A budget of 3 takes one unit; the refused unit is not consumed.
  EXPECT_EQ(EncodeStep(encoder, u"ab", 8, 3), (Step8{kCapacityReached, 1, Bytes({0x00, 'a'})}));
  encoder.Reset();
  EXPECT_EQ(EncodeStep(encoder, u"b", 8, 2), (Step8{kInputUsedUp, 1, Bytes({0x00, 'b'})}));
}

std::u16string Run16(BlockConverter_16_to_16& c, const std::u16string& text, std::size_t room = 64) {
  std::u16string result;
  std::vector<unsigned short> buffer(room);
  const unsigned short* in = U(text);
  for (;;) {
    unsigned short* out = buffer.data();
    const int r = c.Convert(in, U(text) + text.size(), out, buffer.data() + room);
    result.append(buffer.data(), out);
    if (r == kInputUsedUp) return result;
  }
}

TEST(ByteOrderMarks, InsertedBeforeTheFirstUnitAndRemovedOnlyThere) {
  BOMinserter inserter;
  EXPECT_EQ(Run16(inserter, u""), u"");
  EXPECT_EQ(Run16(inserter, u"A"), u"\uFEFFA");
  EXPECT_EQ(Run16(inserter, u"B"), u"B");
  inserter.Reset();
  EXPECT_EQ(Run16(inserter, u"CD", 1), u"\uFEFFCD");

  BOMremover remover;
  EXPECT_EQ(Run16(remover, u"\uFEFF\uFEFFA"), u"\uFEFFA");
  remover.Reset();
  EXPECT_EQ(Run16(remover, u"A\uFEFF"), u"A\uFEFF");
}

TEST(UCS2Detector, DecidesOnTheFirstTwoBytes) {
  const ExternalEncoding& ucs2 = *ExternalEncoding::Unicode20ByteStream();
  auto score = [&](const std::string& text) {
    UCS2Detector d(ucs2);
    d.Scan(text.data(), text.data(), text.data() + text.size());
    return d.Score();
  };
  EXPECT_EQ(score(Bytes({0x41, 0x00, 0x42, 0x00})), INT_MIN);
  EXPECT_EQ(score(Bytes({0xFF, 0xFE})), 1);
  EXPECT_EQ(score(Bytes({0xFE, 0xFF, 0x00})), 1);

  // One byte leaves it undecided; a later scan over the whole buffer decides.
  const std::string text = Bytes({0xFE, 0xFF, 0x00, 0x41});
  UCS2Detector d(ucs2);
  d.Scan(text.data(), text.data(), text.data() + 1);
  EXPECT_EQ(d.Score(), INT_MIN);
  d.Scan(text.data(), text.data() + 1, text.data() + 4);
  EXPECT_EQ(d.Score(), 1);
  // Decided once: later bytes change nothing.
  UCS2Detector plain(ucs2);
  const std::string late = Bytes({0x41, 0x00, 0xFF, 0xFE});
  plain.Scan(late.data(), late.data(), late.data() + 2);
  plain.Scan(late.data(), late.data() + 2, late.data() + 4);
  EXPECT_EQ(plain.Score(), INT_MIN);
}

TEST(PlatformByteOrder, MatchesTheHost) {
  EXPECT_EQ(PlatformByteOrder::IsBigEndian(), __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__);
  EXPECT_EQ(PlatformByteOrder::ComputeIsBigEndian(), PlatformByteOrder::IsBigEndian());
}

}  // namespace
