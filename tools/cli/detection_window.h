// DetectionWindow: detection for the command line, where inputs can be of any
// size. The library's detecting streams keep every examined byte until a
// detector wins, which for plain ASCII means the whole input; here at most
// about kWindowBytes are held. When the window fills undecided, the bytes
// every remaining candidate (those still sharing the best score) reads the
// same way can be passed on to the caller, and detection starts afresh on
// what follows with those candidates only; so a file whose first non-ASCII
// byte comes after megabytes of ASCII is still detected from that byte.
// Without a taker for passed-on bytes, or when the candidates read the
// window differently, the choice is a guess from what was seen. The window
// ends at a line end where it can, so that no detector is charged for a
// character the window cuts in two.
#ifndef VARNICE_TOOLS_CLI_DETECTION_WINDOW_H_
#define VARNICE_TOOLS_CLI_DETECTION_WINDOW_H_

#include <functional>
#include <memory>
#include <vector>

#include "tools/cli/cli.h"
#include "varnice/varnice.h"

namespace cli {

class DetectionWindow {
 public:
  static constexpr long kWindowBytes = 1 << 20;

  // Receives bytes that every remaining candidate reads alike, in order,
  // before the choice is made; `reader` is one of those candidates.
  using PassOn = std::function<void(const char* begin, const char* end, const ExternalEncoding& reader)>;

  // The candidates are those of `detecting`, scored by its detectors.
  explicit DetectionWindow(const AutoDetectEncoding& detecting, long windowBytes = kWindowBytes);

  // Examines pieces of `in` until the choice is made; null only when the
  // detecting encoding has no candidates.
  const ExternalEncoding* Choose(Input& in, const PassOn& passOn = nullptr);

  // Whether one detector won outright (else the choice is a guess).
  bool Decided() const { return decided_; }
  // Whether the window filled before the choice was made.
  bool WindowFull() const { return windowFull_; }
  // Bytes passed on undecided, before those examined.
  long long PassedOn() const { return passedOn_; }
  // The examined bytes, which the chosen encoding must read first, then the
  // rest of the last piece read (valid until the input's next piece).
  const char* Examined() const { return chooser_->Examined(); }
  long ExaminedCount() const { return chooser_->ExaminedCount(); }
  const char* LeftoverBegin() const { return leftoverBegin_; }
  const char* LeftoverEnd() const { return leftoverEnd_; }
  const EncodingChooser& Chooser() const { return *chooser_; }
  // The candidates sharing the best score so far, in candidate order.
  std::vector<const ExternalEncodingDetector*> Leaders() const;

 private:
  // The candidates sharing the best score, when they all read the examined
  // bytes the same way; else empty.
  std::vector<const ExternalEncoding*> AlikeLeaders() const;

  const AutoDetectEncoding& detecting_;
  long windowBytes_;
  std::vector<const ExternalEncoding*> candidates_;
  std::unique_ptr<LinearAllocator> arena_;  // the chooser's detectors
  BufferCharSource behaviourOwner_{"", nullptr};  // lends the default behaviour
  std::unique_ptr<EncodingChooser> chooser_;
  bool decided_ = false;
  bool windowFull_ = false;
  long long passedOn_ = 0;
  const char* leftoverBegin_ = nullptr;
  const char* leftoverEnd_ = nullptr;
};

}  // namespace cli

#endif  // VARNICE_TOOLS_CLI_DETECTION_WINDOW_H_
