// How often automatic detection gets real text right, per encoding and per
// sample size. The corpus (tests/detect/corpus) is Japanese, European and
// plain ASCII prose written for it. For each encoding, the texts it can hold
// are joined into one stream; every line start of that stream begins one
// sample, which is the stream from there (wrapping round) encoded and cut at
// a character boundary to at most 16, 64, 256, 1024 or 4096 bytes.
//
// A detection counts as right when the chosen encoding reads the sample back
// to the original text, so ASCII is right whatever ASCII-based encoding is
// chosen, and Latin-1 text read as CP1252 is right.
//
// The table is printed on every run (VARNICE_SHOW_MISSES=1 lists the misses).
// Today every sample of every cell is read right, so any miss fails here.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/detect/detect_test_support.h"
#include "varnice/varnice.h"

namespace {

constexpr int kSizes[] = {16, 64, 256, 1024, 4096};
constexpr int kSizeCount = 5;

using detect_test::Decode;
using detect_test::Detect;

// The text in the encoding, or false when the encoding cannot hold it.
bool Encode(const ExternalEncoding& e, const std::u16string& text, std::string& bytes) {
  bytes = detect_test::Encode(e, text);
  return Decode(e, bytes) == text;
}

struct Text {
  std::string name;  // "ja-...", "eu-..." or "ascii-..."
  std::u16string text;
};

std::vector<Text> LoadCorpus() {
  std::vector<Text> corpus;
  const ExternalEncoding& utf8 = *ExternalEncoding::Unicode20UTF8();
  for (const auto& entry : std::filesystem::directory_iterator(VARNICE_SOURCE_DIR "/tests/detect/corpus")) {
    std::ifstream in(entry.path(), std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    corpus.push_back({entry.path().filename().string(), Decode(utf8, bytes.str())});
  }
  std::sort(corpus.begin(), corpus.end(), [](const Text& a, const Text& b) { return a.name < b.name; });
  return corpus;
}

struct Source {
  const char* label;
  const ExternalEncoding* encoding;
  bool japanese, european, ascii;  // which texts it is measured on
};

std::vector<Source> Sources() {
  return {
      {"UTF-8", ExternalEncoding::Unicode20UTF8(), true, true, true},
      {"UTF-7", ExternalEncoding::Unicode20UTF7(), true, true, true},
      {"UTF-16 (BOM)", ExternalEncoding::Unicode20ByteStream(), true, true, true},
      {"Shift_JIS", ExternalEncoding::ShiftJIS(), true, false, false},
      {"CP932", ExternalEncoding::CP932(), true, false, false},
      {"EUC-JP", ExternalEncoding::EUCPkdFmtJapanese(), true, false, false},
      {"ISO-2022-JP", ExternalEncoding::ISO2022JP(), true, false, false},
      {"ISO-8859-1", ExternalEncoding::ISOLatin1(), false, true, false},
      {"windows-1252", ExternalEncoding::CP1252(), false, true, false},
      {"ASCII", ExternalEncoding::ASCII(), false, false, true},
  };
}

struct Tally {
  int right = 0;
  int total = 0;
  double Percent() const { return total == 0 ? 100.0 : 100.0 * right / total; }
};

// Per source encoding, per size.
using Table = std::map<std::string, Tally[kSizeCount]>;

// The longest prefix of `text` whose encoding fits in `size` bytes. Each
// character takes at least one byte, so no more than `size` are tried.
std::string Cut(const ExternalEncoding& e, const std::u16string& text, int size, std::u16string& kept) {
  std::size_t low = 0, high = std::min<std::size_t>(text.size(), size);
  std::string bytes;
  while (low < high) {
    const std::size_t mid = (low + high + 1) / 2;
    Encode(e, text.substr(0, mid), bytes);
    if (bytes.size() <= static_cast<std::size_t>(size)) low = mid; else high = mid - 1;
  }
  kept = text.substr(0, low);
  Encode(e, kept, bytes);
  return bytes;
}

Table Measure(const ExternalEncoding& detecting, bool japaneseOnly) {
  EncodingCatalogue::CreateAll();
  const std::vector<Text> corpus = LoadCorpus();
  Table table;
  for (const Source& source : Sources()) {
    if (japaneseOnly && !source.japanese) continue;
    std::u16string stream;
    for (const Text& t : corpus) {
      const bool wanted = (source.japanese && t.name.rfind("ja-", 0) == 0) ||
                          (source.european && t.name.rfind("eu-", 0) == 0) ||
                          (source.ascii && t.name.rfind("ascii-", 0) == 0);
      std::string bytes;
      if (wanted && Encode(*source.encoding, t.text, bytes)) stream += t.text;
    }
    for (std::size_t at = 0; at < stream.size(); at = stream.find(u'\n', at) + 1) {
      const std::u16string rotated = stream.substr(at) + stream.substr(0, at);
      for (int s = 0; s < kSizeCount; ++s) {
        std::u16string kept;
        const std::string bytes = Cut(*source.encoding, rotated, kSizes[s], kept);
        const ExternalEncoding* chosen = Detect(detecting, bytes);
        Tally& tally = table[source.label][s];
        ++tally.total;
        if (chosen != nullptr && Decode(*chosen, bytes) == kept) {
          ++tally.right;
        } else if (std::getenv("VARNICE_SHOW_MISSES") != nullptr) {
          std::printf("  miss %s %d: %s read as %s: %.40s\n", detecting.Name(), kSizes[s], source.label,
                      chosen ? chosen->Name() : "-", bytes.c_str());
        }
      }
    }
  }
  return table;
}

void Print(const char* detecting, const Table& table) {
  std::printf("%-14s", detecting);
  for (int size : kSizes) std::printf(" %7d", size);
  std::printf("\n");
  Tally overall;
  for (const Source& source : Sources()) {
    auto row = table.find(source.label);
    if (row == table.end()) continue;
    std::printf("%-14s", source.label);
    for (const Tally& t : row->second) {
      std::printf(" %6.1f%%", t.Percent());
      overall.right += t.right;
      overall.total += t.total;
    }
    std::printf("\n");
  }
  std::printf("%-14s %d/%d = %.1f%%\n", "overall", overall.right, overall.total, overall.Percent());
}

// Every cell of the table holds every sample: the number of samples per
// source (the same at every size) and all of them right.
void ExpectAllRight(const char* detecting, const Table& table, const std::map<std::string, int>& samples) {
  ASSERT_EQ(table.size(), samples.size()) << detecting;
  for (const auto& [label, tallies] : table) {
    for (int s = 0; s < kSizeCount; ++s) {
      SCOPED_TRACE(testing::Message() << detecting << " on " << label << " at " << kSizes[s] << " bytes");
      EXPECT_EQ(tallies[s].total, samples.at(label));
      EXPECT_EQ(tallies[s].right, tallies[s].total);
    }
  }
}

const std::map<std::string, int> kJapaneseAndUnicodeSamples = {
    {"UTF-8", 170}, {"UTF-7", 170}, {"UTF-16 (BOM)", 170}, {"Shift_JIS", 81},
    {"CP932", 85},  {"EUC-JP", 81}, {"ISO-2022-JP", 79},
};

TEST(DetectionAccuracy, GeneralCorpusIsReadRight) {
  const Table table = Measure(*AutoDetectEncoding::General(), false);
  Print("auto", table);
  std::map<std::string, int> samples = kJapaneseAndUnicodeSamples;
  samples.insert({{"ISO-8859-1", 45}, {"windows-1252", 67}, {"ASCII", 18}});
  ExpectAllRight("auto", table, samples);
}

TEST(DetectionAccuracy, JapaneseCorpusIsReadRight) {
  const Table table = Measure(*AutoDetectEncoding::Japanese(), true);
  Print("auto-ja", table);
  ExpectAllRight("auto-ja", table, kJapaneseAndUnicodeSamples);
}

}  // namespace
