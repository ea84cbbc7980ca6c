#include "varnice/capi/varnice_c.h"

#include "varnice/encoding/unicode_library.h"

extern "C" const char* VarniceVersionString(void) {
  return UnicodeLibrary::VersionString();
}
