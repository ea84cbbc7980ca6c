// The C conversion functions' short cut for the table-driven code pages.
//
// The general route builds a stream pipeline per call and pushes the text
// through intermediate buffers, asking a byte budget before every character.
// For a plain code page under the plain default policy none of that can
// change the result, so these loops run the code-page engine straight over
// the caller's buffers instead. They are taken only when the outcome is known
// without running the pipeline:
//   - the encoding is exactly MBCSEncoding (a subclass may convert otherwise),
//     whose converters report nothing but "no character" (to Unicode) and
//     "not in the repertoire" (from Unicode) and write nothing at the end;
//   - the default behaviour is exactly UnicodeLibBehavior, whose substitutes
//     (U+FFFD; the external substitute or the page's substitute byte) have no
//     side effects, so conversion may stop as soon as the buffer is full.
#ifndef VARNICE_CAPI_DIRECT_CODE_PAGE_H_
#define VARNICE_CAPI_DIRECT_CODE_PAGE_H_

class ExternalEncoding;
class MBCSEncoding;
class UnicodeLibBehavior;

namespace varnice::internal {

class CodePagePlaneTable;
class CodePageDeltaTable;

// A code page to convert directly, with its from-Unicode table's stored shape
// recognised once (at registration) rather than on every call.
struct DirectCodePage {
  const MBCSEncoding* page = nullptr;
  const CodePagePlaneTable* plane = nullptr;
  const CodePageDeltaTable* delta = nullptr;

  // Empty unless `encoding` is a plain code page.
  static DirectCodePage Of(const ExternalEncoding* encoding);
  explicit operator bool() const { return page != nullptr; }
};

// The default behaviour if it is a plain UnicodeLibBehavior, else null.
const UnicodeLibBehavior* PlainDefaultBehavior();

// Converts [src, src + length) into at most `room` (> 0) units at dst and
// returns how many were written; stops once dst is full. Writes no terminator.
long DecodeDirect(const DirectCodePage& cp, const UnicodeLibBehavior& behavior, const char* src, long length,
                  unsigned short* dst, long room);

// Converts [src, src + length) into at most `room` (> 0) bytes at dst and
// returns how many were written. Only whole characters are written, except
// that a substitute string is cut at the end of the room, as the general
// route's sink cuts it. Writes no terminator.
long EncodeDirect(const DirectCodePage& cp, const UnicodeLibBehavior& behavior, const unsigned short* src,
                  long length, char* dst, long room);

}  // namespace varnice::internal

#endif  // VARNICE_CAPI_DIRECT_CODE_PAGE_H_
