#include "varnice/transform/composition_transforms.h"

#include <algorithm>

#include "varnice/tables/lookup_functions.h"
#include "varnice/transform/transform_frame.h"
#include "varnice/transform/transform_tables.h"

using varnice::internal::FillUnits;
using varnice::internal::FillUnitsCopyingBelow;
using varnice::internal::PlaneValue;

namespace {

constexpr unsigned short kSpace = 0x0020;

// Writes a plane-table value of one or two units.
unsigned short* WriteValue(std::uint32_t value, unsigned short* out) {
  if (value > 0xFFFF) *out++ = static_cast<unsigned short>(value >> 16);
  *out++ = static_cast<unsigned short>(value);
  return out;
}

}  // namespace

DecomposeTransform::~DecomposeTransform() = default;
ComposeTransform::~ComposeTransform() = default;
ToCombiningMarkTransform::~ToCombiningMarkTransform() = default;
ToSpacingMarkTransform::~ToSpacingMarkTransform() = default;
ToCanonicalTransform::~ToCanonicalTransform() = default;

// Nothing below these decomposes or has a canonical form.
constexpr unsigned short kFirstDecomposable = 0x00C0;
constexpr unsigned short kFirstCanonical = 0xF900;

bool DecomposeTransform::FillBuffer() {
  return Lend(FillUnitsCopyingBelow(kFirstDecomposable, source_, buffer_, buffer_ + kBufferSize - 1,
                        [passes = TestGate()](unsigned short c, unsigned short* out) {
                          const std::uint32_t pair = PlaneValue(DecompositionTable, c);
                          if (pair != 0 && passes(c)) {
                            out[0] = static_cast<unsigned short>(pair >> 16);
                            out[1] = static_cast<unsigned short>(pair);
                            return out + 2;
                          }
                          *out = c;
                          return out + 1;
                        }));
}

bool ToCanonicalTransform::FillBuffer() {
  return Lend(FillUnitsCopyingBelow(kFirstCanonical, source_, buffer_, buffer_ + kBufferSize - 1,
                        [passes = TestGate()](unsigned short c, unsigned short* out) {
                          const std::uint32_t value = PlaneValue(CanonicalTable, c);
                          if (value != 0 && passes(c)) return WriteValue(value, out);
                          *out = c;
                          return out + 1;
                        }));
}

bool ComposeTransform::FillBuffer() {
  unsigned short* out = buffer_;
  unsigned short* const limit = buffer_ + kBufferSize;
  const Gate passes = TestGate();
  // Locals: the output is unsigned short too, and would otherwise force the
  // pending unit back to memory after every store.
  bool pending = pending_;
  unsigned short pendingUnit = pendingUnit_;
  const unsigned short* b;
  const unsigned short* e;
  while (out < limit) {
    if (!source_.GetBuffer(b, e)) {
      // The last unit has no partner; if the buffer is full, the next call
      // writes it.
      if (pending) {
        *out++ = pendingUnit;
        pending = false;
      }
      break;
    }
    if (!pending && b < e) {
      pendingUnit = *b++;
      pending = true;
    }
    while (b < e && out < limit) {
      // A run of units that end no pair: each writes the one before it.
      const unsigned short* run = b;
      const unsigned short* runEnd = b + std::min<long>(e - b, limit - out);
      while (run < runEnd && !varnice::internal::MayComposeAsSecond(*run)) ++run;
      if (run != b && pending) {
        *out++ = pendingUnit;
        out = std::copy(b, run - 1, out);
        pendingUnit = run[-1];
        b = run;
        continue;
      }
      const unsigned short d = *b++;
      if (!pending) {
        pendingUnit = d;
        pending = true;
        continue;
      }
      unsigned short composed;
      if (SparseTableLookup(CompositionTable, CompositionTableCount,
                            (static_cast<unsigned long>(pendingUnit) << 16) | d, composed) &&
          passes(pendingUnit)) {
        *out++ = composed;
        pending = false;
      } else {
        *out++ = pendingUnit;
        pendingUnit = d;
      }
    }
    source_.DoneWith(b);
  }
  pending_ = pending;
  pendingUnit_ = pendingUnit;
  return Lend(out);
}

bool ToCombiningMarkTransform::FillBuffer() {
  return Lend(FillUnits(source_, buffer_, buffer_ + kBufferSize - 1,
                        [this, passes = TestGate()](unsigned short c, unsigned short* out) {
                          unsigned short mark;
                          if (c == kSpace) {
                            *out++ = c;
                            afterSpace_ = true;
                            return out;
                          }
                          if (SparseTableLookup(CombiningMarkTable, CombiningMarkTableCount, c,
                                                mark) &&
                              passes(c)) {
                            if (afterSpace_) *out++ = kSpace;
                            *out++ = mark;
                          } else {
                            *out++ = c;
                          }
                          afterSpace_ = false;
                          return out;
                        }));
}

bool ToSpacingMarkTransform::FillBuffer() {
  unsigned short* const limit = buffer_ + kBufferSize - 1;
  bool ended;
  unsigned short* out = FillUnits(
      source_, buffer_, limit, ended, [this, passes = TestGate()](unsigned short c, unsigned short* out) {
        unsigned short spacing;
        if (c == kSpace) {
          if (heldSpace_) *out++ = kSpace;
          heldSpace_ = true;
        } else if (SparseTableLookup(SpacingMarkTable, SpacingMarkTableCount, c, spacing) &&
                   passes(c)) {
          *out++ = spacing;  // a held space was the mark's base: dropped
          heldSpace_ = false;
        } else {
          if (heldSpace_) *out++ = kSpace;
          heldSpace_ = false;
          *out++ = c;
        }
        return out;
      });
  if (ended && heldSpace_) {
    *out++ = kSpace;
    heldSpace_ = false;
  }
  return Lend(out);
}
