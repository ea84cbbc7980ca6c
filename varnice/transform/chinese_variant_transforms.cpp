#include "varnice/transform/chinese_variant_transforms.h"

#include <algorithm>

#include "varnice/transform/language_tables.h"
#include "varnice/transform/transform_frame.h"

using varnice::internal::VariantKey;
using varnice::internal::VariantTable;

namespace {

// The longest key that begins p[0, n); `more` tells whether a longer key
// begins with all of p, so that more input could still change the match.
const VariantKey* LongestMatch(const VariantTable& t, const unsigned short* p, int n, bool& more) {
  const VariantKey* lo;
  const VariantKey* hi;
  t.KeysBeginningWith(p[0], lo, hi);
  const VariantKey* best = nullptr;
  more = false;
  if (lo == hi) return nullptr;
  for (int d = 1; d < n; ++d) {
    // [lo, hi) holds the keys that begin with p[0, d), a key of length d first.
    if (lo->keyLength == d) {
      best = lo;
      ++lo;
    }
    const unsigned short u = p[d];
    lo = std::lower_bound(lo, hi, u, [&t, d](const VariantKey& k, unsigned short v) {
      return t.keys[k.key + d] < v;
    });
    hi = std::upper_bound(lo, hi, u, [&t, d](unsigned short v, const VariantKey& k) {
      return v < t.keys[k.key + d];
    });
    if (lo == hi) return best;
  }
  if (lo->keyLength == n) {
    best = lo;
    ++lo;
  }
  more = lo < hi;
  return best;
}

}  // namespace

ChineseVariantTransform::ChineseVariantTransform(Char16Source& source,
                                                 const InternalEncoding& encoding,
                                                 const CharacterTest& test,
                                                 Direction direction)
    : UnicodeTransform(source, encoding, test),
      table_(direction == Direction::kToTraditional ? varnice::internal::kTraditionalTable
                                                    : varnice::internal::kSimplifiedTable) {}
ChineseVariantTransform::~ChineseVariantTransform() = default;

ToTraditionalChineseTransform::ToTraditionalChineseTransform(Char16Source& source,
                                                             const InternalEncoding& encoding,
                                                             const CharacterTest& test)
    : ChineseVariantTransform(source, encoding, test, Direction::kToTraditional) {}
ToTraditionalChineseTransform::~ToTraditionalChineseTransform() = default;

ToSimplifiedChineseTransform::ToSimplifiedChineseTransform(Char16Source& source,
                                                           const InternalEncoding& encoding,
                                                           const CharacterTest& test)
    : ChineseVariantTransform(source, encoding, test, Direction::kToSimplified) {}
ToSimplifiedChineseTransform::~ToSimplifiedChineseTransform() = default;

// Converts the held units that later input can no longer affect; with `all`,
// every held unit.
unsigned short* ChineseVariantTransform::Drain(bool all, unsigned short* out) {
  int at = 0;
  while (at < count_) {
    bool more;
    const VariantKey* k = LongestMatch(table_, held_ + at, count_ - at, more);
    if (more && !all) break;
    int used = 1;
    if (k != nullptr) {
      out = std::copy(table_.values + k->value, table_.values + k->value + k->valueLength, out);
      used = k->keyLength;
    } else {
      const char16_t mapped = table_.Map(held_[at]);
      *out++ = mapped != 0 ? mapped : held_[at];
    }
    at += used;
  }
  count_ -= at;
  std::copy(held_ + at, held_ + at + count_, held_);
  return out;
}

bool ChineseVariantTransform::FillBuffer() {
  // One step may write the values of every held unit (no value is more than
  // twice as long as its key) and the unit itself.
  constexpr long kStepRoom = 2 * kMaxHeld + 1;
  bool ended;
  unsigned short* out = varnice::internal::FillUnits(
      source_, buffer_, buffer_ + kBufferSize - kStepRoom, ended,
      [this, passes = TestGate()](unsigned short c, unsigned short* out) {
        if (!passes(c)) {
          out = Drain(true, out);
          *out = c;
          return out + 1;
        }
        if (count_ == 0 && !table_.Starts(c)) {
          const char16_t mapped = table_.Map(c);
          *out = mapped != 0 ? mapped : c;
          return out + 1;
        }
        held_[count_++] = c;
        return count_ == kMaxHeld ? Drain(true, out) : Drain(false, out);
      });
  if (ended) out = Drain(true, out);
  return Lend(out);
}
