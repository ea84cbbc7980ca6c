// AutoDetectSink: takes bytes in an unknown encoding and writes their UTF-16
// into a target sink. Until its EncodingChooser decides, the bytes are only
// held (nothing reaches the target); once it decides, or at Flush when no
// detector could, everything held is converted with the chosen encoding and
// later bytes go straight through it.
#ifndef VARNICE_DETECT_AUTO_DETECT_SINK_H_
#define VARNICE_DETECT_AUTO_DETECT_SINK_H_

#include "varnice/detect/encoding_chooser.h"
#include "varnice/stream/char_sink.h"
#include "varnice/varnice_export.h"

class Char16Sink;
class ExternalEncoding;

class VARNICE_API AutoDetectSink : public CharSink {
 public:
  // The behaviour is the target's. The target is not owned; the converting
  // stage is made in `allocator`.
  AutoDetectSink(Char16Sink& target, const ExternalEncoding* const* candidates, int count,
                 UnicodeLibAllocator& allocator,
                 EncodingChooser::DetectorFactory makeDetector = nullptr);
  AutoDetectSink(const AutoDetectSink&) = delete;
  AutoDetectSink& operator=(const AutoDetectSink&) = delete;

  void Flush() override;
  // A null end means NUL-terminated text.
  void PutBuffer(const char* begin, const char* end) override;
  ~AutoDetectSink() override;
  void SetBehavior(UnicodeLibBehavior* behavior) override;

  // Null until the choice is made.
  const ExternalEncoding* ChosenEncoding() const { return chosen_; }
  const EncodingChooser& Chooser() const { return chooser_; }

 private:
  // Builds the chosen encoding's sink and hands it everything examined.
  void Choose(const ExternalEncoding* choice);

  EncodingChooser chooser_;
  Char16Sink* target_;
  const ExternalEncoding* chosen_ = nullptr;
  CharSink* converting_ = nullptr;
  UnicodeLibAllocator& allocator_;
};

#endif  // VARNICE_DETECT_AUTO_DETECT_SINK_H_
