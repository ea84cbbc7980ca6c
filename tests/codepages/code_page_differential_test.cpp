// Every code page against its mapping data, in both directions, through the
// encodings' own converters.
#include <gtest/gtest.h>

#include <string>

#include "tests/codepages/code_page_data.h"
#include "tests/codepages/converter_test_support.h"
#include "varnice/codepages/mbcs_encoding.h"

namespace {

using codepage_test::Converters;
using codepage_test::Decode;
using codepage_test::Encode;
using codepage_test::LoadPage;
using codepage_test::PageData;

using codepage_test::Page;
using codepage_test::kPages;

std::string Hex(std::string const& bytes) { return codepage_test::Hex(bytes); }

void PrintTo(Page const& page, std::ostream* os) { *os << page.name; }

class CodePageDifferential : public testing::TestWithParam<Page> {};

// Each sequence is followed by a known one: that it still decodes shows the
// converter went back to reading first bytes.
TEST_P(CodePageDifferential, EveryListedSequenceDecodesToItsCodePoint) {
  Page const& page = GetParam();
  PageData data = LoadPage(page.source);
  ASSERT_GT(data.toUnicode.size(), 100u);
  auto const& [next, nextUnit] = *data.toUnicode.begin();
  Converters c(page.factory());
  for (auto const& [bytes, u] : data.toUnicode) {
    c.to->Reset();
    auto d = Decode(*c.to, bytes + next);
    ASSERT_EQ(d.result, kInputUsedUp) << Hex(bytes);
    ASSERT_EQ(d.units, std::u16string({static_cast<char16_t>(u), static_cast<char16_t>(nextUnit)})) << Hex(bytes);
  }
}

TEST_P(CodePageDifferential, UnlistedBytesAndPairsAreInvalid) {
  Page const& page = GetParam();
  PageData data = LoadPage(page.source);
  auto const& [next, nextUnit] = *data.toUnicode.begin();
  Converters c(page.factory());
  // Every prefix (empty, lead byte, EUC-JP 0x8F row) followed by every byte
  // that neither completes a listed code nor extends a prefix.
  std::vector<std::string> starts{""};
  starts.insert(starts.end(), data.prefixes.begin(), data.prefixes.end());
  int invalid = 0;
  for (std::string const& start : starts) {
    for (int b = 0; b < 256; ++b) {
      std::string bytes = start + static_cast<char>(b);
      if (data.toUnicode.count(bytes) || data.prefixes.count(bytes)) continue;
      c.to->Reset();
      auto d = Decode(*c.to, bytes + next);
      ASSERT_EQ(d.result, kNoCharacterDefined) << Hex(bytes);
      ASSERT_EQ(d.consumed, bytes.size()) << "consumed through the invalid byte: " << Hex(bytes);
      ASSERT_TRUE(d.units.empty()) << Hex(bytes);
      d = Decode(*c.to, next);
      ASSERT_EQ(d.result, kInputUsedUp);
      ASSERT_EQ(d.units, std::u16string(1, static_cast<char16_t>(nextUnit))) << "back in state 0: " << Hex(bytes);
      ++invalid;
    }
  }
  RecordProperty("invalid", invalid);
}

TEST_P(CodePageDifferential, RoundTripCodePointsEncodeBackAndNothingElseDoes) {
  Page const& page = GetParam();
  PageData data = LoadPage(page.source);
  auto const& encoding = dynamic_cast<MBCSEncoding const&>(*page.factory());
  Converters c(&encoding);
  for (unsigned u = 0; u <= 0xFFFF; ++u) {
    auto e = Encode(*c.from, std::u16string(1, static_cast<char16_t>(u)), -1, 8);
    auto it = data.roundTrip.find(u);
    // A code equal to the table's missing value cannot be stored: that one
    // character is reported as unmappable, and the substitute byte stands
    // for it.
    bool storable = it != data.roundTrip.end() &&
                    !(it->second.size() == 1 && static_cast<unsigned char>(it->second[0]) == page.missing);
    ASSERT_EQ(e.consumed, 1u);
    if (storable) {
      ASSERT_EQ(e.result, kInputUsedUp) << std::hex << u;
      ASSERT_EQ(e.hex, codepage_test::Hex(it->second)) << std::hex << u;
      unsigned long code = 0;
      for (unsigned char b : it->second) code = code << 8 | b;
      ASSERT_EQ(encoding.FromUnicode(static_cast<unsigned short>(u)), code) << std::hex << u;
    } else {
      ASSERT_EQ(e.result, kNotInTargetRepertoire) << std::hex << u;
      ASSERT_TRUE(e.hex.empty());
      ASSERT_EQ(encoding.FromUnicode(static_cast<unsigned short>(u)), 0xFFFDu) << std::hex << u;
    }
  }
}

// The whole repertoire as one text: the loops run long stretches of mixed
// characters, encoding under a budget and decoding into small blocks.
TEST_P(CodePageDifferential, WholeRepertoireConvertsAsOneText) {
  Page const& page = GetParam();
  PageData data = LoadPage(page.source);
  std::u16string text;
  std::string bytes;
  for (auto const& [u, code] : data.roundTrip) {
    if (code.size() == 1 && static_cast<unsigned char>(code[0]) == page.missing) continue;
    text += static_cast<char16_t>(u);
    bytes += code;
  }
  Converters c(page.factory());
  for (long budget : {-1L, static_cast<long>(bytes.size())}) {
    std::vector<char> encoded(bytes.size() + 4);
    auto const* units = reinterpret_cast<unsigned short const*>(text.data());
    char* o = encoded.data();
    ASSERT_EQ(c.from->Convert(units, units + text.size(), o, encoded.data() + encoded.size(), budget), kInputUsedUp);
    ASSERT_EQ(std::string(encoded.data(), o), bytes) << budget;
  }

  std::u16string decoded;
  char const* in = bytes.data();
  for (;;) {
    unsigned short block[7];
    unsigned short* out = block;
    int r = c.to->Convert(in, bytes.data() + bytes.size(), out, block + 7);
    decoded.append(block, out);
    if (r == kInputUsedUp) break;
    ASSERT_EQ(r, kOutputFull);
  }
  ASSERT_EQ(decoded, text);
}

INSTANTIATE_TEST_SUITE_P(AllPages, CodePageDifferential, testing::ValuesIn(kPages),
                         [](testing::TestParamInfo<Page> const& info) { return std::string(info.param.name); });

}  // namespace
