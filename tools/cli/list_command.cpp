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
    std::string id, name, mime, codePage, use, nicknames;
  };
  // The two-byte forms go by their standard names.
  struct Standard {
    const char* name;
    const ExternalEncoding* encoding;
  } standard[] = {{"UTF-16", nullptr}, {"UTF-16BE", nullptr}, {"UTF-16LE", nullptr}};
  for (Standard& s : standard) s.encoding = Transcoder::FindEncoding(s.name);
  std::vector<Row> rows;
  rows.push_back({"ID", "NAME", "MIME", "CP", "USE", "NICKNAMES"});
  unsigned int shown = 0;
  for (unsigned int i = 0; i < TextEncoding::Count(); ++i) {
    const TextEncoding& t = *TextEncoding::Lookup(i);
    const ExternalEncoding* e = const_cast<TextEncoding&>(t).AsExternalEncoding();
    if (e == nullptr) continue;  // the internal forms are not converted from or to
    Row row;
    row.name = e->Name();
    for (const Standard& s : standard) {
      if (s.encoding == e) row.name = s.name;
    }
    // Only names that select the encoding in 'varnice convert'.
    if (Transcoder::FindEncoding(row.name.c_str()) != e) {
      if (e->MimeName() == nullptr || Transcoder::FindEncoding(e->MimeName()) != e) continue;
      row.name = e->MimeName();
    }
    char id[16];
    std::snprintf(id, sizeof id, "0x%05lx", e->GetTextEncodingID().Value());
    row.id = id;
    row.mime = e->MimeName() != nullptr ? e->MimeName() : "-";
    row.codePage = e->CodePage() != 0 ? std::to_string(e->CodePage()) : "-";
    row.use = e->IsValidForOutput() ? "rw" : "read";
    for (unsigned int n = 1; n < e->CountNicknames(); ++n) {
      if (Transcoder::FindEncoding(e->GetNickname(n)) != e) continue;
      if (!row.nicknames.empty()) row.nicknames += ", ";
      row.nicknames += e->GetNickname(n);
    }
    rows.push_back(row);
    ++shown;
  }
  std::size_t width[5] = {};
  for (const Row& r : rows) {
    const std::string* cells[] = {&r.id, &r.name, &r.mime, &r.codePage, &r.use};
    for (int c = 0; c < 5; ++c) width[c] = std::max(width[c], cells[c]->size());
  }
  for (const Row& r : rows) {
    std::printf("%-*s  %-*s  %-*s  %*s  %-*s  %s\n", static_cast<int>(width[0]), r.id.c_str(),
                static_cast<int>(width[1]), r.name.c_str(), static_cast<int>(width[2]), r.mime.c_str(),
                static_cast<int>(width[3]), r.codePage.c_str(), static_cast<int>(width[4]), r.use.c_str(),
                r.nicknames.c_str());
  }
  std::printf("%u encodings; USE \"read\": can only be read (detection)\n", shown);
  return 0;
}

}  // namespace cli
