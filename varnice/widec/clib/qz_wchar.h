/* The library's wide-character C library: the C string, memory, number, time,
 * file and formatted input/output functions over UTF-16 code units. The wide
 * character is the unsigned 16-bit code unit on every platform, whatever the
 * platform's wchar_t. Plain C; include from C or C++.
 *
 * Each function behaves as the C function whose name follows the prefix qz_,
 * with unsigned short for wchar_t, except where a comment here says otherwise.
 * The classification and case functions (qz_iswalpha, qz_towupper, ...) are
 * declared in varnice/capi/varnice_c.h, included here.
 *
 * Threads: the string, memory, number and time functions touch only their
 * arguments, and qz_wcstok keeps its position per thread. The file and locale
 * functions share unlocked process-wide state (a table of per-file records,
 * the current external encoding, static buffers): call them from one thread
 * at a time. */
#ifndef VARNICE_WIDEC_CLIB_QZ_WCHAR_H_
#define VARNICE_WIDEC_CLIB_QZ_WCHAR_H_

#include <stdarg.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdio.h>
#include <time.h>

#include "varnice/capi/varnice_c.h"
#include "varnice/varnice_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What the file functions read and return: a code unit, or QZ_WEOF. */
typedef unsigned int qz_wint_t;
#define QZ_WEOF ((qz_wint_t)-1)

/* ---- Strings and memory ----------------------------------------------------
 * Counts n are code units. Comparisons order units as unsigned 16-bit values
 * and return exactly -1, 0 or 1. */
VARNICE_API unsigned short* qz_wcscpy(unsigned short* dst, const unsigned short* src);
/* Copies n units, padding with 0 after the end of src; no terminator when src
 * has n units or more. */
VARNICE_API unsigned short* qz_wcsncpy(unsigned short* dst, const unsigned short* src, size_t n);
VARNICE_API unsigned short* qz_wcscat(unsigned short* dst, const unsigned short* src);
/* Appends at most n units of src, then a 0. */
VARNICE_API unsigned short* qz_wcsncat(unsigned short* dst, const unsigned short* src, size_t n);
VARNICE_API int qz_wcscmp(const unsigned short* a, const unsigned short* b);
VARNICE_API int qz_wcsncmp(const unsigned short* a, const unsigned short* b, size_t n);
/* c = 0 finds the terminator. */
VARNICE_API unsigned short* qz_wcschr(const unsigned short* s, unsigned short c);
VARNICE_API unsigned short* qz_wcsrchr(const unsigned short* s, unsigned short c);
VARNICE_API size_t qz_wcscspn(const unsigned short* s, const unsigned short* set);
VARNICE_API size_t qz_wcsspn(const unsigned short* s, const unsigned short* set);
VARNICE_API unsigned short* qz_wcspbrk(const unsigned short* s, const unsigned short* set);
/* An empty haystack gives null, even for an empty needle; a non-empty haystack
 * with an empty needle gives the haystack. */
VARNICE_API unsigned short* qz_wcsstr(const unsigned short* haystack, const unsigned short* needle);
/* Two arguments, as strtok; the position to continue from is kept per thread,
 * so threads may tokenise different strings at once. */
VARNICE_API unsigned short* qz_wcstok(unsigned short* s, const unsigned short* delimiters);
VARNICE_API size_t qz_wcslen(const unsigned short* s);
VARNICE_API unsigned short* qz_wmemchr(const unsigned short* s, unsigned short c, size_t n);
VARNICE_API int qz_wmemcmp(const unsigned short* a, const unsigned short* b, size_t n);
VARNICE_API unsigned short* qz_wmemcpy(unsigned short* dst, const unsigned short* src, size_t n);
VARNICE_API unsigned short* qz_wmemmove(unsigned short* dst, const unsigned short* src, size_t n);
VARNICE_API unsigned short* qz_wmemset(unsigned short* s, unsigned short c, size_t n);
/* No locale collation: the same as qz_wcscmp. */
VARNICE_API int qz_wcscoll(const unsigned short* a, const unsigned short* b);
/* No transformation: for n > 0, copies exactly n units as qz_wcsncpy does
 * (no terminator when src has n units or more), then returns the length of the
 * string now at dst. For n = 0 nothing is copied and the result is the length
 * of the string dst already holds, not of src. */
VARNICE_API size_t qz_wcsxfrm(unsigned short* dst, const unsigned short* src, size_t n);

/* ---- Numbers ----------------------------------------------------------------
 * Leading white space (qz_iswspace) is skipped; then the longest run of
 * candidate characters, at most 127, is narrowed to bytes and converted by the
 * C library's strtod / strtol / strtoul. Candidates for qz_wcstod are
 * "+-0123456789.eE" only (no "inf", "nan" or hexadecimal floating point); for
 * the integers, '+', '-' and ASCII letters and digits. *end (when end is not
 * null) is set past the characters converted; when nothing converts it is set
 * past the leading white space, not back to s. */
VARNICE_API double qz_wcstod(const unsigned short* s, unsigned short** end);
VARNICE_API long qz_wcstol(const unsigned short* s, unsigned short** end, int base);
VARNICE_API unsigned long qz_wcstoul(const unsigned short* s, unsigned short** end, int base);

/* ---- Time -------------------------------------------------------------------
 * Each "%x" with an ASCII x is expanded by the C library's strftime and its
 * bytes widened with sign extension: a byte 0x80-0xFF becomes 0xFF80-0xFFFF.
 * '%' before a unit above 0x7F is dropped and the unit copied. Writes at most
 * max - 1 units and a terminator, and returns the units before it; returns 0
 * when the result does not fit, and also when any one conversion expands to
 * the empty string. */
VARNICE_API size_t qz_wcsftime(unsigned short* dst, size_t max, const unsigned short* format,
                               const struct tm* tm);

/* ---- Files ------------------------------------------------------------------
 * Raw units on any C stream, in the host's byte order, with no conversion:
 * reads take 2 bytes per unit, qz_fputws writes 2 bytes per unit, but
 * qz_fputwc writes its argument as a 4-byte value. The library keeps a record
 * per FILE it has seen (push-back and orientation), never freed; a new FILE at
 * the address of a closed one finds the old record, so finish with a file's
 * push-back before closing it. Growing that table can throw
 * qz_sw_out_of_memory to a C++ caller. */
VARNICE_API qz_wint_t qz_fgetwc(FILE* file);  /* QZ_WEOF when 2 bytes cannot be read */
VARNICE_API qz_wint_t qz_getwc(FILE* file);
VARNICE_API qz_wint_t qz_getwchar(void);
/* One unit of push-back: QZ_WEOF when c is QZ_WEOF or a unit is already
 * pushed back. Clears the file's error and end-of-file indicators. */
VARNICE_API qz_wint_t qz_ungetwc(qz_wint_t c, FILE* file);
/* At end of file with nothing read, returns buf holding the empty string
 * rather than null; null only on a read error. */
VARNICE_API unsigned short* qz_fgetws(unsigned short* buf, int n, FILE* file);
VARNICE_API qz_wint_t qz_fputwc(qz_wint_t c, FILE* file);  /* c, or QZ_WEOF */
VARNICE_API qz_wint_t qz_putwc(qz_wint_t c, FILE* file);
VARNICE_API qz_wint_t qz_putwchar(qz_wint_t c);
/* Units written (no terminator), or -1 on a short write. */
VARNICE_API int qz_fputws(const unsigned short* s, FILE* file);
/* mode > 0 marks the file wide, mode < 0 not wide (both drop a pushed-back
 * unit), 0 only asks. Returns 1 for a wide file and -1 otherwise, never 0.
 * The mark changes nothing else. */
VARNICE_API int qz_fwide(FILE* file, int mode);

/* ---- Formatted output and input ---------------------------------------------
 * Conversions as C's, with the library's wide character: %ls and %lc take
 * 16-bit text (const unsigned short*, or unsigned short* for input) and a code
 * unit; %s and %c take 8-bit text and bytes, widened unit for unit on output,
 * and on input narrowed (units above 0xFF become '?'). */

/* Writes at most n units, the terminator included. Returns the units before
 * the terminator, or -1 when they and the terminator do not fit in n; then the
 * units that fit are kept, terminated at dst[n - 1] (nothing at all for n = 0). */
VARNICE_API int qz_swprintf(unsigned short* dst, size_t n, const unsigned short* format, ...);
VARNICE_API int qz_vswprintf(unsigned short* dst, size_t n, const unsigned short* format,
                             va_list args);
/* Raw 2-byte units, as qz_fputws writes them. */
VARNICE_API int qz_fwprintf(FILE* file, const unsigned short* format, ...);
VARNICE_API int qz_vfwprintf(FILE* file, const unsigned short* format, va_list args);
VARNICE_API int qz_wprintf(const unsigned short* format, ...);
VARNICE_API int qz_vwprintf(const unsigned short* format, va_list args);

/* Reads until the first mismatch and returns the number of assignments; EOF
 * (-1) when the input ends before the first assignment. White space is what
 * qz_iswspace accepts. */
VARNICE_API int qz_swscanf(const unsigned short* src, const unsigned short* format, ...);
VARNICE_API int qz_vswscanf(const unsigned short* src, const unsigned short* format, va_list args);
/* Raw 2-byte units through qz_fgetwc; the one unit read beyond the input used
 * is pushed back with qz_ungetwc. */
VARNICE_API int qz_fwscanf(FILE* file, const unsigned short* format, ...);
VARNICE_API int qz_vfwscanf(FILE* file, const unsigned short* format, va_list args);
VARNICE_API int qz_wscanf(const unsigned short* format, ...);
VARNICE_API int qz_vwscanf(const unsigned short* format, va_list args);

/* ---- Locale -----------------------------------------------------------------
 * The locale chooses the external encoding the library's text I/O uses, not a
 * C locale. Categories 1 and 7 select the encoding: a null locale asks for the
 * current encoding's name; "" and "C" mean Latin-1; any other text is an
 * encoding name. A known name makes that encoding current and returns the name
 * of the previous one; an unknown name changes nothing and returns null. Other
 * categories accept only null, "" and "C" (returning "C"); anything else gives
 * null. The text returned lies in a static buffer. */
VARNICE_API char* qz_setlocale(int category, const char* locale);

struct qz_lconv {
  char* decimal_point;  /* "." */
  char* thousands_sep;  /* "" */
  char* grouping;       /* "" */
  char* encoding_name;  /* the current external encoding's name */
};
/* A static record; encoding_name is refreshed on every call. */
VARNICE_API struct qz_lconv* qz_localeconv(void);

/* ---- Process ----------------------------------------------------------------*/
/* The process's user CPU time in seconds. */
VARNICE_API double GetCPUTime(void);
/* Files need no text or binary mode here: does nothing and returns true. */
VARNICE_API bool PutFileIntoBinaryMode(FILE* file);

#ifdef __cplusplus
}
#endif

#endif /* VARNICE_WIDEC_CLIB_QZ_WCHAR_H_ */
