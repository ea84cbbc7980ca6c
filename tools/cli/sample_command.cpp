// varnice sample: sample text in any writable encoding, for tests, benchmarks
// and trying things out.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tools/cli/cli.h"
#include "varnice/varnice.h"

namespace cli {
namespace {

const char kHelp[] =
    "usage: varnice sample -t ENCODING [--script NAME[,NAME...]] [--bytes N] [--seed S]\n"
    "\n"
    "Writes sample text in ENCODING to standard output, using only characters the\n"
    "encoding writes and reads back unchanged.\n"
    "\n"
    "  -t, --to ENCODING   any name from 'varnice list' that can be written\n"
    "  --script NAMES      characters of these character tests: scripts (\"Latin\",\n"
    "                      \"Hiragana\", \"CJK\", ...), categories (\"UppercaseLetter\"),\n"
    "                      classes (\"alpha\", \"digit\", ...); default: every character\n"
    "  --bytes N           pseudo-random text of at most N bytes (shifts of ISO-2022\n"
    "                      and UTF-7 come on top), words from the tests in equal shares\n"
    "  --seed S            the random text's seed (default 1); the same seed gives the\n"
    "                      same text everywhere\n"
    "\n"
    "Without --bytes or --seed, every character of the tests that the encoding has,\n"
    "once, in code order. Exit status: 0 done, 2 bad usage, 3 output failed.\n";

// A named character test; "Latin" also finds "LatinScript".
const CharacterTest* FindTest(const std::string& name) {
  if (const CharacterTest* test = CharacterTest::Lookup(qz_string(name.c_str()))) return test;
  return CharacterTest::Lookup(qz_string((name + "Script").c_str()));
}

// A character of any of several tests.
class AnyOf : public CharacterTest {
 public:
  bool Test(unsigned long c) const override {
    for (const CharacterTest* test : tests) {
      if (test->Test(c)) return true;
    }
    return false;
  }
  std::vector<const CharacterTest*> tests;
};

bool ParseNumber(const char* text, unsigned long long& value) {
  if (text[0] < '0' || text[0] > '9') return false;
  char* end;
  errno = 0;
  value = std::strtoull(text, &end, 10);
  return *end == '\0' && errno == 0;
}

int UsageError(const char* message, const char* detail) {
  std::fprintf(stderr, "varnice sample: %s%s\n(see 'varnice sample --help')\n", message, detail);
  return kUsage;
}

}  // namespace

int RunSample(int argc, char** argv) {
  const char* target = nullptr;
  std::vector<const CharacterTest*> tests;
  unsigned long long bytes = 4096;
  unsigned long long seed = 1;
  bool random = false;
  for (int i = 0; i < argc; ++i) {
    const std::string arg = argv[i];
    const bool has_value = i + 1 < argc;
    if (arg == "-h" || arg == "--help") {
      return std::fputs(kHelp, stdout) < 0 ? kIoError : kOk;
    } else if ((arg == "-t" || arg == "--to") && has_value) {
      target = argv[++i];
    } else if (arg == "--script" && has_value) {
      const std::string names = argv[++i];
      for (std::size_t start = 0; start <= names.size();) {
        std::size_t comma = names.find(',', start);
        if (comma == std::string::npos) comma = names.size();
        const std::string name = names.substr(start, comma - start);
        const CharacterTest* test = FindTest(name);
        if (test == nullptr) return UsageError("unknown script or character test: ", name.c_str());
        tests.push_back(test);
        start = comma + 1;
      }
    } else if (arg == "--bytes" && has_value) {
      if (!ParseNumber(argv[++i], bytes)) return UsageError("--bytes needs a number, not ", argv[i]);
      random = true;
    } else if (arg == "--seed" && has_value) {
      if (!ParseNumber(argv[++i], seed)) return UsageError("--seed needs a number, not ", argv[i]);
      random = true;
    } else {
      return UsageError("unexpected argument ", argv[i]);
    }
  }
  if (target == nullptr) return UsageError("which encoding? give -t ENCODING", "");
  const ExternalEncoding* encoding = FindEncoding(target, "target");
  if (encoding == nullptr) return kUsage;
  if (!encoding->IsValidForOutput()) return UsageError("cannot write in ", target);

  std::unique_ptr<SampleTextSource> sample;
  if (random) {
    if (tests.empty()) tests.push_back(nullptr);
    sample = std::make_unique<SampleTextSource>(*encoding, tests.data(), static_cast<unsigned>(tests.size()),
                                                static_cast<unsigned long>(bytes), seed);
  } else {
    static AnyOf any;
    any.tests = tests;
    sample = std::make_unique<SampleTextSource>(*encoding, tests.empty() ? nullptr : &any);
  }
  if (sample->Characters().empty()) {
    std::fprintf(stderr, "varnice sample: %s has no character of the tests given\n", DisplayName(*encoding));
    return kUsage;
  }
  const char* b;
  const char* e;
  while (sample->GetBuffer(b, e)) {
    if (std::fwrite(b, 1, static_cast<std::size_t>(e - b), stdout) != static_cast<std::size_t>(e - b)) {
      std::fprintf(stderr, "varnice sample: cannot write the output\n");
      return kIoError;
    }
    sample->DoneWith(e);
  }
  return std::fflush(stdout) == 0 ? kOk : kIoError;
}

}  // namespace cli
