/* Compiled as strict C99 with warnings as errors: fails to build if the wide C
 * library's header stops being plain C. Exits 0 when a few calls work. */
#include <string.h>

#include "varnice/widec/clib/qz_wchar.h"

int main(void) {
  static const unsigned short hello[] = {'h', 'e', 'l', 'l', 'o', 0};
  static const unsigned short format[] = {'%', 'l', 's', '-', '%', 'd', 0};
  unsigned short out[16];
  int n = 0;
  if (qz_wcslen(hello) != 5 || qz_wcscmp(hello, hello) != 0) return 1;
  if (qz_swprintf(out, 16, format, hello, 42) != 8) return 2;
  if (qz_swscanf(out + 6, format + 4, &n) != 1 || n != 42) return 3;
  if (qz_fwide(stdout, 0) != -1 || !PutFileIntoBinaryMode(stdout)) return 4;
  return strcmp(qz_setlocale(2, "C"), "C") == 0 ? 0 : 5;
}
