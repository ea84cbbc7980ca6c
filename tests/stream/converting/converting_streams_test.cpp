#include "varnice/stream/converting/converting_sources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "tests/stream/stream_test_support.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/stream/buffer_char_sink.h"
#include "varnice/stream/converting/converting_sinks.h"

namespace {

using namespace testing_streams;

const InternalEncoding& Unicode() { return *InternalEncoding::Unicode(); }

// A converting source over the chunks, with the behaviour set on the input.
struct Decoder {
  Decoder(std::vector<std::string> chunks, UnicodeLibBehavior& behavior)
      : input(std::move(chunks)), converter(new ByteToUnit) {
    input.SetBehavior(&behavior);
    source = new CharSource_8_to_16(input, TestEncoding(), converter, Unicode());
  }
  ~Decoder() { delete source; }
  std::u16string ReadAll() { return testing_streams::ReadAll(*source); }
  ChunkSource input;
  ByteToUnit* converter;  // owned by the source
  CharSource_8_to_16* source;
};

TEST(CharSource_8_to_16, ProblemInTheMiddleIsReportedOnceAndConversionGoesOn) {
  ScriptedBehavior behavior;
  Decoder d({"ab\xFF" "cd", "e\xFE" "f"}, behavior);
  EXPECT_EQ(d.ReadAll(), u"ab\uFFFDcde\uFFFDf");
  EXPECT_EQ(behavior.undefined, 1);
  EXPECT_EQ(behavior.illegal, 1);
  // The last problem: second chunk, stopped just past 0xFE, after 6 units of output.
  EXPECT_EQ(behavior.stopOffset, 2);
  EXPECT_EQ(behavior.inputLength, 3);
  EXPECT_EQ(behavior.outputSoFar, 6);
  EXPECT_EQ(d.source->ActualInputEncoding(), &TestEncoding());
}

TEST(CharSource_8_to_16, InsertedTextLandsExactlyAtTheProblem) {
  ScriptedBehavior behavior;
  behavior.onUndefined = [](NoCharacterDefinedForCodepoint& p) { p.InsertOutput(U(u"<?>"), nullptr); };
  // Replacement input is converted in place (its own pair included).
  behavior.onIllegal = [](IllegalByteRange& p) { p.InsertInput("xy\x80" "A", nullptr); };
  Decoder d({"a\xFF" "b", "c\xFE" "d"}, behavior);
  EXPECT_EQ(d.ReadAll(), u"a<?>bcxy\u1041d");
}

TEST(CharSource_8_to_16, InsertedOutputLongerThanTheBufferSpansFills) {
  ScriptedBehavior behavior;
  const std::u16string filler(700, u'z');
  behavior.onUndefined = [&](NoCharacterDefinedForCodepoint& p) {
    p.InsertOutput(U(filler.data()), U(filler.data()) + filler.size());
  };
  Decoder d({"a\xFF" "b"}, behavior);
  Collect16 out;
  out.Put(*d.source);
  EXPECT_EQ(out.text, u"a" + filler + u"b");
  for (long piece : out.pieces) EXPECT_LE(piece, CharSource_8_to_16::kBufferUnits);
}

TEST(CharSource_8_to_16, HandlerThatThrowsStopsTheRead) {
  ScriptedBehavior behavior;
  behavior.onUndefined = [](NoCharacterDefinedForCodepoint&) { throw std::runtime_error("stop"); };
  Decoder d({"ab\xFF" "cd"}, behavior);
  EXPECT_THROW(d.ReadAll(), std::runtime_error);
  // The offending byte was consumed before the handler ran; "cd" is left.
  const char* b;
  const char* e;
  ASSERT_TRUE(d.input.GetBuffer(b, e));
  EXPECT_EQ(std::string(b, e), "cd");
}

TEST(CharSource_8_to_16, PairSplitAcrossBlocksConvertsToOneUnit) {
  UnicodeLibBehavior behavior;
  Decoder d({"a\x80", "\x41" "b"}, behavior);
  EXPECT_EQ(d.ReadAll(), u"a\u1041b");
}

TEST(CharSource_8_to_16, ConvertsOncePerBufferAndFinishesOnce) {
  UnicodeLibBehavior behavior;
  Decoder d({std::string(1000, 'q') + "\x80"}, behavior);
  const std::u16string text = d.ReadAll();
  EXPECT_EQ(text, std::u16string(1000, u'q') + u"$");  // Finish flushed the dangling lead
  EXPECT_LE(d.converter->converts, 3);
  const unsigned short* b;
  const unsigned short* e;
  EXPECT_FALSE(d.source->GetBuffer(b, e));
  EXPECT_EQ(d.converter->finishes, 1);
}

TEST(CharSource_8_to_16, SetBehaviorReachesTheConverter) {
  UnicodeLibBehavior inputs, later;
  Decoder d({"x"}, inputs);
  EXPECT_EQ(&d.converter->Behavior(), &inputs);  // taken from the input at construction
  d.source->SetBehavior(&later);
  EXPECT_EQ(&d.converter->Behavior(), &later);
  EXPECT_EQ(&d.source->Behavior(), &later);
}

TEST(CharSource_16_to_8, UnrepresentableCharactersAreSubstitutedOthersPassedOver) {
  ScriptedBehavior behavior;
  std::u16string surrogate = u"?C\u0141";
  surrogate[0] = 0xD800;  // a lone high surrogate
  Chunk16Source input({u"A\uFFFFB", surrogate});
  input.SetBehavior(&behavior);
  CharSource_16_to_8 source(input, Unicode(), new UnitToBytes, TestEncoding());
  EXPECT_EQ(ReadAll(source), "A\x1A" "BC\x01\x41");
  EXPECT_EQ(behavior.notInRepertoire, 1);

  behavior.SetExternalSubstitute("?!");
  Chunk16Source again({u"\uFFFF."});
  again.SetBehavior(&behavior);
  CharSource_16_to_8 second(again, Unicode(), new UnitToBytes, TestEncoding());
  EXPECT_EQ(ReadAll(second), "?!.");
}

TEST(CharSink_8_to_16, ProblemsAreReportedAndInsertedTextLandsAtThem) {
  ScriptedBehavior behavior;
  behavior.onUndefined = [](NoCharacterDefinedForCodepoint& p) { p.InsertOutput(U(u"<?>"), nullptr); };
  // A sink converts inserted input at once, without reporting its problems.
  behavior.onIllegal = [](IllegalByteRange& p) { p.InsertInput("\xFF" "x", nullptr); };
  Collect16 out;
  out.SetBehavior(&behavior);
  CharSink_8_to_16 sink(TestEncoding(), new ByteToUnit, Unicode(), out);
  sink.Put("a\xFF" "b\xFE" "c");
  sink.Flush();
  EXPECT_EQ(out.text, u"a<?>bxc");
  EXPECT_EQ(behavior.undefined, 1);
  EXPECT_EQ(behavior.illegal, 1);
  EXPECT_EQ(out.flushes, 1);
}

TEST(CharSink_16_to_8, TruncationAtABufferSinkStopsAtAWholeCharacter) {
  char buffer[4];
  BufferCharSink out(buffer, sizeof buffer);
  CharSink_16_to_8 sink(Unicode(), new UnitToBytes, TestEncoding(), out);
  sink.Put(U(u"a\u0141\u0142z"));  // 1 + 2 + 2 + 1 bytes: the second pair does not fit
  EXPECT_EQ(std::string(out.data(), out.size()), "a\x01\x41");
  EXPECT_TRUE(out.truncated());
  EXPECT_EQ(out.RemainingCapacity(), 1);
  sink.Put(U(u"b"));  // one byte would fit, but a cut text does not resume
  EXPECT_EQ(out.size(), 3);
}

TEST(ConvertingSinks, LargeOutputArrivesInPiecesOfAtMost1024Bytes) {
  Collect16 units;
  CharSink_8_to_16 decode(TestEncoding(), new ByteToUnit, Unicode(), units);
  const std::string bytes(2000, 'a');
  decode.PutBuffer(bytes.data(), bytes.data() + bytes.size());
  EXPECT_EQ(units.text, std::u16string(2000, u'a'));
  EXPECT_GT(units.pieces.size(), 1u);
  for (long piece : units.pieces) EXPECT_LE(piece * 2, 1024);

  Collect8 bytesOut;
  CharSink_16_to_8 encode(Unicode(), new UnitToBytes, TestEncoding(), bytesOut);
  const std::u16string wide(1500, u'\u0141');
  encode.PutBuffer(U(wide.data()), U(wide.data()) + wide.size());
  EXPECT_EQ(bytesOut.text.size(), 3000u);
  EXPECT_GT(bytesOut.pieces.size(), 2u);
  for (long piece : bytesOut.pieces) EXPECT_LE(piece, 1024);
}

}  // namespace
