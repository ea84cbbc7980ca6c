/* A SQLite extension that lets SQL read and write text in national encodings
 * through Varnice's C interface:
 *
 *   .load ./varnice
 *   SELECT varnice_decode(x'93fa967b8cea', 'Shift_JIS');          -- 日本語
 *   SELECT varnice_encode('日本語', 'EUC-JP');                     -- a blob
 *   SELECT varnice_convert(b, 'Shift_JIS', 'ISO-2022-JP') FROM t;
 *   SELECT varnice_detect(b) FROM t;                              -- 'Shift_JIS', ...
 *   SELECT varnice_detect(b, 'auto-ja') FROM t;                   -- Japanese only
 *   SELECT varnice_transform(name, 'halfwidth,upper:Latin') FROM t;
 *   SELECT name FROM t ORDER BY name COLLATE JIS;
 *
 * Decoding and encoding take an optional last argument, 'replace' (the
 * default: undecodable bytes become U+FFFD and missing characters the
 * encoding's substitute) or 'strict' (either is an SQL error). Unknown names
 * are SQL errors: an encoding name never falls back to another encoding. NULL
 * in gives NULL out. */
#include <pthread.h>
#include <stdarg.h>
#include <string.h>

#include <sqlite3ext.h>

#include "varnice/capi/varnice_c.h"

SQLITE_EXTENSION_INIT1

/* Registration in the C interface is not synchronised, and connections on
 * several threads may register at once; the lock also guards the tables of
 * this file that fill on first use. */
static pthread_mutex_t registration = PTHREAD_MUTEX_INITIALIZER;

enum { kUnknown = 0 };
enum Mode { kReplace, kStrict, kBadMode };
enum Direction { kRead, kWrite };

static void fail(sqlite3_context* ctx, const char* format, ...) {
  va_list args;
  va_start(args, format);
  char* message = sqlite3_vmprintf(format, args);
  va_end(args);
  if (message == NULL) {
    sqlite3_result_error_nomem(ctx);
    return;
  }
  sqlite3_result_error(ctx, message, -1);
  sqlite3_free(message);
}

static const char* function_name(sqlite3_context* ctx) {
  return (const char*)sqlite3_user_data(ctx);
}

/* The data-encoding number for argument `arg`, remembered for the statement
 * while the argument stays the same; 0 after reporting an error. */
static int encoding_argument(sqlite3_context* ctx, sqlite3_value** argv, int arg,
                             enum Direction direction) {
  const int* cached = (const int*)sqlite3_get_auxdata(ctx, arg);
  if (cached != NULL) return *cached;
  const char* name = (const char*)sqlite3_value_text(argv[arg]);
  if (name == NULL) {
    fail(ctx, "%s: the encoding name is NULL", function_name(ctx));
    return kUnknown;
  }
  pthread_mutex_lock(&registration);
  const int number = VarniceRegisterEncoding(name);
  pthread_mutex_unlock(&registration);
  if (number == kUnknown) {
    fail(ctx, "%s: unknown encoding '%s' (the names are those of 'varnice list')",
         function_name(ctx), name);
    return kUnknown;
  }
  /* Registration writes a space in the encoding; the detecting encodings
   * cannot write one, or anything else. */
  if (direction == kWrite && VarniceEncodingNominalCharLength(number) <= 0) {
    fail(ctx, "%s: encoding '%s' can be read but not written", function_name(ctx), name);
    return kUnknown;
  }
  int* keep = (int*)sqlite3_malloc(sizeof *keep);
  if (keep != NULL) {
    *keep = number;
    sqlite3_set_auxdata(ctx, arg, keep, sqlite3_free);
  }
  return number;
}

static enum Mode mode_argument(sqlite3_context* ctx, int argc, sqlite3_value** argv, int arg) {
  if (argc <= arg) return kReplace;
  const char* mode = (const char*)sqlite3_value_text(argv[arg]);
  if (mode != NULL && sqlite3_stricmp(mode, "replace") == 0) return kReplace;
  if (mode != NULL && sqlite3_stricmp(mode, "strict") == 0) return kStrict;
  fail(ctx, "%s: unknown mode '%s' (use 'replace' or 'strict')", function_name(ctx),
       mode != NULL ? mode : "NULL");
  return kBadMode;
}

/* Lengths the C interface takes are ints. */
static int too_long(sqlite3_context* ctx, sqlite3_int64 n) {
  if (n <= 0x3FFFFFFF) return 0;
  fail(ctx, "%s: the value is too long", function_name(ctx));
  return 1;
}

/* Decodes n > 0 bytes into a new UTF-16 buffer; NULL after reporting. The
 * conversion cuts its output at the buffer's end, so a result that reaches
 * the end is redone in a larger buffer. */
static unsigned short* decode(sqlite3_context* ctx, int number, const char* bytes, int n,
                              int* count) {
  for (sqlite3_int64 room = (sqlite3_int64)n + 8; room <= 4 * (sqlite3_int64)n + 64; room *= 2) {
    if (too_long(ctx, room)) return NULL;
    unsigned short* units = (unsigned short*)sqlite3_malloc64((sqlite3_uint64)room * 2);
    if (units == NULL) {
      sqlite3_result_error_nomem(ctx);
      return NULL;
    }
    *count = VarniceConvertToUnicode(number, bytes, n, units, (int)room);
    if (*count < room - 2) return units;
    sqlite3_free(units);
  }
  fail(ctx, "%s: the decoded text is too long", function_name(ctx));
  return NULL;
}

/* Encodes n > 0 UTF-16 units into a new byte buffer; NULL after reporting. */
static char* encode(sqlite3_context* ctx, int number, const unsigned short* units, int n,
                    int* count) {
  /* A unit takes at most 3 bytes in UTF-8 and the multi-byte pages, more only
   * where escape sequences switch sets; the margin covers a closing escape. */
  for (sqlite3_int64 room = 3 * (sqlite3_int64)n + 32; room <= 16 * (sqlite3_int64)n + 256;
       room *= 2) {
    if (too_long(ctx, room)) return NULL;
    char* bytes = (char*)sqlite3_malloc64((sqlite3_uint64)room);
    if (bytes == NULL) {
      sqlite3_result_error_nomem(ctx);
      return NULL;
    }
    *count = VarniceConvertFromUnicode(number, units, n, bytes, (int)room, 0);
    if (*count < room - 16) return bytes;
    sqlite3_free(bytes);
  }
  fail(ctx, "%s: the encoded text is too long", function_name(ctx));
  return NULL;
}

static int has_replacement(const unsigned short* units, int n) {
  for (int i = 0; i < n; ++i) {
    if (units[i] == 0xFFFD) return 1;
  }
  return 0;
}

/* Strict decoding: U+FFFD in the result came from bad input unless it was
 * really there, in which case the result writes back as the same bytes. */
static int decoded_exactly(sqlite3_context* ctx, int number, const char* bytes, int n,
                           const unsigned short* units, int count) {
  if (!has_replacement(units, count)) return 1;
  if (VarniceEncodingNominalCharLength(number) <= 0) return 0; /* detecting: cannot check */
  int back = 0;
  char* again = encode(ctx, number, units, count, &back);
  if (again == NULL) return -1;
  const int same = back == n && memcmp(again, bytes, (size_t)n) == 0;
  sqlite3_free(again);
  return same;
}

/* Strict decoding: a sequence cut short at the end of the input is dropped
 * without a trace, so the input must read the same with a line end after it
 * as without. Two-byte forms instead need an even count. */
static int decoded_whole(sqlite3_context* ctx, int number, const char* bytes, int n,
                         const unsigned short* units, int count) {
  const int width = VarniceEncodingNominalCharLength(number);
  if (width == 2) return n % 2 == 0;
  if (width != 1) return 1; /* detecting: the chosen encoding's width is unknown */
  unsigned short line_end[4];
  if (VarniceConvertToUnicode(number, "\n", 1, line_end, 4) != 1) return 1;
  char* longer = (char*)sqlite3_malloc64((sqlite3_uint64)n + 1);
  if (longer == NULL) {
    sqlite3_result_error_nomem(ctx);
    return -1;
  }
  memcpy(longer, bytes, (size_t)n);
  longer[n] = '\n';
  int again_count = 0;
  unsigned short* again = decode(ctx, number, longer, n + 1, &again_count);
  sqlite3_free(longer);
  if (again == NULL) return -1;
  const int same = again_count == count + 1 && memcmp(again, units, (size_t)count * 2) == 0 &&
                   again[count] == line_end[0];
  sqlite3_free(again);
  return same;
}

/* Strict encoding: every character must come back from the bytes. */
static int encoded_exactly(sqlite3_context* ctx, int number, const unsigned short* units, int n,
                           const char* bytes, int count) {
  int back = 0;
  if (count == 0) return n == 0;
  unsigned short* again = decode(ctx, number, bytes, count, &back);
  if (again == NULL) return -1;
  const int same = back == n && memcmp(again, units, (size_t)n * 2) == 0;
  sqlite3_free(again);
  return same;
}

/* Reads argument 0 as UTF-16 in an encoding; NULL after a result was set. */
static unsigned short* read_blob(sqlite3_context* ctx, sqlite3_value** argv, int number,
                                 enum Mode mode, const char* name, int* count) {
  const char* bytes = (const char*)sqlite3_value_blob(argv[0]);
  const sqlite3_int64 n = sqlite3_value_bytes(argv[0]);
  if (too_long(ctx, n)) return NULL;
  if (n == 0) {
    *count = 0;
    return (unsigned short*)sqlite3_malloc(2);
  }
  unsigned short* units = decode(ctx, number, bytes, (int)n, count);
  if (units == NULL || mode != kStrict) return units;
  int exact = decoded_exactly(ctx, number, bytes, (int)n, units, *count);
  if (exact == 1) exact = decoded_whole(ctx, number, bytes, (int)n, units, *count);
  if (exact == 1) return units;
  sqlite3_free(units);
  if (exact == 0) fail(ctx, "%s: the bytes are not valid %s", function_name(ctx), name);
  return NULL;
}

/* Writes UTF-16 units as an encoding's bytes and sets them as the result. */
static void write_blob(sqlite3_context* ctx, int number, enum Mode mode, const char* name,
                       const unsigned short* units, int n) {
  if (n == 0) {
    sqlite3_result_zeroblob(ctx, 0);
    return;
  }
  int count = 0;
  char* bytes = encode(ctx, number, units, n, &count);
  if (bytes == NULL) return;
  if (mode == kStrict) {
    const int exact = encoded_exactly(ctx, number, units, n, bytes, count);
    if (exact != 1) {
      sqlite3_free(bytes);
      if (exact == 0) {
        fail(ctx, "%s: the text has characters that %s cannot represent", function_name(ctx),
             name);
      }
      return;
    }
  }
  sqlite3_result_blob(ctx, bytes, count, sqlite3_free);
}

/* varnice_decode(bytes, encoding [, mode]) -> text */
static void decode_function(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) return;
  const int number = encoding_argument(ctx, argv, 1, kRead);
  if (number == kUnknown) return;
  const enum Mode mode = mode_argument(ctx, argc, argv, 2);
  if (mode == kBadMode) return;
  int count = 0;
  unsigned short* units =
      read_blob(ctx, argv, number, mode, (const char*)sqlite3_value_text(argv[1]), &count);
  if (units == NULL) return;
  sqlite3_result_text16(ctx, units, count * 2, sqlite3_free);
}

/* varnice_encode(text, encoding [, mode]) -> bytes */
static void encode_function(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) return;
  const int number = encoding_argument(ctx, argv, 1, kWrite);
  if (number == kUnknown) return;
  const enum Mode mode = mode_argument(ctx, argc, argv, 2);
  if (mode == kBadMode) return;
  const unsigned short* units = (const unsigned short*)sqlite3_value_text16(argv[0]);
  const sqlite3_int64 n = sqlite3_value_bytes16(argv[0]) / 2;
  if (too_long(ctx, n)) return;
  write_blob(ctx, number, mode, (const char*)sqlite3_value_text(argv[1]), units, (int)n);
}

/* varnice_convert(bytes, from, to [, mode]) -> bytes */
static void convert_function(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) return;
  const int from = encoding_argument(ctx, argv, 1, kRead);
  if (from == kUnknown) return;
  const int to = encoding_argument(ctx, argv, 2, kWrite);
  if (to == kUnknown) return;
  const enum Mode mode = mode_argument(ctx, argc, argv, 3);
  if (mode == kBadMode) return;
  int count = 0;
  unsigned short* units =
      read_blob(ctx, argv, from, mode, (const char*)sqlite3_value_text(argv[1]), &count);
  if (units == NULL) return;
  write_blob(ctx, to, mode, (const char*)sqlite3_value_text(argv[2]), units, count);
  sqlite3_free(units);
}

/* The encodings "auto" chooses among, in its order, each with the name that
 * 'varnice detect' prints for it. */
static const struct {
  const char* lookup;
  const char* reported;
} kCandidates[] = {
    {"UCS2", "UCS2"},           {"UTF-8", "UTF8"},         {"ISO-2022-JP", "ISO-2022-JP"},
    {"EUC-JP", "EUC-JP"},       {"Shift_JIS", "Shift_JIS"}, {"CP932", "CP932"},
    {"CP1252", "CP1252"},
};
enum { kCandidateCount = sizeof kCandidates / sizeof kCandidates[0] };

/* varnice_detect(bytes [, 'auto' | 'auto-ja']) -> the name of the encoding the
 * bytes are read in ('auto-ja' leaves out CP1252, for text known to be
 * Japanese). The C interface reads through a detector without naming its
 * choice, so the choice is the first candidate that reads the bytes the same
 * way. */
static void detect_function(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  static const char* const kDetectors[] = {"auto", "auto-ja"};
  static int numbers[2][kCandidateCount + 1]; /* [d][0]: the detector */
  int d = 0;
  if (argc > 1) {
    const char* detector = (const char*)sqlite3_value_text(argv[1]);
    while (d < 2 && (detector == NULL || sqlite3_stricmp(detector, kDetectors[d]) != 0)) ++d;
    if (d == 2) {
      fail(ctx, "%s: unknown detector '%s' (use 'auto' or 'auto-ja')", function_name(ctx),
           detector != NULL ? detector : "NULL");
      return;
    }
  }
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_bytes(argv[0]) == 0) return;
  pthread_mutex_lock(&registration);
  if (numbers[d][0] == 0) {
    for (int i = 0; i < kCandidateCount; ++i) {
      /* CP1252 is the general detector's last resort only. */
      const int wanted = d == 0 || strcmp(kCandidates[i].lookup, "CP1252") != 0;
      numbers[d][i + 1] = wanted ? VarniceRegisterEncoding(kCandidates[i].lookup) : 0;
    }
    numbers[d][0] = VarniceRegisterEncoding(kDetectors[d]);
  }
  pthread_mutex_unlock(&registration);
  if (numbers[d][0] == 0) {
    fail(ctx, "%s: cannot register the detecting encoding", function_name(ctx));
    return;
  }
  const char* bytes = (const char*)sqlite3_value_blob(argv[0]);
  const sqlite3_int64 n = sqlite3_value_bytes(argv[0]);
  if (too_long(ctx, n)) return;
  int count = 0;
  unsigned short* chosen = decode(ctx, numbers[d][0], bytes, (int)n, &count);
  if (chosen == NULL) return;
  const char* name = NULL;
  for (int i = 0; i < kCandidateCount && name == NULL; ++i) {
    if (numbers[d][i + 1] == 0) continue;
    int other = 0;
    unsigned short* units = decode(ctx, numbers[d][i + 1], bytes, (int)n, &other);
    if (units == NULL) break;
    if (other == count && memcmp(units, chosen, (size_t)count * 2) == 0) name = kCandidates[i].reported;
    sqlite3_free(units);
  }
  sqlite3_free(chosen);
  if (name != NULL) sqlite3_result_text(ctx, name, -1, SQLITE_STATIC);
}

/* ---- Transforms ------------------------------------------------------------ */

/* TransformUnicodeString's selectors by the names of 'varnice list --transforms'. */
static const char* const kTransformNames[] = {
    NULL,          "katakana",        "hiragana",        "decompose",        "compose",
    "halfwidth",   "fullwidth",       "hepburn",         "kunrei",           "romaji-katakana",
    "romaji-hiragana", "latin-digits", "canonical",      "filter",           "select",
    "zenkaku-katakana", "hankaku-katakana", "upper",     "lower",            "spacing-marks",
    "combining-marks", "entities",    "cr",              "lf",               "crlf",
    "ls",          "ps",              "traditional",     "simplified",
};
enum { kSelectorCount = sizeof kTransformNames / sizeof kTransformNames[0] - 1 };

/* Character classes by name, as TestUnicodeCharacter's codes. */
static const struct {
  const char* name;
  int code;
} kClasses[] = {
    {"UppercaseLetter", 2},      {"LowercaseLetter", 3},    {"TitlecaseLetter", 4},
    {"ModifierLetter", 5},       {"OtherLetter", 6},        {"NonSpacingMark", 7},
    {"CombiningMark", 8},        {"DecimalNumber", 9},      {"LetterNumber", 10},
    {"OtherNumber", 11},         {"DashPunctuation", 12},   {"OpenPunctuation", 13},
    {"ClosePunctuation", 14},    {"OtherPunctuation", 15},  {"ConnectorPunctuation", 16},
    {"InitialPunctuation", 17},  {"FinalPunctuation", 18},  {"MathSymbol", 19},
    {"CurrencySymbol", 20},      {"ModifierSymbol", 21},    {"OtherSymbol", 22},
    {"SpaceSeparator", 23},      {"LineSeparator", 24},     {"ParagraphSeparator", 25},
    {"ControlCharacter", 26},    {"OtherCharacter", 27},    {"FormatCharacter", 28},
    {"SurrogateCharacter", 29},  {"NonCharacter", 30},      {"UndefinedWidth", 31},
    {"Fullwidth", 32},           {"Halfwidth", 33},         {"AnyLetter", 50},
    {"AnyMark", 51},             {"AnyNumber", 52},         {"AnyPunctuation", 53},
    {"AnySymbol", 54},           {"AnySeparator", 55},      {"AnyDefinedCharacter", 56},
    {"Kana", 57},                {"UndefinedScript", 257},  {"General", 258},
    {"Latin", 259},              {"Greek", 260},            {"Cyrillic", 261},
    {"Armenian", 262},           {"Hebrew", 263},           {"Arabic", 264},
    {"Devanagari", 265},         {"Bengali", 266},          {"Gurmukhi", 267},
    {"Gujarati", 268},           {"Oriya", 269},            {"Tamil", 270},
    {"Telugu", 271},             {"Kannada", 272},          {"Malayalam", 273},
    {"Thai", 274},               {"Lao", 275},              {"Tibetan", 276},
    {"Georgian", 277},           {"HangulJamo", 278},       {"Hiragana", 279},
    {"Katakana", 280},           {"Bopomofo", 281},         {"CJK", 282},
    {"Hangul", 283},
};
enum { kAnyCharacter = 0, kMaxStages = 16 };

/* Scripts are also found by their full names: "Latin" or "LatinScript". */
static int class_code(const char* name, size_t length) {
  for (size_t i = 0; i < sizeof kClasses / sizeof kClasses[0]; ++i) {
    const char* known = kClasses[i].name;
    const size_t k = strlen(known);
    if (length == k && sqlite3_strnicmp(name, known, (int)k) == 0) return kClasses[i].code;
    if (kClasses[i].code >= 257 && length == k + 6 && sqlite3_strnicmp(name, known, (int)k) == 0 &&
        sqlite3_strnicmp(name + k, "Script", 6) == 0) {
      return kClasses[i].code;
    }
  }
  return -1;
}

/* Transforms the library was built without answer every call with -1. */
static int available(int selector) {
  static int known[kSelectorCount + 1]; /* 0 not probed, 1 yes, 2 no */
  pthread_mutex_lock(&registration);
  if (known[selector] == 0) {
    const unsigned short a = 'a';
    unsigned short out[64];
    known[selector] = TransformUnicodeString(selector, kAnyCharacter, &a, 1, out, 64) >= 0 ? 1 : 2;
  }
  const int yes = known[selector] == 1;
  pthread_mutex_unlock(&registration);
  return yes;
}

struct Stage {
  int selector;
  int code;
};
struct Plan {
  int count;
  struct Stage stages[kMaxStages];
};

static void list_transforms(sqlite3_str* out) {
  for (int s = 1; s <= kSelectorCount; ++s) {
    if (available(s)) sqlite3_str_appendf(out, " %s", kTransformNames[s]);
  }
}

/* Parses "name[:class],..."; 0 after reporting an error. */
static int parse_plan(sqlite3_context* ctx, const char* text, struct Plan* plan) {
  plan->count = 0;
  const char* at = text;
  for (;;) {
    const char* end = at + strcspn(at, ",");
    const char* colon = memchr(at, ':', (size_t)(end - at));
    const char* name_end = colon != NULL ? colon : end;
    const int length = (int)(name_end - at);
    int selector = 0;
    for (int s = 1; s <= kSelectorCount && selector == 0; ++s) {
      if ((int)strlen(kTransformNames[s]) == length &&
          sqlite3_strnicmp(at, kTransformNames[s], length) == 0) {
        selector = s;
      }
    }
    if (selector == 0 || !available(selector)) {
      sqlite3_str* message = sqlite3_str_new(NULL);
      sqlite3_str_appendf(message, "%s: %s transform '%.*s'; the transforms are:", function_name(ctx),
                          selector == 0 ? "unknown" : "this build has no", length, at);
      list_transforms(message);
      char* m = sqlite3_str_finish(message);
      sqlite3_result_error(ctx, m != NULL ? m : "out of memory", -1);
      sqlite3_free(m);
      return 0;
    }
    int code = kAnyCharacter;
    if (colon != NULL) {
      code = class_code(colon + 1, (size_t)(end - colon - 1));
      if (code < 0) {
        fail(ctx, "%s: unknown character class '%.*s'", function_name(ctx), (int)(end - colon - 1),
             colon + 1);
        return 0;
      }
    }
    if (plan->count == kMaxStages) {
      fail(ctx, "%s: more than %d transforms", function_name(ctx), kMaxStages);
      return 0;
    }
    plan->stages[plan->count].selector = selector;
    plan->stages[plan->count].code = code;
    ++plan->count;
    if (*end == '\0') return 1;
    at = end + 1;
  }
}

/* One transform into a new buffer; NULL after reporting. -1 from the C
 * function means the result did not fit, so it is redone in a larger one. */
static unsigned short* run_stage(sqlite3_context* ctx, struct Stage stage,
                                 const unsigned short* in, int n, int* count) {
  for (sqlite3_int64 room = 2 * (sqlite3_int64)n + 16; room <= 16 * (sqlite3_int64)n + 64;
       room *= 2) {
    if (too_long(ctx, room)) return NULL;
    unsigned short* out = (unsigned short*)sqlite3_malloc64((sqlite3_uint64)room * 2);
    if (out == NULL) {
      sqlite3_result_error_nomem(ctx);
      return NULL;
    }
    *count = TransformUnicodeString(stage.selector, stage.code, in, n, out, (long)room);
    if (*count >= 0) return out;
    sqlite3_free(out);
  }
  fail(ctx, "%s: the transformed text is too long", function_name(ctx));
  return NULL;
}

/* varnice_transform(text, 'name[:class],...') -> text */
static void transform_function(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  (void)argc;
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) return;
  /* The parsed list is kept for the statement; SQLite may drop it at any time,
   * so the call works on its own copy. */
  struct Plan plan;
  const struct Plan* cached = (const struct Plan*)sqlite3_get_auxdata(ctx, 1);
  if (cached != NULL) {
    plan = *cached;
  } else {
    const char* list = (const char*)sqlite3_value_text(argv[1]);
    if (list == NULL) {
      fail(ctx, "%s: the transform list is NULL", function_name(ctx));
      return;
    }
    if (!parse_plan(ctx, list, &plan)) return;
    struct Plan* keep = (struct Plan*)sqlite3_malloc(sizeof *keep);
    if (keep != NULL) {
      *keep = plan;
      sqlite3_set_auxdata(ctx, 1, keep, sqlite3_free);
    }
  }
  const unsigned short* text = (const unsigned short*)sqlite3_value_text16(argv[0]);
  const sqlite3_int64 length = sqlite3_value_bytes16(argv[0]) / 2;
  if (too_long(ctx, length)) return;
  if (length == 0) {
    sqlite3_result_text(ctx, "", 0, SQLITE_STATIC);
    return;
  }
  unsigned short* current = NULL;
  int n = (int)length;
  for (int i = 0; i < plan.count && n > 0; ++i) {
    int count = 0;
    unsigned short* next = run_stage(ctx, plan.stages[i], current != NULL ? current : text, n, &count);
    sqlite3_free(current);
    if (next == NULL) return;
    current = next;
    n = count;
  }
  sqlite3_result_text16(ctx, current, n * 2, sqlite3_free);
}

/* ---- Collations --------------------------------------------------------------- */

static int jis_collation(void* unused, int an, const void* a, int bn, const void* b) {
  (void)unused;
  return Varnice_compare_JIS_pl((const unsigned short*)a, (unsigned)an / 2,
                                (const unsigned short*)b, (unsigned)bn / 2);
}

static int raw_collation(void* unused, int an, const void* a, int bn, const void* b) {
  (void)unused;
  return Varnice_compare_raw_unicode_pl((const unsigned short*)a, (unsigned)an / 2,
                                        (const unsigned short*)b, (unsigned)bn / 2);
}

__attribute__((visibility("default"))) int sqlite3_varnice_init(sqlite3* db, char** error,
                                                                const sqlite3_api_routines* api) {
  SQLITE_EXTENSION_INIT2(api);
  (void)error;
  static const struct {
    const char* name;
    int args;
    void (*run)(sqlite3_context*, int, sqlite3_value**);
  } kFunctions[] = {
      {"varnice_decode", 2, decode_function},       {"varnice_decode", 3, decode_function},
      {"varnice_encode", 2, encode_function},       {"varnice_encode", 3, encode_function},
      {"varnice_convert", 3, convert_function},     {"varnice_convert", 4, convert_function},
      {"varnice_detect", 1, detect_function},       {"varnice_detect", 2, detect_function},
      {"varnice_transform", 2, transform_function},
  };
  const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  for (size_t i = 0; i < sizeof kFunctions / sizeof kFunctions[0]; ++i) {
    const int rc = sqlite3_create_function(db, kFunctions[i].name, kFunctions[i].args, flags,
                                           (void*)kFunctions[i].name, kFunctions[i].run, NULL, NULL);
    if (rc != SQLITE_OK) return rc;
  }
  int rc = sqlite3_create_collation(db, "JIS", SQLITE_UTF16_ALIGNED, NULL, jis_collation);
  if (rc == SQLITE_OK) {
    rc = sqlite3_create_collation(db, "UNICODE_RAW", SQLITE_UTF16_ALIGNED, NULL, raw_collation);
  }
  return rc;
}
