// Every code page against its mapping data, in both directions.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/codepages/code_page_data.h"
#include "varnice/codepages/generated/code_page_tables.h"
#include "varnice/codepages/mbcs_engine.h"

namespace {

using namespace varnice::internal;
using codepage_test::LoadPage;
using codepage_test::PageData;

struct Page {
  const char* name;
  const char* source;
  MBCStoUnicodeTable const& (*to)();
  LookupUnsignedLongTable<unsigned short> const& (*from)();
  // The from-Unicode table's missing value: plane and gap tables cannot hold
  // a code equal to it. -1 for delta tables, which hold every code.
  int missing;
};

#define PAGE(name, source, missing) \
  Page { #name, source, &name##ToUnicodeTable, &name##FromUnicodeTable, missing }

const Page kPages[] = {
    PAGE(ASCII, "windows-20127-2000.ucm", -1),
    PAGE(CP1252, "windows-1252-2000.ucm", 26),
    PAGE(EUCPkdFmtJapanese, "glibc-EUC_JP-2.1.2.ucm", 26),
    PAGE(HalfWidthKatakana, "jisx0201", 26),
    PAGE(ISO87JISX0208, "jisx0208", 26),
    PAGE(ISOLatin1, "windows-28591-2000.ucm", -1),
    PAGE(ISOLatin2, "windows-28592-2000.ucm", 26),
    PAGE(ISOLatin3, "windows-28593-2000.ucm", 26),
    PAGE(ISOLatin5, "windows-28599-2000.ucm", -1),
    PAGE(PC850Multilingual, "windows-850-2000.ucm", 26),
    PAGE(PC8CodePage437, "windows-437-2000.ucm", 26),
    PAGE(ShiftJIS, "sjis", 26),
    PAGE(CP932, "windows-932-2000.ucm", 26),
    PAGE(CP852, "windows-852-2000.ucm", 26),
    PAGE(CP857, "windows-857-2000.ucm", 26),
    PAGE(CP860, "windows-860-2000.ucm", 26),
    PAGE(CP863, "windows-863-2000.ucm", 26),
    PAGE(CP870, "windows-870-2000.ucm", 63),
    PAGE(CP1250, "windows-1250-2000.ucm", 26),
    PAGE(CP1254, "windows-1254-2000.ucm", 26),
    PAGE(CP20105, "windows-20105-2000.ucm", -1),
    PAGE(CP20290, "windows-20290-2000.ucm", 63),
    PAGE(CP21027, "windows-21027-2000.ucm", 26),
    PAGE(CP28599, "windows-28599-2000.ucm", -1),
    PAGE(ISO_8859_15, "windows-28605-2000.ucm", -1),
    PAGE(CCSID290, "ibm-290_P100-1995.ucm", 63),
    PAGE(CCSID942, "ibm-942_P12A-1999.ucm", 26),
    PAGE(CCSID1027, "ibm-1027_P100-1995.ucm", 63),
};

// One conversion of a whole buffer from a fresh converter.
int Decode(Page const& page, std::string const& bytes, std::u16string& units, bool& ended) {
  std::vector<unsigned short> buf(bytes.size() + 1);
  unsigned short state = 0;
  auto* in = reinterpret_cast<unsigned char const*>(bytes.data());
  auto* inEnd = in + bytes.size();
  unsigned short* out = buf.data();
  int r = DecodeMBCS(page.to().Actions(), state, PassThrough(false, *UnicodeLibBehavior::GetDefaultBehavior()),
                     in, inEnd, out, buf.data() + buf.size());
  units.assign(buf.data(), out);
  ended = in == inEnd && state == 0;
  return r;
}

int Encode(Page const& page, unsigned short unit, std::string& bytes) {
  char buf[8];
  unsigned short const* in = &unit;
  char* out = buf;
  auto find = [&](unsigned short u, unsigned long& code) { return page.from().LookupUnsignedLong(u, code); };
  int r = EncodeMBCS(find, PassThrough(false, *UnicodeLibBehavior::GetDefaultBehavior()), in, in + 1, out,
                     buf + sizeof buf, true, [](long) { return false; });
  bytes.assign(buf, out);
  return r;
}

std::string Hex(std::string const& bytes) {
  std::string s;
  char b[4];
  for (unsigned char c : bytes) {
    std::snprintf(b, sizeof b, "%02X", c);
    s += b;
  }
  return s;
}

void PrintTo(Page const& page, std::ostream* os) { *os << page.name; }

class CodePageDifferential : public testing::TestWithParam<Page> {};

TEST_P(CodePageDifferential, EveryListedSequenceDecodesToItsCodePoint) {
  Page const& page = GetParam();
  PageData data = LoadPage(page.source);
  ASSERT_GT(data.toUnicode.size(), 100u);
  for (auto const& [bytes, u] : data.toUnicode) {
    std::u16string units;
    bool ended;
    ASSERT_EQ(Decode(page, bytes, units, ended), 1) << Hex(bytes);
    ASSERT_TRUE(ended) << Hex(bytes);
    ASSERT_EQ(units, std::u16string(1, static_cast<char16_t>(u))) << Hex(bytes);
  }
}

TEST_P(CodePageDifferential, UnlistedBytesAndPairsAreInvalid) {
  Page const& page = GetParam();
  PageData data = LoadPage(page.source);
  // Every prefix (empty, lead byte, EUC-JP 0x8F row) followed by every byte
  // that neither completes a listed code nor extends a prefix.
  std::vector<std::string> starts{""};
  starts.insert(starts.end(), data.prefixes.begin(), data.prefixes.end());
  int invalid = 0;
  for (std::string const& start : starts) {
    for (int b = 0; b < 256; ++b) {
      std::string bytes = start + static_cast<char>(b);
      if (data.toUnicode.count(bytes) || data.prefixes.count(bytes)) continue;
      std::u16string units;
      bool ended;
      ASSERT_EQ(Decode(page, bytes, units, ended), 4) << Hex(bytes);
      ASSERT_TRUE(ended) << "byte consumed, back in state 0: " << Hex(bytes);
      ASSERT_TRUE(units.empty()) << Hex(bytes);
      ++invalid;
    }
  }
  RecordProperty("invalid", invalid);
}

TEST_P(CodePageDifferential, RoundTripCodePointsEncodeBackAndNothingElseDoes) {
  Page const& page = GetParam();
  PageData data = LoadPage(page.source);
  for (unsigned u = 0; u <= 0xFFFF; ++u) {
    std::string bytes;
    int r = Encode(page, static_cast<unsigned short>(u), bytes);
    auto it = data.roundTrip.find(u);
    // A code equal to the table's missing value cannot be stored: that one
    // character is reported as unmappable, and the substitute byte stands
    // for it.
    bool storable = it != data.roundTrip.end() &&
                    !(it->second.size() == 1 && static_cast<unsigned char>(it->second[0]) == page.missing);
    if (storable) {
      ASSERT_EQ(r, 1) << std::hex << u;
      ASSERT_EQ(Hex(bytes), Hex(it->second)) << std::hex << u;
    } else {
      ASSERT_EQ(r, 5) << std::hex << u;
      ASSERT_TRUE(bytes.empty());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllPages, CodePageDifferential, testing::ValuesIn(kPages),
                         [](testing::TestParamInfo<Page> const& info) { return std::string(info.param.name); });

}  // namespace
