#include "tools/cli/detection_window.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace cli {

DetectionWindow::DetectionWindow(const AutoDetectEncoding& detecting, long windowBytes)
    : detecting_(detecting),
      windowBytes_(windowBytes),
      candidates_(detecting.SubEncodings(), detecting.SubEncodings() + detecting.CountSubEncodings()),
      arena_(std::make_unique<LinearAllocator>(4096, __FILE__, __LINE__)),
      chooser_(std::make_unique<EncodingChooser>(behaviourOwner_, candidates_.data(),
                                                 static_cast<int>(candidates_.size()), *arena_,
                                                 detecting.DetectorFactory())) {}

std::vector<const ExternalEncodingDetector*> DetectionWindow::Leaders() const {
  int best = INT_MIN;
  for (int i = 0; i < chooser_->CandidateCount(); ++i) {
    if (const ExternalEncodingDetector* d = chooser_->Detector(i)) best = std::max(best, d->Score());
  }
  std::vector<const ExternalEncodingDetector*> leaders;
  for (int i = 0; i < chooser_->CandidateCount(); ++i) {
    const ExternalEncodingDetector* d = chooser_->Detector(i);
    if (d != nullptr && d->Score() == best) leaders.push_back(d);
  }
  return leaders;
}

std::vector<const ExternalEncoding*> DetectionWindow::AlikeLeaders() const {
  std::vector<const ExternalEncoding*> alike;
  const char* b = chooser_->Examined();
  const std::size_t n = chooser_->ExaminedCount();
  qz_wstring first;
  for (const ExternalEncodingDetector* d : Leaders()) {
    if (d->Score() == INT_MIN) return {};  // all ruled out
    qz_wstring reading(b, n, d->Encoding());
    if (alike.empty()) {
      first = reading;
    } else if (reading.size() != first.size() ||
               std::memcmp(reading.data(), first.data(), first.size() * sizeof(unsigned short)) != 0) {
      return {};
    }
    alike.push_back(&d->Encoding());
  }
  return alike;
}

const ExternalEncoding* DetectionWindow::Choose(Input& in, const PassOn& passOn) {
  const char* b;
  const char* e;
  while (in.Next(b, e)) {
    while (b != e) {
      const char* cut = e;
      const bool fills = chooser_->ExaminedCount() + (e - b) >= windowBytes_;
      if (fills) {
        cut = b + (windowBytes_ - chooser_->ExaminedCount());
        // Every candidate that could get this far keeps line feeds whole.
        if (const void* lf = memrchr(b, '\n', cut - b)) cut = static_cast<const char*>(lf) + 1;
      }
      leftoverBegin_ = cut;
      leftoverEnd_ = e;
      if (const ExternalEncoding* chosen = chooser_->Scan(b, cut)) {
        decided_ = true;
        return chosen;
      }
      if (!fills) break;
      windowFull_ = true;
      std::vector<const ExternalEncoding*> leaders;
      if (passOn != nullptr && chooser_->ExaminedCount() > 0) leaders = AlikeLeaders();
      if (leaders.empty()) return chooser_->Guess();
      passOn(chooser_->Examined(), chooser_->Examined() + chooser_->ExaminedCount(), *leaders.front());
      passedOn_ += chooser_->ExaminedCount();
      // Start afresh on what follows, among the candidates still in the race.
      candidates_ = leaders;
      chooser_.reset();
      arena_ = std::make_unique<LinearAllocator>(4096, __FILE__, __LINE__);
      chooser_ = std::make_unique<EncodingChooser>(behaviourOwner_, candidates_.data(),
                                                   static_cast<int>(candidates_.size()), *arena_,
                                                   detecting_.DetectorFactory());
      windowFull_ = false;
      b = cut;
    }
  }
  leftoverBegin_ = leftoverEnd_ = nullptr;
  return chooser_->Guess();
}

}  // namespace cli
