#include "varnice/sample/sample_text_source.h"

#include <algorithm>

#include "varnice/encoding/internal_encoding.h"
#include "varnice/widec/qz_string.h"

SampleTextSource::SampleTextSource(const ExternalEncoding& encoding, const CharacterTest* test)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      CharSource(static_cast<const UnicodeLibActor*>(nullptr)),
      repertoire_(encoding),
      unicode_(test, 0, 0xFFFF, &repertoire_),
      budgeted_(false),
      budget_(0),
      paced_(*this),
      converter_(paced_, *InternalEncoding::Unicode20(), encoding) {}

SampleTextSource::SampleTextSource(const ExternalEncoding& encoding, const CharacterTest* const* mix,
                                   unsigned int count, unsigned long bytes, std::uint64_t seed)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      CharSource(static_cast<const UnicodeLibActor*>(nullptr)),
      repertoire_(encoding),
      // Random text ends by the budget, not by a length of its own.
      unicode_(mix, count, ~0UL, seed, &repertoire_),
      budgeted_(true),
      budget_(bytes),
      costs_(0x10000, 0),
      paced_(*this),
      converter_(paced_, *InternalEncoding::Unicode20(), encoding) {}

SampleTextSource::~SampleTextSource() = default;

// What one more c adds after a c: the byte-order mark and the closing shift
// of the encoding are counted once, with the first character.
unsigned long SampleTextSource::CostOf(unsigned short c) {
  if (costs_[c] == 0) {
    const unsigned short pair[2] = {c, c};
    const auto one = qz_string(pair, 1, repertoire_.Encoding()).size();
    const auto two = qz_string(pair, 2, repertoire_.Encoding()).size();
    costs_[c] = static_cast<unsigned char>(std::clamp<unsigned long>(two - one, 1, 255));
    if (text_.empty()) return one;
  }
  return text_.empty() ? qz_string(&c, 1, repertoire_.Encoding()).size() : costs_[c];
}

bool SampleTextSource::FillBuffer() {
  const char* b;
  const char* e;
  if (!converter_.GetBuffer(b, e)) return false;
  // The converter's range stays valid until we ask it again, which happens
  // only after our reader has used all of it.
  converter_.DoneWith(e);
  position_ = b;
  end_ = e;
  return true;
}

SampleTextSource::PacedSource::PacedSource(SampleTextSource& owner)
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      Char16Source(static_cast<const UnicodeLibActor*>(nullptr)),
      owner_(owner) {}

bool SampleTextSource::PacedSource::FillBuffer() {
  std::size_t n = 0;
  while (n < sizeof buffer_ / sizeof buffer_[0]) {
    const unsigned short c = owner_.unicode_.Next();
    if (c == 0) break;
    if (owner_.budgeted_) {
      const unsigned long cost = owner_.CostOf(c);
      if (cost > owner_.budget_) {
        owner_.budget_ = 0;
        break;
      }
      owner_.budget_ -= cost;
    }
    buffer_[n++] = c;
    owner_.text_.push_back(c);
  }
  position_ = buffer_;
  end_ = buffer_ + n;
  return n > 0;
}
