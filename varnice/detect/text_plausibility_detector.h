// TextPlausibilityDetector: scores a candidate encoding by how much the text
// it reads looks like something a person wrote, not by errors alone.
//
// Counting only decoding errors cannot tell short European text from
// Shift_JIS (an accented letter followed by an ASCII letter is a valid
// Shift_JIS pair), nor UTF-7 from ASCII (UTF-7 is ASCII). So the bytes are
// decoded with the candidate and every character read costs what a
// character of its kind costs in real text: nothing for ASCII, little for
// kana, common (JIS level 1) kanji and accented Latin letters, more for rare
// (level 2) kanji, halfwidth katakana and symbols, much more for controls,
// private-use characters and decoding errors; mixing Japanese with Latin
// letters costs extra. The score is minus the total, so text every
// candidate reads the same (ASCII) ties at 0 and leaves the choice open.
//
// Two ASCII patterns cost ASCII-based readers that do not decode them:
// a "+" followed by base64 letters (UTF-7's encoded runs) and the bytes
// after a JIS shift escape (ISO-2022-JP's two-byte text); the UTF-7 reader
// in turn pays for a "+" run that cannot be UTF-7.
//
//   AutoDetectEncoding* auto = ...;
//   auto->SetDetectorFactory(TextPlausibilityDetector::Create);
//
// Scanning is linear: one pass of the candidate's decoder and one table
// lookup per character. A candidate that has found one byte in sixteen
// unreadable after its first kGiveUpAfter bytes cannot win against any
// reading of real text; it stops decoding and charges each later byte at
// the cost per byte it had reached, which keeps ties on long text cheap.
#ifndef VARNICE_DETECT_TEXT_PLAUSIBILITY_DETECTOR_H_
#define VARNICE_DETECT_TEXT_PLAUSIBILITY_DETECTOR_H_

#include "varnice/encoding/external_encoding_detector.h"
#include "varnice/varnice_export.h"

class CharSink;
class UnicodeLibAllocator;

class VARNICE_API TextPlausibilityDetector : public ExternalEncodingDetector {
 public:
  // The kinds of character whose counts make up the score, cheapest first.
  enum Kind {
    kAscii,          // ASCII letters, digits, punctuation, white space
    kKana,           // hiragana, katakana
    kJapanesePunct,  // CJK punctuation, fullwidth forms
    kKanjiCommon,    // JIS level 1
    kLatin,          // accented Latin letters
    kLatinSign,      // Latin-1 signs: ± ° £ ¿ « » and the like
    kPunctuation,    // typographic quotes, dashes, euro sign
    kHalfwidthKana,
    kSymbol,         // Greek, Cyrillic, arrows, box drawing, circled digits
    kKanjiRare,      // JIS level 2
    kKanjiOutsideJis,
    kOther,          // any other script
    kMixedScript,    // Japanese next to a Latin letter (counted per boundary)
    kLatinPair,      // two accented letters or Latin-1 signs in a row
    kLoneJapanese,   // one Japanese character alone among non-Japanese ones
    kHalfwidthRun,   // halfwidth katakana starting a run (they come in words)
    kEncodedLooking, // ASCII that another encoding would decode (per byte)
    kControl,        // C0 (other than white space) and C1 controls
    kPrivateUse,
    kError,          // bytes the candidate cannot read
    kKindCount
  };
  static const char* KindName(Kind kind);
  static int KindCost(Kind kind);

  // The candidate's own detector for UTF-16 forms (a byte-order mark decides
  // those), a TextPlausibilityDetector for every other encoding. Fits
  // EncodingChooser::DetectorFactory.
  static ExternalEncodingDetector* Create(const ExternalEncoding& encoding, UnicodeLibAllocator& allocator);

  TextPlausibilityDetector(const ExternalEncoding& encoding, UnicodeLibAllocator& allocator);
  ~TextPlausibilityDetector() override;
  TextPlausibilityDetector(const TextPlausibilityDetector&) = delete;
  TextPlausibilityDetector& operator=(const TextPlausibilityDetector&) = delete;

  void Scan(const char* bufferStart, const char* begin, const char* end) override;
  void Finish(const char* bufferStart, const char* end) override;

  // How many of each kind were seen; the score is minus the sum of count
  // times cost (never as low as the lowest int).
  long Count(Kind kind) const;
  long long Cost() const;
  static constexpr long kGiveUpAfter = 4096;
  // Bytes read before giving up as above, or 0 while still reading.
  long long GaveUpAfter() const { return gaveUpAfter_; }
  // Bytes charged since then without being read.
  long long BytesSkipped() const { return bytesSkipped_; }

  // Scores decoded text; the reading stage of the detector, public so that
  // it can be tested and benchmarked on its own.
  class Scorer {
   public:
    void Add(const unsigned short* begin, const unsigned short* end);
    long counts[kKindCount] = {};
    long long cost = 0;

   private:
    unsigned char previous_ = 0;  // the last unit's group and Latin flag
    unsigned char beforePrevious_ = 0;
    bool previousHalfwidth_ = false;
  };

 private:
  class Reader;
  void ScanAsciiPatterns(const unsigned char* begin, const unsigned char* end);
  void EndPlusRun(int terminator);
  void Update();

  Reader* reader_;
  CharSink* decoder_;
  bool asciiBased_;
  bool isUtf7_;
  bool isIso2022_;
  // ASCII pattern state: length of the "+" run (-1 outside), escape bytes
  // seen (0 outside), whether a JIS shift is in force.
  int plusRun_ = -1;
  int escape_ = 0;
  unsigned char escapeBytes_[2] = {};
  bool shifted_ = false;
  long long bytesRead_ = 0;
  long long gaveUpAfter_ = 0;
  long long costWhenGivingUp_ = 0;
  long long bytesSkipped_ = 0;
};

#endif  // VARNICE_DETECT_TEXT_PLAUSIBILITY_DETECTOR_H_
