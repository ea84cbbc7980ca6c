#include "varnice/transform/katakana_width_transforms.h"

#include "varnice/tables/lookup_functions.h"
#include "varnice/transform/transform_frame.h"
#include "varnice/transform/transform_tables.h"

using varnice::internal::FillUnits;
using varnice::internal::FillUnitsCopyingBelow;
using varnice::internal::PlaneValue;

namespace {

constexpr unsigned short kVoiced = 0x3099;        // combining marks
constexpr unsigned short kSemiVoiced = 0x309A;
constexpr unsigned short kSpacingVoiced = 0x309B;  // ゛ ゜
constexpr unsigned short kSpacingSemiVoiced = 0x309C;
constexpr unsigned short kHalfVoiced = 0xFF9E;  // ﾞ ﾟ
constexpr unsigned short kHalfSemiVoiced = 0xFF9F;

// The fullwidth units that have a halfwidth form lie in U+3001-U+30FF.
constexpr unsigned short kFirstZenkaku = 0x3001;
constexpr unsigned short kLastZenkaku = 0x30FF;
constexpr unsigned short kFirstHankaku = 0xFF61;
constexpr unsigned short kLastHankakuBase = 0xFF9D;

unsigned short* ToHankaku(unsigned short c, unsigned short* out) {
  if (c == kSpacingVoiced || c == kSpacingSemiVoiced) {
    *out = c == kSpacingVoiced ? kHalfVoiced : kHalfSemiVoiced;
    return out + 1;
  }
  if (const unsigned short half = HalfwidthMappingTable.Find(c); half != 0) {
    *out = half;
    return out + 1;
  }
  // A voiced katakana: its base, if that has a halfwidth form, and the mark.
  const std::uint32_t pair = PlaneValue(DecompositionTable, c);
  const unsigned short mark = static_cast<unsigned short>(pair);
  if (c >= 0x30A1 && (mark == kVoiced || mark == kSemiVoiced)) {
    if (const unsigned short base = HalfwidthMappingTable.Find(pair >> 16); base != 0) {
      out[0] = base;
      out[1] = mark == kVoiced ? kHalfVoiced : kHalfSemiVoiced;
      return out + 2;
    }
  }
  *out = c;
  return out + 1;
}

}  // namespace

ZenkakuKatakanaToHankakuTransform::~ZenkakuKatakanaToHankakuTransform() = default;
HankakuKatakanaToZenkakuTransform::~HankakuKatakanaToZenkakuTransform() = default;

bool ZenkakuKatakanaToHankakuTransform::FillBuffer() {
  return Lend(FillUnitsCopyingBelow(kFirstZenkaku, source_, buffer_, buffer_ + kBufferSize - 1,
                                    [passes = TestGate()](unsigned short c, unsigned short* out) {
                                      if (c <= kLastZenkaku && passes(c)) return ToHankaku(c, out);
                                      *out = c;
                                      return out + 1;
                                    }));
}

bool HankakuKatakanaToZenkakuTransform::FillBuffer() {
  bool ended;
  unsigned short held = held_;
  unsigned short* out = FillUnits(
      source_, buffer_, buffer_ + kBufferSize - 1, ended,
      [&held, passes = TestGate()](unsigned short c, unsigned short* out) {
        const bool changes = c >= kFirstHankaku && c <= kHalfSemiVoiced && passes(c);
        if (held != 0) {
          unsigned short joined;
          if (changes && c >= kHalfVoiced &&
              SparseTableLookup(CompositionTable, CompositionTableCount,
                                (static_cast<unsigned long>(held) << 16) |
                                    (c == kHalfVoiced ? kVoiced : kSemiVoiced),
                                joined)) {
            *out = joined;
            held = 0;
            return out + 1;
          }
          *out++ = held;
          held = 0;
        }
        if (!changes) {
          *out = c;
        } else if (c <= kLastHankakuBase) {
          held = FullwidthMappingTable.Find(c);
          return out;
        } else {
          // A mark with nothing to join: the spacing form, not the combining one.
          *out = c == kHalfVoiced ? kSpacingVoiced : kSpacingSemiVoiced;
        }
        return out + 1;
      });
  if (ended && held != 0) {
    *out++ = held;
    held = 0;
  }
  held_ = held;
  return Lend(out);
}
