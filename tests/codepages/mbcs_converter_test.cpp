// The to- and from-Unicode loops of the table-driven code pages at the edges
// of the block contract.
#include <gtest/gtest.h>

#include "tests/codepages/engine_adapters.h"

namespace {

using namespace codepage_test;

TEST(MBCSConvert, CharacterSplitAcrossBlocks) {
  Decoder d{ShiftJISToUnicodeTable()};
  unsigned short buf[4];
  unsigned short* out = buf;
  char const first[] = "A\x81";
  char const* in = first;
  EXPECT_EQ(d.Convert(in, first + 2, out, buf + 4), 1);
  EXPECT_EQ(out - buf, 1);
  EXPECT_NE(d.state, 0) << "lead byte pending";
  char const second[] = "\x40";
  in = second;
  EXPECT_EQ(d.Convert(in, second + 1, out, buf + 4), 1);
  ASSERT_EQ(out - buf, 2);
  EXPECT_EQ(buf[1], 0x3000);
  EXPECT_EQ(d.state, 0);
}

TEST(MBCSConvert, InvalidByteIsConsumedAndReported) {
  Decoder d{ShiftJISToUnicodeTable()};
  unsigned short buf[4];
  unsigned short* out = buf;
  char const bytes[] = "\x80" "B";
  char const* in = bytes;
  EXPECT_EQ(d.Convert(in, bytes + 2, out, buf + 4), 4);
  EXPECT_EQ(in, bytes + 1);
  EXPECT_EQ(out, buf);
  EXPECT_EQ(d.Convert(in, bytes + 2, out, buf + 4), 1);
  EXPECT_EQ(buf[0], 'B');
  // An unassigned trail byte is consumed with its lead.
  char const pair[] = "\x81\x7F" "C";
  in = pair;
  EXPECT_EQ(d.Convert(in, pair + 3, out, buf + 4), 4);
  EXPECT_EQ(in, pair + 2);
  EXPECT_EQ(d.state, 0);
}

TEST(MBCSConvert, NoOutputRoomConsumesNothing) {
  Decoder d{ShiftJISToUnicodeTable()};
  unsigned short buf[1];
  unsigned short* out = buf + 1;
  char const lead[] = "\x81\x40";
  char const* in = lead;
  EXPECT_EQ(d.Convert(in, lead + 2, out, buf + 1), 2);
  EXPECT_EQ(in, lead) << "a lead byte is not consumed without room either";
  char const* empty = lead;
  EXPECT_EQ(d.Convert(empty, lead, out, buf + 1), 1) << "input used up is checked first";
}

TEST(MBCSConvert, ForcedDirectMappingOnlyBetweenCharacters) {
  UnicodeLibBehavior behavior;
  behavior.SetForcedDirectMapping("\x80");
  Decoder d{ShiftJISToUnicodeTable(), &behavior};
  unsigned short buf[8];
  unsigned short* out = buf;
  char const bytes[] = "\x80\x00\x81\x80";
  char const* in = bytes;
  EXPECT_EQ(d.Convert(in, bytes + 4, out, buf + 8), 1);
  ASSERT_EQ(out - buf, 3);
  EXPECT_EQ(buf[0], 0x0080);
  EXPECT_EQ(buf[1], 0x0000);
  EXPECT_EQ(buf[2], 0x00F7) << "0x81 0x80 is a character, not a pass-through";

  Decoder ignoring{ShiftJISToUnicodeTable(), &behavior, false};
  out = buf;
  in = bytes;
  EXPECT_EQ(ignoring.Convert(in, bytes + 4, out, buf + 8), 4);

  Encoder e(ShiftJISFromUnicodeTable());
  e.behavior = &behavior;
  unsigned short const units[] = {0x0080, 0x0000, 0x3000};
  unsigned short const* u = units;
  char obuf[16];
  char* o = obuf;
  EXPECT_EQ(e.Convert(u, units + 3, o, obuf + 16, -1), 1);
  EXPECT_EQ(Hex(obuf, o), "80 00 81 40");
}

TEST(MBCSConvert, FromUnicodeNeedsFourBytesOfRoom) {
  Encoder e(ISOLatin1FromUnicodeTable());
  unsigned short const units[] = {0x41};
  unsigned short const* in = units;
  char buf[8];
  char* out = buf + 5;
  EXPECT_EQ(e.Convert(in, units + 1, out, buf + 8, -1), 2);
  EXPECT_EQ(in, units);
  out = buf + 4;
  EXPECT_EQ(e.Convert(in, units + 1, out, buf + 8, -1), 1);
  EXPECT_EQ(buf[4], 0x41);
}

TEST(MBCSConvert, UnmappedUnitIsConsumedAndReported) {
  Encoder e(ShiftJISFromUnicodeTable());
  unsigned short const units[] = {0x00E9, 0x3000};
  unsigned short const* in = units;
  char buf[8];
  char* out = buf;
  EXPECT_EQ(e.Convert(in, units + 2, out, buf + 8, -1), 5);
  EXPECT_EQ(in, units + 1);
  EXPECT_EQ(out, buf);
  EXPECT_EQ(e.Convert(in, units + 2, out, buf + 8, -1), 1);
  EXPECT_EQ(Hex(buf, out), "81 40");
}

TEST(MBCSConvert, CapacityRefusesWholeCharacters) {
  Encoder e(EUCPkdFmtJapaneseFromUnicodeTable());
  unsigned short const units[] = {0x0041, 0x4E9C, 0x0042};
  unsigned short const* in = units;
  char buf[16];
  char* out = buf;
  EXPECT_EQ(e.Convert(in, units + 3, out, buf + 16, 2), 7);
  EXPECT_EQ(Hex(buf, out), "41") << "the two-byte code does not fit the one byte left";
  EXPECT_EQ(in, units + 2) << "the refused unit is consumed";
  EXPECT_EQ(e.Convert(in, units + 3, out, buf + 16, 100), 7) << "the flag stays set";
  e.Reset();
  EXPECT_EQ(e.Convert(in, units + 3, out, buf + 16, 100), 1);
  // JIS X 0212 characters take three bytes.
  unsigned short const x0212[] = {0x02D8};
  in = x0212;
  out = buf;
  EXPECT_EQ(e.Convert(in, x0212 + 1, out, buf + 16, -1), 1);
  EXPECT_EQ(Hex(buf, out), "8F A2 AF");
}

}  // namespace
