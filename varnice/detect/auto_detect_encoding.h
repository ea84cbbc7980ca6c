// AutoDetectEncoding: an input-only encoding that reads bytes in whichever of
// its sub-encodings they fit best (see EncodingChooser). Nothing can be
// written in it: IsValidForOutput() is false and the from-Unicode factories
// return null.
//
// The library registers two, made by the catalogue:
//
//   "AutoDetect" (nickname "auto", number 4) tries, in this order:
//     UCS-2      only text that starts with a byte-order mark scores at all,
//                and then it beats everything else at once;
//     UTF-8      before the legacy pages so that ASCII, which every candidate
//                reads, is called UTF-8, and because UTF-8 with non-ASCII
//                text rarely survives as anything else;
//     ISO-2022-JP  the only candidate that gains points (for its escapes);
//                any byte above 0x7F costs it, so it wins only 7-bit text
//                that really shifts into JIS;
//     EUC-JP     before Shift_JIS: EUC kana read as Shift_JIS fall into the
//                halfwidth katakana range, which costs Shift_JIS its
//                tie-breaker, while Shift_JIS text is rarely valid EUC-JP;
//     Shift_JIS  then CP932, its Windows superset: plain Shift_JIS text is
//                named as such, text with NEC or IBM extensions (circled
//                digits, Roman numerals) fails Shift_JIS and goes to CP932;
//     CP1252     last, as the Western single-byte page: it reads every
//                byte, so it takes whatever the others reject.
//   Known weakness: Shift_JIS or EUC-JP text with halfwidth katakana and
//   nothing that CP1252 rejects ties with CP1252 on score and loses on the
//   tie-breaker. Use "auto-ja" for text known to be Japanese.
//
//   "AutoDetectJapanese" (nickname "auto-ja", number 5): the same without
//   the Western page, for text known to be Japanese.
#ifndef VARNICE_DETECT_AUTO_DETECT_ENCODING_H_
#define VARNICE_DETECT_AUTO_DETECT_ENCODING_H_

#include <vector>

#include "varnice/encoding/external_encoding.h"
#include "varnice/varnice_export.h"

class VARNICE_API AutoDetectEncoding : public ExternalEncoding {
 public:
  // Registers the encoding (codePage as for any external encoding); it has no
  // sub-encodings yet.
  AutoDetectEncoding(TextEncodingID id, const char** names, const char* mimeName, unsigned int codePage);
  ~AutoDetectEncoding();

  // True when every sub-encoding is (so true with none).
  bool IsTextModeSafe() const override;
  bool IsValidForOutput() const override;
  ToUnicodeSource* CreateCharSourceToUnicode(CharSource& in, UnicodeLibAllocator& a) const override;
  // Null: nothing is written in an auto-detecting encoding.
  CharSource* CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const override;
  Char16Sink* CreateCharSinkFromUnicode(CharSink& out, UnicodeLibAllocator& a) const override;
  CharSink* CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const override;

  // Appends a candidate; candidates are tried, and win ties, in this order.
  // At most eight take part.
  void RegisterSubEncoding(const ExternalEncoding& encoding);
  int CountSubEncodings() const { return static_cast<int>(subEncodings_.size()); }
  const ExternalEncoding* const* SubEncodings() const { return subEncodings_.data(); }

  // The catalogue's two, made on first call (see above).
  static AutoDetectEncoding* General();
  static AutoDetectEncoding* Japanese();

 private:
  std::vector<const ExternalEncoding*> subEncodings_;
};

#endif  // VARNICE_DETECT_AUTO_DETECT_ENCODING_H_
