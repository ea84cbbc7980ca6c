// The varnice command never damages text or files without saying so: strict
// reading, exact failure offsets, whole-character substitutes, summaries, and
// output written through devices, pipes and links.
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "tests/cli/command_fixture.h"

namespace {

using namespace cli_test;

class Safety : public CommandFixture {
 protected:
  // Converts the bytes given and returns the outcome.
  Outcome Convert(const std::string& options, const std::string& input) {
    Write("in", input);
    return Varnice("convert " + options + " in");
  }
};

const std::string kR = "\xEF\xBF\xBD";

TEST_F(Safety, StrictReadingKeepsTheBytesAfterABrokenCharacter) {
  struct Case {
    const char* from;
    std::string in;
    std::string out;
  } cases[] = {
      {"UTF-8", "a\xFF" "b", "a" + kR + "b"},
      {"UTF-8", "a\xC3\nb", "a" + kR + "\nb"},
      {"UTF-8", "\xC0\xAF", kR + kR},
      {"UTF-8", "\xED\xA0\x80", kR + kR + kR},
      {"Shift_JIS", "a\x82\nb", "a" + kR + "\nb"},
      {"CP932", "a\x82 b", "a" + kR + " b"},
      {"EUC-JP", "a\xA9\xA1" "b", "a" + kR + kR + "b"},
      {"UTF-8", "ab\xE3\x81", "ab" + kR},
      {"ISO-2022-JP", "\x1B$B$", kR},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in);
    const Outcome r = Convert(std::string("-f ") + c.from + " -t UTF-8", c.in);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, c.out);
    EXPECT_NE(r.err.find("replaced\n"), std::string::npos) << r.err;
  }
  // Transforms read strictly too.
  EXPECT_EQ(Convert("-f UTF-8 -t UTF-8 -x upper", "a\xFF" "b").out, "A" + kR + "B");
  EXPECT_EQ(Convert("-f UTF-8 -t UTF-8 -x upper --on-error=fail", "ab\xE3\x81").status, 1);
  // UTF-7 is written by the same road.
  EXPECT_EQ(Convert("-f UTF-8 -t UTF-7", "a\xE6\x97\xA5").out, "a+ZeU-");
  // The old reading is still there for data that needs it.
  EXPECT_EQ(Convert("--lenient -f UTF-8 -t UTF-8", "a\xFF" "b").out, "a" + kR);
  EXPECT_EQ(Convert("--lenient -f UTF-8 -t UTF-8", "\xC0\xAF").out, "/");
}

TEST_F(Safety, FailNamesTheExactOffsetAlsoAcrossReadPieces) {
  Outcome r = Convert("-f UTF-8 -t UTF-8 --on-error=fail", "ab\xE3\x81");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "varnice: in: an incomplete UTF8 character at byte offset 2\n");
  r = Convert("-f UTF-8 -t UTF-8 --on-error=fail", "x\xC0\xAF");
  EXPECT_EQ(r.err, "varnice: in: input that is not UTF8 at byte offset 1\n");
  r = Convert("-f ISO-2022-JP -t UTF-8 --on-error=fail", "a\x1B$B$");
  EXPECT_EQ(r.err, "varnice: in: an incomplete ISO-2022-JP character at byte offset 4\n");
  // The command reads 64 KiB at a time: a character broken across that line.
  const std::string head(65535, 'a');
  r = Convert("-f UTF-8 -t UTF-8 --on-error=fail", head + "\xE3\x81\n");
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "varnice: in: input that is not UTF8 at byte offset 65535\n");
  r = Convert("-f UTF-8 -t Shift_JIS", head + "\xE3\x81\n");
  EXPECT_EQ(r.out, head + "\x1A\n");
  r = Convert("-f UTF-8 -t Shift_JIS --on-error=fail", head + "x\xC3\xA9");
  EXPECT_EQ(r.err, "varnice: in: U+00E9, which Shift_JIS cannot represent, at byte offset 65536\n");
}

TEST_F(Safety, SubstitutesAreWholeCharactersOfTheTarget) {
  Outcome r = Convert("-f UTF-8 -t ISO-2022-JP", "\xE4\xBA\x9C\xC3\xA9\xE4\xBA\x9C");
  EXPECT_EQ(r.out, "\x1B$B0!\x1B(B\x1A\x1B$B0!\x1B(B");
  EXPECT_EQ(r.err, "varnice: 1 character replaced\n");
  EXPECT_EQ(Convert("-f UTF-8 -t CP870", "\xE4\xBA\x9C").out, "\x3F");
  EXPECT_EQ(Convert("-f UTF-8 -t CP932 --subst=\xE3\x80\x93", "x\xC3\xA9").out, "x\x81\xAC");
  r = Convert("-f UTF-8 -t Shift_JIS", "a\xF0\x9F\x98\x80" "b\xC3\xA9\xC3\xA9");
  EXPECT_EQ(r.out, "a\x1A" "b\x1A\x1A");
  EXPECT_EQ(r.err, "varnice: 3 characters replaced\n");
  r = Convert("-f UTF-8 -t Shift_JIS -c", "a\xC3\xA9");
  EXPECT_EQ(r.out, "a");
  EXPECT_EQ(r.err, "varnice: 1 character skipped\n");
  r = Convert("-f UTF-8 -t Shift_JIS -q", "a\xC3\xA9");
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(Convert("-f UTF-8 -t UTF-8 --subst=\"$(printf '\\377')\"", "a").status, 2);
}

TEST_F(Safety, OutputGoesThroughDevicesPipesAndLinks) {
  Write("in", "text\n");
  Outcome r = Varnice("convert -f UTF-8 -t UTF-8 -o /dev/full in");
  EXPECT_EQ(r.status, 3);
  EXPECT_EQ(r.err, "varnice: cannot write /dev/full: No space left on device\n");
  struct stat st;
  ASSERT_EQ(::stat("/dev/full", &st), 0);
  EXPECT_TRUE(S_ISCHR(st.st_mode));

  Write("target", "old");
  fs::create_symlink("target", dir_ / "link");
  r = Varnice("convert -f UTF-8 -t UTF-8 -o link in");
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(fs::is_symlink(dir_ / "link"));
  EXPECT_EQ(ReadFile(dir_ / "target"), "text\n");

  // A link to a file not yet made makes the file and stays a link.
  fs::create_symlink("made", dir_ / "dangling");
  EXPECT_EQ(Varnice("convert -f UTF-8 -t UTF-8 -o dangling in").status, 0);
  EXPECT_TRUE(fs::is_symlink(dir_ / "dangling"));
  EXPECT_EQ(ReadFile(dir_ / "made"), "text\n");

  ::chmod((dir_ / "target").c_str(), 0600);
  ASSERT_EQ(Varnice("convert -f UTF-8 -t UTF-16BE -o target in").status, 0);
  ASSERT_EQ(::stat((dir_ / "target").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  EXPECT_EQ(ReadFile(dir_ / "target"), std::string("\0t\0e\0x\0t\0\n", 10));

  ASSERT_EQ(::mkfifo((dir_ / "fifo").c_str(), 0600), 0);
  r = Varnice("convert -f UTF-8 -t UTF-8 -o fifo in", "(cat fifo > got &) && ");
  EXPECT_EQ(r.status, 0) << r.err;
  for (int i = 0; i < 100 && ReadFile(dir_ / "got").empty(); ++i) ::usleep(20000);
  EXPECT_EQ(ReadFile(dir_ / "got"), "text\n");
  EXPECT_TRUE(fs::is_fifo(dir_ / "fifo"));

  for (const char* command : {"list", "char U+0041", "version", "--version"}) {
    r = Varnice(std::string(command) + " > /dev/full");
    EXPECT_EQ(r.status, 3) << command;
    EXPECT_EQ(r.err, "varnice: cannot write standard output: No space left on device\n") << command;
  }
}

TEST_F(Safety, ListedNamesAllWorkAndStandardUnicodeNamesToo) {
  const Outcome list = Varnice("-l");
  ASSERT_EQ(list.status, 0);
  std::istringstream lines(list.out);
  std::string line;
  std::getline(lines, line);  // heading
  int checked = 0;
  Write("a", "a");
  while (std::getline(lines, line)) {
    std::istringstream cells(line);
    std::string id, name, mime, cp, use;
    if (!(cells >> id >> name >> mime >> cp >> use)) continue;  // the closing line
    if (id.rfind("0x", 0) != 0) continue;
    SCOPED_TRACE(name);
    EXPECT_EQ(Varnice("convert -f '" + name + "' -t UTF-8 a").status, 0);
    if (use == "rw") EXPECT_EQ(Varnice("convert -f UTF-8 -t '" + name + "' a").status, 0);
    ++checked;
  }
  EXPECT_GT(checked, 30);
  EXPECT_NE(list.out.find(" UTF-16LE "), std::string::npos);
  EXPECT_NE(list.out.find(" read "), std::string::npos);  // detection only reads

  EXPECT_EQ(Convert("-f UTF-8 -t UTF-16LE", "a\xE4\xBA\x9C").out, std::string("a\0\x9CN", 4));
  EXPECT_EQ(Convert("-f UTF-8 -t UTF-16BE", "a").out, std::string("\0a", 2));
  EXPECT_EQ(Convert("-f UTF-16 -t UTF-8", std::string("\xFE\xFF\0a", 4)).out, "a");
  EXPECT_EQ(Convert("-f UTF-16LE -t UTF-8", std::string("a\0\0\xD8", 4)).out, "a" + kR);
  EXPECT_EQ(Varnice("--version").out.rfind("varnice Version ", 0), 0u);
}

}  // namespace
