#include "varnice/codepages/code_page_catalogue.h"

#include "varnice/codepages/generated/code_page_tables.h"

namespace varnice::internal {
namespace {

char const* kASCII[] = {"ASCII", "ANSI_X3.4-1968", "iso-ir-6", "ANSI_X3.4-1986", "ISO646-US", "us", "IBM367", "csASCII", nullptr};
char const* kCP1252[] = {"CP1252", "csCP1252", "WinLatin1", "windows-1252", nullptr};
char const* kEUCJP[] = {"EUC-J", "csEUCPkdFmtJapanese", "Extended_UNIX_Code_Packed_Format_for_Japanese", "J-EUC", "JP-EUC", nullptr};
char const* kJISX0201[] = {"JIS_X0201", "X0201", "csHalfWidthKatakana", nullptr};
char const* kJISX0208[] = {"JIS_X_0208", "JIS-X-0208", "JIS_X0208-1983", "csISO87JISX0208", "x0208", "iso-ir-87", "JIS_C6226-1983", nullptr};
char const* kLatin1[] = {"Latin1", "l1", "IBM819", "csISOLatin1", "iso-ir-100", "ISO_8859-1", nullptr};
char const* kLatin2[] = {"Latin2", "l2", "csISOLatin2", "iso-ir-101", "ISO_8859-2", nullptr};
char const* kLatin3[] = {"Latin3", "l3", "csISOLatin3", "iso-ir-109", "ISO_8859-3", nullptr};
char const* kLatin5[] = {"Latin5", "l5", "csISOLatin5", "iso-ir-148", "ISO_8859-9", nullptr};
char const* kCP850[] = {"CP850", "IBM850", "850", "csPC850Multilingual", "csCP850", "windows-850", nullptr};
char const* kCP437[] = {"CP437", "IBM437", "437", "csPC8CodePage437", "csCP437", "windows-437", nullptr};
char const* kShiftJIS[] = {"Shift-JIS", "MS_Kanji", "csShiftJIS", "SJIS", "ShiftJIS", "Shift JIS", "X-SJIS", nullptr};
char const* kCP932[] = {"CP932", "csCP932", "windows-932", nullptr};
char const* kCP852[] = {"CP852", "csCP852", "windows-852", nullptr};
char const* kCP857[] = {"CP857", "csCP857", "windows-857", nullptr};
char const* kCP860[] = {"CP860", "csCP860", "windows-860", nullptr};
char const* kCP863[] = {"CP863", "csCP863", "windows-863", nullptr};
char const* kCP870[] = {"CP870", "csCP870", "windows-870", nullptr};
char const* kCP1250[] = {"CP1250", "csCP1250", "windows-1250", nullptr};
char const* kCP1254[] = {"CP1254", "csCP1254", "windows-1254", nullptr};
char const* kCP20105[] = {"CP20105", "csCP20105", "windows-20105", nullptr};
char const* kCP20290[] = {"CP20290", "csCP20290", "windows-20290", nullptr};
char const* kCP21027[] = {"CP21027", "csCP21027", "windows-21027", nullptr};
char const* kCP28599[] = {"CP28599", "csCP28599", "windows-28599", nullptr};
char const* kISO885915[] = {"ISO-8859-15", "ISO/IEC 8859-15", "csISO_8859_15", nullptr};
char const* kCCSID290[] = {"CCSID-290", "csCCSID290", "EBCDIK-290", nullptr};
char const* kCCSID942[] = {"CCSID-942", "csCCSID942", nullptr};
char const* kCCSID1027[] = {"CCSID-1027", "csCCSID1027", "EBCDIK-1027", nullptr};

#define TABLES(name) &name##ToUnicodeTable, &name##FromUnicodeTable

}  // namespace

// EBCDIC pages and the two-byte-only JIS X 0208 are not ASCII-based; CP21027
// keeps the flag its registry entry always had, although its bytes are EBCDIC.
CodePageEntry const kCodePages[kCodePageCount] = {
    {3, kASCII, "US-ASCII", 367, true, TABLES(ASCII)},
    {8, kCP1252, nullptr, 1252, true, TABLES(CP1252)},
    {10, kEUCJP, "EUC-JP", 0, true, TABLES(EUCPkdFmtJapanese)},
    {12, kJISX0201, nullptr, 0, true, TABLES(HalfWidthKatakana)},
    {16, kJISX0208, nullptr, 0, false, TABLES(ISO87JISX0208)},
    {17, kLatin1, "ISO-8859-1", 819, true, TABLES(ISOLatin1)},
    {18, kLatin2, "ISO-8859-2", 0, true, TABLES(ISOLatin2)},
    {19, kLatin3, "ISO-8859-3", 0, true, TABLES(ISOLatin3)},
    {21, kLatin5, "ISO-8859-9", 0, true, TABLES(ISOLatin5)},
    {30, kCP850, nullptr, 850, true, TABLES(PC850Multilingual)},
    {31, kCP437, nullptr, 437, true, TABLES(PC8CodePage437)},
    {32, kShiftJIS, "Shift_JIS", 0, true, TABLES(ShiftJIS)},
    {33, kCP932, nullptr, 932, true, TABLES(CP932)},
    {45, kCP852, nullptr, 852, true, TABLES(CP852)},
    {47, kCP857, nullptr, 857, true, TABLES(CP857)},
    {48, kCP860, nullptr, 860, true, TABLES(CP860)},
    {51, kCP863, nullptr, 863, true, TABLES(CP863)},
    {56, kCP870, nullptr, 870, false, TABLES(CP870)},
    {62, kCP1250, nullptr, 1250, true, TABLES(CP1250)},
    {64, kCP1254, nullptr, 1254, true, TABLES(CP1254)},
    {84, kCP20105, nullptr, 20105, true, TABLES(CP20105)},
    {93, kCP20290, nullptr, 20290, false, TABLES(CP20290)},
    {104, kCP21027, nullptr, 21027, true, TABLES(CP21027)},
    {112, kCP28599, nullptr, 28599, true, TABLES(CP28599)},
    {136, kISO885915, nullptr, 0, true, TABLES(ISO_8859_15)},
    {139, kCCSID290, nullptr, 0, false, TABLES(CCSID290)},
    {140, kCCSID942, nullptr, 0, true, TABLES(CCSID942)},
    {141, kCCSID1027, nullptr, 0, false, TABLES(CCSID1027)},
};

#undef TABLES

CodePageEntry const* FindCodePage(unsigned int number) {
  for (CodePageEntry const& e : kCodePages) {
    if (e.number == number) return &e;
  }
  return nullptr;
}

}  // namespace varnice::internal
