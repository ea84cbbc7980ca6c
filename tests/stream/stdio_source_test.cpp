#include "varnice/stream/stdio_source.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "varnice/stream/buffer_char16_source.h"
#include "varnice/stream/buffer_char_source.h"
#include "varnice/stream/stdio16_source.h"

namespace {

// Lends its text one byte per range, so that line readers must cross ranges.
class OneByteAtATime : public virtual CharSource {
 public:
  explicit OneByteAtATime(const char* text) : next_(text) {}
  bool FillBuffer() override {
    if (*next_ == '\0') return false;
    position_ = next_;
    end_ = ++next_;
    return true;
  }

 private:
  const char* next_;
};

TEST(StdioSource, FgetcSignExtendsBytes) {
  const unsigned char bytes[] = {'a', 0xFF, 0x80};
  BufferCharSource source(bytes, bytes + 3);
  StdioSource in(source);
  EXPECT_EQ(in.fgetc(), 'a');
  EXPECT_EQ(in.fgetc(), -1);  // 0xFF reads as end of input ...
  EXPECT_FALSE(in.feof_());   // ... though it is not
  EXPECT_EQ(in.fgetc(), -128);
  EXPECT_TRUE(in.feof_());
  EXPECT_EQ(in.fgetc(), -1);
}

TEST(StdioSource, UngetcHoldsOneCharacter) {
  BufferCharSource source("xy", nullptr);
  StdioSource in(source);
  EXPECT_EQ(in.ungetc('a'), 'a');
  EXPECT_EQ(in.ungetc('b'), -1);  // the first is kept
  EXPECT_EQ(in.fgetc(), 'a');
  EXPECT_EQ(in.fgetc(), 'x');

  // A pushed-back character is never at end of input.
  BufferCharSource empty("", nullptr);
  StdioSource at_end(empty);
  EXPECT_TRUE(at_end.feof_());
  at_end.ungetc('z');
  EXPECT_FALSE(at_end.feof_());
  EXPECT_EQ(at_end.fgetc(), 'z');
}

TEST(StdioSource, FgetsKeepsTheNewlineAndRespectsTheLimit) {
  OneByteAtATime source("ab\ncdefg");
  StdioSource in(source);
  char buf[8];
  std::memset(buf, '#', sizeof buf);
  EXPECT_EQ(in.fgets(buf, 1), nullptr);  // no room for a character: nothing read
  EXPECT_EQ(buf[0], '#');
  ASSERT_EQ(in.fgets(buf, 8), buf);
  EXPECT_STREQ(buf, "ab\n");
  ASSERT_EQ(in.fgets(buf, 3), buf);  // n - 1 characters at most
  EXPECT_STREQ(buf, "cd");
  ASSERT_EQ(in.fgets(buf, 8), buf);
  EXPECT_STREQ(buf, "efg");
  EXPECT_EQ(in.fgets(buf, 8), nullptr);
}

TEST(StdioSource, FgetsTakesAPushedBackCharacterOutOfItsSlot) {
  BufferCharSource source("b\nc", nullptr);
  StdioSource in(source);
  char buf[8];
  in.ungetc('a');
  ASSERT_EQ(in.fgets(buf, 8), buf);
  EXPECT_STREQ(buf, "ab\n");
  EXPECT_EQ(in.fgetc(), 'c');

  in.ungetc('\n');  // a pushed-back newline is a whole line
  ASSERT_EQ(in.fgets(buf, 8), buf);
  EXPECT_STREQ(buf, "\n");
}

TEST(StdioSource, GetsDropsTheNewlineButLeavesAPushedBackCharacter) {
  BufferCharSource source("b\n\nrest", nullptr);
  StdioSource in(source);
  char buf[8];
  in.ungetc('a');
  ASSERT_EQ(in.gets(buf, 8), buf);
  EXPECT_STREQ(buf, "ab");
  EXPECT_EQ(in.fgetc(), 'a');  // delivered again

  ASSERT_EQ(in.gets(buf, 8), buf);  // an empty line is still a line
  EXPECT_STREQ(buf, "");
  ASSERT_EQ(in.gets(buf, -1), buf);  // no limit
  EXPECT_STREQ(buf, "rest");
  EXPECT_EQ(in.gets(buf, 8), nullptr);
  EXPECT_EQ(in.gets(buf, 0), nullptr);
  EXPECT_EQ(in.gets(buf, -2), nullptr);
}

TEST(StdioSource, GetsStopsAtTheLimitAndContinuesThere) {
  OneByteAtATime source("abcde\nf");
  StdioSource in(source);
  char buf[8];
  ASSERT_EQ(in.gets(buf, 3), buf);
  EXPECT_STREQ(buf, "ab");
  ASSERT_EQ(in.gets(buf, 8), buf);
  EXPECT_STREQ(buf, "cde");

  // A one-unit buffer holds only the NUL, even with a character pushed back.
  in.ungetc('x');
  buf[1] = '#';
  EXPECT_EQ(in.gets(buf, 1), nullptr);
  EXPECT_EQ(buf[0], '\0');
  EXPECT_EQ(buf[1], '#');
}

TEST(Stdio16Source, ZeroExtendsUnitsAndReadsLinesOfUnits) {
  const unsigned short text[] = {0xFFFF, 0x3042, '\n', 'x', '\n', 0};
  BufferChar16Source source(text, nullptr);
  Stdio16Source in(source);
  EXPECT_EQ(in.fgetc(), 65535);
  unsigned short buf[8];
  ASSERT_EQ(in.fgets(buf, 8), buf);
  EXPECT_EQ(std::u16string(buf, buf + 3), std::u16string(u"\u3042\n\0", 3));
  in.ungetc(0xFFFF);
  ASSERT_EQ(in.gets(buf, 8), buf);
  EXPECT_EQ(std::u16string(buf, buf + 3), std::u16string(u"\uFFFFx\0", 3));
  EXPECT_EQ(in.fgetc(), 0xFFFF);
  EXPECT_TRUE(in.feof_());
}

}  // namespace
