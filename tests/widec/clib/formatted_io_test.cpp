// qz_swprintf, qz_swscanf and their file forms, against the C library's
// narrow functions on the same ASCII text.
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/widec/wide_test_support.h"
#include "varnice/stream/buffer_char16_source.h"
#include "varnice/widec/clib/qz_wchar.h"
#include "varnice/widec/clib/scanf_engine.h"

namespace {

std::string Pick(std::mt19937& rng, const std::vector<std::string>& choices) {
  return choices[rng() % choices.size()];
}

// One random printf directive with its value, applied by `apply`.
template <class Apply>
void WithRandomDirective(std::mt19937& rng, Apply apply) {
  std::string d = "%";
  const int kind = static_cast<int>(rng() % 6);
  const bool text = kind == 3 || kind == 4;  // flags other than '-' mean nothing to text
  for (const char* flag : {"-", "+", " ", "#", "0"}) {
    if (rng() % 4 == 0 && (!text || *flag == '-')) d += flag;
  }
  if (rng() % 2) d += std::to_string(rng() % 25);
  if (rng() % 2 && kind != 4) d += "." + std::to_string(rng() % 12);
  const long long big = static_cast<long long>(rng()) << (rng() % 33);
  const long long value = rng() % 2 ? big : -big;
  switch (kind) {
    case 0: apply(d + Pick(rng, {"d", "i"}), static_cast<int>(value)); break;
    case 1: apply(d + "ll" + Pick(rng, {"u", "o", "x", "X"}), value); break;
    case 2: apply(d + Pick(rng, {"f", "e", "E", "g", "G", "a"}), value / 997.0); break;
    case 3: apply(d + "s", "text"); break;
    case 4: apply(d + "c", 'q'); break;
    default: apply(d + Pick(rng, {"hd", "hhx"}), static_cast<int>(value)); break;
  }
}

TEST(WideFormattedOutput, NeverWritesPastTheCountAndSaysWhenTextDoesNotFit) {
  std::mt19937 rng(181);
  for (int i = 0; i < 3000; ++i) {
    WithRandomDirective(rng, [&](const std::string& directive, auto value) {
      const std::string format = "<" + directive + ">";
      SCOPED_TRACE(format);
      char narrow[512];
      const int length = std::snprintf(narrow, sizeof narrow, format.c_str(), value);
      ASSERT_LT(length, 500);
      const std::size_t n = rng() % (length + 4);
      std::vector<unsigned short> out(n + 8, 0xBEEF);
      const int result = qz_swprintf(out.data(), n, Wide(format), value);
      for (std::size_t k = n; k < out.size(); ++k) ASSERT_EQ(out[k], 0xBEEF) << "wrote past " << n;
      if (n == 0) {
        EXPECT_EQ(result, -1);
      } else if (static_cast<std::size_t>(length) < n) {
        EXPECT_EQ(result, length);
        EXPECT_EQ(Text(out.data()), Widen(narrow));
      } else {
        EXPECT_EQ(result, -1);
        EXPECT_EQ(Text(out.data()), Widen(std::string(narrow, n - 1)));
      }
    });
  }
}

TEST(WideFormattedOutput, TextConversionsUseTheLibrarysWideCharacter) {
  unsigned short out[32];
  const Wide kana(u"\u3042\u3044");
  EXPECT_EQ(qz_swprintf(out, 32, Wide("[%ls|%lc|%s|%c|%5.1ls]"), kana.p(), 0x30A2, "ab", 'z',
                        kana.p()),
            17);
  EXPECT_EQ(Text(out), u"[\u3042\u3044|\u30A2|ab|z|    \u3042]");
  // A 16-bit format may carry any unit as ordinary text.
  EXPECT_EQ(qz_swprintf(out, 32, Wide(u"\u00E9%d\uFFFF"), 7), 3);
  EXPECT_EQ(Text(out), u"\u00E97\uFFFF");
}

// Every argument slot starts with the same pattern in both runs, so stores of
// any width compare byte for byte.
struct Slots {
  Slots() { std::memset(bytes, 0xAB, sizeof bytes); }
  unsigned char bytes[6][128];
};

int NarrowScan(const std::string& text, const std::string& format, Slots& s) {
  return std::sscanf(text.c_str(), format.c_str(), s.bytes[0], s.bytes[1], s.bytes[2], s.bytes[3],
                     s.bytes[4], s.bytes[5]);
}

int WideScan(const std::string& text, const std::string& format, Slots& s) {
  return qz_swscanf(Wide(text), Wide(format), s.bytes[0], s.bytes[1], s.bytes[2], s.bytes[3],
                    s.bytes[4], s.bytes[5]);
}

std::string RandomInputToken(std::mt19937& rng) {
  char buf[64];
  switch (rng() % 9) {
    case 0: std::snprintf(buf, sizeof buf, "%lld", static_cast<long long>(rng()) * (rng() % 3 ? 1 : -99991)); break;
    case 1: std::snprintf(buf, sizeof buf, Pick(rng, {"%#x", "%#o", "%X", "%x"}).c_str(), rng()); break;
    case 2: std::snprintf(buf, sizeof buf, Pick(rng, {"%.3f", "%e", "%g", "%a", "%.0f", "%+.12E"}).c_str(),
                          (static_cast<double>(rng()) - 2e9) / (1 + rng() % 5000)); break;
    case 3: return Pick(rng, {"0x", "1e+", "-", ".", "+.5", "0x1p", "1.5e", "--3", "08", "0X1g"});
    case 4: return Pick(rng, {"inf", "-INFINITY", "nan", "in", "Nanx", "infinit"});
    case 5: return Pick(rng, {"99999999999999999999", "-9223372036854775809", "4294967296", "65536", "300"});
    case 6: return Pick(rng, {"word", "a-z", "]x", "%", "%%", ",", "x"});
    case 7: return Pick(rng, {" ", "  ", "\t", "\n "});
    default: return std::string(1 + rng() % 20, static_cast<char>('0' + rng() % 10));
  }
  return buf;
}

std::string RandomScanDirective(std::mt19937& rng) {
  switch (rng() % 10) {
    case 0: return Pick(rng, {" ", ",", "x", "-", "%%", " %%"});
    case 1: return "%" + Pick(rng, {"", "*"}) + Pick(rng, {"", "3", "12"}) + Pick(rng, {"s", "c", "[a-z]", "[^ ,]", "[]x]", "[0-9a-fA-F]", "[-+.0-9]"});
    case 2: return "%n";
    case 3:
    case 4:
    case 5: {
      std::string d = "%";
      if (rng() % 6 == 0) d += "*";
      if (rng() % 3 == 0) d += std::to_string(1 + rng() % 12);
      return d + Pick(rng, {"hh", "h", "", "l", "ll", "j", "z", "t"}) + Pick(rng, {"d", "i", "u", "o", "x", "X"});
    }
    default: {
      std::string d = "%";
      if (rng() % 6 == 0) d += "*";
      if (rng() % 3 == 0) d += std::to_string(1 + rng() % 12);
      return d + Pick(rng, {"", "l", "L"}) + Pick(rng, {"f", "e", "g", "a", "E", "G", "F", "A"});
    }
  }
}

TEST(WideFormattedInput, AgreesWithTheNarrowCLibraryOnRandomFormatsAndInput) {
  std::mt19937 rng(1818);
  int assignments = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string text, format;
    for (int k = 1 + rng() % 4; k > 0; --k) text += RandomInputToken(rng);
    int arguments = 0;
    for (int k = 1 + rng() % 5; k > 0; --k) {
      const std::string d = RandomScanDirective(rng);
      const bool takes_argument = d[0] == '%' && d[1] != '*' && d != "%%";
      if (takes_argument && arguments == 6) break;
      arguments += takes_argument;
      format += d;
    }
    SCOPED_TRACE("text \"" + text + "\" format \"" + format + "\"");
    Slots narrow, wide;
    const int expected = NarrowScan(text, format, narrow);
    ASSERT_EQ(WideScan(text, format, wide), expected);
    for (int k = 0; k < 6; ++k) {
      ASSERT_EQ(std::memcmp(narrow.bytes[k], wide.bytes[k], sizeof narrow.bytes[k]), 0) << "argument " << k;
    }
    assignments += expected > 0 ? expected : 0;
  }
  EXPECT_GT(assignments, 10000);  // the random cases mostly get somewhere
}

TEST(WideFormattedInput, TextConversionsUseTheLibrarysWideCharacter) {
  unsigned short word[8] = {0};
  unsigned short unit[2] = {0, 0xBEEF};
  char narrow[8] = {0};
  unsigned short set[8] = {0};
  int n = 0;
  EXPECT_EQ(qz_swscanf(Wide(u"\u3000\u65E5\u672C x\u00E9\u3042 \u30A2\u30A4;"),
                       Wide("%ls %lc%s %l[^;]%n"), word, unit, narrow, set, &n),
            4);
  EXPECT_EQ(Text(word), u"\u65E5\u672C");  // the ideographic space is white space
  EXPECT_EQ(unit[0], 'x');
  EXPECT_EQ(unit[1], 0xBEEF);  // %c adds no terminator
  EXPECT_STREQ(narrow, "\xE9?");  // units above 0xFF have no byte
  EXPECT_EQ(Text(set), u"\u30A2\u30A4");
  EXPECT_EQ(n, 10);
  // A 16-bit format may match any unit literally.
  int value = 0;
  EXPECT_EQ(qz_swscanf(Wide(u"\u5186\u00A5 42"), Wide(u"\u5186\u00A5%d"), &value), 1);
  EXPECT_EQ(value, 42);
  EXPECT_EQ(qz_swscanf(Wide(u"\u5186 42"), Wide(u"\u00A5%d"), &value), 0);
  EXPECT_EQ(qz_swscanf(Wide(""), Wide("%d"), &value), -1);
  EXPECT_EQ(qz_swscanf(Wide("  "), Wide(" "), &value), 0);
}

// The count of assignments and of the units consumed.
std::pair<int, long long> ScanOnce(Char16Source& source, const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  ScanfEngine<char> engine(source);
  const int n = engine.Scan(format, args);
  va_end(args);
  return {n, engine.Consumed()};
}

TEST(WideFormattedInput, EngineTakesFromItsSourceOnlyWhatItUsed) {
  const Wide text("12 34abc");
  BufferChar16Source source(text, nullptr);
  int a = 0, b = 0;
  EXPECT_EQ(ScanOnce(source, "%d", &a), std::make_pair(1, 2LL));
  EXPECT_EQ(ScanOnce(source, "%d", &b), std::make_pair(1, 3LL));
  EXPECT_EQ(a + b, 46);
  const unsigned short* rest;
  const unsigned short* end;
  ASSERT_TRUE(source.GetBuffer(rest, end));
  EXPECT_EQ(std::u16string(rest, end), u"abc");
}

TEST(WideFormattedIo, FilesCarryRawUnitsAndKeepTheUnusedOneForTheNextRead) {
  FILE* f = std::tmpfile();
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(qz_fwprintf(f, Wide("%d %ls;%s"), -15, Wide(u"\u3042b").p(), "x"), 8);
  std::rewind(f);
  int value = 0;
  unsigned short word[8];
  EXPECT_EQ(qz_fwscanf(f, Wide("%d%ls"), &value, word), 2);
  EXPECT_EQ(value, -15);
  EXPECT_EQ(Text(word), u"\u3042b;x");
  EXPECT_EQ(qz_fgetwc(f), QZ_WEOF);

  std::rewind(f);
  EXPECT_EQ(qz_fwscanf(f, Wide("%d"), &value), 1);
  EXPECT_EQ(qz_fgetwc(f), qz_wint_t{' '});  // the unit that ended the number was pushed back
  EXPECT_EQ(qz_fgetwc(f), 0x3042u);
  std::fclose(f);
}

}  // namespace
