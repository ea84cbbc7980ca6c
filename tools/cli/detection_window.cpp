#include "tools/cli/detection_window.h"

#include <cstring>

namespace cli {

DetectionWindow::DetectionWindow(const AutoDetectEncoding& detecting)
    : chooser_(std::make_unique<EncodingChooser>(behaviourOwner_, detecting.SubEncodings(),
                                                 detecting.CountSubEncodings(), arena_,
                                                 detecting.DetectorFactory())) {}

const ExternalEncoding* DetectionWindow::Choose(Input& in) {
  const char* b;
  const char* e;
  while (chooser_->ExaminedCount() < kWindowBytes && in.Next(b, e)) {
    const char* cut = e;
    if (chooser_->ExaminedCount() + (e - b) >= kWindowBytes) {
      // Every candidate that could get this far keeps line feeds whole.
      if (const void* lf = memrchr(b, '\n', e - b)) cut = static_cast<const char*>(lf) + 1;
      leftoverBegin_ = cut;
      leftoverEnd_ = e;
    }
    if (const ExternalEncoding* chosen = chooser_->Scan(b, cut)) {
      decided_ = true;
      return chosen;
    }
    if (cut != e) break;
  }
  return chooser_->Guess();
}

}  // namespace cli
