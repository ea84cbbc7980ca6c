// The C conversion functions convert code pages, ISO-2022-JP and UTF-8 under
// the plain default policy directly; any other behaviour takes the general
// pipeline. A behaviour derived without overrides has the same policy but is
// not plain, so running each call under both shows whether the two routes
// agree, down to what lies after the terminator: on random text with broken
// bytes and unmappable characters, at every room from none to enough.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "varnice/capi/data_encoding_table.h"
#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/unicode_lib_behavior.h"

namespace {

using varnice::internal::DataEncodingTable;
using varnice::internal::DataEncodings;

class SamePolicy : public UnicodeLibBehavior {
 public:
  explicit SamePolicy(const UnicodeLibBehavior& b) : UnicodeLibBehavior(b) {}
};

// A policy of its own: every problem is logged, bytes become "<?" through
// the converter (inserted input) and a unit, units become two characters.
class LoggingPolicy : public UnicodeLibBehavior {
 public:
  void HandleIllegalByteRange(IllegalByteRange& p) override { Log('I', p); }
  void HandleNoCharacterDefinedForCodepoint(NoCharacterDefinedForCodepoint& p) override { Log('N', p); }
  void HandleCharacterNotInRepertoire(CharacterNotInRepertoire& p) override {
    log += 'R' + std::to_string(p.inputStop - p.inputBegin) + ' ';
    static const unsigned short kReplacement[] = {'!', 0xE9, 0};
    p.InsertInput(kReplacement, nullptr);
    p.InsertOutput("#", nullptr);
  }
  std::string log;

 private:
  void Log(char kind, ExternalToInternalConversionProblem& p) {
    log += kind + std::to_string(p.inputStop != nullptr ? p.inputStop - p.inputBegin : -1) + ' ';
    static const unsigned short kMark = 0x2020;
    p.InsertOutput(&kMark, &kMark + 1);
    p.InsertInput("<?", nullptr);
  }
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

// Every room from none to more than enough, and unstated room; for long
// texts a sample of them.
std::vector<int> Rooms(int most, std::mt19937& rng) {
  std::vector<int> rooms{-1};
  for (int room = 0; room <= most + 2; ++room) {
    if (most < 200 || room < 40 || room > most - 40 || rng() % 50 == 0) rooms.push_back(room);
  }
  return rooms;
}

void ExpectToUnicodeAgrees(int number, const std::string& bytes, std::mt19937& rng) {
  ASSERT_TRUE(DataEncodings().Direct(number)) << "not served directly";
  const int length = static_cast<int>(bytes.size());
  for (int room : Rooms(length, rng)) {
    const auto [direct, general] = BothRoutes(length + 1 + kSlack, room, [&](int dstLen, unsigned short* dst) {
      return VarniceConvertToUnicode(number, bytes.data(), length, dst, dstLen);
    });
    ASSERT_EQ(direct, general) << "encoding " << number << ", room " << room;
  }
}

void ExpectFromUnicodeAgrees(int number, const std::u16string& units, std::mt19937& rng) {
  ASSERT_TRUE(DataEncodings().Direct(number)) << "not served directly";
  const int length = static_cast<int>(units.size());
  const auto* src = reinterpret_cast<const unsigned short*>(units.data());
  const int most = 5 * length + 8;
  for (int room : Rooms(most, rng)) {
    // Bytes in a buffer of units: each unit's two bytes are compared.
    const auto [direct, general] = BothRoutes(most / 2 + 1 + kSlack, room, [&](int dstLen, unsigned short* dst) {
      return VarniceConvertFromUnicode(number, src, length, reinterpret_cast<char*>(dst), dstLen, 0);
    });
    ASSERT_EQ(direct, general) << "encoding " << number << ", room " << room;
  }
}

// Text that meets every branch: ASCII runs (with backslash and tilde for the
// forced mapping), kana and kanji, Latin letters, units no Japanese page has,
// paired and lone surrogates, NUL and ESC.
std::u16string RandomText(std::mt19937& rng, std::size_t n) {
  static const char16_t kOdd[] = {0x00, 0x1B, 0x1A, 0x5C, 0x7E, 0x7F, 0x80, 0xA5, 0xE9, 0x100, 0x203E, 0x2015,
                                  0xD800, 0xDC00, 0xFFFD, 0xFF61, 0xE000, 0xFFFF};
  std::u16string s;
  while (s.size() < n) {
    switch (rng() % 6) {
      case 0:
      case 1:
        for (unsigned k = 1 + rng() % 20; k > 0; --k) s += static_cast<char16_t>(0x20 + rng() % 0x5F);
        break;
      case 2:
        for (unsigned k = 1 + rng() % 10; k > 0; --k) s += static_cast<char16_t>(0x3041 + rng() % 0x5E);
        break;
      case 3:
        for (unsigned k = 1 + rng() % 10; k > 0; --k) s += static_cast<char16_t>(0x4E00 + rng() % 0x400);
        break;
      case 4:
        s += u"\U0001F600";
        break;
      default:
        s += kOdd[rng() % std::size(kOdd)];
    }
  }
  return s;
}

// The text in the encoding (through the general route), with bytes spoiled
// and now and then a cut at the end.
std::string RandomBytes(std::mt19937& rng, int number, const std::u16string& text) {
  std::string bytes(text.size() * 8 + 8, '\0');
  SamePolicy general(*UnicodeLibBehavior::GetDefaultBehavior());
  UnicodeLibBehavior* old = UnicodeLibBehavior::SetDefaultBehavior(general);
  const int n = VarniceConvertFromUnicode(number, reinterpret_cast<const unsigned short*>(text.data()),
                                          static_cast<int>(text.size()), bytes.data(),
                                          static_cast<int>(bytes.size()), 0);
  UnicodeLibBehavior::SetDefaultBehavior(old);
  bytes.resize(static_cast<std::size_t>(n));
  for (unsigned k = rng() % 4; k > 0 && !bytes.empty(); --k) {
    const char kBad[] = {'\x1B', '\x80', '\xff', '\xc3', '\x8e', '$', '('};
    bytes[rng() % bytes.size()] = rng() % 2 ? kBad[rng() % std::size(kBad)] : static_cast<char>(rng());
  }
  if (rng() % 4 == 0 && !bytes.empty()) bytes.pop_back();
  return bytes;
}

class DirectConversion : public testing::Test {
 protected:
  void SetUp() override {
    saved_ = DataEncodings();
    for (const char* name : {"windows-1252", "Shift_JIS", "EUC-JP", "CCSID-290", "ISO-2022-JP", "UTF-8"}) {
      numbers_.push_back(VarniceRegisterEncoding(name));
    }
    numbers_.push_back(0);  // ISO-8859-1
  }
  void TearDown() override {
    UnicodeLibBehavior::GetDefaultBehavior()->SetExternalSubstitute(nullptr);
    UnicodeLibBehavior::GetDefaultBehavior()->ClearForcedDirectMapping();
    DataEncodings() = saved_;
  }

  // Random texts both ways in every encoding: short ones at every room, and
  // some longer than the pipeline's intermediate buffers.
  void ExpectRoutesAgree(unsigned seed) {
    std::mt19937 rng(seed);
    for (int number : numbers_) {
      SCOPED_TRACE(VarniceEncodingName(number));
      for (int trial = 0; trial < 24; ++trial) {
        const std::size_t n = trial % 8 == 7 ? 600 + rng() % 900 : 1 + rng() % 30;
        const std::u16string text = RandomText(rng, n);
        ExpectFromUnicodeAgrees(number, text, rng);
        ExpectToUnicodeAgrees(number, RandomBytes(rng, number, text), rng);
      }
    }
  }

  DataEncodingTable saved_;
  std::vector<int> numbers_;
};

TEST_F(DirectConversion, RandomTextUnderTheDefaultPolicy) { ExpectRoutesAgree(1); }

// A substitute of several bytes (or none) may be cut by the end of the room;
// the forced mapping sends backslash and tilde through as single bytes.
TEST_F(DirectConversion, RandomTextUnderOtherSettings) {
  UnicodeLibBehavior& plain = *UnicodeLibBehavior::GetDefaultBehavior();
  plain.SetExternalSubstitute("<?>");
  plain.SetForcedDirectMapping();
  ExpectRoutesAgree(2);
  plain.SetExternalSubstitute("");
  ExpectRoutesAgree(3);
}

// Hand-picked corners: a lead byte with a bad trail, a character cut off by
// the end of the text, three-byte codes, an escape cut short.
TEST_F(DirectConversion, CornersMatchThePipeline) {
  std::mt19937 rng(4);
  const int sjis = numbers_[1], eucjp = numbers_[2], jis = numbers_[4], utf8 = numbers_[5];
  ExpectToUnicodeAgrees(sjis, std::string("a\x93\xfa\x80\x81\x20\0\xb1\xa0\x96\x7b\x8c", 12), rng);
  ExpectToUnicodeAgrees(eucjp, std::string("\x8f\xb0\xa1x\xa4\xa2\x8e\xb1\xff\xa4", 10), rng);
  ExpectFromUnicodeAgrees(eucjp, u"\u4e02\u4e02x\u4e02", rng);
  ExpectToUnicodeAgrees(jis, "a\x1b$B$\"\x1b(Bb\x1b$", rng);
  ExpectToUnicodeAgrees(utf8, "\xf0\x9f\x98\x80\xed\xa0\x80\xc3", rng);
}

// The route's own loop under a policy of its own, with room for everything:
// the same problems in the same order, and inserted input and output where
// the pipeline puts them.
TEST_F(DirectConversion, ProblemsReachTheBehaviourAsInThePipeline) {
  std::mt19937 rng(5);
  for (int number : numbers_) {
    SCOPED_TRACE(VarniceEncodingName(number));
    const varnice::internal::DirectRoute& route = DataEncodings().Direct(number);
    for (int trial = 0; trial < 20; ++trial) {
      const std::u16string text = RandomText(rng, 1 + rng() % 200);
      const std::string bytes = RandomBytes(rng, number, text);

      LoggingPolicy direct, general;
      std::vector<unsigned short> units(bytes.size() * 4 + 8);
      std::vector<unsigned short> expectedUnits(units.size());
      const long n = varnice::internal::DecodeDirect(route, direct, bytes.data(), static_cast<long>(bytes.size()),
                                                     units.data(), static_cast<long>(units.size()));
      UnicodeLibBehavior* old = UnicodeLibBehavior::SetDefaultBehavior(general);
      const int m = VarniceConvertToUnicode(number, bytes.data(), static_cast<int>(bytes.size()),
                                            expectedUnits.data(), static_cast<int>(expectedUnits.size()));
      UnicodeLibBehavior::SetDefaultBehavior(old);
      EXPECT_EQ(direct.log, general.log);
      EXPECT_EQ(std::vector<unsigned short>(units.begin(), units.begin() + n),
                std::vector<unsigned short>(expectedUnits.begin(), expectedUnits.begin() + m));

      LoggingPolicy directOut, generalOut;
      std::string out(text.size() * 12 + 8, '\0'), expectedOut(out.size(), '\0');
      const auto* src = reinterpret_cast<const unsigned short*>(text.data());
      const long k = varnice::internal::EncodeDirect(route, directOut, src, static_cast<long>(text.size()),
                                                     out.data(), static_cast<long>(out.size()));
      old = UnicodeLibBehavior::SetDefaultBehavior(generalOut);
      const int j = VarniceConvertFromUnicode(number, src, static_cast<int>(text.size()), expectedOut.data(),
                                              static_cast<int>(expectedOut.size()), 0);
      UnicodeLibBehavior::SetDefaultBehavior(old);
      EXPECT_EQ(directOut.log, generalOut.log);
      EXPECT_EQ(out.substr(0, static_cast<std::size_t>(k)), expectedOut.substr(0, static_cast<std::size_t>(j)));
    }
  }
}

}  // namespace
