// The Unicode forms as registered encodings: names, identifiers, the set of
// variants, and whole pipelines built by the encodings' factories.
#include <gtest/gtest.h>

#include "tests/fresh_process.h"
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "tests/stream/stream_test_support.h"
#include "varnice/encoding/encodingconverter/encoding_converter.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/unicodeforms/byte_order_mark.h"
#include "varnice/unicodeforms/ucs2.h"
#include "varnice/unicodeforms/utf7.h"
#include "varnice/unicodeforms/utf8.h"

namespace {

using namespace testing_streams;

TEST(UnicodeFormVariants, LookedUpByTheirNames) {
  ExternalEncoding* utf8 = ExternalEncoding::Unicode20UTF8();
  ExternalEncoding* ucs2 = ExternalEncoding::Unicode20ByteStream();
  ExternalEncoding* utf7 = ExternalEncoding::Unicode20UTF7();
  ExternalEncoding* bmp = ExternalEncoding::Unicode20BigEndian();
  ExternalEncoding* big11 = ExternalEncoding::Unicode11BigEndian();
  EncodingVariation::LittleEndian();
  ASSERT_NE(utf8, nullptr);
  ASSERT_NE(ucs2, nullptr);
  EXPECT_EQ(TextEncoding::Lookup("UTF-8", 0), utf8);
  EXPECT_EQ(TextEncoding::Lookup("utf8", 1), utf8);
  EXPECT_EQ(TextEncoding::Lookup("UTF-8", 2), nullptr);
  const std::pair<const char*, const ExternalEncoding*> names[] = {
      {"Unicode20:UTF8", utf8}, {"UCS-2", ucs2}, {"unicode 2.0 : bom : ucs2", ucs2}, {"UTF-7", utf7},
      {"Unicode11:big-endian", big11}, {"BMP", bmp},
      {"Macintosh", ExternalEncoding::Lookup("Unicode20:BOM:big-endian")},
      {"x86", ExternalEncoding::Lookup("Unicode20:BOM:little-endian")},
  };
  for (const auto& [name, encoding] : names) EXPECT_EQ(ExternalEncoding::Lookup(name), encoding) << name;
  EXPECT_NE(ExternalEncoding::Lookup("x86"), nullptr);
  EXPECT_NE(InternalEncoding::Lookup("Unicode11:ByteOrderMark"), nullptr);

  EXPECT_EQ(TextEncoding::Lookup(TextEncodingID(2) + EncodingVariationID(3)), utf8);
  EXPECT_EQ(utf8->GetTextEncodingID().Value(), 0x3002u);
  EXPECT_EQ(ucs2->GetTextEncodingID(), TextEncodingID(2) + EncodingVariationID(1) + EncodingVariationID(6));
  EXPECT_STREQ(ExternalEncoding::Unicode11UTF8()->Name(), "Unicode11UTF8");
  EXPECT_STREQ(ExternalEncoding::Unicode11ByteStream()->Name(), "Unicode11BOMUCS2");
  EXPECT_STREQ(ucs2->Name(), "UCS2");

  EXPECT_EQ(EncodingVariation::Lookup("utf-8"), EncodingVariation::UTF8());
  EXPECT_EQ(EncodingVariation::Lookup("PowerPC"), EncodingVariation::BigEndian());
  EXPECT_EQ(EncodingVariation::Lookup(EncodingVariationID(6)), EncodingVariation::PlatformByteOrder());
  EXPECT_STREQ(EncodingVariation::UTF7()->Name(), "UTF7");

  EXPECT_TRUE(utf8->IsTextModeSafe());
  EXPECT_TRUE(utf7->IsTextModeSafe());
  EXPECT_FALSE(ucs2->IsTextModeSafe());
  EXPECT_TRUE(static_cast<UTF8EncodingVariant*>(utf8)->AllowsSurrogates());
  EXPECT_FALSE(static_cast<UTF8EncodingVariant*>(ExternalEncoding::Unicode11UTF8())->AllowsSurrogates());
}

// Runs `body` in a child process and returns what it printed, so that several
// orders of creation can each start from the registry this test started with.
std::string InChildProcess(const std::function<std::string()>& body) {
  int fds[2];
  if (pipe(fds) != 0) return "pipe failed";
  const pid_t pid = fork();
  if (pid == 0) {
    close(fds[0]);
    const std::string text = body();
    const ssize_t written = write(fds[1], text.data(), text.size());
    _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
  }
  close(fds[1]);
  std::string text;
  char buffer[4096];
  for (ssize_t n; (n = read(fds[0], buffer, sizeof buffer)) > 0;) text.append(buffer, n);
  close(fds[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  return text;
}

std::string Registered() {
  std::vector<std::string> lines;
  for (unsigned int i = 0; i < TextEncoding::Count(); ++i) {
    const TextEncoding& e = *TextEncoding::Lookup(i);
    char line[128];
    std::snprintf(line, sizeof line, "%05lx %s %u\n", e.GetTextEncodingID().Value(), e.Name(), e.TokenSize());
    lines.push_back(line);
  }
  std::sort(lines.begin(), lines.end());
  std::string all;
  for (const std::string& l : lines) all += l;
  return all;
}

FRESH_PROCESS_TEST(UnicodeFormVariants, TheSetOfVariantsDoesNotDependOnTheOrderOfCreation) {
  const std::vector<std::function<void()>> steps = {
      [] { InternalEncoding::Unicode20(); },        [] { InternalEncoding::Unicode11(); },
      [] { EncodingVariation::ByteOrderMark(); },   [] { EncodingVariation::UTF7(); },
      [] { EncodingVariation::UTF8(); },            [] { EncodingVariation::BigEndian(); },
      [] { EncodingVariation::LittleEndian(); },    [] { EncodingVariation::PlatformByteOrder(); },
  };
  auto inOrder = [&](std::vector<int> order) {
    return InChildProcess([&] {
      for (int i : order) steps[i]();
      return Registered();
    });
  };
  const std::string encodingsFirst = inOrder({0, 1, 2, 3, 4, 5, 6, 7});
  // 4 internal encodings (two plain, two marked), each in 5 byte forms.
  EXPECT_EQ(std::count(encodingsFirst.begin(), encodingsFirst.end(), '\n'), 24);
  EXPECT_NE(encodingsFirst.find("c1002 UCS2 1\n"), std::string::npos);
  EXPECT_NE(encodingsFirst.find("61001 Unicode11BOMUTF8 1\n"), std::string::npos);
  EXPECT_EQ(inOrder({7, 6, 5, 4, 3, 2, 1, 0}), encodingsFirst);
  EXPECT_EQ(inOrder({4, 1, 7, 0, 2, 6, 3, 5}), encodingsFirst);
  EXPECT_EQ(inOrder({2, 7, 0, 5, 1, 3, 6, 4}), encodingsFirst);
}

// --- Pipelines built by the encodings ---------------------------------------

std::string HostOrder(std::u16string units) {
  return std::string(reinterpret_cast<const char*>(units.data()), units.size() * 2);
}

TEST(UnicodeFormPipelines, UCS2WritesAMarkInHostOrderAndReadsEitherOrder) {
  const ExternalEncoding& ucs2 = *ExternalEncoding::Unicode20ByteStream();
  EXPECT_EQ(EncodeStream(ucs2, {u"A\u65E5"}), HostOrder(u"\uFEFFA\u65E5"));
  EXPECT_EQ(EncodeStream(ucs2, {u""}), "");
  EXPECT_EQ(DecodeStream(ucs2, {std::string("\xFE\xFF\x00\x41", 4)}), u"A");
  EXPECT_EQ(DecodeStream(ucs2, {std::string("\xFF\xFE\x41\x00", 4)}), u"A");
  // A second mark survives the decoder as a character and is removed next.
  EXPECT_EQ(DecodeStream(ucs2, {std::string("\xFF\xFE\xFF\xFE\x41\x00\xFF\xFE", 8)}), u"A\uFEFF");
  EXPECT_EQ(EncodeStream(*ExternalEncoding::Unicode20BigEndian(), {u"\u1234"}), "\x12\x34");
  EncodingVariation::LittleEndian();
  EXPECT_EQ(EncodeStream(*ExternalEncoding::Lookup("little-endian"), {u"\u1234"}), "\xFF\xFE\x34\x12");
}

TEST(UnicodeFormPipelines, TheUnicodeSideIsAlwaysUnicode20) {
  // U+3400 of Unicode 1.1 is the syllable U+AC00 of Unicode 2.0.
  EXPECT_EQ(DecodeStream(*ExternalEncoding::Unicode11UTF8(), {"\xE3\x90\x80"}), u"\uAC00");
  EXPECT_EQ(EncodeStream(*ExternalEncoding::Unicode11UTF8(), {u"\uAC00"}), "\xE3\x90\x80");
  EXPECT_EQ(EncodeStream(*ExternalEncoding::Unicode11UTF7(), {u"\uAC00"}), "+NAA-");
  EXPECT_EQ(EncodeStream(*ExternalEncoding::Unicode11BigEndian(), {u"\uAC00"}), std::string("\x34\x00", 2));
  // Unicode 1.1 has no surrogates: a four-byte form is undefined.
  EXPECT_EQ(DecodeStream(*ExternalEncoding::Unicode11UTF8(), {"a\xF0\x90\x80\x80" "b"}), u"a\uFFFDb");
  EXPECT_EQ(DecodeStream(*ExternalEncoding::Unicode20UTF8(), {"a\xF0\x90\x80\x80" "b"}), u"a\xD800\xDC00" u"b");
}

TEST(UnicodeFormPipelines, SinksConvertTheSameWay) {
  LinearAllocator arena(4096, __FILE__, __LINE__);
  Collect8 bytes;
  Char16Sink* encode = ExternalEncoding::Unicode20UTF7()->CreateCharSinkFromUnicode(bytes, arena);
  encode->Put(U(u"a+b \u00E9."));
  EXPECT_EQ(bytes.text, "a+-b +AOk-.");
  // A run still open when the writer flushes is closed, so the text is whole.
  encode->Put(U(u"\u00E9"));
  EXPECT_EQ(bytes.text, "a+-b +AOk-.+AO");
  encode->Flush();
  EXPECT_EQ(bytes.text, "a+-b +AOk-.+AOk-");
  delete encode;

  Collect16 units;
  CharSink* decode = ExternalEncoding::Unicode20ByteStream()->CreateCharSinkToUnicode(units, arena);
  decode->Put("\xFF\xFE\x41", nullptr);
  decode->PutBuffer("\x00\x42\x00", "\x00\x42\x00" + 3);
  EXPECT_EQ(units.text, u"AB");
  delete decode;
}

TEST(UnicodeFormPipelines, DetectorsComeFromTheEncodings) {
  LinearAllocator arena(1024, __FILE__, __LINE__);
  for (ExternalEncoding* e : {ExternalEncoding::Unicode20UTF8(), ExternalEncoding::Unicode20UTF7(),
                              ExternalEncoding::Unicode20ByteStream()}) {
    ExternalEncodingDetector* d = e->CreateEncodingDetector(arena);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(&d->Encoding(), e);
    EXPECT_EQ(d->TieBreaker(), 0);
    delete d;
  }
}

}  // namespace
