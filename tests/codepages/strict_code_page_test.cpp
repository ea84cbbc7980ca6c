// Strict reading of every code page against the page's own lenient
// converter: on every one- and two-byte text they give the same characters,
// and strict reading finds a problem only where the lenient converter met an
// invalid byte or was left inside a character.
#include <gtest/gtest.h>

#include <string>

#include "tests/codepages/code_page_data.h"
#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/encoding/linear_allocator.h"
#include "varnice/encoding/catalogue/strict_decoder.h"

namespace {

struct Reading {
  std::u16string units;
  bool problem = false;  // met while converting: an invalid byte
  bool cutOff = false;   // met by Finish: a character left incomplete
};

Reading Read(BlockConverter_8_to_16& c, const char* text, std::size_t n, bool finish) {
  c.Reset();
  Reading r;
  unsigned short buffer[8];
  const char* in = text;
  for (;;) {
    unsigned short* out = buffer;
    const int result = c.Convert(in, text + n, out, buffer + 8);
    r.units.append(reinterpret_cast<const char16_t*>(buffer), out - buffer);
    if (result == kInputUsedUp) break;
    r.problem = true;
  }
  unsigned short* out = buffer;
  if (finish && c.Finish(out, buffer + 8) != kConversionDone) r.cutOff = true;
  return r;
}

TEST(StrictCodePages, AgreeWithTheLenientConverterOnEveryShortText) {
  for (const codepage_test::Page& page : codepage_test::kPages) {
    SCOPED_TRACE(page.name);
    const auto* encoding = dynamic_cast<const MBCSEncoding*>(page.factory());
    ASSERT_NE(encoding, nullptr);
    LinearAllocator arena(1024, __FILE__, __LINE__);
    BlockConverter_8_to_16* lenient = encoding->CreateConverterToUnicode(arena);
    StrictDecoder* strict = StrictDecoder::Create(*encoding, arena);
    ASSERT_NE(strict, nullptr);
    const bool twoBytes = encoding->ToUnicodeTable().StateCount() > 1;
    int differences = 0;
    for (unsigned first = 0; first < 256; ++first) {
      for (unsigned second = 0; second < (twoBytes ? 256u : 1u); ++second) {
        const char text[2] = {static_cast<char>(first), static_cast<char>(second)};
        const std::size_t n = twoBytes ? 2 : 1;
        const Reading a = Read(*lenient, text, n, false);
        const Reading b = Read(*strict, text, n, true);
        if (!b.problem && !b.cutOff && a.units != b.units) ++differences;
        if (b.problem && !a.problem) ++differences;
      }
    }
    EXPECT_EQ(differences, 0);
    delete lenient;
    delete strict;
  }
}

}  // namespace
