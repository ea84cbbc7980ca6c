#include "varnice/stream/printf_engine.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "varnice/stream/buffer_char_sink.h"
#include "varnice/stream/string_char16_sink.h"
#include "varnice/stream/string_char_sink.h"

namespace {

std::u16string Widen(const std::string& s) {
  std::u16string w;
  for (unsigned char c : s) w += static_cast<char16_t>(c);
  return w;
}

std::u16string Text(const StringChar16Sink& sink) {
  return std::u16string(sink.data(), sink.data() + sink.size());
}

// Formats the arguments with the C library and with all three engines (the
// 16-bit format being the widened 8-bit one); all must agree on text and count.
void ExpectLikeC(const char* format, ...) {
  SCOPED_TRACE(format);
  std::va_list args;
  va_start(args, format);

  std::va_list c_args;
  va_copy(c_args, args);
  const int c_count = std::vsnprintf(nullptr, 0, format, c_args);
  va_end(c_args);
  std::string expected(static_cast<std::size_t>(c_count) + 1, '\0');
  va_copy(c_args, args);
  std::vsnprintf(expected.data(), expected.size(), format, c_args);
  va_end(c_args);
  expected.resize(static_cast<std::size_t>(c_count));

  StringCharSink narrow;
  EXPECT_EQ(narrow.vprintf(format, &args), c_count);
  EXPECT_EQ(std::string(narrow.data(), narrow.size()), expected);

  // vprintf reads a copy of the list, so the same list serves again.
  StringChar16Sink wide;
  EXPECT_EQ(wide.vprintf(format, &args), c_count);
  EXPECT_EQ(Text(wide), Widen(expected));

  std::vector<unsigned short> wide_format(format, format + std::char_traits<char>::length(format) + 1);
  StringChar16Sink wide_from_wide;
  EXPECT_EQ(wide_from_wide.vprintf(wide_format.data(), &args), c_count);
  EXPECT_EQ(Text(wide_from_wide), Widen(expected));
  va_end(args);
}

TEST(PrintfEngine, IntegersMatchTheCLibrary) {
  ExpectLikeC("plain text, no directives");
  ExpectLikeC("%d|%i|%5d|%-5d|%05d|%+d|% d|%.3d|%8.3d|%-+6d|", 42, -42, 42, 42, -42, 42, 42, 7, -7, 3);
  ExpectLikeC("%d %d", INT_MIN, INT_MAX);
  ExpectLikeC("%u|%o|%#o|%x|%#x|%X|%#X|%#.0x|%.0d|", 3000000000u, 8u, 8u, 255u, 255u, 255u, 255u, 0u, 0);
  ExpectLikeC("%hhd|%hhu|%hd|%hu|", 300, 300, 70000, 70000);
  ExpectLikeC("%ld|%lu|%lld|%llx|", LONG_MIN, ULONG_MAX, LLONG_MIN, ULLONG_MAX);
  ExpectLikeC("%zu|%zd|%jd|%ju|%td|", static_cast<std::size_t>(123456789012u), static_cast<std::ptrdiff_t>(-5),
              INTMAX_MIN, UINTMAX_MAX, static_cast<std::ptrdiff_t>(-77));
}

TEST(PrintfEngine, StarWidthAndPrecisionComeFromTheArguments) {
  ExpectLikeC("[%*d][%-*d][%*d][%.*d][%.*s][%*.*f]", 6, 1, 6, 2, -6, 3, 4, 5, 2, "abcdef", 9, 3, 3.14159);
  ExpectLikeC("[%.*d][%.*f]", -1, 42, -3, 2.5);  // negative precision is no precision
}

TEST(PrintfEngine, FloatingPointMatchesTheCLibrary) {
  ExpectLikeC("%f|%F|%.2f|%10.3f|%-10.1f|%+f|% f|%010.2f|", 3.14159, 2.5, 2.675, -1.0, 0.05, 1.0, 1.0, -3.5);
  ExpectLikeC("%e|%E|%.0e|%#.0e|%g|%G|%g|%#g|%.3g|", 12345.678, 0.000123, 5.0, 5.0, 0.0001, 1e-10, 100000.0,
              1.0, 1234567.0);
  ExpectLikeC("%a|%A|%.2a|", 1.0, -0.1, 3.0);
  ExpectLikeC("%f|%e|%F|%g|", 1.0 / 0.0, -1.0 / 0.0, 0.0 / 0.0, -0.0);
  ExpectLikeC("%Lf|%.3Le|%Lg|", 1.5L, 12345.678L, LDBL_MAX);
  ExpectLikeC("%f", DBL_MAX);  // 309 digits: longer than the stack buffer
}

TEST(PrintfEngine, TextPointersAndPercentMatchTheCLibrary) {
  ExpectLikeC("[%s][%10s][%-10s][%.2s][%c][%3c][%-3c]%%[%5%]", "text", "right", "left", "abc", 'x', 'y', 'z');
  ExpectLikeC("[%p][%20p][%-20p][%p]", static_cast<void*>(nullptr), reinterpret_cast<void*>(0x1234),
              reinterpret_cast<void*>(0xabcdef), reinterpret_cast<void*>(0x10));
  ExpectLikeC("[%300s]", "wide field");  // padding longer than one chunk
}

TEST(PrintfEngine, PrecisionBoundsTheReadOfUnterminatedText) {
  const char bytes[3] = {'a', 'b', 'c'};  // no NUL
  StringCharSink sink;
  EXPECT_EQ(sink.printf("%.3s|%.2s", bytes, bytes), 6);
  EXPECT_STREQ(sink.c_str(), "abc|ab");
}

TEST(PrintfEngine, NStoresTheCountSoFar) {
  StringCharSink sink;
  int n = -1;
  signed char hh = -1;
  long long ll = -1;
  std::size_t z = 99;
  EXPECT_EQ(sink.printf("ab%ncde%hhnf%lln%zn", &n, &hh, &ll, &z), 6);
  EXPECT_EQ(n, 2);
  EXPECT_EQ(hh, 5);
  EXPECT_EQ(ll, 6);
  EXPECT_EQ(z, 6u);
}

TEST(PrintfEngine, UnknownAndCutOffDirectivesStandAsWritten) {
  StringCharSink sink;
  EXPECT_EQ(sink.printf("%y|%5k|%d|%", 7), 10);
  EXPECT_STREQ(sink.c_str(), "%y|%5k|7|%");
}

TEST(PrintfEngine, WideEnginesTakeBytesForSAndUnitsForLs) {
  const unsigned short hiragana[] = {0x3042, 0x3044, 0};
  const char latin1[] = "caf\xE9";
  StringChar16Sink sink;
  EXPECT_EQ(sink.printf("%s|%ls|%c|%lc|%-4ls|%.1ls", latin1, hiragana, 0xE9, 0x3046, hiragana, hiragana), 18);
  EXPECT_EQ(Text(sink), u"caf\u00E9|\u3042\u3044|\u00E9|\u3046|\u3042\u3044  |\u3042");

  // The same through a 16-bit format, whose own non-ASCII text is kept.
  const unsigned short format[] = {0x300C, '%', 'l', 's', '%', 's', 0x300D, 0};
  StringChar16Sink from_wide;
  EXPECT_EQ(from_wide.printf(format, hiragana, "!"), 5);
  EXPECT_EQ(Text(from_wide), u"\u300C\u3042\u3044!\u300D");

  // An 8-bit sink keeps what fits in a byte.
  const unsigned short mixed[] = {'a', 0xE9, 0x3042, 0};
  StringCharSink narrow;
  EXPECT_EQ(narrow.printf("%ls%lc", mixed, 0x3044), 4);
  EXPECT_EQ(std::string(narrow.data(), narrow.size()), "a\xE9??");
}

// Records each PutBuffer call.
class ChunkRecorder : public CharSink {
 public:
  ChunkRecorder() : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)), CharSink(this) {}
  void Flush() override {}
  void PutBuffer(const char* b, const char* e) override { chunks.emplace_back(b, e); }
  std::vector<std::string> chunks;
};

TEST(PrintfEngine, OutputReachesTheSinkInFewChunks) {
  ChunkRecorder sink;
  const std::string long_text(1000, 'x');
  EXPECT_EQ(sink.printf("a%db%sc%5d", 1, long_text.c_str(), 2), 1009);
  std::string joined;
  for (const auto& c : sink.chunks) joined += c;
  EXPECT_EQ(joined, "a1b" + long_text + "c    2");
  EXPECT_LE(sink.chunks.size(), 6u);  // not one call per piece or per unit
}

TEST(PrintfEngine, CountIncludesWhatABoundedSinkDrops) {
  char buffer[4];
  BufferCharSink sink(buffer, 4);
  EXPECT_EQ(sink.printf("%s-%d", "abc", 12345), 9);
  EXPECT_EQ(std::string(buffer, 4), "abc-");
  EXPECT_TRUE(sink.truncated());
}

}  // namespace
