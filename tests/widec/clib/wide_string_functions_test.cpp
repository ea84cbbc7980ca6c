// The string, memory, number and time functions of the 16-bit C library.
#include <gtest/gtest.h>

#include <barrier>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/widec/wide_test_support.h"
#include "varnice/widec/clib/qz_wchar.h"

namespace {

int Sign(int v) { return v < 0 ? -1 : v > 0 ? 1 : 0; }

TEST(WideStrings, ComparisonsAreExactlyMinusOneZeroOneOverUnsignedUnits) {
  const std::u16string texts[] = {u"", u"a", u"ab", u"abc", u"b", u"\uFFFF", u"\u0001",
                                  u"a\uFFFFz", u"a\u0100", u"ab\u0000"};
  for (const auto& a : texts) {
    for (const auto& b : texts) {
      SCOPED_TRACE(testing::Message() << a.size() << "/" << b.size());
      const Wide wa(a), wb(b);
      const int expected = Sign(a.compare(b));  // char16_t compares unsigned
      EXPECT_EQ(qz_wcscmp(wa, wb), expected);
      EXPECT_EQ(qz_wcscoll(wa, wb), expected);
      EXPECT_EQ(qz_wcsncmp(wa, wb, 100), expected);
      EXPECT_EQ(qz_wcsncmp(wa, wb, 1), Sign(a.substr(0, 1).compare(b.substr(0, 1))));
      EXPECT_EQ(qz_wcsncmp(wa, wb, 0), 0);
      const std::size_t n = std::min(a.size(), b.size());
      EXPECT_EQ(qz_wmemcmp(wa, wb, n), Sign(a.substr(0, n).compare(b.substr(0, n))));
    }
  }
}

TEST(WideStrings, CopyAndConcatenateKeepCsPaddingAndTerminationRules) {
  Wide dst(u"XXXXXXXX");
  EXPECT_EQ(qz_wcsncpy(dst, Wide("ab"), 5), dst.p());
  EXPECT_EQ(std::u16string(dst.p(), dst.p() + 8), std::u16string(u"ab\0\0\0XXX", 8));
  Wide fresh(u"XXXXXXXX");
  qz_wcsncpy(fresh, Wide("abcdef"), 3);  // no terminator when src is as long as n
  EXPECT_EQ(Text(fresh), u"abcXXXXX");

  Wide buf("ab", 10);
  EXPECT_EQ(qz_wcscat(buf, Wide("cd")), buf.p());
  EXPECT_EQ(Text(qz_wcsncat(buf, Wide("efgh"), 2)), u"abcdef");
  EXPECT_EQ(Text(qz_wcsncat(buf, Wide("g"), 5)), u"abcdefg");
  EXPECT_EQ(Text(qz_wcscpy(buf, Wide("z"))), u"z");
  EXPECT_EQ(qz_wcslen(buf), 1u);

  Wide mem("abcdef");
  EXPECT_EQ(Text(qz_wmemmove(mem.p() + 1, mem, 4) - 1), u"aabcdf");
  EXPECT_EQ(Text(qz_wmemcpy(mem, Wide("xy"), 2)), u"xybcdf");
  EXPECT_EQ(Text(qz_wmemset(mem, 0xFF21, 3)), u"\uFF21\uFF21\uFF21cdf");
  EXPECT_EQ(qz_wmemchr(mem, 'd', 6), mem.p() + 4);
  EXPECT_EQ(qz_wmemchr(mem, 'd', 4), nullptr);
  EXPECT_EQ(qz_wmemchr(mem, 0, 7), mem.p() + 6);  // memory, not a string: 0 is a unit
}

TEST(WideStrings, SearchFunctions) {
  Wide s(u"a,b;\u3000c,b");
  EXPECT_EQ(qz_wcschr(s, 'b'), s.p() + 2);
  EXPECT_EQ(qz_wcsrchr(s, 'b'), s.p() + 7);
  EXPECT_EQ(qz_wcschr(s, 0), s.p() + 8);  // 0 finds the terminator
  EXPECT_EQ(qz_wcsrchr(s, 0), s.p() + 8);
  EXPECT_EQ(qz_wcschr(s, 'z'), nullptr);
  EXPECT_EQ(qz_wcsrchr(s, 0x3000), s.p() + 4);
  EXPECT_EQ(qz_wcscspn(s, Wide(";")), 3u);
  EXPECT_EQ(qz_wcscspn(s, Wide("")), 8u);
  EXPECT_EQ(qz_wcsspn(s, Wide("a,")), 2u);
  EXPECT_EQ(qz_wcspbrk(s, Wide(u"\u3000;")), s.p() + 3);
  EXPECT_EQ(qz_wcspbrk(s, Wide("xyz")), nullptr);

  Wide hay("abcabd");
  EXPECT_EQ(qz_wcsstr(hay, Wide("abd")), hay.p() + 3);
  EXPECT_EQ(qz_wcsstr(hay, Wide("abe")), nullptr);
  EXPECT_EQ(qz_wcsstr(hay, Wide("abcabdx")), nullptr);
  EXPECT_EQ(qz_wcsstr(hay, Wide("")), hay.p());  // empty needle: the haystack
  Wide empty("");
  EXPECT_EQ(qz_wcsstr(empty, Wide("")), nullptr);  // but nothing in an empty haystack
}

TEST(WideStrings, TransformCopiesAndMeasuresTheDestination) {
  Wide dst("previous", 4);
  EXPECT_EQ(qz_wcsxfrm(dst, Wide("ignored source"), 0), 8u);  // length of what dst held
  EXPECT_EQ(Text(dst), u"previous");
  EXPECT_EQ(qz_wcsxfrm(dst, Wide("abc"), 12), 3u);
  EXPECT_EQ(Text(dst), u"abc");
  EXPECT_EQ(dst.p()[11], 0);  // padded up to n
  Wide full("XXXXXX");
  EXPECT_EQ(qz_wcsxfrm(full, Wide("abc"), 3), 6u);  // no terminator copied: measures on
}

TEST(WideStrings, TokenizeContinuesWithinTheCallingThread) {
  Wide s(",,ab,,c;d,,");
  const Wide delimiters(",;");
  EXPECT_EQ(Text(qz_wcstok(s, delimiters)), u"ab");
  EXPECT_EQ(Text(qz_wcstok(nullptr, delimiters)), u"c");
  EXPECT_EQ(Text(qz_wcstok(nullptr, delimiters)), u"d");
  EXPECT_EQ(qz_wcstok(nullptr, delimiters), nullptr);
  EXPECT_EQ(qz_wcstok(nullptr, delimiters), nullptr);
  Wide only(",,,");
  EXPECT_EQ(qz_wcstok(only, delimiters), nullptr);
  EXPECT_EQ(qz_wcstok(nullptr, delimiters), nullptr);
}

TEST(WideStrings, TokenizeOnTwoThreadsAtOnce) {
  // Both threads step in lock-step, so a shared continuation would mix them.
  std::barrier step(2);
  auto tokenize = [&step](std::string text, std::vector<std::u16string>* tokens) {
    Wide s(text);
    const Wide delimiters(" ");
    unsigned short* token = qz_wcstok(s, delimiters);
    for (int i = 0; i < 6; ++i) {
      step.arrive_and_wait();
      if (token != nullptr) tokens->push_back(Text(token));
      token = qz_wcstok(nullptr, delimiters);
    }
  };
  std::vector<std::u16string> first, second;
  std::thread a(tokenize, "one two three four", &first);
  std::thread b(tokenize, "  alpha beta gamma", &second);
  a.join();
  b.join();
  EXPECT_EQ(first, (std::vector<std::u16string>{u"one", u"two", u"three", u"four"}));
  EXPECT_EQ(second, (std::vector<std::u16string>{u"alpha", u"beta", u"gamma"}));
}

// The narrow C function on the same ASCII text, and where it stopped.
struct Narrow {
  long l;
  unsigned long ul;
  double d;
  std::ptrdiff_t end_l, end_ul, end_d;
};

TEST(WideNumbers, AgreeWithTheNarrowCLibraryOnRandomText) {
  std::mt19937 rng(18);
  const std::string integer_alphabet = " \t+-0123456789abcfxXzZ";
  const std::string float_alphabet = " \t+-0123456789.eE,";
  const int bases[] = {0, 2, 8, 10, 16, 36};
  for (int i = 0; i < 4000; ++i) {
    const bool for_float = i % 2 == 1;
    const std::string& alphabet = for_float ? float_alphabet : integer_alphabet;
    std::string text;
    const int length = static_cast<int>(rng() % 30);
    for (int k = 0; k < length; ++k) text += alphabet[rng() % alphabet.size()];
    if (i % 7 == 0) text = "-" + std::string(1 + rng() % 40, static_cast<char>('1' + rng() % 9));
    SCOPED_TRACE(text);
    const Wide w(text);
    unsigned short* end = nullptr;
    char* c_end = nullptr;
    // Where nothing converts the C function leaves the end at the start; here
    // it is past the leading white space.
    const std::ptrdiff_t blanks = static_cast<std::ptrdiff_t>(std::strspn(text.c_str(), " \t"));
    auto expect_end = [&](std::ptrdiff_t c_offset) {
      EXPECT_EQ(end - w, c_offset == 0 ? blanks : c_offset);
    };
    if (for_float) {
      errno = 0;
      const double expected = std::strtod(text.c_str(), &c_end);
      const int c_errno = errno;
      errno = 0;
      EXPECT_EQ(qz_wcstod(w, &end), expected);
      EXPECT_EQ(errno, c_errno);
      expect_end(c_end - text.c_str());
    } else {
      const int base = bases[rng() % 6];
      errno = 0;
      const long expected = std::strtol(text.c_str(), &c_end, base);
      const int c_errno = errno;
      errno = 0;
      EXPECT_EQ(qz_wcstol(w, &end, base), expected) << base;
      EXPECT_EQ(errno, c_errno);
      expect_end(c_end - text.c_str());
      const unsigned long expected_u = std::strtoul(text.c_str(), &c_end, base);
      EXPECT_EQ(qz_wcstoul(w, &end, base), expected_u) << base;
      expect_end(c_end - text.c_str());
    }
  }
}

TEST(WideNumbers, NarrowOnlyWhatTheyKnow) {
  unsigned short* end;
  Wide a(" 1.5x");
  EXPECT_EQ(qz_wcstod(a, &end), 1.5);
  EXPECT_EQ(end, a.p() + 4);
  Wide b("  abc");
  EXPECT_EQ(qz_wcstod(b, &end), 0.0);
  EXPECT_EQ(end, b.p() + 2);  // past the spaces, not back at the start
  Wide c("0x1F");
  EXPECT_EQ(qz_wcstol(c, &end, 16), 31);
  EXPECT_EQ(end, c.p() + 4);
  // No infinities, NaNs or hexadecimal floating point: those letters stop the copy.
  Wide inf("inf");
  EXPECT_EQ(qz_wcstod(inf, &end), 0.0);
  EXPECT_EQ(end, inf.p());
  Wide hex("0x1p4");
  EXPECT_EQ(qz_wcstod(hex, &end), 0.0);
  EXPECT_EQ(end, hex.p() + 1);
  // Any qz_iswspace unit is leading white space, the ideographic space too.
  Wide ideographic(u"\u3000\u2028-42");
  EXPECT_EQ(qz_wcstol(ideographic, &end, 10), -42);
  EXPECT_EQ(end, ideographic.p() + 5);
  // A unit whose low byte is a digit is not a digit.
  Wide high(u"12\u0133");
  EXPECT_EQ(qz_wcstoul(high, &end, 10), 12u);
  EXPECT_EQ(end, high.p() + 2);
  // Only 127 characters are looked at.
  Wide longer(std::string(130, '7'));
  EXPECT_EQ(qz_wcstod(longer, &end), std::strtod(std::string(127, '7').c_str(), nullptr));
  EXPECT_EQ(end, longer.p() + 127);
  EXPECT_EQ(qz_wcstol(Wide("12"), nullptr, 10), 12);  // a null end is allowed
}

TEST(WideTime, FormatsThroughStrftime) {
  std::tm tm{};
  tm.tm_year = 99;
  tm.tm_mon = 4;
  tm.tm_mday = 10;
  tm.tm_hour = 13;
  unsigned short out[64];
  char narrow[64];
  const std::size_t n = std::strftime(narrow, sizeof narrow, "%Y-%m-%d %H:%M %% %p", &tm);
  EXPECT_EQ(qz_wcsftime(out, 64, Wide("%Y-%m-%d %H:%M %% %p"), &tm), n);
  EXPECT_EQ(Text(out), Widen(narrow));
  EXPECT_EQ(qz_wcsftime(out, 64, Wide(u"\u65E5%\u6642%d"), &tm), 4u);  // '%' before a non-ASCII unit drops
  EXPECT_EQ(Text(out), u"\u65E5\u664210");

  // Room for max - 1 units: a result of 10 fits 11, not 10.
  EXPECT_EQ(qz_wcsftime(out, 11, Wide("%Y-%m-%d"), &tm), 10u);
  EXPECT_EQ(qz_wcsftime(out, 10, Wide("%Y-%m-%d"), &tm), 0u);
  EXPECT_EQ(qz_wcsftime(out, 3, Wide("abc"), &tm), 0u);
  EXPECT_EQ(qz_wcsftime(out, 0, Wide(""), &tm), 0u);
  EXPECT_EQ(qz_wcsftime(out, 1, Wide(""), &tm), 0u);
  EXPECT_EQ(out[0], 0);

  // Bytes above 0x7F are sign-extended, and an empty expansion fails the call.
  char zone[] = "\xE9T";
  tm.tm_zone = zone;
  EXPECT_EQ(qz_wcsftime(out, 64, Wide("<%Z>"), &tm), 4u);
  EXPECT_EQ(Text(out), u"<\uFFE9T>");
  char no_zone[] = "";
  tm.tm_zone = no_zone;
  tm.tm_isdst = -1;  // no zone known: %Z expands to nothing
  EXPECT_EQ(qz_wcsftime(out, 64, Wide("a%Zb"), &tm), 0u);
}

}  // namespace
