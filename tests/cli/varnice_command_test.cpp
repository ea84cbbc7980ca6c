// The varnice command, run as a person would run it: output bytes, messages
// and exit codes.
#include <unistd.h>

#include <string>

#include "tests/cli/command_fixture.h"

namespace {

using namespace cli_test;

const std::string kSamples = VARNICE_SOURCE_DIR "/examples/samples/";

class Command : public CommandFixture {};

TEST_F(Command, ConvertsEverySampleToUtf8NamedOrDetected) {
  const std::string japanese = ReadFile(kSamples + "japanese.utf8.txt");
  const std::string european = ReadFile(kSamples + "european.utf8.txt");
  struct Case {
    const char* file;
    const char* from;
    const std::string& expected;
  } cases[] = {
      {"japanese.sjis.txt", "Shift_JIS", japanese},   {"japanese.eucjp.txt", "EUC-JP", japanese},
      {"japanese.iso2022jp.txt", "ISO-2022-JP", japanese}, {"european.latin1.txt", "ISO-8859-1", european},
      {"japanese.utf8.txt", "UTF-8", japanese},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    for (const std::string from : {std::string(c.from), std::string("auto")}) {
      const Outcome r = Varnice("convert -f " + from + " -t utf-8 " + kSamples + c.file);
      EXPECT_EQ(r.status, 0) << r.err;
      EXPECT_EQ(r.out, c.expected);
      EXPECT_EQ(r.err, "");
    }
  }
  // And back, into a file, from standard input.
  const Outcome r = Varnice("convert -f utf8 -t sjis -o out.txt < " + kSamples + "japanese.utf8.txt");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(ReadFile(Path("out.txt")), ReadFile(kSamples + "japanese.sjis.txt"));
}

TEST_F(Command, OnErrorReplacesSkipsOrFailsAtTheOffendingByte) {
  // "ok" then 0x80, which has no character in Shift_JIS, then Japanese, then a euro
  // sign that Shift_JIS lacks.
  WriteFile(Path("in.sjis"), "ok\x80\x82\xA0 x");
  WriteFile(Path("in.utf8"), "ab \xE2\x82\xAC c");
  EXPECT_EQ(Varnice("convert -f sjis -t utf8 in.sjis").out, "ok\xEF\xBF\xBD\xE3\x81\x82 x");
  EXPECT_EQ(Varnice("convert -f sjis -t utf8 --on-error=skip in.sjis").out, "ok\xE3\x81\x82 x");
  EXPECT_EQ(Varnice("convert -f utf8 -t sjis in.utf8").out, "ab \x1A c");
  EXPECT_EQ(Varnice("convert -f utf8 -t sjis --subst='(EUR)' in.utf8").out, "ab (EUR) c");
  EXPECT_EQ(Varnice("convert -f utf8 -t sjis --on-error=skip in.utf8").out, "ab  c");

  WriteFile(Path("out.txt"), "previous");
  Outcome r = Varnice("convert -f sjis -t utf8 --on-error=fail -o out.txt in.sjis");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "varnice: in.sjis: input that is not Shift_JIS at byte offset 2\n");
  EXPECT_EQ(ReadFile(Path("out.txt")), "previous");  // left as it was
  EXPECT_EQ(std::distance(fs::directory_iterator(dir_), fs::directory_iterator()), 4);  // no temporary left

  r = Varnice("convert -f utf8 -t sjis --on-error=fail in.utf8");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "varnice: in.utf8: U+20AC, which Shift_JIS cannot represent, at byte offset 3\n");
  // Also from a pipe, which cannot be read again.
  r = Varnice("convert -f utf8 -t sjis --on-error=fail", "cat in.utf8 | ");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "varnice: standard input: U+20AC, which Shift_JIS cannot represent, at byte offset 3\n");
  // The lenient reading keeps the old way of placing a failure.
  r = Varnice("convert --lenient -f utf8 -t sjis --on-error=fail", "cat in.utf8 | ");
  EXPECT_EQ(r.err, "varnice: standard input: U+20AC, which Shift_JIS cannot represent, between byte offsets 0 and 8\n");
}

TEST_F(Command, DetectNamesEachFileOrSaysNothingReadsIt) {
  Outcome r = Varnice("detect " + kSamples + "japanese.eucjp.txt");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "EUC-JP\n");  // alone, for scripts
  r = Varnice("detect japanese.sjis.txt japanese.iso2022jp.txt european.latin1.txt japanese.utf8.txt", "cd " + kSamples + " && ");
  EXPECT_EQ(r.out,
            "japanese.sjis.txt: Shift_JIS\njapanese.iso2022jp.txt: ISO-2022-JP\n"
            "european.latin1.txt: CP1252\njapanese.utf8.txt: UTF8\n");
  WriteFile(Path("jis.txt"), "\x1B$B$\"\x1B(B");  // あ
  r = Varnice("detect -v -", "cat jis.txt | ");
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "ISO-2022-JP");
  EXPECT_NE(r.out.find("  8 bytes examined\n  decided: ISO-2022-JP alone read the most plausible text"),
            std::string::npos) << r.out;
  EXPECT_NE(r.out.find("ISO-2022-JP          score          -2  1 kana (2 each)"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("UTF8                 score         -66  6 ASCII, 2 encoded-looking ASCII bytes (3 each), "
                       "2 control characters (30 each)"),
            std::string::npos) << r.out;
  EXPECT_EQ(Varnice("detect -f auto-ja " + kSamples + "japanese.sjis.txt").out, "Shift_JIS\n");

  // ASCII to the end: a tie, settled by candidate order.
  WriteFile(Path("ascii.txt"), "plain text\n");
  r = Varnice("detect -v ascii.txt");
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("end of input: UTF8, UTF7, ISO-2022-JP, EUC-J, Shift-JIS, CP932, CP1252 read it equally "
                       "well; UTF8 comes first among them"),
            std::string::npos) << r.out;

  // Nothing reads it: binary or unknown, and exit code 4.
  WriteFile(Path("zeros.bin"), std::string("\x7F" "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0", 16));
  r = Varnice("detect zeros.bin");
  EXPECT_EQ(r.status, 4);
  EXPECT_EQ(r.out, "binary\n");
  WriteFile(Path("noise.bin"), "\x01\x02\x03\x04\x05\x81\x82\x83\x8D\x8F\x90\xFF\xFE\xFD\xFC\xFB");
  r = Varnice("detect noise.bin zeros.bin");
  EXPECT_EQ(r.status, 4);
  EXPECT_EQ(r.out, "noise.bin: unknown\nzeros.bin: binary\n");
}

TEST_F(Command, LargeInputIsDetectedWhereverItTellsAndStreams) {
  std::string text;
  while (text.size() < 2'500'000) text += "The same line of ASCII, over and over again.\n";
  WriteFile(Path("late.txt"), text + "\xA4\xA2\n");  // あ in EUC-JP
  Outcome r = Varnice("detect -v late.txt");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out.substr(0, r.out.find('\n')), "EUC-JP") << r.out;
  EXPECT_NE(r.out.find("bytes of ASCII skipped"), std::string::npos) << r.out;
  // Converting reads the file again from the start in the encoding found.
  r = Varnice("convert -f auto -t utf8 late.txt");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, text + "\xE3\x81\x82\n");

  // Input far larger than the detection window, telling from its start,
  // streams through unchanged.
  std::string big;
  while (big.size() < 3'000'000) big += "line of ASCII then \xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\n";
  WriteFile(Path("big.txt"), big);
  ASSERT_EQ(Varnice("convert -f utf8 -t euc-jp -o big.euc big.txt").status, 0);
  r = Varnice("convert -f auto -t utf8 big.euc");
  EXPECT_EQ(r.status, 0);
  EXPECT_TRUE(r.out == big);
  EXPECT_EQ(Varnice("detect -v big.euc").out.substr(0, 7), "EUC-JP\n");
}

TEST_F(Command, ClearMessagesAndExitCodesForMistakes) {
  WriteFile(Path("a.txt"), "a");
  struct Case {
    const char* args;
    int status;
    const char* message;
  } cases[] = {
      {"convert -f klingon -t utf8 a.txt", 2, "varnice: unknown source encoding 'klingon' (see 'varnice list')\n"},
      {"convert -f utf8 -t auto a.txt", 2,
       "varnice convert: AutoDetect only reads; choose a target encoding that can be written\n"},
      {"convert -f utf8 a.txt", 2, "varnice convert: both -f FROM and -t TO are needed (see 'varnice convert --help')\n"},
      {"convert -f utf8 -t utf8 --on-error=ignore a.txt", 2,
       "varnice convert: --on-error takes replace, skip or fail, not 'ignore'\n"},
      {"convert --frobnicate", 2, "varnice convert: unknown option '--frobnicate' (see 'varnice convert --help')\n"},
      {"convert -x", 2, "varnice convert: -x needs a value\n"},
      {"convert -f utf8 -t utf8 missing.txt", 3, "varnice: cannot read missing.txt: No such file or directory\n"},
      {"convert -f utf8 -t utf8 -o no/such/dir/out a.txt", 3,
       "varnice: cannot write no/such/dir/out: No such file or directory\n"},
      {"detect missing.txt", 3, "varnice: cannot read missing.txt: No such file or directory\n"},
      {"detect -f utf8 a.txt", 2, "varnice detect: UTF8 does not detect; use auto or auto-ja\n"},
      {"frobnicate", 2, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.args);
    const Outcome r = Varnice(c.args);
    EXPECT_EQ(r.status, c.status);
    if (c.message != nullptr) EXPECT_EQ(r.err, c.message);
    EXPECT_EQ(r.out, "");
  }
  for (const char* command : {"convert", "detect", "list", "char", "version"}) {
    const Outcome r = Varnice(std::string(command) + " --help");
    EXPECT_EQ(r.status, 0) << command;
    EXPECT_EQ(r.out.rfind(std::string("usage: varnice ") + command, 0), 0u) << r.out;
  }
}

TEST_F(Command, TransformsStackBetweenDecodingAndEncoding) {
  // Shift_JIS halfwidth katakana and fullwidth Latin, widened, made hiragana,
  // then upper-cased only where Latin.
  WriteFile(Path("in.txt"), "\xB6\xC0\xB6\xC5 abc \x82\x60\r\nx");
  Outcome r = Varnice("convert -f Shift_JIS -t UTF-8 -x fullwidth,hiragana,upper:Latin in.txt");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "かたかな　ＡＢＣ　Ａ\r\nＸ");
  // Line ends made alike across a long input that the command reads in pieces.
  std::string big;
  for (int i = 0; i < 100000; ++i) big += "line\r\n";
  WriteFile(Path("big.txt"), big);
  r = Varnice("convert -f UTF-8 -t UTF-8 --transform=lf big.txt");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out.size(), 500000u);
  EXPECT_EQ(r.out.find('\r'), std::string::npos);
}

TEST_F(Command, TransformMistakesAreUsageErrorsAndFailuresArePlaced) {
  Outcome r = Varnice("convert -f UTF-8 -t UTF-8 -x upper,nonsense", "printf a | ");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.err.find("unknown transform 'nonsense'"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find(" halfwidth "), std::string::npos) << r.err;  // lists the valid ones
  r = Varnice("convert -f UTF-8 -t UTF-8 -x upper:NoSuchClass", "printf a | ");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.err.find("unknown character class 'NoSuchClass'"), std::string::npos) << r.err;
  r = Varnice("list --transforms");
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("crlf"), std::string::npos);
  EXPECT_NE(r.out.find("every line end to CR LF"), std::string::npos);
  // U+00E9 composed from e + U+0301 is not in ASCII: the failure names where.
  r = Varnice("convert -f UTF-8 -t US-ASCII -x compose --on-error=fail", "printf 'abce\\314\\201' | ");
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("U+00E9"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find("between byte offsets"), std::string::npos) << r.err;
}

}  // namespace
