// The loop every block transform runs: take upstream ranges, hand each unit to
// a step that writes zero or more units, stop when the buffer reaches its
// limit, and give back to the source what was not taken. Internal.
#ifndef VARNICE_TRANSFORM_TRANSFORM_FRAME_H_
#define VARNICE_TRANSFORM_TRANSFORM_FRAME_H_

#include <algorithm>

#include "varnice/stream/char16_source.h"

namespace varnice::internal {

// The loop itself. step(c, out) writes what c becomes at out and returns the
// new out; it must not write more units than the caller left room for above
// limit. Units for which `plain(c)` holds are written as they are, runs of
// them copied without calling the step. Returns the write position; `ended`
// tells whether the source ran dry.
template <class Plain, class Step>
unsigned short* FillUnitsCopying(Char16Source& source, unsigned short* out, unsigned short* limit,
                                 bool& ended, Plain plain, Step step) {
  const unsigned short* b;
  const unsigned short* e;
  ended = false;
  while (out < limit) {
    if (!source.GetBuffer(b, e)) {
      ended = true;
      break;
    }
    while (b < e && out < limit) {
      if (!plain(*b)) {
        out = step(*b++, out);
        continue;
      }
      const unsigned short* run = b + 1;
      const unsigned short* runEnd = b + std::min<long>(e - b, limit - out);
      while (run < runEnd && plain(*run)) ++run;
      out = std::copy(b, run, out);
      b = run;
    }
    source.DoneWith(b);
  }
  return out;
}

// Every unit through the step.
template <class Step>
unsigned short* FillUnits(Char16Source& source, unsigned short* out, unsigned short* limit,
                          bool& ended, Step step) {
  return FillUnitsCopying(source, out, limit, ended, [](unsigned short) { return false; }, step);
}

// FillUnitsCopying for the usual case: the units below `plain` pass as they are.
template <class Step>
unsigned short* FillUnitsCopyingBelow(unsigned short plain, Char16Source& source,
                                      unsigned short* out, unsigned short* limit, Step step) {
  bool ended;
  return FillUnitsCopying(source, out, limit, ended, [plain](unsigned short c) { return c < plain; }, step);
}

template <class Step>
unsigned short* FillUnits(Char16Source& source, unsigned short* out, unsigned short* limit,
                          Step step) {
  bool ended;
  return FillUnits(source, out, limit, ended, step);
}

}  // namespace varnice::internal

#endif  // VARNICE_TRANSFORM_TRANSFORM_FRAME_H_
