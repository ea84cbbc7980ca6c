// ExternalEncodingDetector: scores how well unlabelled bytes fit one candidate
// encoding. Automatic detection feeds every candidate's detector the same
// bytes and picks the best score; the tie-breaker decides between equals.
#ifndef VARNICE_ENCODING_EXTERNAL_ENCODING_DETECTOR_H_
#define VARNICE_ENCODING_EXTERNAL_ENCODING_DETECTOR_H_

#include "varnice/encoding/actors/unicode_lib_allocator.h"
#include "varnice/varnice_export.h"

class ExternalEncoding;

class VARNICE_API ExternalEncodingDetector : public UnicodeLibPlaceable {
 public:
  ExternalEncodingDetector(const ExternalEncoding& encoding, int score, int tieBreaker)
      : encoding_(encoding), score_(score), tieBreaker_(tieBreaker) {}
  ~ExternalEncodingDetector() override;

  // Scores the new bytes [begin, end); bytes from bufferStart on are those
  // seen before and may be looked back at.
  virtual void Scan(const char* bufferStart, const char* begin, const char* end) = 0;
  // No more input: account for anything left pending. Does nothing here.
  virtual void Finish(const char* bufferStart, const char* end);

  const ExternalEncoding& Encoding() const { return encoding_; }
  // Higher is better.
  int Score() const { return score_; }
  int TieBreaker() const { return tieBreaker_; }

 protected:
  const ExternalEncoding& encoding_;
  int score_;
  int tieBreaker_;
};

#endif  // VARNICE_ENCODING_EXTERNAL_ENCODING_DETECTOR_H_
