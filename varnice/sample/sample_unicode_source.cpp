#include "varnice/sample/sample_unicode_source.h"

#include <algorithm>

#include "varnice/charprops/character_property.h"
#include "varnice/charprops/types/character_test.h"
#include "varnice/widec/utf16_units.h"

namespace {

// Controls come only with a test that asks for them: they make poor text.
bool IsSampleCharacter(unsigned long c, const CharacterTest* test) {
  const bool surrogate = varnice::internal::IsSurrogate(c);
  if (c == 0 || surrogate || c == 0xFEFF || c >= 0xFFFE) return false;
  return AnyDefinedCharacter->Test(c) || (test != nullptr && ControlCharacter->Test(c));
}

std::vector<unsigned short> RepertoireOf(const CharacterTest* test, unsigned long first,
                                         unsigned long last, const CharacterTest* within) {
  std::vector<unsigned short> units;
  for (unsigned long c = first; c <= last; ++c) {
    if (IsSampleCharacter(c, test) && (test == nullptr || test->Test(c)) &&
        (within == nullptr || within->Test(c))) {
      units.push_back(static_cast<unsigned short>(c));
    }
  }
  return units;
}

}  // namespace

SampleUnicodeSource::SampleUnicodeSource(const CharacterTest* test, unsigned short first,
                                         unsigned short last, const CharacterTest* within)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      Char16Source(static_cast<const UnicodeLibActor*>(nullptr)),
      all_(RepertoireOf(test, first, last, within)) {}

SampleUnicodeSource::SampleUnicodeSource(const CharacterTest* const* mix, unsigned int count,
                                         unsigned long length, std::uint64_t seed,
                                         const CharacterTest* within)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      Char16Source(static_cast<const UnicodeLibActor*>(nullptr)),
      random_(true),
      left_(length),
      state_(seed) {
  for (unsigned int i = 0; i < count; ++i) {
    std::vector<unsigned short> pool = RepertoireOf(mix[i], 0, 0xFFFF, within);
    if (pool.empty()) continue;
    all_.insert(all_.end(), pool.begin(), pool.end());
    pools_.push_back(std::move(pool));
  }
  std::sort(all_.begin(), all_.end());
  all_.erase(std::unique(all_.begin(), all_.end()), all_.end());
  if (pools_.empty()) left_ = 0;
  space_ok_ = within == nullptr || within->Test(' ');
  newline_ok_ = within == nullptr || within->Test('\n');
}

SampleUnicodeSource::~SampleUnicodeSource() = default;

// SplitMix64: small, fast, and the same on every platform (unlike the
// standard library's distributions).
std::uint64_t SampleUnicodeSource::Random() {
  std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

unsigned short SampleUnicodeSource::Next() {
  if (!random_) return next_index_ < all_.size() ? all_[next_index_++] : 0;
  if (left_ == 0) return 0;
  --left_;
  if (word_left_ == 0) {
    word_left_ = 1 + static_cast<unsigned int>(Random() % 8);
    // Words after the first are set apart, and every dozen or so start a line.
    if (words_on_line_++ > 0 && left_ > 0) {
      if (newline_ok_ && Random() % 12 == 0) {
        words_on_line_ = 1;
        return '\n';
      }
      if (space_ok_) return ' ';
    }
  }
  --word_left_;
  const auto& pool = pools_[Random() % pools_.size()];
  return pool[Random() % pool.size()];
}

bool SampleUnicodeSource::FillBuffer() {
  std::size_t n = 0;
  if (!random_) {
    n = std::min(all_.size() - next_index_, sizeof buffer_ / sizeof buffer_[0]);
    std::copy_n(all_.data() + next_index_, n, buffer_);
    next_index_ += n;
  } else {
    for (unsigned short c; n < sizeof buffer_ / sizeof buffer_[0] && (c = Next()) != 0;) buffer_[n++] = c;
  }
  position_ = buffer_;
  end_ = buffer_ + n;
  return n > 0;
}
