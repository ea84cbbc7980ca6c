// The C conversion functions convert plain code pages under the plain default
// policy directly; any other behaviour takes the general pipeline. A behaviour
// derived without overrides has the same policy but is not plain, so running
// each call under both shows whether the two routes agree, down to what lies
// after the terminator.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "varnice/capi/data_encoding_table.h"
#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/unicode_lib_behavior.h"

namespace {

using varnice::internal::DataEncodingTable;
using varnice::internal::DataEncodings;

class SamePolicy : public UnicodeLibBehavior {
 public:
  explicit SamePolicy(const UnicodeLibBehavior& b) : UnicodeLibBehavior(b) {}
};

constexpr int kSlack = 4;  // sentinel units past the stated room

struct Outcome {
  int result;
  std::vector<unsigned short> buffer;  // the whole buffer, sentinels included
  bool operator==(const Outcome&) const = default;
};

// Runs convert(dstLen, buffer) once on each route.
template <class Convert>
std::pair<Outcome, Outcome> BothRoutes(int bufferUnits, int dstLen, Convert convert) {
  auto run = [&] {
    std::vector<unsigned short> buffer(static_cast<std::size_t>(bufferUnits), 0xAAAA);
    const int n = convert(dstLen, buffer.data());
    return Outcome{n, buffer};
  };
  const Outcome direct = run();
  SamePolicy general(*UnicodeLibBehavior::GetDefaultBehavior());
  UnicodeLibBehavior* old = UnicodeLibBehavior::SetDefaultBehavior(general);
  const Outcome pipeline = run();
  UnicodeLibBehavior::SetDefaultBehavior(old);
  return {direct, pipeline};
}

// Every room from none to more than enough, and unstated room.
std::vector<int> Rooms(int textLength) {
  std::vector<int> rooms{-1};
  for (int room = 0; room <= textLength + 2; ++room) rooms.push_back(room);
  return rooms;
}

void ExpectToUnicodeAgrees(int number, const std::string& bytes) {
  ASSERT_TRUE(DataEncodings().Direct(number)) << "not a direct code page";
  const int length = static_cast<int>(bytes.size());
  for (int room : Rooms(length)) {
    const auto [direct, general] = BothRoutes(length + 1 + kSlack, room, [&](int dstLen, unsigned short* dst) {
      return VarniceConvertToUnicode(number, bytes.data(), length, dst, dstLen);
    });
    EXPECT_EQ(direct, general) << "encoding " << number << ", room " << room;
  }
}

void ExpectFromUnicodeAgrees(int number, const std::u16string& units) {
  ASSERT_TRUE(DataEncodings().Direct(number)) << "not a direct code page";
  const int length = static_cast<int>(units.size());
  const auto* src = reinterpret_cast<const unsigned short*>(units.data());
  const int most = 3 * length;
  for (int room : Rooms(most)) {
    // Bytes in a buffer of units: each unit's two bytes are compared.
    const auto [direct, general] = BothRoutes(most / 2 + 1 + kSlack, room, [&](int dstLen, unsigned short* dst) {
      return VarniceConvertFromUnicode(number, src, length, reinterpret_cast<char*>(dst), dstLen, 0);
    });
    EXPECT_EQ(direct, general) << "encoding " << number << ", room " << room;
  }
}

class DirectConversion : public testing::Test {
 protected:
  void SetUp() override {
    saved_ = DataEncodings();
    sjis_ = VarniceRegisterEncoding("Shift_JIS");
    eucjp_ = VarniceRegisterEncoding("EUC-JP");
    ebcdic_ = VarniceRegisterEncoding("CCSID-290");  // not ASCII-based: substitute 0x7F
  }
  void TearDown() override {
    UnicodeLibBehavior::GetDefaultBehavior()->SetExternalSubstitute(nullptr);
    UnicodeLibBehavior::GetDefaultBehavior()->ClearForcedDirectMapping();
    DataEncodings() = saved_;
  }

  DataEncodingTable saved_;
  int sjis_ = 0, eucjp_ = 0, ebcdic_ = 0;
};

// Undecodable bytes, a lead byte with a bad trail, a character cut off by the
// end of the text, NULs, and three-byte codes; each room cuts somewhere else.
TEST_F(DirectConversion, ToUnicodeMatchesThePipeline) {
  ExpectToUnicodeAgrees(sjis_, std::string("a\x93\xfa\x80\x81\x20\0\xb1\xa0\x96\x7b\x8c", 12));
  ExpectToUnicodeAgrees(eucjp_, std::string("\x8f\xb0\xa1x\xa4\xa2\x8e\xb1\xff\xa4", 10));
  ExpectToUnicodeAgrees(0, std::string("\xe9t\0\xff", 4));
  ExpectToUnicodeAgrees(ebcdic_, "\x81\x41\xff\x4b");
  // Longer than the pipeline's intermediate buffers.
  std::string longer;
  for (int i = 0; i < 700; ++i) longer += i % 50 == 0 ? "\x80" : i % 3 == 0 ? "\x93\xfa" : "k";
  ExpectToUnicodeAgrees(sjis_, longer);
}

// Unmappable characters (lone and paired surrogates among them), characters
// of one to three bytes ending at every room, and long runs for the fast loop.
TEST_F(DirectConversion, FromUnicodeMatchesThePipeline) {
  const std::u16string mixed = u"ab\u65e5\u0100c\xd800\U0001F600\u672cd\xdc00\u00e9";
  for (int number : {0, sjis_, eucjp_, ebcdic_}) ExpectFromUnicodeAgrees(number, mixed);
  ExpectFromUnicodeAgrees(eucjp_, u"\u4e02\u4e02x\u4e02");  // three-byte codes
  std::u16string longer;
  for (int i = 0; i < 600; ++i) longer += i % 97 == 0 ? u'\u0100' : i % 2 ? u'\u00e9' : u'z';
  ExpectFromUnicodeAgrees(0, longer);
}

// A substitute of several bytes may be cut by the end of the room; the
// forced mapping sends backslash and tilde through as single bytes.
TEST_F(DirectConversion, SubstitutesAndForcedMappingMatchThePipeline) {
  UnicodeLibBehavior::GetDefaultBehavior()->SetExternalSubstitute("<?>");
  ExpectFromUnicodeAgrees(0, u"a\u0100\u0101bc\u0102");
  UnicodeLibBehavior::GetDefaultBehavior()->SetExternalSubstitute("");
  ExpectFromUnicodeAgrees(0, u"a\u0100\u0101bc\u0102");
  UnicodeLibBehavior::GetDefaultBehavior()->SetExternalSubstitute(nullptr);
  UnicodeLibBehavior::GetDefaultBehavior()->SetForcedDirectMapping();
  ExpectFromUnicodeAgrees(sjis_, u"\\\u65e5~\u00a5\u203e\\x");
  ExpectToUnicodeAgrees(sjis_, "\\\x93\xfa~\x5c\x81\x5c");
}

}  // namespace
