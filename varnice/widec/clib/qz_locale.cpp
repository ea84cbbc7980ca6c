// The locale and process functions of qz_wchar.h.
#include "varnice/widec/clib/qz_locale.h"

#include <sys/times.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "varnice/encoding/catalogue/encoding_catalogue.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/widec/clib/qz_wchar.h"

namespace {

// Long enough for every encoding name the registry knows; longer text is cut.
char gNameBuffer[256];
char gLconvName[256];
char gDecimalPoint[] = ".";
char gEmpty[] = "";
char gC[] = "C";
qz_lconv gLconv = {gDecimalPoint, gEmpty, gEmpty, gLconvName};

char* CopyName(char (&buffer)[256], const ExternalEncoding& encoding) {
  std::snprintf(buffer, sizeof buffer, "%s", encoding.Name());
  return buffer;
}

// Made on first use, so that loading the library builds no encoding.
const ExternalEncoding*& Current() {
  static const ExternalEncoding* current = ExternalEncoding::ISOLatin1();
  return current;
}

bool IsCOrEmpty(const char* locale) { return locale[0] == '\0' || std::strcmp(locale, "C") == 0; }

}  // namespace

const ExternalEncoding& Locale::CurrentExternalEncoding() { return *Current(); }

extern "C" {

char* qz_setlocale(int category, const char* locale) {
  if (category != 1 && category != 7) {
    return locale == nullptr || IsCOrEmpty(locale) ? gC : nullptr;
  }
  const ExternalEncoding*& current = Current();
  if (locale == nullptr) return CopyName(gNameBuffer, *current);
  EncodingCatalogue::CreateAll();
  const ExternalEncoding* found = ExternalEncoding::Lookup(IsCOrEmpty(locale) ? "Latin1" : locale);
  if (found == nullptr) return nullptr;
  // The previous encoding's name: the caller can restore it later.
  CopyName(gNameBuffer, *current);
  current = found;
  return gNameBuffer;
}

struct qz_lconv* qz_localeconv(void) {
  CopyName(gLconvName, Locale::CurrentExternalEncoding());
  return &gLconv;
}

double GetCPUTime(void) {
  struct tms t;
  times(&t);
  return static_cast<double>(t.tms_utime) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

bool PutFileIntoBinaryMode(FILE*) { return true; }

}  // extern "C"
