// varnice detect: which encoding each file is in, as the "auto" input
// encoding of 'varnice convert' would decide.
#include <algorithm>
#include <climits>
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
    "Text that none of the candidates reads as text is reported as \"binary\" (it\n"
    "holds NUL bytes) or \"unknown\".\n"
    "\n"
    "  -v          also explain the choice: how many bytes were examined, the rule\n"
    "              that decided, and what each candidate made of the bytes (its\n"
    "              score is minus the cost of what it read; higher is better)\n"
    "  -f NAME     the detecting encoding whose candidates are tried: \"auto\" (the\n"
    "              default: Unicode forms, Japanese encodings, then CP1252) or\n"
    "              \"auto-ja\" (the same without CP1252)\n"
    "\n"
    "ASCII that every remaining candidate reads alike is skipped a megabyte at a\n"
    "time, so the first telling byte decides however late it comes.\n"
    "\n"
    "Exit status: 0 done, 2 bad usage, 3 a file could not be read, 4 a file is\n"
    "binary or in no encoding the candidates know.\n";

// Exit status when a file is not text any candidate can read.
constexpr int kNotText = 4;

// What a candidate made of the bytes, in words.
std::string Reading(const ExternalEncodingDetector& d) {
  const auto* p = dynamic_cast<const TextPlausibilityDetector*>(&d);
  if (p == nullptr) {
    if (d.Score() == INT_MIN) return "ruled out (no byte-order mark at the start)";
    return "score " + std::to_string(d.Score()) + ", tie-breaker " + std::to_string(d.TieBreaker());
  }
  std::string words;
  for (int k = 0; k < TextPlausibilityDetector::kKindCount; ++k) {
    const auto kind = static_cast<TextPlausibilityDetector::Kind>(k);
    const long n = p->Count(kind);
    if (n == 0) continue;
    if (!words.empty()) words += ", ";
    words += std::to_string(n) + " " + TextPlausibilityDetector::KindName(kind);
    if (TextPlausibilityDetector::KindCost(kind) > 0) {
      words += " (" + std::to_string(TextPlausibilityDetector::KindCost(kind)) + " each)";
    }
  }
  if (p->BytesSkipped() > 0) {
    words += "; stopped reading after " + std::to_string(p->GaveUpAfter()) + " bytes (one in sixteen unreadable), " +
             std::to_string(p->BytesSkipped()) + " more charged at the same rate";
  }
  return words.empty() ? "nothing read" : words;
}

void Explain(const DetectionWindow& window, const ExternalEncoding& chosen) {
  const EncodingChooser& chooser = window.Chooser();
  if (window.PassedOn() > 0) {
    std::printf("  %lld bytes of ASCII skipped: every remaining candidate reads them alike\n", window.PassedOn());
  }
  std::printf("  %ld bytes examined\n", chooser.ExaminedCount());
  const auto leaders = window.Leaders();
  if (window.Decided()) {
    std::printf("  decided: %s alone read the most plausible text\n", chosen.Name());
  } else {
    const char* why = window.WindowFull() ? "window full" : "end of input";
    if (leaders.size() <= 1) {
      std::printf("  %s: %s read the most plausible text\n", why, chosen.Name());
    } else {
      std::string names;
      for (const ExternalEncodingDetector* d : leaders) names += (names.empty() ? "" : ", ") + std::string(d->Encoding().Name());
      std::printf("  %s: %s read it equally well; %s comes first among them\n", why, names.c_str(), chosen.Name());
    }
  }
  for (int i = 0; i < chooser.CandidateCount(); ++i) {
    const ExternalEncodingDetector* d = chooser.Detector(i);
    if (d == nullptr) continue;
    std::printf("  %-20s score %11d  %s\n", d->Encoding().Name(), d->Score(), Reading(*d).c_str());
  }
}

// "binary" or "unknown" when the chosen reading is not text, else null:
// NUL bytes outside UTF-16, or more than one character in twenty unreadable,
// a control or private use.
const char* NotText(const DetectionWindow& window, const ExternalEncoding& chosen) {
  const EncodingChooser& chooser = window.Chooser();
  const TextPlausibilityDetector* p = nullptr;
  for (int i = 0; i < chooser.CandidateCount() && p == nullptr; ++i) {
    const ExternalEncodingDetector* d = chooser.Detector(i);
    if (d != nullptr && &d->Encoding() == &chosen) p = dynamic_cast<const TextPlausibilityDetector*>(d);
  }
  if (p == nullptr) return nullptr;  // a byte-order mark decided
  using K = TextPlausibilityDetector;
  long all = 0;
  for (int k = 0; k < K::kKindCount; ++k) {
    if (k != K::kMixedScript && k != K::kEncodedLooking) all += p->Count(static_cast<K::Kind>(k));
  }
  const long bad = p->Count(K::kError) + p->Count(K::kControl) + p->Count(K::kPrivateUse);
  if (std::memchr(chooser.Examined(), 0, chooser.ExaminedCount()) != nullptr) return "binary";
  return bad * 20 > all ? "unknown" : nullptr;
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
    // Bytes all remaining candidates read alike decide nothing: let them go.
    const ExternalEncoding* chosen = window.Choose(in, [](const char*, const char*, const ExternalEncoding&) {});
    if (in.Failed()) {
      status = kIoError;
      continue;
    }
    const char* notText = chosen != nullptr ? NotText(window, *chosen) : "unknown";
    if (files.size() > 1) std::printf("%s: ", path.c_str());
    std::printf("%s\n", notText != nullptr ? notText : DisplayName(*chosen));
    if (notText != nullptr && status == kOk) status = kNotText;
    if (verbose && chosen != nullptr) Explain(window, *chosen);
  }
  return std::fflush(stdout) == 0 ? status : kIoError;
}

}  // namespace cli
