/* A host program of the C interface: registers Shift_JIS and UTF-8, decodes
 * Shift_JIS text to UTF-16, encodes that as UTF-8, and also copies the
 * Shift_JIS bytes to UTF-8 in one step. Exits 0 when both roads agree with the
 * expected UTF-8. */
#include <stdio.h>
#include <string.h>

#include "varnice/capi/varnice_c.h"

int main(void) {
  /* "Nihongo: 日本語" in Shift_JIS, and the same in UTF-8. */
  static const char sjis[] = "Nihongo: \x93\xfa\x96\x7b\x8c\xea";
  static const char utf8[] = "Nihongo: \xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e";
  unsigned short units[64];
  char out[64];
  char copied[64];
  int sjisNumber, utf8Number, nUnits, nBytes, nCopied;

  sjisNumber = VarniceRegisterEncoding("Shift_JIS");
  utf8Number = VarniceRegisterEncoding("UTF-8");
  if (sjisNumber == 0 || utf8Number == 0) {
    fputs("registration failed\n", stderr);
    return 1;
  }
  printf("%s is %d, %s is %d\n", VarniceEncodingName(sjisNumber), sjisNumber,
         VarniceEncodingName(utf8Number), utf8Number);

  /* -1: the source is NUL-terminated. The result is always terminated. */
  nUnits = VarniceConvertToUnicode(sjisNumber, sjis, -1, units, 64);
  /* Returns a byte count; the bytes are not necessarily terminated. */
  nBytes = VarniceConvertFromUnicode(utf8Number, units, nUnits, out, (int)sizeof out - 1, 0);
  out[nBytes] = '\0';
  /* A srcLen of 0 means NUL-terminated here. */
  nCopied = VarniceCopyDataBetweenEncodings(sjisNumber, sjis, 0, utf8Number, copied,
                                            (int)sizeof copied - 1, 0);
  copied[nCopied] = '\0';

  printf("%d UTF-16 units, %d UTF-8 bytes: %s\n", nUnits, nBytes, out);
  if (nUnits != 12 || strcmp(out, utf8) != 0 || strcmp(copied, utf8) != 0) {
    fputs("unexpected conversion result\n", stderr);
    return 1;
  }
  return 0;
}
