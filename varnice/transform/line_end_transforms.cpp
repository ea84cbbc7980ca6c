#include "varnice/transform/line_end_transforms.h"

#include "varnice/transform/transform_frame.h"

namespace {

constexpr unsigned short kCR = 0x000D;
constexpr unsigned short kLF = 0x000A;
constexpr unsigned short kLS = 0x2028;
constexpr unsigned short kPS = 0x2029;

// One loop for all five: `previous` survives between calls, so a CR at the end
// of one block and an LF at the start of the next make one line end. A
// two-unit target (CR LF) fills to 511 units so that it always fits.
template <unsigned short First, unsigned short Second = 0>
unsigned short* Normalize(Char16Source& source, unsigned short* buffer, long size,
                          unsigned short& previous) {
  unsigned short* const limit = buffer + size - (Second != 0 ? 1 : 0);
  return varnice::internal::FillUnits(
      source, buffer, limit, [&previous](unsigned short c, unsigned short* out) {
        if (c == kLF && previous == kCR) {
          // The CR already wrote the line end.
        } else if (c == kLF || c == kCR || c == kLS || c == kPS) {
          *out++ = First;
          if constexpr (Second != 0) *out++ = Second;
        } else {
          *out++ = c;
        }
        previous = c;
        return out;
      });
}

}  // namespace

ToCRLFTransform::~ToCRLFTransform() = default;
ToCRTransform::~ToCRTransform() = default;
ToLFTransform::~ToLFTransform() = default;
ToParagraphSeparatorTransform::~ToParagraphSeparatorTransform() = default;
ToLineSeparatorTransform::~ToLineSeparatorTransform() = default;

bool ToCRLFTransform::FillBuffer() {
  return Lend(Normalize<kCR, kLF>(source_, buffer_, kBufferSize, previous_));
}
bool ToCRTransform::FillBuffer() {
  return Lend(Normalize<kCR>(source_, buffer_, kBufferSize, previous_));
}
bool ToLFTransform::FillBuffer() {
  return Lend(Normalize<kLF>(source_, buffer_, kBufferSize, previous_));
}
bool ToParagraphSeparatorTransform::FillBuffer() {
  return Lend(Normalize<kPS>(source_, buffer_, kBufferSize, previous_));
}
bool ToLineSeparatorTransform::FillBuffer() {
  return Lend(Normalize<kLS>(source_, buffer_, kBufferSize, previous_));
}
