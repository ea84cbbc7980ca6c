// The converters' fast paths (vector kernels, stretch loops, identity runs)
// against their plain loops, at every kernel level the CPU runs: random text
// in random blocks with random room must give the same units, the same
// problems at the same places, as the same text fed one byte (or unit) at a
// time, which never reaches a fast path.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tests/codepages/code_page_data.h"
#include "tests/codepages/converter_test_support.h"
#include "tests/simd/kernel_levels.h"
#include "varnice/capi/varnice_c.h"
#include "varnice/codepages/iso2022_encoding.h"
#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/unicodeforms/utf8.h"

namespace {

using namespace kernel_test;
using codepage_test::Converters;

// What a conversion gave: the output, and for each problem the result code,
// where the output stood and (for converters that do not buffer) how much
// input had been taken.
struct Trace {
  std::u16string units;
  std::string bytes;
  std::vector<long> problems;
  bool operator==(const Trace&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Trace& t) {
  os << t.units.size() << " units, " << t.bytes.size() << " bytes, problems";
  for (long p : t.problems) os << ' ' << p;
  return os;
}

// Blocks and room drawn from rng, or (rng null) one byte at a time.
Trace Decode(BlockConverter_8_to_16& c, const std::string& bytes, std::mt19937* rng, bool exactOffsets) {
  c.Reset();
  Trace t;
  std::vector<unsigned short> buf(512);
  const char* in = bytes.data();
  const char* const end = in + bytes.size();
  while (in != end) {
    const char* blockEnd = in + std::min<long>(end - in, rng ? 1 + (*rng)() % 300 : 1);
    for (;;) {
      unsigned short* out = buf.data();
      const long room = rng ? 1 + (*rng)() % 400 : 8;
      const int r = c.Convert(in, blockEnd, out, out + room);
      if (out - buf.data() > room) ADD_FAILURE() << "wrote past the room";
      t.units.append(buf.data(), out);
      if (r == kInputUsedUp) break;
      if (r == kOutputFull) continue;
      t.problems.push_back(r);
      t.problems.push_back(static_cast<long>(t.units.size()));
      if (exactOffsets) t.problems.push_back(in - bytes.data());
    }
  }
  unsigned short* out = buf.data();
  t.problems.push_back(c.Finish(out, out + buf.size()));
  t.units.append(buf.data(), out);
  return t;
}

Trace Encode(BlockConverter_16_to_8& c, const std::u16string& units, std::mt19937* rng) {
  c.Reset();
  Trace t;
  std::vector<char> buf(1024);
  auto* in = reinterpret_cast<const unsigned short*>(units.data());
  const unsigned short* const end = in + units.size();
  while (in != end) {
    const unsigned short* blockEnd = in + std::min<long>(end - in, rng ? 1 + (*rng)() % 300 : 1);
    for (;;) {
      char* out = buf.data();
      const long room = rng ? 4 + (*rng)() % 400 : 8;
      const int r = c.Convert(in, blockEnd, out, out + room, -1);
      if (out - buf.data() > room) ADD_FAILURE() << "wrote past the room";
      t.bytes.append(buf.data(), out);
      if (r == kInputUsedUp) break;
      if (r == kOutputFull) continue;
      t.problems.push_back(r);
      t.problems.push_back(static_cast<long>(t.bytes.size()));
      t.problems.push_back(in - reinterpret_cast<const unsigned short*>(units.data()));
    }
  }
  char* out = buf.data();
  t.problems.push_back(c.Finish(out, out + buf.size()));
  t.bytes.append(buf.data(), out);
  return t;
}

// The units a page can write other than ASCII.
std::vector<unsigned short> Repertoire(const ExternalEncoding* encoding) {
  const auto* page = dynamic_cast<const MBCSEncoding*>(encoding);
  std::vector<unsigned short> units;
  for (unsigned u = 0x80; u < 0x10000; ++u) {
    if (page == nullptr || page->FromUnicode(static_cast<unsigned short>(u)) != 0xFFFD) {
      units.push_back(static_cast<unsigned short>(u));
    }
  }
  return units;
}

// Text as the fast paths meet it: ASCII runs of any length, characters of
// the page, now and then a unit it lacks, a control character or U+001A.
std::u16string RandomText(std::mt19937& rng, const std::vector<unsigned short>& repertoire, std::size_t n) {
  std::u16string s;
  while (s.size() < n) {
    const unsigned kind = rng() % 10;
    if (kind < 5) {
      for (unsigned k = 1 + rng() % 90; k > 0; --k) s += static_cast<char16_t>(0x20 + rng() % 0x5F);
    } else if (kind < 9) {
      for (unsigned k = 1 + rng() % 30; k > 0 && !repertoire.empty(); --k) {
        s += static_cast<char16_t>(repertoire[rng() % repertoire.size()]);
      }
    } else {
      const char16_t odd[] = {0x1A, 0x00, 0x0A, 0x1B, 0x7F, 0x80, 0xFF, 0x4E00, 0xFFFF, 0xD800};
      s += odd[rng() % 10];
    }
  }
  return s;
}

// The text's bytes in the page, with a few bytes spoiled.
std::string RandomBytes(std::mt19937& rng, BlockConverter_16_to_8& encoder, const std::u16string& text) {
  std::string bytes = Encode(encoder, text, nullptr).bytes;
  for (unsigned k = rng() % 4; k > 0 && !bytes.empty(); --k) bytes[rng() % bytes.size()] = static_cast<char>(rng());
  return bytes;
}

void CheckBothWays(const ExternalEncoding* encoding, bool exactOffsets, int trials) {
  Converters c(encoding);
  const std::vector<unsigned short> repertoire = Repertoire(encoding);
  for (const simd::ByteKernels* k : AvailableLevels()) {
    SCOPED_TRACE(LevelName(*k));
    UsingKernels use(k);
    std::mt19937 rng(21);
    for (int trial = 0; trial < trials; ++trial) {
      const std::u16string text = RandomText(rng, repertoire, 1 + rng() % 2000);
      ASSERT_EQ(Encode(*c.from, text, nullptr), Encode(*c.from, text, &rng)) << "to bytes, trial " << trial;
      const std::string bytes = RandomBytes(rng, *c.from, text);
      ASSERT_EQ(Decode(*c.to, bytes, nullptr, exactOffsets), Decode(*c.to, bytes, &rng, exactOffsets))
          << "to units, trial " << trial;
    }
  }
}

TEST(FastPaths, EveryCodePageMatchesItsPlainLoops) {
  for (const codepage_test::Page& page : codepage_test::kPages) {
    SCOPED_TRACE(page.name);
    CheckBothWays(page.factory(), true, 40);
  }
}

TEST(FastPaths, ISO2022JPMatchesItsPlainLoops) { CheckBothWays(ExternalEncoding::ISO2022JP(), false, 150); }

// ISO2022toUnicode held to its buffered loop, which never reads in place.
class BufferedISO2022 : public BlockConverter_8_to_16 {
 public:
  explicit BufferedISO2022(ISO2022toUnicode& c) : c_(c) {}
  int Convert(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) override {
    return c_.ConvertBuffered(in, inEnd, out, outEnd);
  }
  int Finish(unsigned short*& out, const unsigned short* outEnd) override { return c_.Finish(out, outEnd); }
  void Reset() override { c_.Reset(); }

 private:
  ISO2022toUnicode& c_;
};

// Reading in place (stretches between escapes straight from the caller's
// bytes) against the buffered loop, in the same random blocks with the same
// room: the same units, problems, and input taken at each problem.
TEST(FastPaths, ISO2022JPReadsInPlaceAsThroughItsBuffer) {
  Converters fast(ExternalEncoding::ISO2022JP());
  Converters plain(ExternalEncoding::ISO2022JP());
  BufferedISO2022 reference(dynamic_cast<ISO2022toUnicode&>(*plain.to));
  const std::vector<unsigned short> repertoire = Repertoire(ExternalEncoding::ISO2022JP());
  std::mt19937 rng(14);
  for (int trial = 0; trial < 300; ++trial) {
    const std::string bytes = RandomBytes(rng, *fast.from, RandomText(rng, repertoire, 1 + rng() % 1500));
    std::mt19937 blocks = rng;
    ASSERT_EQ(Decode(reference, bytes, &blocks, true), Decode(*fast.to, bytes, &rng, true)) << trial;
  }
}

TEST(FastPaths, UTF8MatchesItsPlainLoops) {
  UTF8toWhatever to(true);
  UTF8fromWhatever from(true);
  std::vector<unsigned short> repertoire;
  for (unsigned u = 0x80; u < 0x10000; u += 7) repertoire.push_back(static_cast<unsigned short>(u));
  for (const simd::ByteKernels* k : AvailableLevels()) {
    SCOPED_TRACE(LevelName(*k));
    UsingKernels use(k);
    std::mt19937 rng(8);
    for (int trial = 0; trial < 300; ++trial) {
      const std::u16string text = RandomText(rng, repertoire, 1 + rng() % 3000);
      ASSERT_EQ(Encode(from, text, nullptr), Encode(from, text, &rng)) << trial;
      const std::string bytes = RandomBytes(rng, from, text);
      ASSERT_EQ(Decode(to, bytes, nullptr, true), Decode(to, bytes, &rng, true)) << trial;
    }
  }
}

// The C functions convert plain code pages over the caller's buffers, where
// the room is the whole text: the same result at every level.
TEST(FastPaths, DirectCodePagesGiveTheSameResultAtEveryLevel) {
  for (const char* name : {"ISO-8859-1", "windows-1252", "Shift_JIS", "EUC-JP"}) {
    SCOPED_TRACE(name);
    const int number = VarniceRegisterEncoding(name);
    std::mt19937 rng(5);
    const std::vector<unsigned short> repertoire = Repertoire(ExternalEncoding::Lookup(name));
    for (int trial = 0; trial < 30; ++trial) {
      std::u16string text = RandomText(rng, repertoire, 1 + rng() % 3000);
      std::vector<char> bytes(text.size() * 4 + 1);
      std::vector<unsigned short> units(bytes.size() + 1);
      std::vector<std::pair<std::string, std::u16string>> results;
      for (const simd::ByteKernels* k : AvailableLevels()) {
        UsingKernels use(k);
        const int n = VarniceConvertFromUnicode(number, reinterpret_cast<const unsigned short*>(text.data()),
                                                static_cast<int>(text.size()), bytes.data(),
                                                static_cast<int>(bytes.size()), 0);
        const int m = VarniceConvertToUnicode(number, bytes.data(), n, units.data(), static_cast<int>(units.size()));
        results.emplace_back(std::string(bytes.data(), n), std::u16string(units.begin(), units.begin() + m));
      }
      for (const auto& r : results) ASSERT_EQ(r, results.front()) << trial;
    }
  }
}

}  // namespace
