// DetectionWindow: detection for the command line, where inputs can be of any
// size. The library's detecting streams keep every examined byte until a
// detector wins, which for plain ASCII means the whole input; here at most
// about the first kWindowBytes are examined, and if no detector has won by
// then the chooser guesses from what it saw. The window ends at a line end
// where it can, so that no detector is charged for a character the window
// cuts in two.
#ifndef VARNICE_TOOLS_CLI_DETECTION_WINDOW_H_
#define VARNICE_TOOLS_CLI_DETECTION_WINDOW_H_

#include <memory>

#include "tools/cli/cli.h"
#include "varnice/varnice.h"

namespace cli {

class DetectionWindow {
 public:
  static constexpr long kWindowBytes = 1 << 20;

  // The candidates are those of `detecting`.
  explicit DetectionWindow(const AutoDetectEncoding& detecting);

  // Examines pieces of `in` until the choice is made; null only when the
  // detecting encoding has no candidates.
  const ExternalEncoding* Choose(Input& in);

  // Whether one detector won outright (else the choice is a guess).
  bool Decided() const { return decided_; }
  // The examined bytes, which the chosen encoding must read first, then the
  // rest of the last piece read (valid until the input's next piece).
  const char* Examined() const { return chooser_->Examined(); }
  long ExaminedCount() const { return chooser_->ExaminedCount(); }
  const char* LeftoverBegin() const { return leftoverBegin_; }
  const char* LeftoverEnd() const { return leftoverEnd_; }
  const EncodingChooser& Chooser() const { return *chooser_; }

 private:
  LinearAllocator arena_{1024, __FILE__, __LINE__};  // the detectors
  BufferCharSource behaviourOwner_{"", nullptr};  // lends the default behaviour
  std::unique_ptr<EncodingChooser> chooser_;
  bool decided_ = false;
  const char* leftoverBegin_ = nullptr;
  const char* leftoverEnd_ = nullptr;
};

}  // namespace cli

#endif  // VARNICE_TOOLS_CLI_DETECTION_WINDOW_H_
