// varnice list: every registered encoding, one line each.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/cli/cli.h"
#include "varnice/varnice.h"

namespace cli {

int RunList(int argc, char** argv) {
  if (argc > 0 && std::string(argv[0]) == "--transforms") {
    ListTransforms(stdout);
    return 0;
  }
  EncodingCatalogue::CreateAll();
  struct Row {
    std::string id, name, mime, codePage, nicknames;
  };
  std::vector<Row> rows;
  rows.push_back({"ID", "NAME", "MIME", "CP", "NICKNAMES"});
  for (unsigned int i = 0; i < TextEncoding::Count(); ++i) {
    const TextEncoding& e = *TextEncoding::Lookup(i);
    Row row;
    char id[16];
    std::snprintf(id, sizeof id, "0x%05lx", e.GetTextEncodingID().Value());
    row.id = id;
    row.name = e.Name();
    row.mime = e.MimeName() != nullptr ? e.MimeName() : "-";
    row.codePage = e.CodePage() != 0 ? std::to_string(e.CodePage()) : "-";
    for (unsigned int n = 1; n < e.CountNicknames(); ++n) {
      if (!row.nicknames.empty()) row.nicknames += ", ";
      row.nicknames += e.GetNickname(n);
    }
    rows.push_back(row);
  }
  std::size_t width[4] = {};
  for (const Row& r : rows) {
    const std::string* cells[] = {&r.id, &r.name, &r.mime, &r.codePage};
    for (int c = 0; c < 4; ++c) width[c] = std::max(width[c], cells[c]->size());
  }
  for (const Row& r : rows) {
    std::printf("%-*s  %-*s  %-*s  %*s  %s\n", static_cast<int>(width[0]), r.id.c_str(),
                static_cast<int>(width[1]), r.name.c_str(), static_cast<int>(width[2]),
                r.mime.c_str(), static_cast<int>(width[3]), r.codePage.c_str(),
                r.nicknames.c_str());
  }
  std::printf("%u encodings\n", TextEncoding::Count());
  return 0;
}

}  // namespace cli
