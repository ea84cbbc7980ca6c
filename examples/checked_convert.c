/* A host that converts Shift_JIS text to UTF-8 the careful way: find the
 * encodings, ask how much room the result needs, convert, and say what was
 * wrong with the input instead of passing damaged text on. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "varnice/capi/varnice_c.h"

int main(void) {
  /* "Kana: " KA NA, then a lead byte cut short by a newline. */
  static const char sjis[] = "Kana: \x83\x4A\x83\x69\n\x82\nend";
  int from, to;
  if (VarniceFindEncoding("Shift_JIS", &from) != VARNICE_OK || VarniceFindEncoding("UTF-8", &to) != VARNICE_OK) {
    return 1;
  }

  /* Preflight: no buffer, just the size. */
  VarniceStatus st;
  int rc = VarniceTranscode(from, sjis, sizeof sjis - 1, to, NULL, 0, VARNICE_REPLACE, &st);
  if (rc != VARNICE_ERROR_OUTPUT_TOO_SMALL) return 2;
  char* utf8 = malloc(st.needed);
  if (utf8 == NULL) return 3;

  rc = VarniceTranscode(from, sjis, sizeof sjis - 1, to, utf8, st.needed, VARNICE_REPLACE, &st);
  if (rc != VARNICE_OK) return 4;
  printf("%.*s\n", (int)st.written, utf8);
  printf("%zu character(s) replaced, the first at byte %zu\n", st.replacements, st.problem_offset);

  /* Strict: refuse the text and say where it breaks. */
  rc = VarniceTranscode(from, sjis, sizeof sjis - 1, to, utf8, st.needed, VARNICE_STRICT, &st);
  printf("strict: %s (problem %d at byte %zu)\n", VarniceResultText(rc), st.problem, st.problem_offset);
  free(utf8);

  /* The replaced character left the newline after it alone. */
  return rc == VARNICE_ERROR_PROBLEM && st.problem == VARNICE_PROBLEM_ILLEGAL_INPUT && st.problem_offset == 11 ? 0 : 5;
}
