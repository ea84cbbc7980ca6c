// The printer framing over a multi-byte code page: two bytes per character.
#include <gtest/gtest.h>

#include <string>

#include "tests/codepages/engine_adapters.h"

namespace {

using namespace codepage_test;

std::u16string Read(std::string const& bytes, UnicodeLibBehavior& behavior, int* result = nullptr) {
  unsigned short buf[16];
  unsigned short* out = buf;
  unsigned short state = 0;
  bool parity = false;
  auto const* in = reinterpret_cast<unsigned char const*>(bytes.data());
  int r = DecodePrinterPairs(ShiftJISToUnicodeTable().Actions(), state, parity, PassThrough(true, behavior), in,
                             in + bytes.size(), out, buf + 16);
  if (result) *result = r;
  return std::u16string(buf, out);
}

std::string Write(std::u16string const& text, UnicodeLibBehavior& behavior, long capacity = -1, int* result = nullptr) {
  FromUnicodeFinder finder(ShiftJISFromUnicodeTable());
  bool flag = false;
  auto const* in = reinterpret_cast<unsigned short const*>(text.data());
  char buf[32];
  char* out = buf;
  int r = finder.With([&](auto const& find) {
    return EncodePrinterPairs(find, PassThrough(true, behavior), in, in + text.size(), out, buf + 32,
                              [&](long n) { return Reached(flag, n, 0, capacity); });
  });
  if (result) *result = r;
  return Hex(buf, out);
}

TEST(PrinterPairs, ZeroHighByteIsStrippedOnlyInFirstPosition) {
  UnicodeLibBehavior plain;
  EXPECT_EQ(Read(std::string("\x00\x41\x81\x40\x00\x00", 6), plain), std::u16string(u"A\u3000") + u'\0');
  int r = 0;
  EXPECT_EQ(Read(std::string("\x00\x80", 2), plain, &r), u"");
  EXPECT_EQ(r, 4);
}

TEST(PrinterPairs, EveryCodeInAtLeastTwoBytes) {
  UnicodeLibBehavior plain;
  EXPECT_EQ(Write(u"A\u3000\uFF71", plain), "00 41 81 40 00 B1");
  int r = 0;
  EXPECT_EQ(Write(u"A\u3000", plain, 3, &r), "00 41");
  EXPECT_EQ(r, 7);
  EXPECT_EQ(Write(u"\u00E9", plain, -1, &r), "");
  EXPECT_EQ(r, 5);
}

TEST(PrinterPairs, ForcedDirectMappingWritesSingleBytes) {
  UnicodeLibBehavior forced;
  forced.SetForcedDirectMapping("A");
  EXPECT_EQ(Write(u"AB", forced), "41 00 42");
  UnicodeLibBehavior high;
  high.SetForcedDirectMapping("\x80");
  EXPECT_EQ(Read(std::string("\x00\x80\x81\x80", 4), high), u"\u0080\u00F7") << "only between characters";
}

}  // namespace
