// The loop every block transform runs: take upstream ranges, hand each unit to
// a step that writes zero or more units, stop when the buffer reaches its
// limit, and give back to the source what was not taken. Internal.
#ifndef VARNICE_TRANSFORM_TRANSFORM_FRAME_H_
#define VARNICE_TRANSFORM_TRANSFORM_FRAME_H_

#include <algorithm>

#include "varnice/stream/char16_source.h"

namespace varnice::internal {

// step(c, out) writes what c becomes at out and returns the new out; it must
// not write more units than the caller left room for above limit. Returns the
// write position; `ended` tells whether the source ran dry.
template <class Step>
unsigned short* FillUnits(Char16Source& source, unsigned short* out, unsigned short* limit,
                          bool& ended, Step step) {
  const unsigned short* b;
  const unsigned short* e;
  ended = false;
  while (out < limit) {
    if (!source.GetBuffer(b, e)) {
      ended = true;
      break;
    }
    for (; b < e && out < limit; ++b) out = step(*b, out);
    source.DoneWith(b);
  }
  return out;
}

// As FillUnits, for a step that writes every unit below `plain` as it is:
// runs of such units are copied without calling the step.
template <class Step>
unsigned short* FillUnitsCopyingBelow(unsigned short plain, Char16Source& source,
                                      unsigned short* out, unsigned short* limit, Step step) {
  const unsigned short* b;
  const unsigned short* e;
  while (out < limit && source.GetBuffer(b, e)) {
    while (b < e && out < limit) {
      if (*b >= plain) {
        out = step(*b++, out);
        continue;
      }
      const unsigned short* run = b + 1;
      const unsigned short* runEnd = b + std::min<long>(e - b, limit - out);
      while (run < runEnd && *run < plain) ++run;
      out = std::copy(b, run, out);
      b = run;
    }
    source.DoneWith(b);
  }
  return out;
}

template <class Step>
unsigned short* FillUnits(Char16Source& source, unsigned short* out, unsigned short* limit,
                          Step step) {
  bool ended;
  return FillUnits(source, out, limit, ended, step);
}

}  // namespace varnice::internal

#endif  // VARNICE_TRANSFORM_TRANSFORM_FRAME_H_
