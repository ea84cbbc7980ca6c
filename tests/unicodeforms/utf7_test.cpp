#include "varnice/unicodeforms/utf7.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/unicodeforms/form_test_support.h"

namespace {

using namespace testing_forms;

Decoded Decode7(const std::string& bytes, std::size_t piece = 1 << 20) {
  UTF7toWhatever decoder;
  return Decode(decoder, bytes, piece);
}

std::string Encode7(const std::u16string& units, bool setODirect = false, bool alwaysClose = true,
                    std::size_t piece = 1 << 20) {
  UTF7fromWhatever encoder(setODirect, alwaysClose);
  const Encoded run = Encode(encoder, units, piece);
  EXPECT_TRUE(run.problems.empty());
  return run.text;
}

TEST(UTF7toWhatever, RunsAndTheirEscapes) {
  EXPECT_EQ(Decode7("+-"), (Decoded{u"+", {}, false}));
  EXPECT_EQ(Decode7("+AGE-"), (Decoded{u"a", {}, false}));
  EXPECT_EQ(Decode7("Hi Mom -+Jjo--!"), (Decoded{u"Hi Mom -\u263A-!", {}, false}));
  EXPECT_EQ(Decode7("+ZeVnLIqe-"), (Decoded{u"\u65E5\u672C\u8A9E", {}, false}));
  // Any byte outside the alphabet ends a run and is itself kept.
  EXPECT_EQ(Decode7("+AGE. x"), (Decoded{u"a. x", {}, false}));
  // An unterminated run is accepted at the end when it is well formed.
  EXPECT_EQ(Decode7("+AGE"), (Decoded{u"a", {}, false}));
}

TEST(UTF7toWhatever, MalformedRunsAreIllegal) {
  EXPECT_EQ(Decode7("+!x"), (Decoded{u"x", {{0, kIllegalInput}}, false}));  // empty run
  EXPECT_EQ(Decode7("+AG-x"), (Decoded{u"x", {{0, kIllegalInput}}, false}));
  EXPECT_EQ(Decode7("+AGF-x"), (Decoded{u"ax", {{1, kIllegalInput}}, false}));  // non-zero leftover bits
  EXPECT_EQ(Decode7("+"), (Decoded{u"", {{0, kIllegalInput}}, false}));
  // "+" inside a run is the digit 62, so this run goes on and ends holding
  // non-zero bits: the "x" is not text.
  EXPECT_EQ(Decode7("+AGE+x"), (Decoded{u"a", {{1, kIllegalInput}}, false}));
  // Eight-bit bytes, outside a run and ending one.
  EXPECT_EQ(Decode7("a\xE9" "b"), (Decoded{u"ab", {{1, kIllegalInput}}, false}));
  EXPECT_EQ(Decode7("+AGE\xE9" "b"), (Decoded{u"ab", {{1, kIllegalInput}}, false}));
}

TEST(UTF7toWhatever, RoomAndPieces) {
  UTF7toWhatever decoder;
  EXPECT_EQ(DecodeStep(decoder, "ab", 3), (Step16{kOutputFull, 0, u""}));
  unsigned short out[1];
  unsigned short* o = out;
  EXPECT_EQ(decoder.Finish(o, out + 1), kOutputFull);

  const std::string mixed = "Hi +ZeVnLIqe- and +AGE. and +- +AGF- \x80 +Jjo-";
  const Decoded whole = Decode7(mixed);
  EXPECT_EQ(whole.problems.size(), 2u);
  for (std::size_t piece : {1, 2, 3, 7}) EXPECT_EQ(Decode7(mixed, piece), whole) << piece;
}

TEST(UTF7fromWhatever, DirectCharactersRunsAndClosing) {
  EXPECT_EQ(Encode7(u"a+b"), "a+-b");
  EXPECT_EQ(Encode7(u"\u00E9."), "+AOk-.");
  EXPECT_EQ(Encode7(u"\u65E5\u672C\u8A9E"), "+ZeVnLIqe-");  // closed by Finish
  EXPECT_EQ(Encode7(u"Hi Mom -\u263A-!"), "Hi Mom -+Jjo--+ACE-");
  EXPECT_EQ(Encode7(u"~\\"), "+AH4AXA-");  // never direct
  // Set O is direct only when asked for.
  EXPECT_EQ(Encode7(u"!#", true), "!#");
  // Without forced closing, "-" appears only where a decoder needs it.
  EXPECT_EQ(Encode7(u"\u00E9.", false, false), "+AOk.");
  EXPECT_EQ(Encode7(u"\u00E9a", false, false), "+AOk-a");
  EXPECT_EQ(Encode7(u"\u00E9-", false, false), "+AOk--");
  EXPECT_EQ(Encode7(u"\u65E5", false, false), "+ZeU");

  UTF7fromWhatever encoder(false, true);
  EXPECT_EQ(EncodeStep(encoder, u"\u00E9", 6), (Step8{kOutputFull, 0, ""}));
  EXPECT_EQ(EncodeStep(encoder, u"\u00E9", 7), (Step8{kInputUsedUp, 1, "+AO"}));
  char out[8];
  char* o = out;
  EXPECT_EQ(encoder.Finish(o, out + 4), kOutputFull);
  EXPECT_EQ(o, out);
  EXPECT_EQ(encoder.Finish(o, out + 5), kConversionDone);
  EXPECT_EQ(std::string(out, o), "k-");
}

TEST(UTF7, RoundTripOneUnitPerCall) {
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> unit(0, 0xFFFF), ascii(0, 0x7F), kind(0, 2);
  for (int round = 0; round < 50; ++round) {
    std::u16string text;
    for (int i = 0; i < 200; ++i) text.push_back(static_cast<char16_t>(kind(rng) == 0 ? unit(rng) : ascii(rng)));
    for (bool setO : {false, true}) {
      for (bool close : {false, true}) {
        const std::string bytes = Encode7(text, setO, close);
        EXPECT_EQ(Encode7(text, setO, close, 1), bytes);
        const Decoded back = Decode7(bytes, 1);
        EXPECT_EQ(back.text, text);
        EXPECT_TRUE(back.problems.empty());
      }
    }
  }
}

TEST(UTF7Detector, TheDecodersVerdictsCostAPointEach) {
  const ExternalEncoding& utf7 = *ExternalEncoding::Unicode20UTF7();
  auto score = [&](const std::string& text) {
    UTF7Detector d(utf7);
    const std::size_t half = text.size() / 2;
    d.Scan(text.data(), text.data(), text.data() + half);
    d.Scan(text.data(), text.data() + half, text.data() + text.size());
    d.Finish(text.data(), text.data() + text.size());
    return d.Score();
  };
  EXPECT_EQ(score("Hello, world. (ok?)"), 0);
  EXPECT_EQ(score("Hi Mom -+Jjo--!"), 0);
  EXPECT_EQ(score("open +AGE"), 0);  // unterminated costs nothing
  EXPECT_EQ(score("+AGF- +! +AG-"), -3);
  // An eight-bit byte is wrong twice: as a byte and to the automaton.
  EXPECT_EQ(score("caf\xE9"), -2);
  EXPECT_EQ(score("+AGE\xE9"), -2);

  UTF7Detector d(utf7);
  d.Loser();
  EXPECT_EQ(d.Score(), -1);
}

}  // namespace
