// varnice sample, run as a person would run it.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace {

struct Outcome {
  int status;
  std::string out;
};

Outcome Sample(const std::string& args) {
  const std::string command = "'" VARNICE_CLI_PATH "' sample " + args + " 2>/dev/null";
  std::FILE* pipe = ::popen(command.c_str(), "r");
  Outcome outcome{-1, ""};
  if (pipe == nullptr) return outcome;
  char buffer[4096];
  for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) outcome.out.append(buffer, n);
  const int status = ::pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

TEST(SampleCommand, WritesAnEncodingsCharactersOrRandomWords) {
  const Outcome digits = Sample("-t ASCII --script digit");
  EXPECT_EQ(digits.status, 0);
  EXPECT_EQ(digits.out, "0123456789");

  const Outcome kana = Sample("-t Shift_JIS --script Hiragana,Katakana --bytes 300 --seed 5");
  EXPECT_EQ(kana.status, 0);
  EXPECT_LE(kana.out.size(), 300u);
  EXPECT_GE(kana.out.size(), 290u);
  EXPECT_EQ(Sample("-t sjis --script hiragana,katakana --bytes 300 --seed 5").out, kana.out);
  EXPECT_NE(Sample("-t Shift_JIS --script Hiragana,Katakana --bytes 300 --seed 6").out, kana.out);

  EXPECT_EQ(Sample("-t Latin1 --script Hangul").status, 2);  // nothing to write
  EXPECT_EQ(Sample("-t Latin1 --script Klingon").status, 2);
  EXPECT_EQ(Sample("-t Latin1 --bytes many").status, 2);
  EXPECT_EQ(Sample("--bytes 10").status, 2);
  EXPECT_EQ(Sample("-t auto").status, 2);  // detecting encodings cannot write
}

}  // namespace
