// The transform examples of README.md, kept compiling and true.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <string>
#include <vector>

#include "tests/transform/transform_test_support.h"
#include "varnice/capi/varnice_c.h"
#include "varnice/varnice.h"

TEST(ReadmeUsage, TransformsBetweenDecoderAndEncoder) {
  EncodingCatalogue::CreateAll();
  const ExternalEncoding& sjis = *ExternalEncoding::Lookup("Shift_JIS");
  const ExternalEncoding& utf8 = *ExternalEncoding::Lookup("UTF-8");
  const InternalEncoding& unicode = *InternalEncoding::Unicode();

  const char bytes[] = "\xB6\xC5 \x82\x81\x82\x82\x82\x83";  // "ｶﾅ ａｂｃ" in Shift_JIS
  BufferCharSource in(bytes, bytes + sizeof bytes - 1);
  InternalEncodingConverter text(in, sjis, unicode);                  // Shift_JIS -> UTF-16
  ToFullwidthTransform wide(text, unicode, *KatakanaScript);          // ｶﾅ -> カナ
  ToHalfwidthTransform narrow(wide, unicode, *LatinScript);           // ａｂｃ -> abc
  ToUppercaseTransform upper(narrow, unicode, *AnyCharacterProperty);  // abc -> ABC
  ExternalEncodingConverter toUtf8(upper, unicode, utf8);             // UTF-16 -> UTF-8
  StringCharSink out;
  out.Put(toUtf8);
  EXPECT_EQ(std::string(out.c_str()), "カナ ABC");

  const unsigned short src[] = {u'a', u'\r', u'\n', u'b', 0};
  unsigned short dst[16];
  int n = TransformUnicodeString(23 /* LF */, 0 /* any character */, src, -1, dst, 16);
  EXPECT_EQ(n, 3);  // "a\nb", terminated
  EXPECT_EQ(std::u16string(dst, dst + 3), u"a\nb");
}

namespace {

// "\r", "\n" and "\uXXXX" as the README writes them, the rest as UTF-8.
std::u16string Unescape(const std::string& s) {
  const qz_wstring units(s.data(), static_cast<unsigned>(s.size()), *ExternalEncoding::Unicode20UTF8());
  const std::u16string text(units.data(), units.data() + units.size());
  std::u16string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\\' && i + 1 < text.size() && (text[i + 1] == u'r' || text[i + 1] == u'n')) {
      out.push_back(text[++i] == u'r' ? u'\r' : u'\n');
    } else if (text.compare(i, 2, u"\\u") == 0) {
      const std::string hex(text.begin() + i + 2, text.begin() + i + 6);
      out.push_back(static_cast<char16_t>(std::stoul(hex, nullptr, 16)));
      i += 5;
    } else {
      out.push_back(text[i]);
    }
  }
  return out;
}

}  // namespace

TEST(ReadmeUsage, EveryTransformOfTheTableDoesWhatItsExampleSays) {
  EncodingCatalogue::CreateAll();
  std::ifstream readme(VARNICE_SOURCE_DIR "/README.md");
  std::string line;
  int rows = 0;
  while (std::getline(readme, line)) {
    // | 7 | `hepburn` | `KanaToHebonRomajiTransform` | `in` → `out` |
    if (line.size() < 4 || line[0] != '|' || !std::isdigit(static_cast<unsigned char>(line[2])))
      continue;
    std::vector<std::string> ticked;
    for (std::size_t at = line.find('`'); at != std::string::npos;) {
      const std::size_t end = line.find('`', at + 1);
      ticked.push_back(line.substr(at + 1, end - at - 1));
      at = line.find('`', end + 1);
    }
    ASSERT_EQ(ticked.size(), 4u) << line;
    std::string name = ticked[0];
    CharacterTest const* test = AnyCharacterProperty;
    if (const std::size_t colon = name.find(':'); colon != std::string::npos) {
      test = CharacterTest::Lookup(qz_string(name.substr(colon + 1).c_str()));
      name.resize(colon);
    }
    ASSERT_NE(test, nullptr) << line;
    TransformCatalogue::Entry const* entry = TransformCatalogue::Find(name.c_str());
    ASSERT_NE(entry, nullptr) << line;
    EXPECT_EQ(entry->selector, std::stoi(line.substr(2))) << line;
    EXPECT_STREQ(entry->className, ticked[1].c_str());
    EXPECT_EQ(testing_transforms::Through(name.c_str(), Unescape(ticked[2]), {}, *test),
              Unescape(ticked[3]))
        << line;
    ++rows;
  }
  EXPECT_EQ(rows, 28);
}
