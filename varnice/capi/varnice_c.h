/* The C interface of Varnice: register encodings by name, convert between them
 * and UTF-16, compare UTF-16 strings and map case. Plain C; include from C or
 * C++. A UTF-16 code unit is an unsigned short everywhere. */
#ifndef VARNICE_CAPI_VARNICE_C_H_
#define VARNICE_CAPI_VARNICE_C_H_

#include "varnice/varnice_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The library's version text, "Version 2.1.0, 1999-05-10". */
VARNICE_API const char* VarniceVersionString(void);

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
