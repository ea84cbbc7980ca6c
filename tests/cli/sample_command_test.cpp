// varnice sample, run as a person would run it.
#include <string>

#include "tests/cli/command_fixture.h"

namespace {

class SampleCommand : public cli_test::CommandFixture {
 protected:
  cli_test::Outcome Sample(const std::string& args) { return Varnice("sample " + args); }
};

TEST_F(SampleCommand, WritesAnEncodingsCharactersOrRandomWords) {
  const cli_test::Outcome digits = Sample("-t ASCII --script digit");
  EXPECT_EQ(digits.status, 0);
  EXPECT_EQ(digits.out, "0123456789");

  const cli_test::Outcome kana = Sample("-t Shift_JIS --script Hiragana,Katakana --bytes 300 --seed 5");
  EXPECT_EQ(kana.status, 0);
  EXPECT_LE(kana.out.size(), 300u);
  EXPECT_GE(kana.out.size(), 290u);
  EXPECT_EQ(Sample("-t sjis --script hiragana,katakana --bytes 300 --seed 5").out, kana.out);
  EXPECT_NE(Sample("-t Shift_JIS --script Hiragana,Katakana --bytes 300 --seed 6").out, kana.out);

  for (const char* mistake : {"-t Latin1 --script Hangul",  // nothing to write
                              "-t Latin1 --script Klingon", "-t Latin1 --bytes many", "--bytes 10",
                              "-t auto"}) {  // detecting encodings cannot write
    EXPECT_EQ(Sample(mistake).status, 2) << mistake;
  }
}

}  // namespace
