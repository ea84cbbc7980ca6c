// The plausibility detector: the character kinds it charges, that its score
// does not depend on how the bytes are split into scans, and the decisions
// of the catalogue's detecting encodings that rest on it.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/detect/detect_test_support.h"
#include "varnice/varnice.h"

namespace {

using Kind = TextPlausibilityDetector::Kind;

class Plausibility : public ::testing::Test {
 protected:
  void SetUp() override { EncodingCatalogue::CreateAll(); }

  // What the encoding makes of the text (UTF-8 in the source), as bytes.
  static std::string In(const ExternalEncoding& e, const std::u16string& text) { return detect_test::Encode(e, text); }
  static const ExternalEncoding* Detect(const AutoDetectEncoding& d, const std::string& bytes) {
    return detect_test::Detect(d, bytes);
  }

  const AutoDetectEncoding& automatic = *AutoDetectEncoding::General();
  const AutoDetectEncoding& japanese = *AutoDetectEncoding::Japanese();
  LinearAllocator heap{4096, __FILE__, __LINE__};
};

TEST_F(Plausibility, ScorerSortsCharactersIntoKinds) {
  struct Row {
    char16_t unit;
    Kind kind;
  } rows[] = {
      {u'a', Kind::kAscii},          {u'\n', Kind::kAscii},         {0x01, Kind::kControl},
      {0x85, Kind::kControl},        {u'é', Kind::kLatin},          {u'“', Kind::kPunctuation},
      {u'€', Kind::kPunctuation},    {u'¥', Kind::kLatinSign},         {u'の', Kind::kKana},
      {u'カ', Kind::kKana},          {u'。', Kind::kJapanesePunct}, {u'亜', Kind::kKanjiCommon},  // JIS row 16
      {u'弌', Kind::kKanjiRare},     // row 48, the first of level 2
      {u'ｶ', Kind::kHalfwidthKana}, {0xE000, Kind::kPrivateUse},   {0xFFFD, Kind::kError},
      {u'①', Kind::kSymbol},        {0x4E02, Kind::kKanjiOutsideJis},
  };
  for (const Row& r : rows) {
    TextPlausibilityDetector::Scorer scorer;
    const unsigned short unit = r.unit;
    scorer.Add(&unit, &unit + 1);
    EXPECT_EQ(scorer.counts[r.kind], 1) << std::hex << unit;
    const int runStart = r.kind == Kind::kHalfwidthKana ? TextPlausibilityDetector::KindCost(Kind::kHalfwidthRun) : 0;
    EXPECT_EQ(scorer.cost, TextPlausibilityDetector::KindCost(r.kind) + runStart) << std::hex << unit;
  }
}

TEST_F(Plausibility, NeighboursThatDoNotBelongTogetherCost) {
  TextPlausibilityDetector::Scorer scorer;
  const std::u16string text = u"abの。é, の ±° 日x";  // a|の, 。|é, 日|x mix; ", " separates
  scorer.Add(reinterpret_cast<const unsigned short*>(text.data()),
             reinterpret_cast<const unsigned short*>(text.data() + text.size()));
  EXPECT_EQ(scorer.counts[Kind::kMixedScript], 3);
  EXPECT_EQ(scorer.counts[Kind::kLatinPair], 1);    // ±°
  EXPECT_EQ(scorer.counts[Kind::kLoneJapanese], 2);  // the second の, 日
}

// Scores must not depend on where the chooser's chunks happen to end: a
// character, a UTF-7 run or an escape sequence split across two scans counts
// as if it came in one.
TEST_F(Plausibility, ScoreIsTheSameWhateverTheChunks) {
  const std::u16string text = u"Déjà vu: 日本語のテキスト、ｶﾀｶﾅ and C++ 1+1.\n";
  const ExternalEncoding* encodings[] = {
      ExternalEncoding::Unicode20UTF8(), ExternalEncoding::Unicode20UTF7(), ExternalEncoding::ShiftJIS(),
      ExternalEncoding::EUCPkdFmtJapanese(), ExternalEncoding::CP932(), ExternalEncoding::CP1252(),
      ExternalEncoding::ISO2022JP()};
  std::u16string jisText = u"JIS: 日本語のテキスト、C++ 1+1.\n";  // no halfwidth kana in ISO-2022-JP
  for (const ExternalEncoding* source : encodings) {
    const std::string bytes = In(*source, source == ExternalEncoding::ISO2022JP() ? jisText : text);
    for (const ExternalEncoding* reader : encodings) {
      TextPlausibilityDetector whole(*reader, heap);
      whole.Scan(bytes.data(), bytes.data(), bytes.data() + bytes.size());
      whole.Finish(bytes.data(), bytes.data() + bytes.size());
      TextPlausibilityDetector piecemeal(*reader, heap);
      for (std::size_t i = 0; i < bytes.size(); ++i) piecemeal.Scan(bytes.data(), bytes.data() + i, bytes.data() + i + 1);
      piecemeal.Finish(bytes.data(), bytes.data() + bytes.size());
      EXPECT_EQ(whole.Score(), piecemeal.Score()) << source->Name() << " read as " << reader->Name();
      if (reader == source) EXPECT_EQ(whole.Count(Kind::kError), 0) << source->Name();
    }
  }
}

// A reader that finds many unreadable bytes stops decoding but goes on
// paying at its rate, so it never overtakes the right reading on long text.
TEST_F(Plausibility, HopelessReadersGiveUpButKeepPaying) {
  std::u16string text;
  while (text.size() < 40000) text += u"吾輩は猫である。名前はまだ無い。\n";
  const std::string bytes = In(*ExternalEncoding::ShiftJIS(), text);
  TextPlausibilityDetector right(*ExternalEncoding::ShiftJIS(), heap);
  TextPlausibilityDetector wrong(*ExternalEncoding::Unicode20UTF8(), heap);
  long long wrongCostAtHalf = 0;
  for (std::size_t at = 0; at < bytes.size(); at += 1024) {
    const char* end = bytes.data() + std::min(bytes.size(), at + 1024);
    right.Scan(bytes.data(), bytes.data() + at, end);
    wrong.Scan(bytes.data(), bytes.data() + at, end);
    if (at == bytes.size() / 2 / 1024 * 1024) wrongCostAtHalf = wrong.Cost();
  }
  EXPECT_EQ(right.GaveUpAfter(), 0);
  EXPECT_EQ(wrong.GaveUpAfter(), TextPlausibilityDetector::kGiveUpAfter);
  EXPECT_GT(wrong.Cost(), wrongCostAtHalf * 19 / 10);  // still growing with the input
  EXPECT_LT(wrong.Score(), right.Score());
}

// On long input the plausibility detectors decide no later than the
// candidates' own detectors do, read a kilobyte at a time as from a file.
TEST_F(Plausibility, DecidesNoLaterThanTheErrorCountingDetectors) {
  std::u16string ja, eu;
  while (ja.size() < 20000) ja += u"ASCIIの行もある。\n吾輩は猫である。名前はまだ無い。ｶﾀｶﾅ\n";
  while (eu.size() < 20000) eu += u"Plain ASCII line.\nDéjà vu, she said, and ordered the same soufflé.\n";
  struct Case {
    const ExternalEncoding* encoding;
    const std::u16string& text;
  } cases[] = {
      {ExternalEncoding::Unicode20UTF8(), ja},     {ExternalEncoding::EUCPkdFmtJapanese(), ja},
      {ExternalEncoding::ShiftJIS(), ja},          {ExternalEncoding::CP1252(), eu},
      {ExternalEncoding::Unicode20UTF8(), eu},     {ExternalEncoding::Unicode20ByteStream(), ja},
  };
  for (const Case& c : cases) {
    const std::string bytes = In(*c.encoding, c.text);
    long decidedAt[2];
    for (int plausibility = 0; plausibility < 2; ++plausibility) {
      BufferCharSource actor("", nullptr);
      EncodingChooser chooser(actor, automatic.SubEncodings(), automatic.CountSubEncodings(), heap,
                              plausibility ? automatic.DetectorFactory() : nullptr);
      decidedAt[plausibility] = static_cast<long>(bytes.size()) + 1;  // never
      for (std::size_t at = 0; at < bytes.size(); at += 1024) {
        const std::size_t n = std::min<std::size_t>(1024, bytes.size() - at);
        if (chooser.Scan(bytes.data() + at, bytes.data() + at + n) != nullptr) {
          decidedAt[plausibility] = static_cast<long>(at + n);
          break;
        }
      }
    }
    EXPECT_LE(decidedAt[1], decidedAt[0]) << c.encoding->Name();
  }
}

// Each row's text, written in its encoding, is read back in that encoding by
// the general detecting encoding, and by the Japanese one where marked.
TEST_F(Plausibility, DetectingEncodingsChooseTheEncodingThatWroteTheText) {
  const std::u16string ja = u"吾輩は猫である。名前はまだ無い。";
  const ExternalEncoding* utf7 = ExternalEncoding::Unicode20UTF7();
  const ExternalEncoding* cp1252 = ExternalEncoding::CP1252();
  const ExternalEncoding* cp932 = ExternalEncoding::CP932();
  const ExternalEncoding* sjis = ExternalEncoding::ShiftJIS();
  struct Row {
    const ExternalEncoding* encoding;
    std::u16string text;
    bool japaneseToo;
  } const rows[] = {
      // Every candidate still wins its own text.
      {ExternalEncoding::Unicode20ByteStream(), ja, false}, {ExternalEncoding::Unicode20UTF8(), ja, false},
      {ExternalEncoding::ISO2022JP(), ja, false},           {ExternalEncoding::EUCPkdFmtJapanese(), ja, false},
      {sjis, ja, false}, {cp932, u"①㈱", false}, {cp1252, u"“Déjà vu” — €5", false},
      // Short European text is not taken for Japanese, although accented
      // letters followed by ASCII letters are valid Shift_JIS pairs.
      {cp1252, u"élèves", false}, {cp1252, u"Größe", false}, {cp1252, u"ça va?", false},
      {cp1252, u"São Paulo, 1º", false},
      {utf7, u"今日は晴れ。", true}, {utf7, u"Café crème", false},
      // Backslash and tilde decide for CP932; without them the two read alike,
      // and Shift_JIS keeps its name.
      {cp932, u"パス：C:\\Users\\山田\\文書~1。", true}, {sjis, u"今日は晴れ。", false},
  };
  for (const Row& r : rows) {
    const std::string bytes = In(*r.encoding, r.text);
    SCOPED_TRACE(std::string(r.encoding->Name()) + ": " + bytes);
    auto expectChosenBy = [&](const AutoDetectEncoding& d) {
      const ExternalEncoding* chosen = Detect(d, bytes);
      EXPECT_EQ(chosen, r.encoding) << d.Name() << " chose " << (chosen ? chosen->Name() : "nothing");
    };
    expectChosenBy(automatic);
    if (r.japaneseToo) expectChosenBy(japanese);
  }
  // Plus signs in ASCII do not make it UTF-7.
  for (const char* ascii : {"C++ and 1+1=2", "a+b", "x +y", "++i;", "see +AB"}) {
    const ExternalEncoding* chosen = Detect(automatic, ascii);
    EXPECT_EQ(chosen, ExternalEncoding::Unicode20UTF8()) << ascii << " read as " << chosen->Name();
  }
}

TEST_F(Plausibility, AsciiLeavesTheChoiceOpenAndPushAgreesWithPull) {
  BufferCharSource actor("", nullptr);
  EncodingChooser chooser(actor, automatic.SubEncodings(), automatic.CountSubEncodings(),
                          heap, automatic.DetectorFactory());
  const std::string ascii = "nothing here but ASCII\n";
  EXPECT_EQ(chooser.Scan(ascii.data(), ascii.data() + ascii.size()), nullptr);
  const std::string more = In(*ExternalEncoding::EUCPkdFmtJapanese(), u"日本語");
  EXPECT_EQ(chooser.Scan(more.data(), more.data() + more.size()), ExternalEncoding::EUCPkdFmtJapanese());

  // The push pipeline decides the same way.
  StringChar16Sink target;
  LinearAllocator arena(4096, __FILE__, __LINE__);
  CharSink* sink = automatic.CreateCharSinkToUnicode(target, arena);
  sink->Put((ascii + more).c_str());
  sink->Flush();
  EXPECT_EQ(static_cast<AutoDetectSink*>(sink)->ChosenEncoding(), ExternalEncoding::EUCPkdFmtJapanese());
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(target.data()), target.size()),
            u"nothing here but ASCII\n日本語");
  delete sink;
}

}  // namespace
