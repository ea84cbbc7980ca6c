#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/stream/buffer_char16_source.h"
#include "varnice/stream/buffer_char_source.h"
#include "varnice/stream/file_char_source.h"
#include "varnice/stream/string_char16_source.h"
#include "varnice/stream/string_char_source.h"

namespace {

// Every range the source lends, consuming each one whole.
template <class Source, class Unit>
std::vector<std::basic_string<Unit>> Ranges(Source& source) {
  std::vector<std::basic_string<Unit>> ranges;
  const Unit* b;
  const Unit* e;
  while (source.GetBuffer(b, e)) {
    ranges.emplace_back(b, e);
    source.DoneWith(e);
  }
  return ranges;
}

std::vector<std::string> Ranges(CharSource& source) { return Ranges<CharSource, char>(source); }
std::vector<std::u16string> Ranges(Char16Source& source) {
  std::vector<std::u16string> out;
  for (const auto& r : Ranges<Char16Source, unsigned short>(source)) {
    out.emplace_back(r.begin(), r.end());
  }
  return out;
}

template <class Unit, class Source>
void Consume(Source& source, int n) {
  const Unit* b;
  const Unit* e;
  ASSERT_TRUE(source.GetBuffer(b, e));
  source.DoneWith(b + n);
}

TEST(BufferCharSource, NullEndMeansNulTerminatedAndNullBeginIsEmpty) {
  const char text[] = "abc\0def";
  BufferCharSource terminated(text, nullptr);
  const char* b = nullptr;
  const char* e = nullptr;
  ASSERT_TRUE(terminated.GetBuffer(b, e));
  EXPECT_EQ(b, text);  // lent, not copied
  EXPECT_EQ(e - b, 3);

  BufferCharSource explicit_end(text, text + 7);
  EXPECT_EQ(Ranges(explicit_end), std::vector<std::string>({std::string(text, 7)}));

  BufferCharSource empty(static_cast<const char*>(nullptr), nullptr);
  EXPECT_TRUE(Ranges(empty).empty());
}

// A copy and an assigned copy read on from where the original stands, and
// the original is not disturbed by them. UnicodeLibActor is a virtual base: a
// copy constructor that forgets to name it silently falls back to the
// default behaviour.
template <class Source, class Text>
void ExpectCopiesReadTheRest(Source& source, Source assigned, const Text& rest) {
  UnicodeLibBehavior own;
  source.SetBehavior(&own);
  Source copy(source);
  EXPECT_EQ(&copy.Behavior(), &own);
  EXPECT_EQ(Ranges(copy), std::vector<Text>({rest}));
  assigned = source;
  EXPECT_EQ(Ranges(assigned), std::vector<Text>({rest}));
  source = source;  // self-assignment keeps the rest too
  EXPECT_EQ(Ranges(source), std::vector<Text>({rest}));
}

TEST(StringAndBufferSources, CopiesReadOnFromWhereTheOriginalStands) {
  const unsigned short units[] = {'a', 'b', 'c', 'd', 0};
  BufferChar16Source buffer16(units, nullptr);
  Consume<unsigned short>(buffer16, 1);
  ExpectCopiesReadTheRest(buffer16, BufferChar16Source(units, units), std::u16string(u"bcd"));

  std::string text = "abcd";
  StringCharSource string8(text.c_str(), nullptr);
  text = "zzzz";  // the source has its own copy
  Consume<char>(string8, 2);
  ExpectCopiesReadTheRest(string8, StringCharSource(qz_string("other")), std::string("cd"));

  StringChar16Source string16(units, nullptr);
  const unsigned short* b;
  const unsigned short* e;
  ASSERT_TRUE(string16.GetBuffer(b, e));
  EXPECT_NE(b, units);  // a copy of its own, too
  string16.DoneWith(b + 2);
  ExpectCopiesReadTheRest(string16, StringChar16Source(units, units), std::u16string(u"cd"));
}

std::vector<std::size_t> g_reads;

std::size_t RecordingRead(void* buffer, std::size_t size, std::size_t count, std::FILE* file) {
  const std::size_t n = std::fread(buffer, size, count, file);
  g_reads.push_back(n);
  return n;
}

TEST(FileCharSource, ReadsInBlocksOf1024AndStopsAtTheFirstEmptyRead) {
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  std::string content;
  for (int i = 0; i < 1025; ++i) content += static_cast<char>('a' + i % 26);
  std::fwrite(content.data(), 1, content.size(), file);
  std::rewind(file);

  g_reads.clear();
  FileCharSource source(file, &RecordingRead);
  // A partly consumed block is lent again without another read.
  Consume<char>(source, 1000);
  const char* b;
  const char* e;
  ASSERT_TRUE(source.GetBuffer(b, e));
  EXPECT_EQ(e - b, 24);
  EXPECT_EQ(g_reads.size(), 1u);
  source.DoneWith(e);

  std::vector<std::string> rest = Ranges(source);
  ASSERT_EQ(rest.size(), 1u);
  EXPECT_EQ(rest[0], content.substr(1024));
  EXPECT_EQ(g_reads, std::vector<std::size_t>({1024, 1, 0}));
  std::fclose(file);  // the source leaves the file to its owner
}

TEST(FileCharSource, DefaultsToFread) {
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  std::fputs("line", file);
  std::rewind(file);
  FileCharSource source(file);
  EXPECT_EQ(Ranges(source), std::vector<std::string>({"line"}));
  std::fclose(file);
}

}  // namespace
