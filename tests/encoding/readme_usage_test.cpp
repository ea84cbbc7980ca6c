// The class-interface example of README.md, kept compiling and true.
#include <gtest/gtest.h>

#include <string>

#include "varnice/varnice.h"

TEST(ReadmeUsage, ShiftJISToUTF8ThroughAConverterAndStrings) {
  EncodingCatalogue::CreateAll();
  const ExternalEncoding& sjis = *ExternalEncoding::Lookup("shift jis");
  const ExternalEncoding& utf8 = *ExternalEncoding::Lookup("UTF-8");
  EXPECT_EQ(&sjis, ExternalEncoding::ShiftJIS());
  EXPECT_EQ(ExternalEncoding::Lookup("Unicode20:UTF8"), &utf8);

  const char bytes[] = "\x82\xA0\x82\xA2";
  BufferCharSource in(bytes, bytes + 4);
  ExternalEncodingConverter toUtf8(in, sjis, utf8);
  StringCharSink out;
  out.Put(toUtf8);
  EXPECT_EQ(std::string(out.c_str()), "\xE3\x81\x82\xE3\x81\x84");

  qz_wstring wide(bytes, 4, sjis);
  ASSERT_EQ(wide.size(), 2u);
  EXPECT_EQ(wide[0u], 0x3042);
  qz_string back(wide.c_str(), wide.size(), utf8);
  EXPECT_EQ(std::string(back.c_str()), "\xE3\x81\x82\xE3\x81\x84");

  const ExternalEncoding& guess = *ExternalEncoding::Lookup("auto");
  EXPECT_EQ(qz_wstring(bytes, 4, guess), wide);
}
