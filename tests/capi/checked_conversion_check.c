/* The checked C conversion functions, called from plain C as a host would:
 * results, status records, preflight, modes, and several threads at once. */
#include <pthread.h>
#include <stdio.h>
#include <string.h>

#include "varnice/capi/varnice_c.h"

static int failures = 0;

#define CHECK(cond)                                              \
  do {                                                           \
    if (!(cond)) {                                               \
      fprintf(stderr, "%s:%d: failed: %s\n", __FILE__, __LINE__, #cond); \
      ++failures;                                                \
    }                                                            \
  } while (0)

static int sjis, utf8, latin1, jp, cp870, utf16le;

static void Registration(void) {
  int n = 99;
  CHECK(VarniceFindEncoding("no such thing", &n) == VARNICE_ERROR_UNKNOWN_ENCODING && n == 0);
  CHECK(VarniceFindEncoding(NULL, &n) == VARNICE_ERROR_BAD_ARGUMENT);
  CHECK(VarniceFindEncoding("Shift_JIS", &sjis) == VARNICE_OK && sjis > 0);
  CHECK(VarniceFindEncoding("ms kanji", &n) == VARNICE_OK && n == sjis);
  CHECK(VarniceRegisterEncoding("Shift_JIS") == sjis); /* one table for both interfaces */
  CHECK(VarniceFindEncoding("utf-8", &utf8) == VARNICE_OK);
  CHECK(VarniceFindEncoding("ISO-8859-1", &latin1) == VARNICE_OK);
  CHECK(VarniceFindEncoding("ISO-2022-JP", &jp) == VARNICE_OK);
  CHECK(VarniceFindEncoding("CP870", &cp870) == VARNICE_OK || VarniceFindEncoding("IBM870", &cp870) == VARNICE_OK);
  CHECK(VarniceFindEncoding("UTF-16LE", &utf16le) == VARNICE_OK);
}

static void UnknownNumbersAreErrors(void) {
  VarniceStatus st;
  unsigned short u[4];
  CHECK(VarniceDecode(0, "a", 1, u, 4, VARNICE_REPLACE, &st) == VARNICE_ERROR_UNKNOWN_ENCODING);
  CHECK(VarniceDecode(250, "a", 1, u, 4, VARNICE_REPLACE, &st) == VARNICE_ERROR_UNKNOWN_ENCODING);
  CHECK(VarniceDecode(utf8, "a", 1, u, 4, 7, &st) == VARNICE_ERROR_BAD_ARGUMENT);
  CHECK(VarniceDecode(utf8, NULL, 1, u, 4, VARNICE_REPLACE, NULL) == VARNICE_ERROR_BAD_ARGUMENT);
}

static void DecodeWithNulsAndPreflight(void) {
  VarniceStatus st;
  unsigned short u[8];
  /* A NUL byte is text like any other; the length decides. */
  CHECK(VarniceDecode(utf8, "\0a\xC3\xA9", 4, NULL, 0, VARNICE_REPLACE, &st) == VARNICE_ERROR_OUTPUT_TOO_SMALL);
  CHECK(st.needed == 3 && st.written == 0);
  CHECK(VarniceDecode(utf8, "\0a\xC3\xA9", 4, u, 2, VARNICE_REPLACE, &st) == VARNICE_ERROR_OUTPUT_TOO_SMALL);
  CHECK(VarniceDecode(utf8, "\0a\xC3\xA9", 4, u, 3, VARNICE_REPLACE, &st) == VARNICE_OK);
  CHECK(st.written == 3 && u[0] == 0 && u[1] == 'a' && u[2] == 0xE9 && st.consumed == 4);
  CHECK(st.problem == VARNICE_PROBLEM_NONE && st.problem_offset == VARNICE_NO_OFFSET);
  /* Exactly the room a surrogate pair needs. */
  CHECK(VarniceDecode(utf8, "\xF0\x9F\x98\x80", 4, u, 2, VARNICE_REPLACE, &st) == VARNICE_OK && st.written == 2);
}

static void DecodeModes(void) {
  VarniceStatus st;
  unsigned short u[8];
  /* Shift_JIS: the newline after a broken lead byte survives. */
  CHECK(VarniceDecode(sjis, "a\x82\nb", 4, u, 8, VARNICE_REPLACE, &st) == VARNICE_OK);
  CHECK(st.written == 4 && u[1] == 0xFFFD && u[2] == '\n' && st.replacements == 1 && st.problem_offset == 1);
  CHECK(VarniceDecode(sjis, "a\x82\nb", 4, u, 8, VARNICE_SKIP, &st) == VARNICE_OK);
  CHECK(st.written == 3 && u[1] == '\n');
  CHECK(VarniceDecode(sjis, "a\x82\nb", 4, u, 8, VARNICE_STOP, &st) == VARNICE_ERROR_PROBLEM);
  CHECK(st.written == 1 && st.consumed == 1 && st.problem == VARNICE_PROBLEM_ILLEGAL_INPUT);
  CHECK(VarniceDecode(sjis, "ab\x82", 3, u, 8, VARNICE_STRICT, &st) == VARNICE_ERROR_PROBLEM);
  CHECK(st.written == 0 && st.problem == VARNICE_PROBLEM_INCOMPLETE_INPUT && st.problem_offset == 2);
  /* Overlong UTF-8 is not a slash. */
  CHECK(VarniceDecode(utf8, "\xC0\xAF", 2, u, 8, VARNICE_STRICT, &st) == VARNICE_ERROR_PROBLEM);
  CHECK(VarniceDecode(jp, "\x1B$B$", 4, u, 8, VARNICE_STOP, &st) == VARNICE_ERROR_PROBLEM);
  CHECK(st.problem == VARNICE_PROBLEM_INCOMPLETE_INPUT && st.problem_offset == 3);
}

static void EncodeAndTranscode(void) {
  VarniceStatus st;
  char b[32];
  const unsigned short emoji[] = {'a', 0xD83D, 0xDE00, 'b'};
  const unsigned short lone[] = {'a', 0xD800, 'b'};
  const unsigned short kanji[] = {0x4E9C, 0xE9};
  CHECK(VarniceEncode(sjis, emoji, 4, b, sizeof b, VARNICE_REPLACE, &st) == VARNICE_OK);
  CHECK(st.written == 3 && memcmp(b, "a\x1A" "b", 3) == 0 && st.replacements == 1);
  CHECK(VarniceEncode(utf8, lone, 3, b, sizeof b, VARNICE_REPLACE, &st) == VARNICE_OK);
  CHECK(st.written == 5 && memcmp(b, "a\xEF\xBF\xBD" "b", 5) == 0 && st.problem == VARNICE_PROBLEM_LONE_SURROGATE);
  CHECK(VarniceEncode(utf8, lone, 3, b, sizeof b, VARNICE_STOP, &st) == VARNICE_ERROR_PROBLEM);
  CHECK(st.consumed == 1 && st.written == 1);
  /* ISO-2022-JP stays well-formed around the substitute. */
  CHECK(VarniceEncode(jp, kanji, 2, b, sizeof b, VARNICE_REPLACE, &st) == VARNICE_OK);
  CHECK(st.written == 9 && memcmp(b, "\x1B$B0!\x1B(B\x1A", 9) == 0);
  CHECK(VarniceEncode(cp870, kanji, 1, b, sizeof b, VARNICE_REPLACE, &st) == VARNICE_OK);
  CHECK(st.written == 1 && (unsigned char)b[0] == 0x3F);
  CHECK(VarniceEncode(utf16le, kanji, 1, b, sizeof b, VARNICE_REPLACE, &st) == VARNICE_OK);
  CHECK(st.written == 2 && memcmp(b, "\x9C\x4E", 2) == 0);
  /* A first byte of 0 is text, not the end. */
  CHECK(VarniceTranscode(latin1, "\0\xE9", 2, utf8, b, sizeof b, VARNICE_REPLACE, &st) == VARNICE_OK);
  CHECK(st.written == 3 && memcmp(b, "\0\xC3\xA9", 3) == 0);
  /* The byte offset of a character the target lacks. */
  CHECK(VarniceTranscode(utf8, "ab\xC3\xA9z", 5, sjis, b, sizeof b, VARNICE_STOP, &st) == VARNICE_ERROR_PROBLEM);
  CHECK(st.problem == VARNICE_PROBLEM_UNMAPPABLE && st.problem_offset == 2 && st.written == 2);
}

static void NoExceptionReachesC(void) {
  VarniceStatus st;
  char b[8];
  int automatic;
  CHECK(VarniceFindEncoding("auto", &automatic) == VARNICE_OK);
  CHECK(VarniceTranscode(utf8, "a", 1, automatic, b, sizeof b, VARNICE_REPLACE, &st) == VARNICE_ERROR_UNSUPPORTED);
}

static void* Worker(void* arg) {
  int i, bad = 0;
  (void)arg;
  for (i = 0; i < 2000; ++i) {
    VarniceStatus st;
    char b[32];
    if (VarniceTranscode(sjis, "\x93\xFA\x96\x7B\x82\n", 6, utf8, b, sizeof b, VARNICE_REPLACE, &st) != VARNICE_OK ||
        st.written != 10 || memcmp(b, "\xE6\x97\xA5\xE6\x9C\xAC\xEF\xBF\xBD\n", 10) != 0) {
      ++bad;
    }
  }
  return bad != 0 ? (void*)1 : NULL;
}

static void Threads(void) {
  pthread_t t[4];
  int i;
  for (i = 0; i < 4; ++i) pthread_create(&t[i], NULL, Worker, NULL);
  for (i = 0; i < 4; ++i) {
    void* r;
    pthread_join(t[i], &r);
    CHECK(r == NULL);
  }
}

int main(void) {
  Registration();
  UnknownNumbersAreErrors();
  DecodeWithNulsAndPreflight();
  DecodeModes();
  EncodeAndTranscode();
  NoExceptionReachesC();
  Threads();
  if (failures == 0) puts("all checked-conversion checks passed");
  return failures == 0 ? 0 : 1;
}
