// varnice detect: which encoding each file is in, as the "auto" input
// encoding of 'varnice convert' would decide.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "tools/cli/cli.h"
#include "tools/cli/detection_window.h"
#include "varnice/varnice.h"

namespace cli {
namespace {

const char kHelp[] =
    "usage: varnice detect [-v] [-f auto|auto-ja] FILE...\n"
    "\n"
    "Prints the encoding each FILE (\"-\" for standard input) is in: its MIME name when\n"
    "it has one (\"Shift_JIS\", \"EUC-JP\"), else its name in 'varnice list'. With one\n"
    "FILE the name is printed alone, for scripts; with several, \"FILE: NAME\".\n"
    "\n"
    "  -v          also show how the choice was made: the bytes examined, and each\n"
    "              candidate's score and tie-breaker (higher is better)\n"
    "  -f NAME     the detecting encoding whose candidates are tried: \"auto\" (the\n"
    "              default: Unicode forms, Japanese encodings, then CP1252) or\n"
    "              \"auto-ja\" (the same without CP1252)\n"
    "\n"
    "Exit status: 0 done, 2 bad usage, 3 a file could not be read.\n";

void PrintScores(const DetectionWindow& window) {
  const EncodingChooser& chooser = window.Chooser();
  std::printf("  %s after %ld bytes\n", window.Decided() ? "decided" : "guessed", chooser.ExaminedCount());
  for (int i = 0; i < chooser.CandidateCount(); ++i) {
    const ExternalEncodingDetector* d = chooser.Detector(i);
    if (d == nullptr) continue;
    std::printf("  %-20s score %11d  tie-breaker %11d\n", d->Encoding().Name(), d->Score(), d->TieBreaker());
  }
}

}  // namespace

int RunDetect(int argc, char** argv) {
  bool verbose = false;
  const char* detectingName = "auto";
  std::vector<std::string> files;
  for (int i = 0; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "-h" || arg == "--help") {
      std::fputs(kHelp, stdout);
      return kOk;
    }
    if (arg == "-v" || arg == "--verbose") {
      verbose = true;
    } else if (arg == "-f" && i + 1 < argc) {
      detectingName = argv[++i];
    } else if (arg.rfind("--from=", 0) == 0) {
      detectingName = argv[i] + 7;
    } else if (arg == "-" || arg[0] != '-') {
      files.push_back(arg);
    } else {
      std::fprintf(stderr, "varnice detect: unknown option '%s' (see 'varnice detect --help')\n", arg.c_str());
      return kUsage;
    }
  }
  if (files.empty()) {
    std::fputs("varnice detect: name at least one FILE (\"-\" for standard input)\n", stderr);
    return kUsage;
  }
  const ExternalEncoding* named = FindEncoding(detectingName, "detecting");
  if (named == nullptr) return kUsage;
  const auto* detecting = dynamic_cast<const AutoDetectEncoding*>(named);
  if (detecting == nullptr) {
    std::fprintf(stderr, "varnice detect: %s does not detect; use auto or auto-ja\n", named->Name());
    return kUsage;
  }
  int status = kOk;
  for (const std::string& path : files) {
    Input in(path);
    if (!in.IsOpen()) {
      status = kIoError;
      continue;
    }
    DetectionWindow window(*detecting);
    const ExternalEncoding* chosen = window.Choose(in);
    if (in.Failed()) {
      status = kIoError;
      continue;
    }
    if (files.size() > 1) std::printf("%s: ", path.c_str());
    std::printf("%s\n", chosen != nullptr ? DisplayName(*chosen) : "-");
    if (verbose) PrintScores(window);
  }
  return std::fflush(stdout) == 0 ? status : kIoError;
}

}  // namespace cli
