// AutoDetectEncoding: an input-only encoding that reads bytes in whichever of
// its sub-encodings they fit best (see EncodingChooser). Nothing can be
// written in it: IsValidForOutput() is false and the from-Unicode factories
// return null.
//
// The library registers two, made by the catalogue. Both score their
// candidates with TextPlausibilityDetector (SetDetectorFactory) instead of the
// candidates' own detectors, which count only errors and so cannot tell a
// short Latin-1 word from a Shift_JIS kanji, nor UTF-7 from ASCII.
//
//   "AutoDetect" (nickname "auto", number 4) tries, in this order:
//     UCS-2      keeps its own detector: only text that starts with a
//                byte-order mark scores at all, and then it beats the rest;
//     UTF-8      first of the ASCII readers, so that ASCII, which all of them
//                read alike, is called UTF-8;
//     UTF-7      wins when its "+" runs decode to plausible text;
//     ISO-2022-JP  wins when its JIS shifts read as Japanese;
//     EUC-JP, Shift_JIS, CP932
//                Shift_JIS before CP932, so that text both read alike keeps
//                the name Shift_JIS; text with backslashes or tildes (which
//                Shift_JIS reads as yen and overline) or with NEC and IBM
//                extensions reads better as CP932 and goes there;
//     CP1252     the Western single-byte page, last.
//
//   "AutoDetectJapanese" (nickname "auto-ja", number 5): the same without
//   the Western page, for text known to be Japanese.
#ifndef VARNICE_DETECT_AUTO_DETECT_ENCODING_H_
#define VARNICE_DETECT_AUTO_DETECT_ENCODING_H_

#include <vector>

#include "varnice/detect/encoding_chooser.h"
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

  // Scores the candidates with detectors made by `makeDetector` rather than
  // their own (null, the default, means their own).
  void SetDetectorFactory(EncodingChooser::DetectorFactory makeDetector) { makeDetector_ = makeDetector; }
  EncodingChooser::DetectorFactory DetectorFactory() const { return makeDetector_; }

  // The catalogue's two, made on first call (see above).
  static AutoDetectEncoding* General();
  static AutoDetectEncoding* Japanese();

 private:
  std::vector<const ExternalEncoding*> subEncodings_;
  EncodingChooser::DetectorFactory makeDetector_ = nullptr;
};

#endif  // VARNICE_DETECT_AUTO_DETECT_ENCODING_H_
