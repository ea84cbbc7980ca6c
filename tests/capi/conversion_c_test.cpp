#include <gtest/gtest.h>

#include "tests/fresh_process.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tests/stream/stream_test_support.h"
#include "varnice/capi/data_encoding_table.h"
#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/encodingconverter/encoding_converter.h"

namespace {

using varnice::internal::DataEncodingTable;
using varnice::internal::DataEncodings;

constexpr unsigned short kUnitSentinel = 0xAAAA;
constexpr char kByteSentinel = '#';

// "日本語" and "a" in Shift_JIS, UTF-8 and UTF-16.
const std::string kSjis = "\x93\xfa\x96\x7b\x8c\xea" "a";
const std::string kUtf8 = "\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e" "a";
const std::u16string kUnits = u"\u65e5\u672c\u8a9e" u"a";

const unsigned short* Units(const std::u16string& s) { return reinterpret_cast<const unsigned short*>(s.c_str()); }

std::u16string Text(const std::vector<unsigned short>& buffer, int n) { return {buffer.begin(), buffer.begin() + n}; }

// Each test starts from an empty process-wide table, whatever other tests
// registered before, and leaves the table as it found it.
class CInterface : public testing::Test {
 protected:
  void SetUp() override {
    saved_ = DataEncodings();
    DataEncodings() = DataEncodingTable();
  }
  void TearDown() override { DataEncodings() = saved_; }

  DataEncodingTable saved_;
};

const char* kReadOnlyNames[] = {"CapiReadOnly", nullptr};

// --- Registration -------------------------------------------------------------

TEST_F(CInterface, NamesOfOneEncodingShareANumber) {
  const int first = DataEncodings().NextFreeNumber();
  const int sjis = VarniceRegisterEncoding("Shift_JIS");
  EXPECT_EQ(sjis, first);
  EXPECT_EQ(VarniceRegisterEncoding("MS_Kanji"), sjis);
  EXPECT_EQ(VarniceRegisterEncoding("shift jis"), sjis);
  EXPECT_EQ(VarniceRegisterEncoding("UTF-8"), first + 1);
  EXPECT_EQ(VarniceRegisterEncoding("no such encoding"), 0);
  EXPECT_EQ(VarniceRegisterEncoding(nullptr), 0);
  EXPECT_EQ(DataEncodings().NextFreeNumber(), first + 2);

  EXPECT_STREQ(VarniceEncodingName(sjis), "Shift-JIS");
  for (int unnamed : {0, -1, first + 2, 255, 1000}) EXPECT_STREQ(VarniceEncodingName(unnamed), "") << unnamed;
}

TEST_F(CInterface, NominalLengthIsTheSizeOfASpace) {
  EXPECT_EQ(VarniceEncodingNominalCharLength(0), 1);
  // A byte-order mark comes first and fills the two bytes.
  const std::pair<const char*, std::string> cases[] = {
      {"Latin2", " "}, {"CP870", "\x40"}, {"BMP", std::string("\0 ", 2)}, {"big-endian", "\xFE\xFF"}};
  for (const auto& [name, space] : cases) {
    const int number = VarniceRegisterEncoding(name);
    ASSERT_EQ(VarniceEncodingNominalCharLength(number), static_cast<int>(space.size())) << name;
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(DataEncodings().EncodedSpace(number)), space.size()), space)
        << name;
  }
}

TEST_F(CInterface, The256thEncodingIsRefused) {
  const int sjis = VarniceRegisterEncoding("Shift_JIS");
  DataEncodings().SetNextFreeNumber(255);
  EXPECT_EQ(VarniceRegisterEncoding("Latin2"), 255);
  testing::internal::CaptureStderr();
  EXPECT_EQ(VarniceRegisterEncoding("Latin3"), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Maximum number of data encodings (255) exceeded.\n");
  // Known encodings keep their numbers at the limit.
  EXPECT_EQ(VarniceRegisterEncoding("ISO-8859-2"), 255);
  EXPECT_EQ(VarniceRegisterEncoding("MS_Kanji"), sjis);
  EXPECT_STREQ(VarniceEncodingName(255), "Latin2");
}

int gVersionChecks = 0;
bool IncompatibleVersion() {
  ++gVersionChecks;
  return false;
}

FRESH_PROCESS_TEST(DataEncodingTable, OnlyTheFirstRegistrationChecksTheVersion) {
  DataEncodingTable table(&IncompatibleVersion);
  testing::internal::CaptureStderr();
  EXPECT_EQ(table.Register("Latin1"), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "The installed version of Varnice (the Quillmark Unicode library) is incompatible with the version "
            "assumed by this application.\n");
  // Later calls go ahead although the check failed.
  EXPECT_EQ(table.Register("Latin1"), 1);
  EXPECT_EQ(table.Register("Latin2"), 2);
  EXPECT_EQ(gVersionChecks, 1);
}

TEST_F(CInterface, AnEncodingThatCannotBeWrittenCanStillBeRead) {
  static const auto* readOnly = new testing_streams::ReadOnlyEncoding(127, kReadOnlyNames);
  const int number = VarniceRegisterEncoding(readOnly->Name());
  ASSERT_GT(number, 0);
  EXPECT_EQ(VarniceEncodingNominalCharLength(number), 0);
  std::vector<unsigned short> units(8, kUnitSentinel);
  EXPECT_EQ(VarniceConvertToUnicode(number, "\xc3\xa9", -1, units.data(), 8), 1);
  EXPECT_EQ(units[0], 0xE9);
  char bytes[8];
  EXPECT_THROW(VarniceConvertFromUnicode(number, units.data(), 1, bytes, 8, 0), InvalidOutputEncoding);
  EXPECT_THROW(VarniceCopyDataBetweenEncodings(0, "x", 1, number, bytes, 8, 0), InvalidOutputEncoding);
  // The detecting encodings are such encodings too.
  const int detecting = VarniceRegisterEncoding("auto");
  std::vector<unsigned short> out(16, kUnitSentinel);
  ASSERT_EQ(VarniceConvertToUnicode(detecting, kSjis.c_str(), -1, out.data(), 16), 4);
  EXPECT_EQ(Text(out, 4), kUnits);
  EXPECT_THROW(VarniceConvertFromUnicode(detecting, out.data(), 4, bytes, 8, 0), InvalidOutputEncoding);
}

// --- To Unicode ---------------------------------------------------------------

TEST_F(CInterface, ConvertsToUnicode) {
  const int sjis = VarniceRegisterEncoding("Shift_JIS");
  std::vector<unsigned short> out(16, kUnitSentinel);
  ASSERT_EQ(VarniceConvertToUnicode(sjis, kSjis.c_str(), -1, out.data(), 16), 4);
  EXPECT_EQ(Text(out, 5), kUnits + u'\0');
  // An explicit length passes NULs through; number 0 is ISO-8859-1.
  ASSERT_EQ(VarniceConvertToUnicode(0, "\xe9\0\xff", 3, out.data(), 16), 3);
  EXPECT_EQ(Text(out, 4), std::u16string(u"\u00e9\0\u00ff\0", 4));
  // A lead byte with an impossible trail byte is undecodable.
  const int n = VarniceConvertToUnicode(sjis, "\x81\x20", 2, out.data(), 16);
  EXPECT_EQ(Text(out, n).find(u'\uFFFD'), 0u);
}

TEST_F(CInterface, EmptyInputOrNoRoomConvertsNothing) {
  const int sjis = VarniceRegisterEncoding("Shift_JIS");
  std::vector<unsigned short> out(4, kUnitSentinel);
  EXPECT_EQ(VarniceConvertToUnicode(sjis, "abc", 0, out.data(), 1), 0);
  EXPECT_EQ(out[0], 0);
  out[0] = kUnitSentinel;
  EXPECT_EQ(VarniceConvertToUnicode(sjis, "", -1, out.data(), 4), 0);
  EXPECT_EQ(out[0], 0);
  out[0] = kUnitSentinel;
  EXPECT_EQ(VarniceConvertToUnicode(sjis, "abc", 3, out.data(), 0), 0);
  EXPECT_EQ(VarniceConvertToUnicode(sjis, "", 0, out.data(), 0), 0);
  EXPECT_EQ(out[0], kUnitSentinel);
  // An unregistered number reads as empty input.
  EXPECT_EQ(VarniceConvertToUnicode(200, "abc", 3, out.data(), 4), 0);
  EXPECT_EQ(out[0], 0);
}

TEST_F(CInterface, ToUnicodeKeepsTheTerminatorInsideTheBuffer) {
  std::vector<unsigned short> out(8, kUnitSentinel);
  // Cut: one less than the room, terminated.
  EXPECT_EQ(VarniceConvertToUnicode(0, "abcdefghij", -1, out.data(), 4), 3);
  EXPECT_EQ(Text(out, 5), std::u16string(u"abc\0\uAAAA", 5));
  // An exact fit is cut the same way, rather than terminated past the end.
  out.assign(8, kUnitSentinel);
  EXPECT_EQ(VarniceConvertToUnicode(0, "abcd", -1, out.data(), 4), 3);
  EXPECT_EQ(Text(out, 5), std::u16string(u"abc\0\uAAAA", 5));
  EXPECT_EQ(VarniceConvertToUnicode(0, "abcd", -1, out.data(), 5), 4);
  EXPECT_EQ(Text(out, 5), std::u16string(u"abcd\0", 5));
  EXPECT_EQ(VarniceConvertToUnicode(0, "abcd", -1, out.data(), 1), 0);
  EXPECT_EQ(out[0], 0);
}

TEST_F(CInterface, NegativeRoomWritesEverything) {
  // Longer than the converter's buffer, so it arrives in several pieces.
  std::string latin(1500, '\0');
  for (std::size_t i = 0; i < latin.size(); ++i) latin[i] = static_cast<char>(0xA0 + i % 0x60);
  std::vector<unsigned short> out(1600, kUnitSentinel);
  ASSERT_EQ(VarniceConvertToUnicode(0, latin.c_str(), -1, out.data(), -1), 1500);
  EXPECT_EQ(out[1500], 0);
  EXPECT_EQ(out[1501], kUnitSentinel);
  for (std::size_t i = 0; i < latin.size(); ++i) ASSERT_EQ(out[i], static_cast<unsigned char>(latin[i])) << i;
}

// --- From Unicode -------------------------------------------------------------

TEST_F(CInterface, ConvertsFromUnicode) {
  const int sjis = VarniceRegisterEncoding("Shift_JIS");
  char out[16];
  for (int pad : {0, 1}) {
    ASSERT_EQ(VarniceConvertFromUnicode(sjis, Units(kUnits), -1, out, 16, pad), 7) << pad;
    EXPECT_EQ(std::string(out, 7), kSjis);
  }
  // A character ISO-8859-1 lacks becomes the substitute byte.
  EXPECT_EQ(VarniceConvertFromUnicode(0, Units(u"a\u0100b"), 3, out, 16, 0), 3);
  EXPECT_EQ(std::string(out, 3), "a\x1a" "b");
}

TEST_F(CInterface, FromUnicodeNeverWritesPastTheRoom) {
  const int sjis = VarniceRegisterEncoding("Shift_JIS");
  char out[16];
  std::fill(out, out + 16, kByteSentinel);
  EXPECT_EQ(VarniceConvertFromUnicode(sjis, Units(kUnits), 0, out, 16, 1), 0);
  EXPECT_EQ(VarniceConvertFromUnicode(sjis, Units(u""), -1, out, 16, 1), 0);
  EXPECT_EQ(VarniceConvertFromUnicode(sjis, Units(kUnits), -1, out, 0, 0), 0);
  EXPECT_EQ(out[0], kByteSentinel);
  // No half of a two-byte character is written.
  EXPECT_EQ(VarniceConvertFromUnicode(sjis, Units(kUnits), -1, out, 3, 1), 2);
  EXPECT_EQ(std::string(out, 2), kSjis.substr(0, 2));
  EXPECT_EQ(out[3], kByteSentinel);
}

// --- Between encodings --------------------------------------------------------

TEST_F(CInterface, CopiesBetweenEncodings) {
  const int sjis = VarniceRegisterEncoding("Shift_JIS");
  const int utf8 = VarniceRegisterEncoding("UTF-8");
  char out[32];
  // srcLen 0 reads up to the NUL.
  ASSERT_EQ(VarniceCopyDataBetweenEncodings(sjis, kSjis.c_str(), 0, utf8, out, 32, 0), 10);
  EXPECT_EQ(std::string(out, 10), kUtf8);
  ASSERT_EQ(VarniceCopyDataBetweenEncodings(utf8, kUtf8.c_str(), 6, sjis, out, 32, 1), 4);
  EXPECT_EQ(std::string(out, 4), kSjis.substr(0, 4));
  ASSERT_EQ(VarniceCopyDataBetweenEncodings(0, "\xe9t\xe9", 3, utf8, out, 32, 0), 5);
  EXPECT_EQ(std::string(out, 5), "\xc3\xa9t\xc3\xa9");
}

TEST_F(CInterface, CopyOfAnEmptyFirstByteOrIntoNoRoom) {
  const int utf8 = VarniceRegisterEncoding("UTF-8");
  char out[8];
  std::fill(out, out + 8, kByteSentinel);
  EXPECT_EQ(VarniceCopyDataBetweenEncodings(0, "\0abc", 4, utf8, out, 8, 0), 0);
  EXPECT_EQ(out[0], '\0');
  EXPECT_EQ(out[1], kByteSentinel);
  out[0] = kByteSentinel;
  EXPECT_EQ(VarniceCopyDataBetweenEncodings(0, "", 0, utf8, out, 0, 0), 0);
  EXPECT_EQ(VarniceCopyDataBetweenEncodings(0, "abc", 3, utf8, out, 0, 0), 0);
  EXPECT_EQ(out[0], kByteSentinel);
  // é takes two bytes in UTF-8: only whole characters fit in three.
  EXPECT_EQ(VarniceCopyDataBetweenEncodings(0, "\xe9\xe9\xe9", 3, utf8, out, 3, 0), 2);
  EXPECT_EQ(out[3], kByteSentinel);
}

}  // namespace
