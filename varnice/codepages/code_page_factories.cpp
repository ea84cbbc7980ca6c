// The factories of the table-driven code pages. Each builds its encoding on
// first call from the catalogue entry of its number; the encoding and its two
// tables are function-local statics, destroyed at exit in reverse order of
// creation (the tables are made first, while the constructor's arguments are
// evaluated, so they outlive the encoding).
#include "varnice/codepages/code_page_catalogue.h"
#include "varnice/codepages/mbcs_encoding.h"

namespace {

using varnice::internal::CodePageEntry;
using varnice::internal::FindCodePage;

// Guaranteed copy elision builds the result in the caller's static, so the
// address the constructor registers is the singleton's own.
MBCSEncoding MakeCodePage(unsigned int number) {
  const CodePageEntry& e = *FindCodePage(number);
  return MBCSEncoding(TextEncodingID(e.number), e.nicknames, e.mimeName, e.codePage, e.toUnicode(),
                      e.fromUnicode(), e.asciiBased);
}

template <unsigned int Number>
ExternalEncoding* StoredCodePage() {
  static MBCSEncoding encoding = MakeCodePage(Number);
  return &encoding;
}

}  // namespace

ExternalEncoding* ExternalEncoding::ASCII() { return StoredCodePage<3>(); }
ExternalEncoding* ExternalEncoding::CP1252() { return StoredCodePage<8>(); }
ExternalEncoding* ExternalEncoding::EUCPkdFmtJapanese() { return StoredCodePage<10>(); }
ExternalEncoding* ExternalEncoding::HalfWidthKatakana() { return StoredCodePage<12>(); }
ExternalEncoding* ExternalEncoding::ISO87JISX0208() { return StoredCodePage<16>(); }
ExternalEncoding* ExternalEncoding::ISOLatin1() { return StoredCodePage<17>(); }
ExternalEncoding* ExternalEncoding::ISOLatin2() { return StoredCodePage<18>(); }
ExternalEncoding* ExternalEncoding::ISOLatin3() { return StoredCodePage<19>(); }
ExternalEncoding* ExternalEncoding::ISOLatin5() { return StoredCodePage<21>(); }
ExternalEncoding* ExternalEncoding::PC850Multilingual() { return StoredCodePage<30>(); }
ExternalEncoding* ExternalEncoding::PC8CodePage437() { return StoredCodePage<31>(); }
ExternalEncoding* ExternalEncoding::ShiftJIS() { return StoredCodePage<32>(); }
ExternalEncoding* ExternalEncoding::CP932() { return StoredCodePage<33>(); }
ExternalEncoding* ExternalEncoding::CP852() { return StoredCodePage<45>(); }
ExternalEncoding* ExternalEncoding::CP857() { return StoredCodePage<47>(); }
ExternalEncoding* ExternalEncoding::CP860() { return StoredCodePage<48>(); }
ExternalEncoding* ExternalEncoding::CP863() { return StoredCodePage<51>(); }
ExternalEncoding* ExternalEncoding::CP870() { return StoredCodePage<56>(); }
ExternalEncoding* ExternalEncoding::CP1250() { return StoredCodePage<62>(); }
ExternalEncoding* ExternalEncoding::CP1254() { return StoredCodePage<64>(); }
ExternalEncoding* ExternalEncoding::CP20105() { return StoredCodePage<84>(); }
ExternalEncoding* ExternalEncoding::CP20290() { return StoredCodePage<93>(); }
ExternalEncoding* ExternalEncoding::CP21027() { return StoredCodePage<104>(); }
ExternalEncoding* ExternalEncoding::CP28599() { return StoredCodePage<112>(); }
ExternalEncoding* ExternalEncoding::ISO_8859_15() { return StoredCodePage<136>(); }
ExternalEncoding* ExternalEncoding::CCSID290() { return StoredCodePage<139>(); }
ExternalEncoding* ExternalEncoding::CCSID942() { return StoredCodePage<140>(); }
ExternalEncoding* ExternalEncoding::CCSID1027() { return StoredCodePage<141>(); }
