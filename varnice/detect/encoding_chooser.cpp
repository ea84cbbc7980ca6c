#include "varnice/detect/encoding_chooser.h"

#include <climits>
#include <cstdio>
#include <cstring>

#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/external_encoding_detector.h"
#include "varnice/encoding/unicode_lib_behavior.h"

EncodingChooser::EncodingChooser(const UnicodeLibActor& actor, const ExternalEncoding* const* candidates,
                                 int count, UnicodeLibAllocator& allocator)
    : UnicodeLibActor(actor),
      count_(count < 0 ? 0 : count > kMaxCandidates ? kMaxCandidates : count),
      guess_(count_ > 0 ? candidates[0] : nullptr) {
  for (int i = 0; i < count_; ++i) detectors_[i] = candidates[i]->CreateEncodingDetector(allocator);
}

EncodingChooser::EncodingChooser(const UnicodeLibActor& actor, const ExternalEncoding* const* candidates,
                                 int count, UnicodeLibAllocator& allocator, DetectorFactory makeDetector)
    : UnicodeLibActor(actor),
      count_(count < 0 ? 0 : count > kMaxCandidates ? kMaxCandidates : count),
      guess_(count_ > 0 ? candidates[0] : nullptr) {
  for (int i = 0; i < count_; ++i) {
    detectors_[i] = makeDetector != nullptr ? makeDetector(*candidates[i], allocator)
                                            : candidates[i]->CreateEncodingDetector(allocator);
  }
}

EncodingChooser::~EncodingChooser() {
  for (int i = 0; i < count_; ++i) delete detectors_[i];
  delete[] bytes_;
}

namespace {

// The one ranking rule, for scores and for tie-breakers: `best` starts at the
// lowest int; a value equal to it is one more tie, a greater one becomes the
// guess with no ties. Detectors that `take` refuses are passed over.
template <class Value, class Take>
int Rank(ExternalEncodingDetector* const* detectors, int count, const ExternalEncoding*& guess, int& best,
         Value value, Take take) {
  best = INT_MIN;
  int ties = 0;
  for (int i = 0; i < count; ++i) {
    const ExternalEncodingDetector* d = detectors[i];
    if (d == nullptr || !take(*d)) continue;
    if (value(*d) == best) {
      ++ties;
    } else if (value(*d) > best) {
      best = value(*d);
      guess = &d->Encoding();
      ties = 1;
    }
  }
  return ties;
}

int ScoreOf(const ExternalEncodingDetector& d) { return d.Score(); }

}  // namespace

int EncodingChooser::FindBestScore(int& best) {
  return Rank(detectors_, count_, guess_, best, ScoreOf, [](const ExternalEncodingDetector&) { return true; });
}

const ExternalEncoding* EncodingChooser::Scan(const char* begin, const char* end) {
  const long oldSize = examined_;
  const long newSize = oldSize + (end - begin);
  if (newSize > capacity_) {
    long capacity = capacity_ < 1024 ? 1024 : capacity_;
    while (capacity < newSize) capacity *= 2;
    char* bytes = new char[capacity];
    if (oldSize > 0) std::memcpy(bytes, bytes_, oldSize);
    delete[] bytes_;
    bytes_ = bytes;
    capacity_ = capacity;
  }
  if (end > begin) std::memcpy(bytes_ + oldSize, begin, end - begin);
  examined_ = newSize;
  for (int i = 0; i < count_; ++i) {
    if (detectors_[i] != nullptr) detectors_[i]->Scan(bytes_, bytes_ + oldSize, bytes_ + newSize);
  }
  int best;
  if (FindBestScore(best) != 1) return nullptr;
  if (Behavior().DisplayAutoDetectMessages()) PrintScores("Chose", false);
  return guess_;
}

const ExternalEncoding* EncodingChooser::Guess() {
  for (int i = 0; i < count_; ++i) {
    if (detectors_[i] != nullptr) detectors_[i]->Finish(bytes_, bytes_ + examined_);
  }
  int bestScore;
  int ties = FindBestScore(bestScore);
  if (ties > 1) {
    int bestTieBreaker;
    auto tieBreakerOf = [](const ExternalEncodingDetector& d) { return d.TieBreaker(); };
    auto amongTheBest = [bestScore](const ExternalEncodingDetector& d) { return d.Score() == bestScore; };
    ties = Rank(detectors_, count_, guess_, bestTieBreaker, tieBreakerOf, amongTheBest);
  }
  if (Behavior().DisplayAutoDetectMessages()) PrintScores(ties == 1 ? "Chose" : "Assuming", true);
  return guess_;
}

void EncodingChooser::PrintScores(const char* verb, bool withTieBreakers) const {
  std::fprintf(stderr, "%s encoding %s\n", verb, guess_->Name());
  std::fprintf(stderr, "  %ld bytes examined\n", examined_);
  for (int i = 0; i < count_; ++i) {
    const ExternalEncodingDetector* d = detectors_[i];
    if (d == nullptr) continue;
    if (withTieBreakers) {
      std::fprintf(stderr, "%15s: %11d, %11d tie-breaker\n", d->Encoding().Name(), d->Score(), d->TieBreaker());
    } else {
      std::fprintf(stderr, "%15s: %11d\n", d->Encoding().Name(), d->Score());
    }
  }
}
