// Every kernel level the CPU runs against the plain loops, on random input
// at random offsets and lengths, including what lies past the result.
#include "varnice/simd/byte_kernels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "tests/simd/kernel_levels.h"
#include "varnice/codepages/code_page_table_shapes.h"
#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/encoding/external_encoding.h"

namespace {

using namespace kernel_test;

constexpr unsigned short kUntouched = 0xBEEF;

// Text-like bytes: mostly ASCII, with bytes above it at a rate that varies
// from input to input (none to one in five).
std::vector<unsigned char> RandomBytes(std::mt19937& rng, std::size_t n) {
  const unsigned highPercent = std::uniform_int_distribution<unsigned>(0, 4)(rng) * 5;
  std::vector<unsigned char> v(n);
  for (auto& b : v) {
    b = static_cast<unsigned char>(rng() % 100 < highPercent ? 0x80 + rng() % 0x80 : rng() % 0x80);
  }
  return v;
}

std::vector<unsigned short> RandomUnits(std::mt19937& rng, std::size_t n, unsigned hole) {
  std::vector<unsigned short> v(n);
  const unsigned odd = std::uniform_int_distribution<unsigned>(0, 3)(rng);
  for (auto& u : v) {
    const unsigned r = rng() % 200;
    u = static_cast<unsigned short>(r < odd ? 0x80 + rng() % 0x200 : r < 2 * odd ? hole : rng() % 0x80);
  }
  return v;
}

const void* FirstRow(ExternalEncoding* (*factory)()) {
  return dynamic_cast<const MBCSEncoding&>(*factory()).ToUnicodeTable().Actions();
}

TEST(ByteKernels, EveryLevelMatchesThePlainLoops) {
  // Rows with every kind of entry: all whole characters (windows-1252 has a
  // few invalid bytes), lead bytes (Shift_JIS), EUC-JP's leads and switches.
  const void* rows[] = {FirstRow(&ExternalEncoding::CP1252), FirstRow(&ExternalEncoding::ShiftJIS),
                        FirstRow(&ExternalEncoding::EUCPkdFmtJapanese), FirstRow(&ExternalEncoding::ISOLatin2)};
  const simd::ByteKernels& ref = simd::ReferenceKernels();
  std::mt19937 rng(21);
  for (const simd::ByteKernels* k : AvailableLevels()) {
    SCOPED_TRACE(LevelName(*k));
    for (int trial = 0; trial < 3000; ++trial) {
      // Now and then a stretch long enough for the kernels' long-run paths.
      const std::size_t n = trial % 10 == 0 ? rng() % 5000 : rng() % 300;
      const std::size_t offset = rng() % 64;  // unaligned starts
      std::vector<unsigned char> bytes = RandomBytes(rng, n + offset);
      const unsigned char* in = bytes.data() + offset;

      for (const void* row : rows) {
        std::vector<unsigned short> want(n + 1, kUntouched), got(n + 1, kUntouched);
        const std::size_t a = ref.decodeRow(row, in, n, want.data());
        const std::size_t b = k->decodeRow(row, in, n, got.data());
        ASSERT_EQ(a, b) << "decodeRow, trial " << trial;
        ASSERT_EQ(want, got) << "decodeRow, trial " << trial;  // nothing written past the result
      }
      {
        std::vector<unsigned short> want(n + 1, kUntouched), got(n + 1, kUntouched);
        ASSERT_EQ(ref.widenASCII(in, n, want.data()), k->widenASCII(in, n, got.data())) << trial;
        ASSERT_EQ(want, got) << "widenASCII, trial " << trial;
        ref.widenAll(in, n, want.data());
        k->widenAll(in, n, got.data());
        ASSERT_EQ(want, got) << "widenAll, trial " << trial;
      }
      const unsigned hole = rng() % 2 ? 0x1A : 0xFFFF;
      std::vector<unsigned short> units = RandomUnits(rng, n + offset, hole);
      for (unsigned limit : {0x80u, 0x100u}) {
        std::vector<unsigned char> want(n + 1, 0xEE), got(n + 1, 0xEE);
        const std::size_t a = ref.narrowBelow(units.data() + offset, n, want.data(), limit, hole);
        const std::size_t b = k->narrowBelow(units.data() + offset, n, got.data(), limit, hole);
        ASSERT_EQ(a, b) << "narrowBelow, trial " << trial;
        ASSERT_EQ(want, got) << "narrowBelow, trial " << trial;
      }
    }
  }
}

// Units a flat table meets: ASCII, the page's own characters, and now and
// then one it lacks or writes in three bytes (EUC-JP's JIS X 0212).
std::vector<unsigned short> RandomPageUnits(std::mt19937& rng, const std::vector<unsigned short>& own, std::size_t n) {
  std::vector<unsigned short> v(n);
  for (auto& u : v) {
    const unsigned r = rng() % 100;
    u = static_cast<unsigned short>(r < 40 ? rng() % 0x80 : r < 99 ? own[rng() % own.size()] : rng());
  }
  return v;
}

TEST(ByteKernels, EveryLevelEncodesThroughAFlatTableAsThePlainLoop) {
  const simd::ByteKernels& ref = simd::ReferenceKernels();
  std::mt19937 rng(6);
  for (auto* factory : {&ExternalEncoding::ShiftJIS, &ExternalEncoding::EUCPkdFmtJapanese, &ExternalEncoding::CP1252}) {
    const auto& table = dynamic_cast<const varnice::internal::CodePagePlaneTable&>(
        dynamic_cast<const MBCSEncoding&>(*factory()).FromUnicodeTable());
    const std::uint16_t* flat = table.Flat();
    std::vector<unsigned short> own;
    for (unsigned u = 0x80; u < 0x10000; ++u) {
      if (flat[u] != simd::kFlatGeneral) own.push_back(static_cast<unsigned short>(u));
    }
    for (const simd::ByteKernels* k : AvailableLevels()) {
      SCOPED_TRACE(LevelName(*k));
      for (int trial = 0; trial < 2000; ++trial) {
        const std::size_t n = trial % 10 == 0 ? rng() % 3000 : rng() % 200;
        const std::vector<unsigned short> units = RandomPageUnits(rng, own, n);
        // Room from too little for one code to more than the whole text needs.
        const std::size_t room = rng() % (2 * n + 8);
        std::vector<unsigned char> want(room, 0xEE), got(room, 0xEE);
        std::size_t wantBytes = 0, gotBytes = 0;
        const std::size_t a = ref.encodeFlat(flat, units.data(), n, want.data(), room, wantBytes);
        const std::size_t b = k->encodeFlat(flat, units.data(), n, got.data(), room, gotBytes);
        ASSERT_EQ(a, b) << "trial " << trial;
        ASSERT_EQ(wantBytes, gotBytes) << "trial " << trial;
        ASSERT_EQ(want, got) << "trial " << trial;  // nothing written past the result
      }
    }
  }
}

TEST(ByteKernels, EveryLevelDecodesPairsAsThePlainLoop) {
  const simd::ByteKernels& ref = simd::ReferenceKernels();
  std::mt19937 rng(9);
  const auto& table = dynamic_cast<const varnice::internal::CodePageToUnicodeTable&>(
      dynamic_cast<const MBCSEncoding&>(*ExternalEncoding::ISO87JISX0208()).ToUnicodeTable());
  const std::uint16_t* pairs = table.Pairs();
  std::vector<unsigned short> codes;  // the page's two-byte codes
  for (unsigned c = 0; c < 0x10000; ++c) {
    if (pairs[c] != simd::kFlatGeneral) codes.push_back(static_cast<unsigned short>(c));
  }
  ASSERT_GT(codes.size(), 6000u);
  for (const simd::ByteKernels* k : AvailableLevels()) {
    SCOPED_TRACE(LevelName(*k));
    for (int trial = 0; trial < 2000; ++trial) {
      // Runs of the page's codes, now and then a pair that is not one.
      std::vector<unsigned char> bytes;
      for (std::size_t n = trial % 10 == 0 ? rng() % 3000 : rng() % 120; bytes.size() < n;) {
        const unsigned c = rng() % 150 == 0 ? rng() : codes[rng() % codes.size()];
        bytes.push_back(static_cast<unsigned char>(c >> 8));
        bytes.push_back(static_cast<unsigned char>(c));
      }
      const std::size_t n = bytes.empty() ? 0 : bytes.size() - rng() % 2;  // now and then a lone last byte
      std::vector<unsigned short> want(n / 2 + 1, kUntouched), got(n / 2 + 1, kUntouched);
      ASSERT_EQ(ref.decodePairs(pairs, bytes.data(), n, want.data()),
                k->decodePairs(pairs, bytes.data(), n, got.data()))
          << "trial " << trial;
      ASSERT_EQ(want, got) << "trial " << trial;  // nothing written past the result
    }
  }
}

TEST(ByteKernels, RowIdentityOfThePages) {
  EXPECT_EQ(simd::RowKeeps(FirstRow(&ExternalEncoding::ISOLatin1)), simd::RowIdentity::kAll);
  EXPECT_EQ(simd::RowKeeps(FirstRow(&ExternalEncoding::CP1252)), simd::RowIdentity::kASCII);
  EXPECT_EQ(simd::RowKeeps(FirstRow(&ExternalEncoding::CP932)), simd::RowIdentity::kASCII);
  // Shift_JIS reads a few ASCII bytes as other characters.
  EXPECT_EQ(simd::RowKeeps(FirstRow(&ExternalEncoding::ShiftJIS)), simd::RowIdentity::kNone);
  // EBCDIC and two-byte JIS X 0208 write no ASCII byte as itself.
  EXPECT_EQ(simd::RowKeeps(FirstRow(&ExternalEncoding::CP870)), simd::RowIdentity::kNone);
  EXPECT_EQ(simd::RowKeeps(FirstRow(&ExternalEncoding::ISO87JISX0208)), simd::RowIdentity::kNone);
}

TEST(ByteKernels, TheDispatcherPicksTheWidestLevelTheCpuRuns) {
  const std::vector<const simd::ByteKernels*> levels = AvailableLevels();
  EXPECT_EQ(&simd::Kernels(), levels.back());
}

}  // namespace
