// varnice: the command-line face of the library.
#include <cstdio>
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "varnice/varnice.h"

namespace {

int Usage(FILE* out) {
  std::fputs(
      "usage: varnice COMMAND\n"
      "  version   print the library version\n"
      "  list      list every registered encoding: identifier, name, MIME name,\n"
      "            code page and nicknames\n",
      out);
  return out == stdout ? 0 : 2;
}

int List() {
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

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return Usage(stderr);
  const char* command = argv[1];
  if (std::strcmp(command, "version") == 0) {
    std::printf("%s\n", UnicodeLibrary::VersionString());
    return 0;
  }
  if (std::strcmp(command, "list") == 0) return List();
  if (std::strcmp(command, "help") == 0 || std::strcmp(command, "--help") == 0) return Usage(stdout);
  std::fprintf(stderr, "varnice: unknown command '%s'\n", command);
  return Usage(stderr);
}
