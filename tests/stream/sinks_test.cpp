#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "varnice/stream/buffer_char16_sink.h"
#include "varnice/stream/buffer_char_sink.h"
#include "varnice/stream/buffer_char_source.h"
#include "varnice/stream/file_char16_sink.h"
#include "varnice/stream/file_char_sink.h"
#include "varnice/stream/string_char16_sink.h"
#include "varnice/stream/string_char16_source.h"
#include "varnice/stream/string_char_sink.h"

namespace {

TEST(BufferCharSink, CapacityZeroNeverWrites) {
  char buffer[2] = {'#', '#'};
  BufferCharSink sink(buffer, 0);
  sink.Put("abc");
  EXPECT_EQ(sink.c_str(), buffer);
  EXPECT_EQ(buffer[0], '#');  // not even a NUL
  EXPECT_EQ(sink.size(), 0);
  EXPECT_TRUE(sink.truncated());
}

TEST(BufferCharSink, ExactFillLeavesNoTerminatorAndIsNotTruncation) {
  char buffer[5] = {'#', '#', '#', '#', '#'};
  BufferCharSink sink(buffer, 4);
  EXPECT_EQ(buffer[0], '\0');  // terminated from the start
  sink.Put("ab");
  EXPECT_EQ(std::string(buffer, 3), std::string("ab\0", 3));
  EXPECT_EQ(sink.RemainingCapacity(), 2);
  sink.Put("cd");
  EXPECT_EQ(std::string(buffer, 5), "abcd#");
  EXPECT_EQ(sink.RemainingCapacity(), 0);
  EXPECT_FALSE(sink.truncated());
  EXPECT_EQ(sink.size(), 4);
}

TEST(BufferCharSink, OverflowCutsAndThenIgnoresEverything) {
  char buffer[5] = {'#', '#', '#', '#', '#'};
  BufferCharSink sink(buffer, 4);
  sink.Put("abcde");
  EXPECT_EQ(std::string(buffer, 5), "abcd#");
  EXPECT_TRUE(sink.truncated());

  // Once truncated, even text that would fit is dropped.
  char wide[8];
  BufferCharSink marked(wide, 8);
  marked.Put("ab");
  marked.MarkAsTruncated();
  marked.Put("cd");
  marked.Put("", nullptr);
  EXPECT_STREQ(marked.c_str(), "ab");
  EXPECT_EQ(marked.RemainingCapacity(), 6);
}

TEST(BufferChar16Sink, CountsCodeUnitsWithTheSameCuttingRules) {
  unsigned short buffer[4] = {0xAAAA, 0xAAAA, 0xAAAA, 0xAAAA};
  BufferChar16Sink sink(buffer, 3);
  const unsigned short text[] = {1, 2, 3, 4, 0};
  sink.Put(text, text + 2);
  EXPECT_EQ(sink.RemainingCapacity(), 1);
  EXPECT_EQ(buffer[2], 0);
  sink.Put(text + 2, nullptr);  // two units into room for one
  EXPECT_TRUE(sink.truncated());
  EXPECT_EQ(sink.size(), 3);
  EXPECT_EQ(std::vector<unsigned short>(buffer, buffer + 4),
            std::vector<unsigned short>({1, 2, 3, 0xAAAA}));
}

TEST(StringSinks, AppendAndPumpWholeSources) {
  StringCharSink sink;
  sink.Put("ab");
  BufferCharSource source("cdef", nullptr);
  sink.Put(source);
  EXPECT_STREQ(sink.c_str(), "abcdef");
  const char* b;
  const char* e;
  EXPECT_FALSE(source.GetBuffer(b, e));  // drained
  EXPECT_EQ(sink.RemainingCapacity(), -1);

  const unsigned short text[] = {'x', 0x3042, 'y', 0};
  StringChar16Source source16(text, nullptr);
  StringChar16Sink sink16;
  sink16.Put(source16);
  sink16.Put(text, text + 1);
  const unsigned short expected[] = {'x', 0x3042, 'y', 'x', 0};
  EXPECT_TRUE(sink16.str() == expected);
}

struct FileCalls {
  std::vector<std::string> writes;
  int flushes = 0;
};
FileCalls g_calls;

std::size_t RecordingWrite(const void* p, std::size_t size, std::size_t count, std::FILE*) {
  g_calls.writes.emplace_back(static_cast<const char*>(p), size * count);
  return count;
}
int RecordingFlush(std::FILE*) { return ++g_calls.flushes, 0; }

TEST(FileCharSink, WritesAndFlushesThroughTheGivenFunctions) {
  g_calls = {};
  {
    FileCharSink sink(stdout, &RecordingWrite, &RecordingFlush);
    sink.Put("one");
    sink.Put("two");
    EXPECT_EQ(g_calls.flushes, 0);
    sink.Flush();
  }
  // Destruction does not flush.
  EXPECT_EQ(g_calls.flushes, 1);
  EXPECT_EQ(g_calls.writes, std::vector<std::string>({"one", "two"}));
}

TEST(FileChar16Sink, WritesRawHostOrderUnits) {
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  FileChar16Sink sink(file);
  const unsigned short text[] = {0x0041, 0xFEFF, 0};
  sink.Put(text, nullptr);
  sink.Flush();
  std::rewind(file);
  unsigned char bytes[8];
  ASSERT_EQ(std::fread(bytes, 1, sizeof bytes, file), 4u);  // no byte-order mark added
  EXPECT_EQ(std::memcmp(bytes, text, 4), 0);
  std::fclose(file);
}

}  // namespace
