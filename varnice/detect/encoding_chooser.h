// EncodingChooser: decides which of up to eight candidate encodings some
// unlabelled bytes are in, by letting each candidate's detector score them.
//
//   EncodingChooser chooser(source, candidates, 3, allocator);
//   const ExternalEncoding* e = nullptr;
//   while (e == nullptr && more input) e = chooser.Scan(b, end);
//   if (e == nullptr) e = chooser.Guess();   // no more input
//
// Scan decides as soon as exactly one detector has the best score; Guess
// decides at end of input, breaking ties by the detectors' tie-breakers and
// then by candidate order. The chooser keeps a copy of every byte it has
// examined (Examined()) so that the chosen encoding can read them again.
//
// With the behaviour's DisplayAutoDetectMessages() on, each decision prints
// the choice and every detector's score to standard error.
#ifndef VARNICE_DETECT_ENCODING_CHOOSER_H_
#define VARNICE_DETECT_ENCODING_CHOOSER_H_

#include "varnice/encoding/actors/unicode_lib_actor.h"
#include "varnice/varnice_export.h"

class ExternalEncoding;
class ExternalEncodingDetector;

class VARNICE_API EncodingChooser : public virtual UnicodeLibActor {
 public:
  static constexpr int kMaxCandidates = 8;

  // Takes the actor's behaviour and a detector from each candidate, made in
  // the allocator. Only the first kMaxCandidates candidates take part; a
  // candidate without a detector is never chosen by score. The first
  // candidate is the guess until a detector does better.
  EncodingChooser(const UnicodeLibActor& actor, const ExternalEncoding* const* candidates, int count,
                  UnicodeLibAllocator& allocator);
  // The same, with each candidate's detector made by `makeDetector` instead
  // of the candidate's own CreateEncodingDetector (a null factory means the
  // candidates' own). Lets a detecting encoding score its candidates with
  // detectors of its choosing.
  using DetectorFactory = ExternalEncodingDetector* (*)(const ExternalEncoding&, UnicodeLibAllocator&);
  EncodingChooser(const UnicodeLibActor& actor, const ExternalEncoding* const* candidates, int count,
                  UnicodeLibAllocator& allocator, DetectorFactory makeDetector);
  ~EncodingChooser() override;
  EncodingChooser(const EncodingChooser&) = delete;
  EncodingChooser& operator=(const EncodingChooser&) = delete;

  // Examines [begin, end) after everything examined so far; the chosen
  // encoding when one detector alone has the best score, else null.
  const ExternalEncoding* Scan(const char* begin, const char* end);
  // The decision at end of input; null only when there are no candidates.
  const ExternalEncoding* Guess();

  // Every byte examined so far, in order.
  const char* Examined() const { return bytes_; }
  long ExaminedCount() const { return examined_; }
  int CandidateCount() const { return count_; }
  // The detector of candidate i (null when that candidate has none).
  const ExternalEncodingDetector* Detector(int i) const { return detectors_[i]; }

 private:
  // Sets `best` to the best score; returns how many detectors share it and
  // moves the guess to the first of them that beats the lowest int.
  int FindBestScore(int& best);
  void PrintScores(const char* verb, bool withTieBreakers) const;

  int count_;
  ExternalEncodingDetector* detectors_[kMaxCandidates] = {};
  long examined_ = 0;
  char* bytes_ = nullptr;
  const ExternalEncoding* guess_;
  long capacity_ = 0;  // of bytes_; grows by doubling so long scans stay linear
};

#endif  // VARNICE_DETECT_ENCODING_CHOOSER_H_
