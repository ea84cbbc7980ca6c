// Every transform that looks beyond one unit, streamed through random block
// sizes, against a plain loop over the whole text written from the tables
// alone. (The one-unit transforms meet every unit in simple_transforms_test.)
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "tests/transform/transform_test_support.h"
#include "varnice/tables/lookup_functions.h"
#include "varnice/transform/transform_tables.h"

using testing_transforms::RandomSizes;
using testing_transforms::Through;
using varnice::internal::PlaneValue;

namespace {

// Text that exercises every table: letters, marks, spacing diacritics, kana of
// both widths, compatibility forms, line ends and surrogates.
std::u16string RandomText(std::mt19937& rng, std::size_t length) {
  static const char16_t kPool[] =
      u"aAbBzZ \r\n\u2028\u2029\u0085^`_\u00A8\u00B4\u00C0\u00C5\u00DF\u0130\u01C5"
      u"\u0300\u0301\u0302\u0308\u030A\u0345\u0391\u03B1\u1F71\u1E08\u212B\u3000"
      u"\u3041\u304B\u3099\u309A\u309B\u30A2\u30AB\u30AC\u30F4\u30F5\u30FC\u30FD"
      u"\uF900\uFB00\uFB4B\uFF21\uFF41\uFF61\uFF71\uFF76\uFF9E\uFFE8\uFFEF"
      u"\U0001F600\u0915\u093C\u0958";
  std::uniform_int_distribution<std::size_t> pick(0, sizeof kPool / sizeof kPool[0] - 2);
  std::u16string s;
  for (std::size_t i = 0; i < length; ++i) s.push_back(kPool[pick(rng)]);
  return s;
}

unsigned short Composed(char16_t a, char16_t b) {
  unsigned short c = 0;
  const unsigned long key = (static_cast<unsigned long>(a) << 16) | b;
  return SparseTableLookup(CompositionTable, CompositionTableCount, key, c) ? c : 0;
}

unsigned short Find(const SparseTableEntryUSUS* table, long count, char16_t c) {
  unsigned short v = 0;
  return SparseTableLookup(table, count, c, v) ? v : 0;
}

std::u16string Planes(const std::u16string& s, std::uint32_t const* const* planes) {
  std::u16string out;
  for (char16_t c : s) {
    const std::uint32_t v = PlaneValue(planes, c);
    if (v == 0) out.push_back(c);
    if (v > 0xFFFF) out.push_back(static_cast<char16_t>(v >> 16));
    if (v != 0) out.push_back(static_cast<char16_t>(v));
  }
  return out;
}

std::u16string Compose(const std::u16string& s) {
  std::u16string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    const unsigned short c = i + 1 < s.size() ? Composed(s[i], s[i + 1]) : 0;
    out.push_back(c != 0 ? c : s[i]);
    if (c != 0) ++i;
  }
  return out;
}

std::u16string CombiningMarks(const std::u16string& s) {
  std::u16string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    const unsigned short mark = Find(CombiningMarkTable, CombiningMarkTableCount, s[i]);
    if (mark != 0 && i > 0 && s[i - 1] == u' ') out.push_back(u' ');
    out.push_back(mark != 0 ? mark : s[i]);
  }
  return out;
}

std::u16string SpacingMarks(const std::u16string& s) {
  std::u16string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    const unsigned short next =
        i + 1 < s.size() ? Find(SpacingMarkTable, SpacingMarkTableCount, s[i + 1]) : 0;
    const unsigned short here = Find(SpacingMarkTable, SpacingMarkTableCount, s[i]);
    if (s[i] == u' ' && next != 0) continue;  // the mark's base
    out.push_back(here != 0 ? here : s[i]);
  }
  return out;
}

std::u16string LineEnds(const std::u16string& s, const std::u16string& target) {
  std::u16string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    const char16_t c = s[i];
    if (c == u'\r' && i + 1 < s.size() && s[i + 1] == u'\n') ++i;
    if (c == u'\r' || c == u'\n' || c == u'\u2028' || c == u'\u2029') {
      out += target;
    } else {
      out.push_back(c);
    }
  }
  return out;
}

TEST(TransformReference, RandomTextAtRandomBlockSizes) {
  const std::pair<const char*, std::function<std::u16string(const std::u16string&)>> cases[] = {
      {"decompose", [](auto& s) { return Planes(s, DecompositionTable); }},
      {"canonical", [](auto& s) { return Planes(s, CanonicalTable); }},
      {"compose", [](auto& s) { return Compose(s); }},
      {"combining-marks", [](auto& s) { return CombiningMarks(s); }},
      {"spacing-marks", [](auto& s) { return SpacingMarks(s); }},
      {"crlf", [](auto& s) { return LineEnds(s, u"\r\n"); }},
      {"cr", [](auto& s) { return LineEnds(s, u"\r"); }},
      {"lf", [](auto& s) { return LineEnds(s, u"\n"); }},
      {"ls", [](auto& s) { return LineEnds(s, u"\u2028"); }},
      {"ps", [](auto& s) { return LineEnds(s, u"\u2029"); }},
  };
  std::mt19937 rng(20261124);
  for (int round = 0; round < 40; ++round) {
    const std::u16string text = RandomText(rng, 1 + rng() % 3000);
    const auto sizes = RandomSizes(rng);
    for (auto& [name, reference] : cases) {
      ASSERT_EQ(Through(name, text, sizes), reference(text)) << name << " round " << round;
    }
  }
}

}  // namespace
