// The sample text sources, and round trips of every writable encoding over
// its whole repertoire.
#include "varnice/sample/sample_text_source.h"

#include <gtest/gtest.h>

#include "tests/fresh_process.h"
#include "tests/stream/stream_test_support.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "varnice/charprops/character_property.h"
#include "varnice/charprops/classification.h"
#include "varnice/encoding/catalogue/encoding_catalogue.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/sample/encoding_repertoire.h"
#include "varnice/sample/sample_unicode_source.h"
#include "varnice/widec/qz_string.h"
#include "varnice/widec/qz_wstring.h"

namespace {

std::vector<unsigned short> ReadAll(Char16Source& source) {
  testing_streams::Collect16 sink;
  sink.Put(source);
  return {sink.text.begin(), sink.text.end()};
}

std::string ReadAll(CharSource& source) {
  testing_streams::Collect8 sink;
  sink.Put(source);
  return sink.text;
}

std::vector<unsigned short> Decode(const std::string& bytes, const ExternalEncoding& encoding) {
  const qz_wstring text(bytes.data(), static_cast<unsigned int>(bytes.size()), encoding);
  return std::vector<unsigned short>(text.data(), text.data() + text.size());
}

TEST(SampleUnicodeSource, ListsARepertoireInCodeOrder) {
  SampleUnicodeSource hiragana(HiraganaScript);
  const std::vector<unsigned short> units = ReadAll(hiragana);
  ASSERT_GT(units.size(), 80u);
  EXPECT_EQ(units, hiragana.Repertoire());
  for (std::size_t i = 0; i < units.size(); ++i) {
    EXPECT_TRUE(HiraganaScript->Test(units[i])) << units[i];
    EXPECT_TRUE(AnyDefinedCharacter->Test(units[i])) << units[i];
    if (i > 0) EXPECT_LT(units[i - 1], units[i]);
  }
  EXPECT_NE(std::find(units.begin(), units.end(), 0x3042), units.end());

  SampleUnicodeSource block(nullptr, 0x0370, 0x03FF);  // Greek, unassigned places left out
  const std::vector<unsigned short> greek = ReadAll(block);
  EXPECT_EQ(greek.front(), 0x0374);
  EXPECT_EQ(std::count(greek.begin(), greek.end(), 0x0378), 0);

  SampleUnicodeSource everything(nullptr);
  const std::vector<unsigned short> all = ReadAll(everything);
  EXPECT_GT(all.size(), 38000u);  // the assigned characters of the plane
  EXPECT_EQ(all.front(), 0x0020);  // controls only when asked for
  SampleUnicodeSource controls(ControlCharacter);
  EXPECT_EQ(controls.Repertoire().size(), 64u);  // U+0001-001F, U+007F-009F
  for (unsigned short excluded : {0xD800, 0xDFFF, 0xFEFF, 0xFFFE, 0xFFFF}) {
    EXPECT_EQ(std::count(all.begin(), all.end(), excluded), 0) << excluded;
  }
}

TEST(SampleUnicodeSource, RandomTextIsReproducibleFromItsSeed) {
  const CharacterTest* const mix[] = {LatinScript, KatakanaScript, CJKScript, HangulScript};
  SampleUnicodeSource a(mix, 4, 5000, 42), b(mix, 4, 5000, 42), c(mix, 4, 5000, 43);
  const std::vector<unsigned short> text = ReadAll(a);
  EXPECT_EQ(text.size(), 5000u);
  EXPECT_EQ(text, ReadAll(b));
  EXPECT_NE(text, ReadAll(c));
  int per_test[4] = {};
  int run = 0;
  for (unsigned short u : text) {
    if (u == ' ' || u == '\n') {
      EXPECT_GT(run, 0);  // never two separators in a row
      run = 0;
      continue;
    }
    EXPECT_LE(++run, 8);
    for (int k = 0; k < 4; ++k) per_test[k] += mix[k]->Test(u);
  }
  for (int k = 0; k < 4; ++k) EXPECT_GT(per_test[k], 700) << k;  // each about a quarter
  EXPECT_NE(text.front(), ' ');
  EXPECT_NE(text.back(), ' ');

  // Pinned: the generator is the library's own, so the text is the same on
  // every platform and in every release.
  const CharacterTest* const digits[] = {Ctype_xdigit};
  SampleUnicodeSource pinned(digits, 1, 24, 1);
  const std::vector<unsigned short> got = ReadAll(pinned);
  EXPECT_EQ(std::string(got.begin(), got.end()), "07 0 CA9AC3D 9C55702b 89");
}

TEST(EncodingRepertoire, HoldsWhatTheEncodingGivesBack) {
  EncodingCatalogue::CreateAll();
  const EncodingRepertoire ascii(*ExternalEncoding::ASCII());
  EXPECT_EQ(ascii.Size(), 127u);  // U+0001-U+007F
  EXPECT_TRUE(ascii.Test('~'));
  EXPECT_FALSE(ascii.Test(0xE9));
  EXPECT_FALSE(ascii.Test(0));
  const EncodingRepertoire latin1(*ExternalEncoding::ISOLatin1());
  EXPECT_EQ(latin1.Size(), 255u);
  const EncodingRepertoire sjis(*ExternalEncoding::ShiftJIS());
  EXPECT_GT(sjis.Size(), 7000u);  // JIS X 0208, JIS-Roman and half-width katakana
  EXPECT_TRUE(sjis.Test(0x3042));
  EXPECT_TRUE(sjis.Test(0xFF71));
  EXPECT_FALSE(sjis.Test(0xAC00));
  // An escape would change how the rest is read, and U+FFFD written as the
  // substitute only looks like a round trip.
  const EncodingRepertoire jis(*ExternalEncoding::ISO2022JP());
  EXPECT_FALSE(jis.Test(0x1B));
  EXPECT_FALSE(jis.Test(0xFFFD));
  EXPECT_TRUE(jis.Test('\n'));
  const EncodingRepertoire utf8(*ExternalEncoding::Unicode20UTF8());
  EXPECT_TRUE(utf8.Test(0xFFFD));
  const CharacterProperty with_controls = *AnyDefinedCharacter + *ControlCharacter;
  SampleUnicodeSource all(&with_controls);
  EXPECT_EQ(utf8.Size(), all.Repertoire().size());
}

// In a fresh process: only the catalogue's encodings, not other tests' stubs.
FRESH_PROCESS_TEST(SampleTextSource, EveryWritableEncodingRoundTripsItsWholeRepertoire) {
  EncodingCatalogue::CreateAll();
  const CharacterProperty with_controls = *AnyDefinedCharacter + *ControlCharacter;
  unsigned encodings = 0;
  unsigned long characters = 0;
  for (unsigned i = 0; i < ExternalEncoding::Count(); ++i) {
    const ExternalEncoding* encoding = ExternalEncoding::Lookup(i);
    if (encoding == nullptr || !encoding->IsValidForOutput()) continue;
    SCOPED_TRACE(encoding->Name());
    SampleTextSource sample(*encoding, &with_controls);
    const std::string bytes = ReadAll(sample);
    EXPECT_EQ(sample.Text(), sample.Characters());
    EXPECT_GE(sample.Characters().size(), 60u);
    // Read back, and written again in one piece: the same characters, the same bytes.
    EXPECT_EQ(Decode(bytes, *encoding), sample.Characters());
    const qz_string again(sample.Characters().data(), static_cast<unsigned>(sample.Characters().size()),
                          *encoding);
    EXPECT_EQ(std::string(again.data(), again.size()), bytes);
    ++encodings;
    characters += sample.Characters().size();
  }
  EXPECT_GT(encodings, 40u);
  std::printf("[ figures  ] %u writable encodings, %lu characters round-tripped\n", encodings, characters);
}

TEST(SampleTextSource, RandomTextKeepsToItsBudgetAndItsSeed) {
  EncodingCatalogue::CreateAll();
  const CharacterTest* const mix[] = {LatinScript, HiraganaScript, CJKScript, GreekScript};
  const ExternalEncoding* const stateless[] = {
      ExternalEncoding::ShiftJIS(), ExternalEncoding::EUCPkdFmtJapanese(), ExternalEncoding::ISOLatin1(),
      ExternalEncoding::Unicode20UTF8(), ExternalEncoding::Unicode20ByteStream(), ExternalEncoding::CP1252()};
  for (const ExternalEncoding* encoding : stateless) {
    SCOPED_TRACE(encoding->Name());
    for (unsigned long budget : {0UL, 1UL, 7UL, 1000UL, 20000UL}) {
      SampleTextSource a(*encoding, mix, 4, budget, 7), b(*encoding, mix, 4, budget, 7);
      const std::string bytes = ReadAll(a);
      EXPECT_LE(bytes.size(), budget);
      if (budget >= 1000) EXPECT_GE(bytes.size(), budget - 8);  // stops only near the end
      EXPECT_EQ(bytes, ReadAll(b));
      EXPECT_EQ(Decode(bytes, *encoding), a.Text());
    }
  }
  // Shifting encodings take a little more for their shifts, and still read back.
  SampleTextSource jis(*ExternalEncoding::ISO2022JP(), mix, 4, 5000, 3);
  const std::string bytes = ReadAll(jis);
  EXPECT_GT(bytes.size(), 4000u);
  EXPECT_EQ(Decode(bytes, *ExternalEncoding::ISO2022JP()), jis.Text());
}

}  // namespace
