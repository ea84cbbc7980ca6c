// Detection: the chooser's decisions and messages, and that the detecting
// streams read exactly what the chosen encoding reads.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/detect/detect_test_support.h"
#include "tests/stream/stream_test_support.h"
#include "varnice/varnice.h"

namespace {

using testing_streams::ChunkSource;
using testing_streams::Collect16;

using detect_test::Decode;

const ExternalEncoding* ScanText(EncodingChooser& chooser, const std::string& text) {
  return chooser.Scan(text.data(), text.data() + text.size());
}

std::u16string ReadAll(Char16Source& s) {
  Collect16 sink;
  sink.Put(s);
  return sink.text;
}

class Detect : public ::testing::Test {
 protected:
  void SetUp() override { EncodingCatalogue::CreateAll(); }
  const ExternalEncoding* utf8 = ExternalEncoding::Unicode20UTF8();
  const ExternalEncoding* utf7 = ExternalEncoding::Unicode20UTF7();
  const ExternalEncoding* ucs2 = ExternalEncoding::Unicode20ByteStream();
  const ExternalEncoding* sjis = ExternalEncoding::ShiftJIS();
  const ExternalEncoding* euc = ExternalEncoding::EUCPkdFmtJapanese();
  LinearAllocator heap{4096, __FILE__, __LINE__};
  // An actor whose behaviour prints the detection messages.
  struct Verbose : UnicodeLibBehavior {
    Verbose() { SetDisplayAutoDetectMessages(true); }
  } verbose;
  BufferCharSource verboseActor{"", nullptr};
  Detect() { verboseActor.SetBehavior(&verbose); }
};

TEST_F(Detect, AsciiTiesUntilGuessWhichAssumesTheFirstCandidate) {
  const ExternalEncoding* candidates[] = {utf8, utf7};
  EncodingChooser chooser(verboseActor, candidates, 2, heap);
  const std::string text = "plain ASCII, no plus sign";
  EXPECT_EQ(chooser.Scan(text.data(), text.data() + text.size()), nullptr);
  testing::internal::CaptureStderr();
  EXPECT_EQ(chooser.Guess(), utf8);
  const std::string expected = std::string("Assuming encoding ") + utf8->Name() + "\n  25 bytes examined\n" +
                               std::string(15 - std::strlen(utf8->Name()), ' ') + utf8->Name() +
                               ":           0,           0 tie-breaker\n" +
                               std::string(15 - std::strlen(utf7->Name()), ' ') + utf7->Name() +
                               ":           0,           0 tie-breaker\n";
  EXPECT_EQ(testing::internal::GetCapturedStderr(), expected);
}

TEST_F(Detect, ByteOrderMarkDecidesAtOnce) {
  const ExternalEncoding* candidates[] = {utf8, ucs2};
  EncodingChooser chooser(verboseActor, candidates, 2, heap);
  const char text[] = "\xFF\xFE" "A\0B\0";
  testing::internal::CaptureStderr();
  EXPECT_EQ(chooser.Scan(text, text + 6), ucs2);
  const std::string out = testing::internal::GetCapturedStderr();
  EXPECT_EQ(out.rfind(std::string("Chose encoding ") + ucs2->Name() + "\n  6 bytes examined\n", 0), 0u) << out;
  EXPECT_LT(chooser.Detector(0)->Score(), 0);
  EXPECT_EQ(chooser.Detector(1)->Score(), 1);
}

TEST_F(Detect, QuietByDefaultAndTieBreakersDecideEqualScores) {
  // "ｱ" (B1) is a valid Shift_JIS byte, but a halfwidth one: EUC-JP rejects
  // it; UTF-8 and EUC-JP lose on score, then Shift_JIS (tie-breaker -1)
  // loses to CP1252.
  const ExternalEncoding* candidates[] = {utf8, euc, sjis, ExternalEncoding::CP1252()};
  BufferCharSource actor("", nullptr);
  EncodingChooser chooser(actor, candidates, 4, heap);
  testing::internal::CaptureStderr();
  EXPECT_EQ(ScanText(chooser, "x\xB1y"), nullptr);
  EXPECT_EQ(chooser.Guess(), ExternalEncoding::CP1252());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(chooser.Detector(2)->TieBreaker(), -1);
}

TEST_F(Detect, ChooserWithoutCandidatesGuessesNothing) {
  BufferCharSource actor("", nullptr);
  EncodingChooser chooser(actor, nullptr, 0, heap);
  EXPECT_EQ(ScanText(chooser, "abc"), nullptr);
  EXPECT_EQ(chooser.Guess(), nullptr);
  BufferCharSource bytes("abc", nullptr);
  AutoDetectSource source(bytes, nullptr, 0, heap);
  EXPECT_EQ(ReadAll(source), u"");
  EXPECT_EQ(source.ActualInputEncoding(), nullptr);
}

TEST_F(Detect, DualSourceReadsTheSecondAtOnceWhenTheFirstIsEmpty) {
  BufferCharSource empty(static_cast<const char*>(nullptr), nullptr);
  ChunkSource second({"ab", "cd"});
  DualCharSource dual(empty, second);
  const char* b;
  const char* e;
  ASSERT_TRUE(dual.GetBuffer(b, e));
  EXPECT_EQ(std::string(b, e), "ab");
  dual.DoneWith(b + 1);
  ASSERT_TRUE(dual.GetBuffer(b, e));
  EXPECT_EQ(std::string(b, e), "b");  // an unconsumed rest is lent again
  dual.DoneWith(e);
  ASSERT_TRUE(dual.GetBuffer(b, e));
  EXPECT_EQ(std::string(b, e), "cd");
  dual.DoneWith(e);
  EXPECT_FALSE(dual.GetBuffer(b, e));
  EXPECT_FALSE(dual.GetBuffer(b, e));
}

// Input whose decision comes only after several chunks: ASCII that every
// candidate reads, Shift_JIS that only Shift_JIS reads, more ASCII.
std::string LateShiftJIS() {
  std::string ascii;
  for (int i = 0; i < 300; ++i) ascii += "line " + std::to_string(i) + "\n";
  return ascii + "\x93\xFA\x96\x7B\x8C\xEA\x82\xC5\x82\xB7\x81\x42\n" + ascii;  // 日本語です。
}

TEST_F(Detect, SourceReadsTheExaminedBytesAgainThroughTheChoice) {
  const std::string bytes = LateShiftJIS();
  const ExternalEncoding* candidates[] = {utf8, euc, sjis};
  std::FILE* file = std::tmpfile();
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::rewind(file);
  FileCharSource in(file);
  AutoDetectSource source(in, candidates, 3, heap);
  EXPECT_EQ(source.ActualInputEncoding(), sjis);
  // Whole file-source chunks were examined, and read again.
  EXPECT_EQ(source.Chooser().ExaminedCount() % FileCharSource::kBufferSize, 0);
  EXPECT_GT(source.Chooser().ExaminedCount(), 2048);
  EXPECT_LT(source.Chooser().ExaminedCount(), static_cast<long>(bytes.size()));
  EXPECT_EQ(ReadAll(source), Decode(*sjis, bytes));
  std::fclose(file);
}

TEST_F(Detect, SinkHoldsEverythingUntilItDecides) {
  const ExternalEncoding* candidates[] = {utf8, euc, sjis};
  Collect16 target;
  AutoDetectSink sink(target, candidates, 3, heap);
  sink.PutBuffer("abc ", nullptr);
  sink.PutBuffer("def ", nullptr);
  EXPECT_EQ(target.text, u"");
  EXPECT_EQ(sink.ChosenEncoding(), nullptr);
  sink.Flush();
  EXPECT_EQ(sink.ChosenEncoding(), utf8);
  EXPECT_EQ(target.text, u"abc def ");
  EXPECT_EQ(target.flushes, 1);

  const std::string bytes = LateShiftJIS();
  Collect16 target2;
  AutoDetectSink sink2(target2, candidates, 3, heap);
  for (std::size_t at = 0; at < bytes.size(); at += 700) {
    sink2.PutBuffer(bytes.data() + at, bytes.data() + std::min(bytes.size(), at + 700));
  }
  EXPECT_EQ(sink2.ChosenEncoding(), sjis);  // decided before the end
  sink2.Flush();
  EXPECT_EQ(target2.text, Decode(*sjis, bytes));
}

TEST_F(Detect, CatalogueEncodingsReadButNeverWrite) {
  const ExternalEncoding* any = ExternalEncoding::Lookup("auto");
  const ExternalEncoding* japanese = ExternalEncoding::Lookup("Auto-JA");
  ASSERT_NE(any, nullptr);
  ASSERT_NE(japanese, nullptr);
  EXPECT_EQ(any, AutoDetectEncoding::General());
  EXPECT_EQ(any->GetTextEncodingID(), TextEncodingID(4));
  EXPECT_EQ(japanese->GetTextEncodingID(), TextEncodingID(5));
  EXPECT_EQ(AutoDetectEncoding::General()->CountSubEncodings(), 8);
  EXPECT_EQ(AutoDetectEncoding::Japanese()->CountSubEncodings(), 7);
  EXPECT_TRUE(any->IsValidForInput());
  EXPECT_FALSE(any->IsValidForOutput());
  EXPECT_FALSE(any->IsTextModeSafe());  // UCS-2 is a candidate
  BufferChar16Source units(nullptr, nullptr);
  testing_streams::Collect8 bytes;
  EXPECT_EQ(any->CreateCharSourceFromUnicode(units, heap), nullptr);
  EXPECT_EQ(any->CreateCharSinkFromUnicode(bytes, heap), nullptr);

  // Read as a whole string, like any input encoding.
  const std::string euro = "Caf\xE9 cr\xE8me \x80 5";
  EXPECT_EQ(Decode(*any, euro), u"Café crème € 5");
  EXPECT_EQ(Decode(*japanese, "\xE6\x97\xA5\xE6\x9C\xAC"), u"日本");
}

}  // namespace
