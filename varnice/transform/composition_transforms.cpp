#include "varnice/transform/composition_transforms.h"

#include "varnice/tables/lookup_functions.h"
#include "varnice/transform/transform_frame.h"
#include "varnice/transform/transform_tables.h"

using varnice::internal::FillUnits;
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

bool DecomposeTransform::FillBuffer() {
  return Lend(FillUnits(source_, buffer_, buffer_ + kBufferSize - 1,
                        [this](unsigned short c, unsigned short* out) {
                          const std::uint32_t pair = PlaneValue(DecompositionTable, c);
                          if (pair != 0 && Passes(c)) {
                            out[0] = static_cast<unsigned short>(pair >> 16);
                            out[1] = static_cast<unsigned short>(pair);
                            return out + 2;
                          }
                          *out = c;
                          return out + 1;
                        }));
}

bool ToCanonicalTransform::FillBuffer() {
  return Lend(FillUnits(source_, buffer_, buffer_ + kBufferSize - 1,
                        [this](unsigned short c, unsigned short* out) {
                          const std::uint32_t value = PlaneValue(CanonicalTable, c);
                          if (value != 0 && Passes(c)) return WriteValue(value, out);
                          *out = c;
                          return out + 1;
                        }));
}

bool ComposeTransform::FillBuffer() {
  unsigned short* out = buffer_;
  unsigned short* const limit = buffer_ + kBufferSize;
  const unsigned short* b;
  const unsigned short* e;
  while (out < limit) {
    if (!source_.GetBuffer(b, e)) {
      // The last unit has no partner; if the buffer is full, the next call
      // writes it.
      if (pending_) {
        *out++ = pendingUnit_;
        pending_ = false;
      }
      break;
    }
    if (!pending_) {
      pendingUnit_ = *b++;
      pending_ = true;
    }
    for (; b < e && out < limit; ++b) {
      const unsigned short d = *b;
      if (!pending_) {
        pendingUnit_ = d;
        pending_ = true;
        continue;
      }
      unsigned short composed;
      const unsigned long key = (static_cast<unsigned long>(pendingUnit_) << 16) | d;
      if (SparseTableLookup(CompositionTable, CompositionTableCount, key, composed) &&
          Passes(pendingUnit_)) {
        *out++ = composed;
        pending_ = false;
      } else {
        *out++ = pendingUnit_;
        pendingUnit_ = d;
      }
    }
    source_.DoneWith(b);
  }
  return Lend(out);
}

bool ToCombiningMarkTransform::FillBuffer() {
  return Lend(FillUnits(source_, buffer_, buffer_ + kBufferSize - 1,
                        [this](unsigned short c, unsigned short* out) {
                          unsigned short mark;
                          if (c == kSpace) {
                            *out++ = c;
                            afterSpace_ = true;
                            return out;
                          }
                          if (SparseTableLookup(CombiningMarkTable, CombiningMarkTableCount, c,
                                                mark) &&
                              Passes(c)) {
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
      source_, buffer_, limit, ended, [this](unsigned short c, unsigned short* out) {
        unsigned short spacing;
        if (c == kSpace) {
          if (heldSpace_) *out++ = kSpace;
          heldSpace_ = true;
        } else if (SparseTableLookup(SpacingMarkTable, SpacingMarkTableCount, c, spacing) &&
                   Passes(c)) {
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
