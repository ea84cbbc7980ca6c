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

#include "varnice/encoding/external_encoding.h"

namespace codepage_test {

// Every code page: its registry entry, and where its mappings come from.
struct Page {
  const char* name;
  ExternalEncoding* (*factory)();
  const char* registeredName;
  unsigned long number;
  const char* mime;
  unsigned int codePage;
  bool ascii;
  const char* source;
  // The from-Unicode table's missing value: plane and gap tables cannot hold
  // a code equal to it. -1 for delta tables, which hold every code.
  int missing;
};

#define PAGE(factory, ...) \
  Page { #factory, &ExternalEncoding::factory, __VA_ARGS__ }

inline const Page kPages[] = {
    PAGE(ASCII, "ASCII", 3, "US-ASCII", 367, true, "windows-20127-2000.ucm", -1),
    PAGE(CP1252, "CP1252", 8, nullptr, 1252, true, "windows-1252-2000.ucm", 26),
    PAGE(EUCPkdFmtJapanese, "EUC-J", 10, "EUC-JP", 0, true, "glibc-EUC_JP-2.1.2.ucm", 26),
    PAGE(HalfWidthKatakana, "JIS_X0201", 12, nullptr, 0, true, "jisx0201", 26),
    PAGE(ISO87JISX0208, "JIS_X_0208", 16, nullptr, 0, false, "jisx0208", 26),
    PAGE(ISOLatin1, "Latin1", 17, "ISO-8859-1", 819, true, "windows-28591-2000.ucm", -1),
    PAGE(ISOLatin2, "Latin2", 18, "ISO-8859-2", 0, true, "windows-28592-2000.ucm", 26),
    PAGE(ISOLatin3, "Latin3", 19, "ISO-8859-3", 0, true, "windows-28593-2000.ucm", 26),
    PAGE(ISOLatin5, "Latin5", 21, "ISO-8859-9", 0, true, "windows-28599-2000.ucm", -1),
    PAGE(PC850Multilingual, "CP850", 30, nullptr, 850, true, "windows-850-2000.ucm", 26),
    PAGE(PC8CodePage437, "CP437", 31, nullptr, 437, true, "windows-437-2000.ucm", 26),
    PAGE(ShiftJIS, "Shift-JIS", 32, "Shift_JIS", 0, true, "sjis", 26),
    PAGE(CP932, "CP932", 33, nullptr, 932, true, "windows-932-2000.ucm", 26),
    PAGE(CP852, "CP852", 45, nullptr, 852, true, "windows-852-2000.ucm", 26),
    PAGE(CP857, "CP857", 47, nullptr, 857, true, "windows-857-2000.ucm", 26),
    PAGE(CP860, "CP860", 48, nullptr, 860, true, "windows-860-2000.ucm", 26),
    PAGE(CP863, "CP863", 51, nullptr, 863, true, "windows-863-2000.ucm", 26),
    PAGE(CP870, "CP870", 56, nullptr, 870, false, "windows-870-2000.ucm", 63),
    PAGE(CP1250, "CP1250", 62, nullptr, 1250, true, "windows-1250-2000.ucm", 26),
    PAGE(CP1254, "CP1254", 64, nullptr, 1254, true, "windows-1254-2000.ucm", 26),
    PAGE(CP20105, "CP20105", 84, nullptr, 20105, true, "windows-20105-2000.ucm", -1),
    PAGE(CP20290, "CP20290", 93, nullptr, 20290, false, "windows-20290-2000.ucm", 63),
    PAGE(CP21027, "CP21027", 104, nullptr, 21027, true, "windows-21027-2000.ucm", 26),
    PAGE(CP28599, "CP28599", 112, nullptr, 28599, true, "windows-28599-2000.ucm", -1),
    PAGE(ISO_8859_15, "ISO-8859-15", 136, nullptr, 0, true, "windows-28605-2000.ucm", -1),
    PAGE(CCSID290, "CCSID-290", 139, nullptr, 0, false, "ibm-290_P100-1995.ucm", 63),
    PAGE(CCSID942, "CCSID-942", 140, nullptr, 0, true, "ibm-942_P12A-1999.ucm", 26),
    PAGE(CCSID1027, "CCSID-1027", 141, nullptr, 0, false, "ibm-1027_P100-1995.ucm", 63),
};

#undef PAGE

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
