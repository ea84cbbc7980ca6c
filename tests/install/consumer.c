/* A plain-C program built against an installed Varnice through pkg-config. */
#include <stdio.h>
#include <string.h>

#include <varnice/capi/varnice_c.h>
#include <varnice/version.h>

int main(void) {
  static const char sjis[] = "\x93\xfa\x96\x7b\x8c\xea"; /* 日本語 */
  unsigned short units[16];
  char utf8[32];
  int from = VarniceRegisterEncoding("Shift_JIS");
  int to = VarniceRegisterEncoding("UTF-8");
  int n = VarniceConvertToUnicode(from, sjis, -1, units, 16);
  int bytes = VarniceConvertFromUnicode(to, units, n, utf8, (int)sizeof utf8 - 1, 0);
  if (from == 0 || to == 0 || n != 3 || bytes != 9) return 1;
  utf8[bytes] = '\0';
  printf("%s %s %s\n", VARNICE_VERSION_STRING, VarniceVersionString(), utf8);
  return strcmp(utf8, "\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e") == 0 ? 0 : 1;
}
