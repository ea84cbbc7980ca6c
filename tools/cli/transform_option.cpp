// The command's transform names: `--transform=upper,halfwidth:Latin` and
// `varnice list --transforms`.
#include <cstdio>
#include <string>

#include "tools/cli/cli.h"
#include "varnice/varnice.h"

namespace cli {
namespace {

void ListNames(std::FILE* out) {
  for (TransformCatalogue::Entry const* e = TransformCatalogue::begin(); e != TransformCatalogue::end();
       ++e) {
    if (e->Available()) std::fprintf(out, " %s", e->name);
  }
  std::fputc('\n', out);
}

}  // namespace

bool ParseTransforms(const char* spec, std::vector<TransformStage>& stages) {
  std::string all = spec;
  std::size_t at = 0;
  while (at <= all.size()) {
    std::size_t comma = all.find(',', at);
    if (comma == std::string::npos) comma = all.size();
    const std::string item = all.substr(at, comma - at);
    at = comma + 1;
    const std::size_t colon = item.find(':');
    const std::string name = item.substr(0, colon);
    TransformCatalogue::Entry const* entry = TransformCatalogue::Find(name.c_str());
    if (entry == nullptr || !entry->Available()) {
      std::fprintf(stderr, "varnice convert: %s transform '%s'; the transforms are:",
                   entry == nullptr ? "unknown" : "this build has no", name.c_str());
      ListNames(stderr);
      return false;
    }
    CharacterTest const* test = AnyCharacterProperty;
    if (colon != std::string::npos) {
      const std::string testName = item.substr(colon + 1);
      // "Latin" is short for the script test "LatinScript".
      test = CharacterTest::Lookup(qz_string(testName.c_str()));
      if (test == nullptr) test = CharacterTest::Lookup(qz_string((testName + "Script").c_str()));
      if (test == nullptr) {
        std::fprintf(stderr, "varnice convert: unknown character class '%s'\n", testName.c_str());
        return false;
      }
    }
    stages.push_back({entry, test});
  }
  return true;
}

void ListTransforms(std::FILE* out) {
  for (TransformCatalogue::Entry const* e = TransformCatalogue::begin(); e != TransformCatalogue::end();
       ++e) {
    if (e->Available()) std::fprintf(out, "%-18s %2d  %s\n", e->name, e->selector, e->summary);
  }
}

}  // namespace cli
