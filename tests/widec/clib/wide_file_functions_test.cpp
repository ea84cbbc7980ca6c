// The wide file functions over real temporary files, and the locale and
// process functions.
#include "varnice/widec/clib/wide_file_info.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "tests/widec/wide_test_support.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/widec/clib/qz_locale.h"
#include "varnice/widec/clib/qz_wchar.h"

namespace {

// A temporary file on disk, removed at the end of the test.
class TempFile {
 public:
  TempFile() {
    char name[] = "/tmp/varnice_wide_XXXXXX";
    const int fd = mkstemp(name);
    path_ = name;
    if (fd >= 0) close(fd);
  }
  ~TempFile() { std::remove(path_.c_str()); }
  FILE* Open(const char* mode) const { return std::fopen(path_.c_str(), mode); }
  void Write(const std::vector<unsigned char>& bytes) const {
    FILE* f = Open("wb");
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
  }
  std::vector<unsigned char> Read() const {
    std::vector<unsigned char> bytes;
    FILE* f = Open("rb");
    for (int c; (c = std::fgetc(f)) != EOF;) bytes.push_back(static_cast<unsigned char>(c));
    std::fclose(f);
    return bytes;
  }

 private:
  std::string path_;
};

// The units in host byte order, as the file functions write and read them.
std::vector<unsigned char> Bytes(std::u16string units) {
  std::vector<unsigned char> bytes(units.size() * 2);
  std::memcpy(bytes.data(), units.data(), bytes.size());
  return bytes;
}

TEST(WideFiles, PutcWritesFourBytesAndGetcReadsTwo) {
  TempFile file;
  FILE* f = file.Open("w+b");
  EXPECT_EQ(qz_fputwc('A', f), qz_wint_t{'A'});
  EXPECT_EQ(qz_putwc(0x3042, f), 0x3042u);
  EXPECT_EQ(std::ftell(f), 8);
  std::rewind(f);
  EXPECT_EQ(qz_fgetwc(f), qz_wint_t{'A'});  // little-endian host: 41 00 00 00
  EXPECT_EQ(qz_getwc(f), 0u);
  EXPECT_EQ(qz_fgetwc(f), 0x3042u);
  EXPECT_EQ(qz_fgetwc(f), 0u);
  EXPECT_EQ(qz_fgetwc(f), QZ_WEOF);
  std::fclose(f);

  file.Write({0x41, 0x00, 0x42});  // an odd byte at the end is no unit
  f = file.Open("rb");
  EXPECT_EQ(qz_fgetwc(f), qz_wint_t{'A'});
  EXPECT_EQ(qz_fgetwc(f), QZ_WEOF);
  EXPECT_EQ(qz_fputwc('x', f), QZ_WEOF);  // a read-only file fails the write
  std::fclose(f);
}

TEST(WideFiles, OneUnitOfPushBack) {
  TempFile file;
  file.Write(Bytes(u"ab"));
  FILE* f = file.Open("rb");
  EXPECT_EQ(qz_ungetwc(QZ_WEOF, f), QZ_WEOF);
  EXPECT_EQ(qz_ungetwc(0x3000, f), 0x3000u);
  EXPECT_EQ(qz_ungetwc('z', f), QZ_WEOF);  // only one
  EXPECT_EQ(qz_fgetwc(f), 0x3000u);
  EXPECT_EQ(qz_fgetwc(f), qz_wint_t{'a'});
  EXPECT_EQ(qz_fgetwc(f), qz_wint_t{'b'});
  EXPECT_EQ(qz_fgetwc(f), QZ_WEOF);
  EXPECT_TRUE(std::feof(f));
  EXPECT_EQ(qz_ungetwc('c', f), qz_wint_t{'c'});
  EXPECT_FALSE(std::feof(f));  // pushing back clears end of file
  EXPECT_EQ(qz_fgetwc(f), qz_wint_t{'c'});
  EXPECT_EQ(qz_fgetwc(f), QZ_WEOF);
  std::fclose(f);
}

TEST(WideFiles, OrientationIsOnlyAMark) {
  TempFile file;
  file.Write(Bytes(u"xy"));
  FILE* f = file.Open("rb");
  EXPECT_EQ(qz_fwide(f, 0), -1);  // never 0: not yet oriented is -1
  EXPECT_EQ(qz_ungetwc('p', f), qz_wint_t{'p'});
  EXPECT_EQ(qz_fwide(f, 5), 1);  // and the pushed-back unit is gone
  EXPECT_EQ(qz_fwide(f, 0), 1);
  EXPECT_EQ(qz_fgetwc(f), qz_wint_t{'x'});
  EXPECT_EQ(qz_ungetwc('q', f), qz_wint_t{'q'});
  EXPECT_EQ(qz_fwide(f, -2), -1);
  EXPECT_EQ(qz_fgetwc(f), qz_wint_t{'y'});
  std::fclose(f);
}

TEST(WideFiles, GetsReadsLinesAndReturnsBufAtEndOfFile) {
  TempFile file;
  file.Write(Bytes(u"one\ntwo\u3042\nend"));
  FILE* f = file.Open("rb");
  unsigned short buf[8];
  EXPECT_EQ(qz_fgetws(buf, 8, f), buf);
  EXPECT_EQ(Text(buf), u"one\n");
  EXPECT_EQ(qz_fgetws(buf, 3, f), buf);  // two places for units, one for the 0
  EXPECT_EQ(Text(buf), u"tw");
  EXPECT_EQ(qz_fgetws(buf, 8, f), buf);
  EXPECT_EQ(Text(buf), u"o\u3042\n");
  EXPECT_EQ(qz_fgetws(buf, 8, f), buf);
  EXPECT_EQ(Text(buf), u"end");
  buf[0] = 'X';
  EXPECT_EQ(qz_fgetws(buf, 8, f), buf);  // end of file: buf with "", not null
  EXPECT_EQ(buf[0], 0);
  buf[0] = 'X';
  EXPECT_EQ(qz_fgetws(buf, 0, f), buf);  // n <= 0 writes nothing
  EXPECT_EQ(buf[0], 'X');
  EXPECT_EQ(qz_fgetws(buf, 1, f), buf);
  EXPECT_EQ(buf[0], 0);
  std::fclose(f);

  f = file.Open("ab");  // reading a write-only file is an error
  EXPECT_EQ(qz_fgetws(buf, 8, f), nullptr);
  std::fclose(f);
}

TEST(WideFiles, PutsWritesTwoBytesPerUnitWithoutTerminator) {
  TempFile file;
  FILE* f = file.Open("wb");
  EXPECT_EQ(qz_fputws(Wide(u"h\u00E9\u3042"), f), 3);
  EXPECT_EQ(qz_fputws(Wide(""), f), 0);
  std::fclose(f);
  EXPECT_EQ(file.Read(), Bytes(u"h\u00E9\u3042"));
  f = file.Open("rb");
  EXPECT_EQ(qz_fputws(Wide("no"), f), -1);
  std::fclose(f);
}

TEST(WideFiles, KeepOneRecordPerFile) {
  TempFile file;
  FILE* f = file.Open("rb");
  FILE* g = file.Open("rb");
  WideFileInfo* record = WideFileInfo::FindFile(f);
  const auto size = WideFileInfo::sFileTable.size();
  EXPECT_EQ(record->fFile, f);
  qz_fgetwc(f);
  qz_fwide(f, 1);
  EXPECT_EQ(WideFileInfo::FindFile(f), record);
  EXPECT_TRUE(record->fWide);
  EXPECT_EQ(WideFileInfo::sFileTable.size(), size);
  // Another open file cannot share an address: it gets a record of its own.
  EXPECT_NE(WideFileInfo::FindFile(g), record);
  EXPECT_EQ(qz_fwide(g, 0), -1);
  EXPECT_LE(WideFileInfo::sFileTable.size(), size + 1);
  // Records outlive their files: leave this one as a new file would find it.
  qz_fwide(f, -1);
  std::fclose(f);
  std::fclose(g);
}

TEST(WideLocale, ChoosesTheExternalEncoding) {
  const std::string start = qz_setlocale(1, nullptr);
  EXPECT_EQ(start, Locale::CurrentExternalEncoding().Name());

  EXPECT_STREQ(qz_setlocale(1, ""), start.c_str());  // "" is Latin-1: returns the previous name
  EXPECT_EQ(&Locale::CurrentExternalEncoding(), ExternalEncoding::ISOLatin1());
  EXPECT_STREQ(qz_setlocale(1, "shift-jis"), "Latin1");
  EXPECT_EQ(&Locale::CurrentExternalEncoding(), ExternalEncoding::ShiftJIS());
  EXPECT_STREQ(qz_localeconv()->encoding_name, ExternalEncoding::ShiftJIS()->Name());
  EXPECT_STREQ(qz_localeconv()->decimal_point, ".");
  EXPECT_EQ(qz_setlocale(1, "no such encoding"), nullptr);
  EXPECT_EQ(&Locale::CurrentExternalEncoding(), ExternalEncoding::ShiftJIS());
  EXPECT_STREQ(qz_setlocale(7, "C"), ExternalEncoding::ShiftJIS()->Name());
  EXPECT_STREQ(qz_setlocale(7, nullptr), "Latin1");
  EXPECT_STREQ(qz_setlocale(1, "UTF-8"), "Latin1");
  const std::string utf8 = Locale::CurrentExternalEncoding().Name();
  EXPECT_STREQ(qz_setlocale(1, start.c_str()), utf8.c_str());

  EXPECT_STREQ(qz_setlocale(2, "C"), "C");
  EXPECT_STREQ(qz_setlocale(0, ""), "C");
  EXPECT_STREQ(qz_setlocale(3, nullptr), "C");
  EXPECT_EQ(qz_setlocale(2, "Shift_JIS"), nullptr);
}

TEST(WideProcess, CpuTimeGrowsAndBinaryModeIsANoOp) {
  const double start = GetCPUTime();
  volatile double sink = 0;
  for (int round = 0; round < 5000 && GetCPUTime() - start < 0.05; ++round) {
    for (int i = 0; i < 100000; ++i) sink = sink + i;
  }
  EXPECT_GE(GetCPUTime() - start, 0.05);
  EXPECT_TRUE(PutFileIntoBinaryMode(stdout));
}

}  // namespace
