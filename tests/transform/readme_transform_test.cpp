// The transform examples of README.md, kept compiling and true.
#include <gtest/gtest.h>

#include <string>

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
