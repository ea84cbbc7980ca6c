#include "varnice/tables/compander.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

#include "varnice/tables/compander_tables.h"

namespace {

// The byte layouts as ranges, written independently of the entry arrays: a
// position lists the byte ranges it accepts, each final (next = kFinal) or
// leading to another position. Bytes not listed are invalid.
constexpr int kFinal = -1;
struct Span {
  int low, high, next;
};
using Position = std::vector<Span>;

struct Layout {
  char const* name;
  CompanderEntry* entries;
  long outputSize;  // hand-computed from the ranges
  std::vector<Position> positions;
};

Position Trail(std::vector<std::pair<int, int>> ranges) {
  Position p;
  for (auto [low, high] : ranges) p.push_back({low, high, kFinal});
  return p;
}

std::vector<Layout> const& Layouts() {
  static std::vector<Layout> const layouts = {
      {"latin", latin_compander_table, 256, {{{0x00, 0xFF, kFinal}}}},
      {"sjis", sjis_compander_table, 191 + 42 * 188,
       {{{0x00, 0x7F, kFinal}, {0x81, 0x9F, 1}, {0xA1, 0xDF, kFinal}, {0xE0, 0xEA, 1}},
        Trail({{0x40, 0x7E}, {0x80, 0xFC}})}},
      {"cp932", cp932_compander_table, 191 + 47 * 188,
       {{{0x00, 0x7F, kFinal}, {0x81, 0x9F, 1}, {0xA1, 0xDF, kFinal}, {0xE0, 0xEA, 1},
         {0xED, 0xEE, 1}, {0xFA, 0xFC, 1}},
        Trail({{0x40, 0x7E}, {0x80, 0xFC}})}},
      {"gb_2312_80", gb_2312_80_compander_table, 8998,
       {{{0x00, 0xA0, kFinal}, {0xA1, 0xFE, 1}, {0xFF, 0xFF, kFinal}}, Trail({{0xA1, 0xFE}})}},
      {"euc_kr", euc_kr_compander_table, 8998,
       {{{0x00, 0xA0, kFinal}, {0xA1, 0xFE, 1}, {0xFF, 0xFF, kFinal}}, Trail({{0xA1, 0xFE}})}},
      {"big_5", big_5_compander_table, 130 + 126 * 157,
       {{{0x00, 0x80, kFinal}, {0x81, 0xFE, 1}, {0xFF, 0xFF, kFinal}},
        Trail({{0x40, 0x7E}, {0xA1, 0xFE}})}},
      {"ks_c_5601_1987", ks_c_5601_1987_compander_table, 130 + 126 * 178,
       {{{0x00, 0x80, kFinal}, {0x81, 0xFE, 1}, {0xFF, 0xFF, kFinal}},
        Trail({{0x41, 0x5A}, {0x61, 0x7A}, {0x81, 0xFE}})}},
      {"cp949", cp949_compander_table, 130 + 70 * 178 + 56 * 94,
       {{{0x00, 0x80, kFinal}, {0x81, 0xC6, 1}, {0xC7, 0xFE, 2}, {0xFF, 0xFF, kFinal}},
        Trail({{0x41, 0x5A}, {0x61, 0x7A}, {0x81, 0xFE}}), Trail({{0xA1, 0xFE}})}},
      {"ks_c_5601_1992", ks_c_5601_1992_compander_table, 143 + 113 * 188,
       {{{0x00, 0x83, kFinal}, {0x84, 0xD3, 1}, {0xD4, 0xD7, kFinal}, {0xD8, 0xDE, 1},
         {0xDF, 0xDF, kFinal}, {0xE0, 0xF9, 1}, {0xFA, 0xFF, kFinal}},
        Trail({{0x41, 0x7E}, {0x81, 0xFE}})}},
      {"jeuc", jeuc_compander_table, 128 + 63 + 68 * 94 + 77 * 94,
       {{{0x00, 0x7F, kFinal}, {0x8E, 0x8E, 1}, {0x8F, 0x8F, 2}, {0xA1, 0xA8, 3},
         {0xB0, 0xF4, 3}},
        Trail({{0xA1, 0xDF}}),
        {{0xA2, 0xA2, 3}, {0xA6, 0xA7, 3}, {0xA9, 0xAB, 3}, {0xB0, 0xED, 3}},
        Trail({{0xA1, 0xFE}})}},
      {"cns11643_1986", cns11643_1986_compander_table, 128 + 3 * 94 * 94 + 66 * 94,
       {{{0x00, 0x7F, kFinal}, {0x8E, 0x8E, 1}, {0xA1, 0xA6, 3}, {0xC2, 0xFD, 3}},
        {{0xA1, 0xA2, 2}, {0xAE, 0xAE, 2}},
        {{0xA1, 0xFE, 3}},
        Trail({{0xA1, 0xFE}})}},
      {"cns11643_1992", cns11643_1992_compander_table, 128 + 7 * 94 * 94 + 69 * 94,
       {{{0x00, 0x7F, kFinal}, {0x8E, 0x8E, 1}, {0xA1, 0xA9, 3}, {0xC2, 0xFD, 3}},
        {{0xA1, 0xA7, 2}},
        {{0xA1, 0xFE, 3}},
        Trail({{0xA1, 0xFE}})}},
      {"jis_x_0208", jis_x_0208_compander_table, 94 * 94,
       {{{0x21, 0x7E, 1}}, Trail({{0x21, 0x7E}})}},
      {"iso_2022_kr", iso_2022_kr_compander_table, 94 * 94,
       {{{0x21, 0x7E, 1}}, Trail({{0x21, 0x7E}})}},
  };
  return layouts;
}

Span const* SpanFor(Position const& position, int b) {
  for (Span const& s : position) {
    if (s.low <= b && b <= s.high) return &s;
  }
  return nullptr;
}

// Visits every valid sequence and every sequence that turns invalid at its
// last byte, checking all four ways of companding against each other.
class Walker {
 public:
  Walker(Layout const& layout, Compander const& compander)
      : layout_(layout), compander_(compander), hits_(compander.OutputSize(), 0) {}

  void Walk(int position) {
    for (int b = 0; b < 256; ++b) {
      bytes_.push_back(static_cast<unsigned char>(b));
      Span const* span = SpanFor(layout_.positions[position], b);
      if (span == nullptr) {
        CheckInvalid();
      } else if (span->next == kFinal) {
        CheckFinal();
      } else {
        Walk(span->next);
      }
      bytes_.pop_back();
      if (::testing::Test::HasFatalFailure()) return;
    }
  }

  // Each index 0 .. OutputSize - 1 reached exactly once.
  void CheckDense() const {
    for (std::size_t i = 0; i < hits_.size(); ++i) {
      ASSERT_EQ(hits_[i], 1) << layout_.name << " index " << i;
    }
  }

 private:
  int FeedBytes(long& index) const {
    CompanderState state;
    int kind = -1;
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
      kind = compander_.CompandByte(state, bytes_[i], index);
      if (i + 1 < bytes_.size()) EXPECT_EQ(kind, CompanderEntry::kLead) << Describe();
    }
    if (kind != CompanderEntry::kLead) {
      EXPECT_EQ(state.base, 0u) << Describe();
      EXPECT_EQ(state.partialIndex, 0) << Describe();
    }
    return kind;
  }

  void CheckFinal() {
    int const length = static_cast<int>(bytes_.size());
    long index = -1;
    ASSERT_EQ(compander_.Compand(bytes_.data(), index), length) << Describe();
    ASSERT_TRUE(index >= 0 && index < compander_.OutputSize()) << Describe();
    ++hits_[index];

    long other = -1;
    EXPECT_EQ(Compander::Compand(layout_.entries, bytes_.data(), other), length) << Describe();
    EXPECT_EQ(other, index) << Describe();
    other = -1;
    EXPECT_EQ(FeedBytes(other), CompanderEntry::kFinal) << Describe();
    EXPECT_EQ(other, index) << Describe();
    unsigned long code = 0;
    for (unsigned char b : bytes_) code = code << 8 | b;
    other = -1;
    EXPECT_EQ(compander_.Compand(code, other), length) << Describe();
    EXPECT_EQ(other, index) << Describe();
    EXPECT_EQ(compander_.IsLeadByte(bytes_[0]), length > 1) << Describe();
  }

  void CheckInvalid() const {
    long index = -7;
    EXPECT_EQ(compander_.Compand(bytes_.data(), index), 0) << Describe();
    EXPECT_EQ(Compander::Compand(layout_.entries, bytes_.data(), index), 0) << Describe();
    EXPECT_EQ(FeedBytes(index), CompanderEntry::kInvalid) << Describe();
    EXPECT_EQ(index, -7) << Describe();
    if (bytes_.size() == 1) EXPECT_FALSE(compander_.IsLeadByte(bytes_[0])) << Describe();
  }

  std::string Describe() const {
    std::string s = layout_.name;
    char hex[4];
    for (unsigned char b : bytes_) {
      snprintf(hex, sizeof hex, " %02X", b);
      s += hex;
    }
    return s;
  }

  Layout const& layout_;
  Compander const& compander_;
  std::vector<int> hits_;
  std::vector<unsigned char> bytes_;
};

TEST(CompanderTables, EveryValidSequenceMapsToAUniqueDenseIndex) {
  for (Layout const& layout : Layouts()) {
    SCOPED_TRACE(layout.name);
    Compander const& compander = Compander::Shared(layout.entries);
    ASSERT_EQ(compander.OutputSize(), layout.outputSize);
    EXPECT_EQ(compander.HasState(), layout.positions.size() > 1);
    Walker walker(layout, compander);
    walker.Walk(0);
    walker.CheckDense();
  }
}

// Construction computes the constants, whatever the data holds there.
TEST(Compander, ConstantsOfGb2312AndOverwrittenData) {
  EXPECT_EQ(Compander::Shared(gb_2312_80_compander_table).EntryCount(), 8);  // constructs it
  CompanderEntry const* e = gb_2312_80_compander_table;
  // Entries: [0] 0x00 final, [1] 0xA1 lead, [2] 0xFF final, [3] end; trail from [4].
  EXPECT_EQ(e[1].multiplier, 94);  // the trail sub-table's size
  EXPECT_EQ(e[1].offset, -14973);
  EXPECT_EQ(e[2].offset, 8742);
  EXPECT_EQ(e[0].offset, 0);
  EXPECT_EQ(e[5].offset, -0xA1);

  long const count = Compander::Shared(cp949_compander_table).EntryCount();
  std::vector<CompanderEntry> copy(cp949_compander_table, cp949_compander_table + count);
  for (CompanderEntry& entry : copy) entry = {entry.low, entry.kind, entry.next, 0x1234567, -3};
  Compander compander(copy.data());
  EXPECT_EQ(compander.OutputSize(), 17854);
  unsigned char const bytes[] = {0xC7, 0xA1};
  long expected = -1, index = -1;
  Compander::Shared(cp949_compander_table).Compand(bytes, expected);
  EXPECT_EQ(compander.Compand(bytes, index), 2);
  EXPECT_EQ(index, expected);
}

// The walk above proves the indices dense and unique; these pin their order.
// Every valid code is also companded as an integer by the walk; shorter
// integers read as if followed by zero bytes.
TEST(Compander, ShiftJisOrderAndShortIntegerCodes) {
  Compander const& sjis = Compander::Shared(sjis_compander_table);
  long index = -1;
  unsigned char const a[] = {0x41}, kanji[] = {0x81, 0x40};
  EXPECT_EQ(sjis.Compand(a, index), 1);
  EXPECT_EQ(index, 0x41);
  EXPECT_EQ(sjis.Compand(kanji, index), 2);
  EXPECT_EQ(index, 128);  // after the 128 single bytes 0x00-0x7F
  EXPECT_EQ(sjis.EntryCount(), 14);

  EXPECT_EQ(sjis.Compand(0ul, index), 1);  // the byte 0
  EXPECT_EQ(index, 0);
  // A lone lead byte is followed by a zero byte, an invalid trail.
  EXPECT_EQ(sjis.Compand(0x81ul, index), 0);
  EXPECT_EQ(Compander::Shared(cns11643_1992_compander_table).Compand(0x8EA1A1ul, index), 0);
  EXPECT_EQ(index, 0);
}

TEST(Compander, ByteAtATimeKeepsThePartialIndex) {
  Compander const& gb = Compander::Shared(gb_2312_80_compander_table);
  CompanderState state;
  long index = -1;
  EXPECT_EQ(gb.CompandByte(state, 0xB0, index), CompanderEntry::kLead);
  EXPECT_EQ(index, -1);
  EXPECT_NE(state.base, 0u);
  EXPECT_EQ(state.partialIndex, 161 + (0xB0 - 0xA1) * 94);
  EXPECT_EQ(gb.CompandByte(state, 0xA1, index), CompanderEntry::kFinal);
  EXPECT_EQ(index, 161 + (0xB0 - 0xA1) * 94);
  // An invalid trail resets to the first byte's row: 0x41 is then a final.
  EXPECT_EQ(gb.CompandByte(state, 0xB0, index), CompanderEntry::kLead);
  EXPECT_EQ(gb.CompandByte(state, 0x41, index), CompanderEntry::kInvalid);
  EXPECT_EQ(state.base, 0u);
  EXPECT_EQ(state.partialIndex, 0);
  EXPECT_EQ(gb.CompandByte(state, 0x41, index), CompanderEntry::kFinal);
  EXPECT_EQ(index, 0x41);
}

TEST(Compander, SharedIsConstructedOncePerArray) {
  std::vector<Compander const*> seen(4);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&seen, i] { seen[i] = &Compander::Shared(big_5_compander_table); });
  }
  for (std::thread& t : threads) t.join();
  EXPECT_EQ(std::set<Compander const*>(seen.begin(), seen.end()).size(), 1u);
  EXPECT_NE(seen[0], &Compander::Shared(euc_kr_compander_table));
}

}  // namespace
