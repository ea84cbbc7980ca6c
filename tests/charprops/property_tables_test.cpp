// The generated property and case tables, checked against the character
// database they are made from and against the rows that callers rely on.
#include "varnice/charprops/property_tables.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "varnice/capi/varnice_c.h"
#include "varnice/charprops/character_property.h"

namespace {

using varnice::internal::CategoryOf;
using varnice::internal::ScriptOf;
using varnice::internal::WidthOf;

struct UcdRow {
  std::string category;
  std::string upper;
  std::string lower;
};

// UnicodeData.txt of 2.1.8 by code point, with First/Last ranges expanded.
std::map<unsigned, UcdRow> const& Ucd() {
  static std::map<unsigned, UcdRow> rows = [] {
    std::map<unsigned, UcdRow> out;
    std::ifstream in(VARNICE_SOURCE_DIR "/data/unicode-2.1.8/UnicodeData.txt");
    std::string line;
    unsigned first = 0;
    while (std::getline(in, line)) {
      std::vector<std::string> f;
      std::stringstream ss(line);
      for (std::string field; std::getline(ss, field, ';');) f.push_back(field);
      if (f.size() < 14) continue;
      const unsigned cp = std::stoul(f[0], nullptr, 16);
      const UcdRow row{f[2], f[12], f[13]};
      if (f[1].find(", First>") != std::string::npos) {
        first = cp;
      } else if (f[1].find(", Last>") != std::string::npos) {
        for (unsigned c = first; c <= cp; ++c) out[c] = row;
      } else {
        out[cp] = row;
      }
    }
    return out;
  }();
  return rows;
}

CharacterCategory FromAbbreviation(std::string const& gc) {
  static const char* const kOrder[] = {"Lu", "Ll", "Lt", "Lm", "Lo", "Mn", "Mc", "Me", "Nd", "Nl",
                                       "No", "Pc", "Pd", "Ps", "Pe", "Pi", "Pf", "Po", "Sm", "Sc",
                                       "Sk", "So", "Zs", "Zl", "Zp", "Cc", "Cf", "Co", "Cs"};
  for (unsigned v = 0; v < 29; ++v) {
    if (gc == kOrder[v]) return static_cast<CharacterCategory>(v);
  }
  ADD_FAILURE() << "unknown category " << gc;
  return CharacterCategory::NonCharacter;
}

template <class Entry>
void ExpectSortedDisjointRuns(Entry const* runs, long count) {
  for (long i = 0; i < count; ++i) {
    EXPECT_LE(runs[i].first, runs[i].last) << "run " << i;
    EXPECT_LE(runs[i].last, 0xFFFFu) << "run " << i;
    if (i > 0) EXPECT_LT(runs[i - 1].last, runs[i].first) << "run " << i;
  }
}

TEST(PropertyTables, EveryCodeUnitHasTheCategoryOfTheDatabaseAndRunsAreOrdered) {
  std::map<unsigned, UcdRow> const& ucd = Ucd();
  ASSERT_EQ(ucd.size(), 47400u);  // the whole file was read
  // The script and width runs, which the rows below only sample, must be
  // sorted and disjoint for the binary search to find every run.
  ExpectSortedDisjointRuns(varnice::internal::kScriptRuns, varnice::internal::kScriptRunsCount);
  ExpectSortedDisjointRuns(varnice::internal::kWidthRuns, varnice::internal::kWidthRunsCount);
  for (unsigned c = 0; c <= 0xFFFF; ++c) {
    auto it = ucd.find(c);
    const CharacterCategory expected =
        it == ucd.end() ? CharacterCategory::NonCharacter : FromAbbreviation(it->second.category);
    ASSERT_EQ(CategoryOf(static_cast<unsigned short>(c)), expected) << std::hex << "U+" << c;
  }
}

TEST(PropertyTables, ScriptsFollowBlocksWithSpacesAndControlsGeneral) {
  struct Row {
    unsigned short c;
    ScriptSystem script;
  };
  using S = ScriptSystem;
  const Row rows[] = {
      {0x0000, S::GeneralScript},   {0x0020, S::GeneralScript},  {0x0021, S::LatinScript},
      {0x007E, S::LatinScript},     {0x007F, S::GeneralScript},  {0x00A0, S::GeneralScript},
      {0x00E9, S::LatinScript},     {0x0250, S::LatinScript},    {0x02C6, S::GeneralScript},
      {0x0391, S::GreekScript},     {0x03FF, S::GreekScript},  // unassigned, inside the block
      {0x0410, S::CyrillicScript},  {0x0531, S::ArmenianScript}, {0x05D0, S::HebrewScript},
      {0x0627, S::ArabicScript},    {0x0915, S::DevanagariScript}, {0x0E01, S::ThaiScript},
      {0x0E81, S::LaoScript},       {0x0F40, S::TibetanScript},  {0x10D0, S::GeorgianScript},
      {0x1100, S::HangulJamoScript}, {0x1E00, S::LatinScript},   {0x1F00, S::GreekScript},
      {0x2000, S::GeneralScript},   {0x2190, S::GeneralScript},  {0x3000, S::GeneralScript},
      {0x3001, S::CJKScript},       {0x3042, S::HiraganaScript}, {0x30A2, S::KatakanaScript},
      {0x3105, S::BopomofoScript},  {0x3131, S::HangulJamoScript}, {0x4E00, S::CJKScript},
      {0x9FFF, S::CJKScript},       {0xAC00, S::HangulScript},   {0xF900, S::CJKScript},
      {0xFB01, S::LatinScript},     {0xFB2A, S::HebrewScript},   {0xFEFF, S::GeneralScript},
      {0xFF21, S::LatinScript},     {0xFF61, S::CJKScript},      {0xFF71, S::KatakanaScript},
      {0xFFA1, S::HangulJamoScript}, {0xFFE0, S::GeneralScript},
      // No script: gaps between blocks, holes of symbol blocks, surrogates,
      // private use, unassigned specials.
      {0x0700, S::UndefinedScript}, {0x2072, S::UndefinedScript}, {0x2FFF, S::UndefinedScript},
      {0xD800, S::UndefinedScript}, {0xE000, S::UndefinedScript}, {0xFFFF, S::UndefinedScript},
  };
  for (Row const& r : rows) {
    EXPECT_EQ(ScriptOf(r.c), r.script) << std::hex << "U+" << r.c;
  }
}

TEST(PropertyTables, WidthsFollowEastAsianWidthOfTheOldRepertoire) {
  struct Row {
    unsigned short c;
    CharacterWidth width;
  };
  using W = CharacterWidth;
  const Row rows[] = {
      {0x0020, W::Halfwidth},     {0x0021, W::Halfwidth},     {0x007E, W::Halfwidth},
      {0x001F, W::UndefinedWidth}, {0x00A2, W::Halfwidth},    {0x00E9, W::UndefinedWidth},
      {0x0391, W::UndefinedWidth}, {0x1100, W::Fullwidth},    {0x1160, W::UndefinedWidth},
      {0x20A9, W::Halfwidth},     {0x2329, W::Fullwidth},     {0x3000, W::Fullwidth},
      {0x3042, W::Fullwidth},     {0x3095, W::UndefinedWidth},  // unassigned in 2.1
      {0x30A2, W::Fullwidth},     {0x4E00, W::Fullwidth},     {0xAC00, W::Fullwidth},
      {0xFF21, W::Fullwidth},     {0xFF61, W::Halfwidth},     {0xFF71, W::Halfwidth},
      {0xFFE0, W::Fullwidth},     {0xFFE8, W::Halfwidth},
      // Wide only since emoji presentation came in.
      {0x231A, W::UndefinedWidth}, {0x2648, W::UndefinedWidth},
  };
  for (Row const& r : rows) {
    EXPECT_EQ(WidthOf(r.c), r.width) << std::hex << "U+" << r.c;
  }
}

TEST(CaseTables, TowupperAndTowlowerGiveTheSimpleMappingsOfTheDatabase) {
  std::map<unsigned, UcdRow> const& ucd = Ucd();
  int uppers = 0;
  int lowers = 0;
  for (unsigned c = 0; c <= 0xFFFF; ++c) {
    auto it = ucd.find(c);
    auto mapping = [&](std::string UcdRow::*field) {
      if (it == ucd.end() || (it->second.*field).empty()) return c;
      return static_cast<unsigned>(std::stoul(it->second.*field, nullptr, 16));
    };
    const unsigned up = mapping(&UcdRow::upper);
    const unsigned low = mapping(&UcdRow::lower);
    const auto u = static_cast<unsigned short>(c);
    ASSERT_EQ(qz_towupper(u), up) << std::hex << "U+" << c;
    ASSERT_EQ(qz_towlower(u), low) << std::hex << "U+" << c;
    uppers += qz_towupper(u) != c;
    lowers += qz_towlower(u) != c;
  }
  EXPECT_EQ(uppers, 680);
  EXPECT_EQ(lowers, 706);
}

TEST(CaseTables, RowsKeptFromTheOldVersion) {
  EXPECT_EQ(qz_towlower(0x0130), 0x0069);
  EXPECT_EQ(qz_towlower(0x10A0), 0x10D0);
  EXPECT_EQ(qz_towlower(0x10C5), 0x10F5);
  EXPECT_EQ(qz_towupper(0x1F80), 0x1F88);
  EXPECT_EQ(qz_towupper(0x1FA7), 0x1FAF);
  EXPECT_EQ(qz_towupper(0x1FB3), 0x1FBC);
  EXPECT_EQ(qz_towupper(0x1F88), 0x1F88);  // the titlecase form has no upper case
  EXPECT_EQ(qz_towupper(0x03F2), 0x03A3);
  EXPECT_EQ(qz_towupper(0x00B5), 0x00B5);
  EXPECT_EQ(qz_towupper(0x00DF), 0x00DF);  // no one-to-one mapping
  EXPECT_EQ(qz_towupper(0x01C5), 0x01C4);
  EXPECT_EQ(qz_towlower(0x01C5), 0x01C6);
  EXPECT_EQ(qz_towlower(0x01F6), 0x01F6);  // added after 2.1
  EXPECT_EQ(qz_towlower(0x0220), 0x0220);
}

TEST(CaseTables, Ucs2toupperHasRowsOnlyForPagesWithUpperCaseLetters) {
  EXPECT_EQ(UCS2toupper('a'), 'A');
  EXPECT_EQ(UCS2toupper(0xFF41), 0xFF21);
  EXPECT_EQ(UCS2toupper(0x24D0), 0x24B6);
  // Present rows store characters without an upper-case form as themselves.
  EXPECT_EQ(UCS2toupper('1'), '1');
  EXPECT_EQ(UCS2toupper(0x00DF), 0x00DF);
  EXPECT_EQ(UCS2toupper(0x0130), 0x0130);
  // Absent rows, and U+0000 whose stored self reads as "no entry".
  EXPECT_EQ(UCS2toupper(0x3042), 0xFFFD);
  EXPECT_EQ(UCS2toupper(0x10D0), 0xFFFD);  // Georgian: lower-case mappings only
  EXPECT_EQ(UCS2toupper(0x4E00), 0xFFFD);
  EXPECT_EQ(UCS2toupper(0x0000), 0xFFFD);
  for (unsigned c = 1; c <= 0xFFFF; ++c) {
    const auto u = static_cast<unsigned short>(c);
    if (qz_towupper(u) != c) ASSERT_EQ(UCS2toupper(u), qz_towupper(u)) << std::hex << "U+" << c;
  }
}

// The bytes of a UTF8toupper result, read out of the word in memory order.
std::string Bytes(unsigned long packed) {
  const std::uint32_t word = static_cast<std::uint32_t>(packed);
  unsigned char b[4];
  std::memcpy(b, &word, 4);
  std::string out;
  for (unsigned char x : b) {
    if (x == 0) break;
    out += static_cast<char>(x);
  }
  return out;
}

unsigned long Utf8Upper(const char* s) {
  return UTF8toupper(reinterpret_cast<const unsigned char*>(s));
}

TEST(CaseTables, Utf8toupperMapsOneCharacterAndPacksItsBytes) {
  EXPECT_EQ(Bytes(Utf8Upper("a")), "A");
  EXPECT_EQ(Bytes(Utf8Upper("abc")), "A");  // one character only
  EXPECT_EQ(Bytes(Utf8Upper("\xC3\xA9")), "\xC3\x89");          // e acute
  EXPECT_EQ(Bytes(Utf8Upper("\xC4\xB1")), "I");                 // dotless i: two bytes to one
  EXPECT_EQ(Bytes(Utf8Upper("\xEF\xBD\x85")), "\xEF\xBC\xA5");  // fullwidth e
  EXPECT_EQ(Bytes(Utf8Upper("\xC3\x9F")), "\xC3\x9F");          // sharp s stays
  EXPECT_EQ(Bytes(Utf8Upper("\xE3\x81\x82")), "\xE3\x81\x82");  // hiragana a: row absent
  EXPECT_EQ(Bytes(Utf8Upper("\xF0\x90\x80\x80")), "\xF0\x90\x80\x80");
  EXPECT_EQ(Bytes(Utf8Upper("\xF7\xBF\xBF\xBF")), "\xEF\xBF\xBD");  // beyond U+10FFFF
  EXPECT_EQ(Utf8Upper(""), 0u);
}

TEST(CaseTables, Utf8toupperReturnsAByteThatCannotBeginASequenceAlone) {
  EXPECT_EQ(Bytes(Utf8Upper("\x80\x80")), "\x80");
  EXPECT_EQ(Bytes(Utf8Upper("\xBF")), "\xBF");
  EXPECT_EQ(Bytes(Utf8Upper("\xF8\x88\x80\x80\x80")), "\xF8");
  EXPECT_EQ(Bytes(Utf8Upper("\xFF")), "\xFF");
  // A sequence cut short by the end of the string or by another lead byte.
  EXPECT_EQ(Bytes(Utf8Upper("\xE3\x81")), "\xE3");
  EXPECT_EQ(Bytes(Utf8Upper("\xC3" "a")), "\xC3");
}

}  // namespace
