/* The C interface of Varnice: register encodings by name, convert between them
 * and UTF-16, compare UTF-16 strings and map case. Plain C; include from C or
 * C++. A UTF-16 code unit is an unsigned short everywhere. */
#ifndef VARNICE_CAPI_VARNICE_C_H_
#define VARNICE_CAPI_VARNICE_C_H_

#include <stddef.h>

#include "varnice/varnice_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The library's version text, "Version 2.1.0, 1999-05-10". */
VARNICE_API const char* VarniceVersionString(void);

/* ---- Checked conversion ------------------------------------------------------
 *
 * The functions to use for new code. Lengths are counted (size_t) and text may
 * hold NUL bytes; nothing is terminated. Every call fills a status record
 * (pass NULL if it is not wanted) and returns VARNICE_OK or a negative
 * VARNICE_ERROR_* code; no C++ exception ever leaves them. Input is read
 * strictly: each ill-formed sequence (the longest run of bytes that begins a
 * character but cannot be completed), a character cut off at the end of the
 * input, a character the target lacks and a lone UTF-16 surrogate is one
 * problem, and a byte that could begin a character is never lost with a
 * broken one. The error mode settles the problems of one call:
 *   VARNICE_REPLACE  U+FFFD for bad input; the target's substitute (its SUB
 *                    control, else "?") for characters it lacks, written as
 *                    a whole character of the target
 *   VARNICE_SKIP     both are left out
 *   VARNICE_STOP     convert up to the first problem and return
 *                    VARNICE_ERROR_PROBLEM; dst holds the text before it and
 *                    `consumed` is where it begins, so a caller can resume
 *   VARNICE_STRICT   as VARNICE_STOP, but the output is void (written is 0)
 * Preflight: with dst NULL or too small, the result is
 * VARNICE_ERROR_OUTPUT_TOO_SMALL, `needed` is the size the whole result takes
 * and `written` is 0 (dst may hold part of it). Encoding numbers come from
 * VarniceFindEncoding or VarniceRegisterEncoding; 0 and unregistered numbers
 * are VARNICE_ERROR_UNKNOWN_ENCODING. Once the encodings are registered, the
 * functions may run on any number of threads at once. */

#define VARNICE_OK 0
#define VARNICE_ERROR_BAD_ARGUMENT (-1)       /* a null pointer with a length, an unknown mode */
#define VARNICE_ERROR_UNKNOWN_ENCODING (-2)   /* unknown name, 0 or unregistered number */
#define VARNICE_ERROR_UNSUPPORTED (-3)        /* the encoding cannot be read, or written, this way */
#define VARNICE_ERROR_OUTPUT_TOO_SMALL (-4)   /* see `needed` */
#define VARNICE_ERROR_PROBLEM (-5)            /* VARNICE_STOP or VARNICE_STRICT met a problem */
#define VARNICE_ERROR_TOO_MANY_ENCODINGS (-6) /* 255 encodings are registered already */
#define VARNICE_ERROR_INTERNAL (-7)           /* out of memory, or a failure inside the library */

#define VARNICE_REPLACE 0
#define VARNICE_SKIP 1
#define VARNICE_STOP 2
#define VARNICE_STRICT 3

#define VARNICE_PROBLEM_NONE 0
#define VARNICE_PROBLEM_ILLEGAL_INPUT 1    /* an ill-formed byte sequence */
#define VARNICE_PROBLEM_INCOMPLETE_INPUT 2 /* a character cut off by the end of the input */
#define VARNICE_PROBLEM_UNMAPPABLE 3       /* a character the target encoding lacks */
#define VARNICE_PROBLEM_LONE_SURROGATE 4   /* a UTF-16 surrogate without its other half */

#define VARNICE_NO_OFFSET ((size_t)-1)

typedef struct VarniceStatus {
  size_t consumed;       /* input units read: bytes, or UTF-16 units for VarniceEncode */
  size_t written;        /* output units stored in dst */
  size_t needed;         /* output units the whole result takes */
  size_t replacements;   /* characters replaced or skipped */
  size_t problem_offset; /* input offset of the first problem; VARNICE_NO_OFFSET if none */
  int problem;           /* its kind, VARNICE_PROBLEM_* */
} VarniceStatus;

/* The number of the encoding called `name` (the names of VarniceRegisterEncoding,
 * plus "UTF-16", "UTF-16BE" and "UTF-16LE"), registering it if need be. Not
 * synchronised with VarniceRegisterEncoding: register before converting on
 * several threads. */
VARNICE_API int VarniceFindEncoding(const char* name, int* number);

/* srcLen bytes of encoding `number` to UTF-16 code units (dstCapacity of them). */
VARNICE_API int VarniceDecode(int number, const char* src, size_t srcLen, unsigned short* dst,
                              size_t dstCapacity, int mode, VarniceStatus* status);

/* srcLen UTF-16 code units to bytes of encoding `number` (dstCapacity of them). */
VARNICE_API int VarniceEncode(int number, const unsigned short* src, size_t srcLen, char* dst,
                              size_t dstCapacity, int mode, VarniceStatus* status);

/* srcLen bytes of encoding `fromNumber` to bytes of encoding `toNumber`.
 * Problem offsets are byte offsets in src, also for characters the target lacks. */
VARNICE_API int VarniceTranscode(int fromNumber, const char* src, size_t srcLen, int toNumber, char* dst,
                                 size_t dstCapacity, int mode, VarniceStatus* status);

/* A short English text for a VARNICE_OK or VARNICE_ERROR_* result. */
VARNICE_API const char* VarniceResultText(int result);

/* ---- Encoding registration and conversion -------------------------------
 *
 * Register each encoding once, by name, and refer to it afterwards by the
 * small data-encoding number returned (1-255). Number 0 is never handed out
 * and means ISO-8859-1 in every conversion function. Registration is not
 * synchronised: register every encoding before converting on several
 * threads; conversions may then run concurrently.
 *
 * Conversion problems are settled by the library's default behaviour: an
 * undecodable byte becomes U+FFFD, a character the target cannot represent
 * becomes the behaviour's substitute (by default the encoding's substitute
 * byte). An exception from the library, for example one thrown by a custom
 * behaviour, or from converting to an encoding that cannot be written (an
 * automatically detecting one), leaves the conversion functions towards the
 * caller, who must be C++ to catch it. None of them writes outside the buffer
 * it is given, except VarniceConvertToUnicode with a negative dstLen.
 *
 * Lengths are counts of units: bytes for encoded text, unsigned shorts for
 * UTF-16. A number that is not registered converts nothing: the result is
 * that of empty input. */

/* The number for the encoding called `name` (case and the characters "-",
 * "_" and space are ignored, so "shift jis" finds Shift_JIS); the same number
 * for every name of one encoding. 0 when the name is unknown, when 255
 * encodings are already registered ("Maximum number of data encodings (255)
 * exceeded." on standard error), or when the very first call found the
 * library incompatible with this interface (a message on standard error). */
VARNICE_API int VarniceRegisterEncoding(const char* name);

/* The encoding's name; "" for 0 and for numbers not registered. */
VARNICE_API const char* VarniceEncodingName(int number);

/* Bytes a space takes in the encoding (at most 2); 1 for number 0. Pass only
 * 0 or a registered number: others are not checked. */
VARNICE_API int VarniceEncodingNominalCharLength(int number);

/* Decodes srcLen bytes (-1 or any negative: up to the NUL) into UTF-16 at dst and returns the
 * number of code units before the terminating 0 unit it stores.
 *   dstLen > 0: at most dstLen - 1 units are stored, always followed by the
 *     terminator; text that does not fit is cut (possibly between the two
 *     units of a surrogate pair).
 *   dstLen == 0: nothing is converted or written; returns 0.
 *   dstLen < 0: dst is trusted to hold the whole result and its terminator;
 *     nothing is bounded.
 * Empty input stores just the terminator (when dstLen > 0) and returns 0. */
VARNICE_API int VarniceConvertToUnicode(int number, const char* src, int srcLen,
                                        unsigned short* dst, int dstLen);

/* Encodes srcLen UTF-16 code units (negative: up to the 0 unit) into at most dstLen
 * bytes at dst and returns the number of bytes written. Output that does not
 * fit is cut. The bytes are followed by a NUL only when the buffer has room
 * for it, so use the count. `pad` is accepted and has no effect: the result
 * is never padded. Empty input writes nothing and returns 0. */
VARNICE_API int VarniceConvertFromUnicode(int number, const unsigned short* src, int srcLen,
                                          char* dst, int dstLen, int pad);

/* Converts srcLen bytes of one registered encoding (0 or less: up to the NUL)
 * into at most dstLen bytes of another and returns the number of bytes
 * written, cut and terminated as VarniceConvertFromUnicode's. A source whose
 * first byte is 0 is empty whatever srcLen says: dst[0] becomes 0 (when
 * dstLen > 0) and the result is 0. `pad` has no effect. */
VARNICE_API int VarniceCopyDataBetweenEncodings(int fromNumber, const char* src, int srcLen,
                                                int toNumber, char* dst, int dstLen, int pad);

/* Character properties named by integer codes: 2-30 the categories (no code
 * for EnclosingMark), 31-33 the widths, 50-56 the groups AnyLetter ...
 * AnyDefinedCharacter, 57 kana, 257-283 the scripts, 4096 and above the
 * combinations made below; any other code accepts every character.
 * Combining is not locked: callers on several threads serialise it. */
VARNICE_API int TestUnicodeCharacter(unsigned short c, int code);
VARNICE_API int Combine2Charprops(int a, int b);
VARNICE_API int CombineNCharprops(const int* codes, int n); /* n = 0: the empty property */

/* Classification of UTF-16 code units by the library's character data: 1 or 0. */
VARNICE_API int qz_iswalnum(unsigned short c);
VARNICE_API int qz_iswalpha(unsigned short c);
VARNICE_API int qz_iswcntrl(unsigned short c);
VARNICE_API int qz_iswdigit(unsigned short c);
VARNICE_API int qz_iswgraph(unsigned short c);
VARNICE_API int qz_iswlower(unsigned short c);
VARNICE_API int qz_iswprint(unsigned short c);
VARNICE_API int qz_iswpunct(unsigned short c);
VARNICE_API int qz_iswspace(unsigned short c);
VARNICE_API int qz_iswupper(unsigned short c);
VARNICE_API int qz_iswxdigit(unsigned short c);
/* The number of any named character test, compared ignoring case; 0 if unknown. */
VARNICE_API int qz_wctype(const char* name);
VARNICE_API int qz_iswctype(unsigned short c, int type);
VARNICE_API unsigned short qz_towlower(unsigned short c);
VARNICE_API unsigned short qz_towupper(unsigned short c);
/* "tolower" 1, "toupper" 2, "ToUppercaseTransform" 3, "ToLowercaseTransform" 4,
 * "ToFullwidthTransform" 5, "ToHalfwidthTransform" 6, "ToKatakanaTransform" 7,
 * "ToHiraganaTransform" 8, ignoring case; 0 for any other name. */
VARNICE_API int qz_wctrans(const char* name);
/* c mapped by qz_wctrans's mapping; an unknown mapping returns c. */
VARNICE_API unsigned short qz_towctrans(unsigned short c, int mapping);

/* ---- Transforms ------------------------------------------------------------
 *
 * Runs transform `selector` over `sourceLength` UTF-16 units at `source`
 * (negative: up to the first 0 unit) into `destination`, which holds
 * `destinationCapacity` units. Only characters that pass the test of
 * `propertyCode` (as for TestUnicodeCharacter) are changed. Returns the number
 * of units written and terminates them with a 0 unit; returns -1 when the
 * capacity is 0 or less (nothing written), for an unknown selector (nothing
 * written), and when the result did not fit (the units that fit, the last one
 * replaced by the terminator). Empty input gives 0 and a terminator whatever
 * the selector. Selectors:
 *   1 katakana        2 hiragana         3 decompose       4 compose
 *   5 halfwidth       6 fullwidth        7 kana to Hepburn romaji
 *   8 kana to Kunrei-shiki romaji        9 romaji to katakana
 *  10 romaji to hiragana                11 digits to Latin 0-9
 *  12 canonical forms 13 filter (drop)  14 select (keep)
 *  15 halfwidth katakana to fullwidth   16 fullwidth katakana to halfwidth
 *  17 upper case     18 lower case      19 spacing marks  20 combining marks
 *  21 SGML entities  22 CR  23 LF  24 CR LF  25 line separator
 *  26 paragraph separator  27 traditional Chinese  28 simplified Chinese
 * A selector whose transform this build lacks answers like an unknown one. */
VARNICE_API int TransformUnicodeString(int selector, int propertyCode,
                                       const unsigned short* source, long sourceLength,
                                       unsigned short* destination, long destinationCapacity);

/* Comparison of UTF-16 strings for sorting: negative, 0 or positive. raw_unicode
 * orders by code unit; JIS by EUC-JP code, with every character that EUC-JP
 * lacks equal to the others and placed after JIS X 0208. _sz take
 * NUL-terminated strings, _pl counted ones. */
VARNICE_API int Varnice_compare_raw_unicode_sz(const unsigned short* a, const unsigned short* b);
VARNICE_API int Varnice_compare_raw_unicode_pl(const unsigned short* a, unsigned int aLen,
                                               const unsigned short* b, unsigned int bLen);
VARNICE_API int Varnice_compare_JIS_sz(const unsigned short* a, const unsigned short* b);
VARNICE_API int Varnice_compare_JIS_pl(const unsigned short* a, unsigned int aLen,
                                       const unsigned short* b, unsigned int bLen);

/* The simple upper-case form of ch. Only the pages that hold upper-case
 * letters are in the table: a character of any other page (kana, ideographs)
 * gives U+FFFD, and so does U+0000. */
VARNICE_API unsigned short UCS2toupper(unsigned short ch);
/* The upper-case form of the UTF-8 character at p, as its UTF-8 bytes packed
 * into a 32-bit word in memory order (copy the word's first bytes out). A
 * character without an upper-case form comes back as its own bytes. A byte
 * that cannot begin a sequence (0x80-0xBF, or 0xF8-0xFF, whose five- and
 * six-byte forms would not fit) comes back alone, as does a lead byte whose
 * announced trail bytes are not all 0x80-0xBF; so at most the bytes of one
 * well-formed sequence are read. A character above U+FFFF comes back as its
 * own bytes, a four-byte sequence beyond U+10FFFF as the bytes of U+FFFD. */
VARNICE_API unsigned long UTF8toupper(const unsigned char* p);

#ifdef __cplusplus
}
#endif

#endif /* VARNICE_CAPI_VARNICE_C_H_ */
