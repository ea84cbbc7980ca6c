// Test helper: the mappings of a code page read straight from data/codepages
// (and the few made by rule), independently of the generator.
#ifndef VARNICE_TESTS_CODEPAGES_CODE_PAGE_DATA_H_
#define VARNICE_TESTS_CODEPAGES_CODE_PAGE_DATA_H_

#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

namespace codepage_test {

struct PageData {
  std::map<std::string, unsigned> toUnicode;  // flags 0 and 3
  std::map<unsigned, std::string> roundTrip;  // flag 0
  std::set<std::string> prefixes;             // proper prefixes of listed codes

  void Add(unsigned u, std::string const& bytes, int flag) {
    if (flag != 0 && flag != 3) return;
    toUnicode[bytes] = u;
    if (flag == 0) roundTrip[u] = bytes;
    for (std::size_t k = 1; k < bytes.size(); ++k) prefixes.insert(bytes.substr(0, k));
  }
};

inline std::string Bytes(std::initializer_list<int> bytes) {
  std::string s;
  for (int b : bytes) s += static_cast<char>(b);
  return s;
}

// Reads `<UXXXX> \xNN... |F` lines; keep(bytes) may reject a mapping or
// rewrite its bytes (returning false drops it).
template <class Keep>
PageData ReadUcm(std::string const& file, Keep keep) {
  PageData page;
  std::ifstream in(std::string(VARNICE_SOURCE_DIR) + "/data/codepages/" + file);
  std::string line;
  while (std::getline(in, line)) {
    unsigned u;
    int consumed = 0;
    if (std::sscanf(line.c_str(), "<U%X>%n", &u, &consumed) != 1 || consumed == 0) continue;
    std::string bytes;
    std::size_t pos = line.find_first_not_of(" \t", consumed);
    while (line.compare(pos, 2, "\\x") == 0) {
      bytes += static_cast<char>(std::stoi(line.substr(pos + 2, 2), nullptr, 16));
      pos += 4;
    }
    int flag = line[line.find('|') + 1] - '0';
    if (keep(bytes)) page.Add(u, bytes, flag);
  }
  return page;
}

inline PageData ReadUcm(std::string const& file) {
  return ReadUcm(file, [](std::string&) { return true; });
}

// The sources of data/SOURCES.md, including the three made by rule.
inline PageData LoadPage(std::string const& source) {
  if (source == "jisx0201") {
    PageData page;
    for (int b = 0; b < 0x80; ++b) page.Add(b == 0x5C ? 0xA5 : b == 0x7E ? 0x203E : b, Bytes({b}), 0);
    for (int b = 0xA1; b <= 0xDF; ++b) page.Add(0xFF61 + b - 0xA1, Bytes({b}), 0);
    return page;
  }
  if (source == "jisx0208") {
    return ReadUcm("glibc-EUC_JP-2.1.2.ucm", [](std::string& bytes) {
      if (bytes.size() != 2 || static_cast<unsigned char>(bytes[0]) < 0xA1) return false;
      for (char& c : bytes) c = static_cast<char>(c - 0x80);
      return true;
    });
  }
  if (source == "sjis") {
    PageData page = ReadUcm("glibc-SJIS-2.1.2.ucm");
    unsigned u = 0xE000;
    for (int lead = 0xF0; lead <= 0xF9; ++lead) {
      for (int trail = 0x40; trail <= 0xFC; ++trail) {
        if (trail != 0x7F) page.Add(u++, Bytes({lead, trail}), 0);
      }
    }
    return page;
  }
  return ReadUcm(source);
}

}  // namespace codepage_test

#endif  // VARNICE_TESTS_CODEPAGES_CODE_PAGE_DATA_H_
