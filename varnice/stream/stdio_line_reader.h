// The line readers behind StdioSource and Stdio16Source, written once for
// both unit types. `Slot` is the adaptor's push-back slot (-1 when empty).
#ifndef VARNICE_STREAM_STDIO_LINE_READER_H_
#define VARNICE_STREAM_STDIO_LINE_READER_H_

namespace varnice::internal {

constexpr int kNewline = 10;

// fgets: at most n - 1 units, newline kept, NUL-terminated. A pushed-back
// unit is taken out of its slot.
template <class Unit, class Source, class Slot>
Unit* ReadLineKeepingNewline(Source& source, Slot& slot, Unit* buf, int n) {
  if (n < 2) return nullptr;
  Unit* const limit = buf + n - 1;
  Unit* out = buf;
  if (slot != -1) {
    const auto c = static_cast<Unit>(slot);
    slot = -1;
    *out++ = c;
    if (c == kNewline) {
      *out = 0;
      return buf;
    }
  }
  const Unit* b;
  const Unit* e;
  while (out < limit && source.GetBuffer(b, e)) {
    while (b < e && out < limit) {
      const Unit c = *b++;
      *out++ = c;
      if (c == kNewline) {
        source.DoneWith(b);
        *out = 0;
        return buf;
      }
    }
    source.DoneWith(b);
  }
  *out = 0;
  return out != buf ? buf : nullptr;
}

// gets: at most n - 1 units (no limit when n == -1), newline consumed but not
// stored, NUL-terminated. A pushed-back newline is taken out of its slot; any
// other pushed-back unit is stored but stays in the slot, so the next read
// delivers it again (callers depend on this).
template <class Unit, class Source, class Slot>
Unit* ReadLineDroppingNewline(Source& source, Slot& slot, Unit* buf, int n) {
  if (n < -1 || n == 0) return nullptr;
  const bool unlimited = n == -1;
  Unit* const limit = unlimited ? nullptr : buf + n - 1;
  Unit* out = buf;
  auto room = [&] { return unlimited || out < limit; };
  if (slot == kNewline) {
    slot = -1;
    *buf = 0;
    return buf;
  }
  // With n == 1 there is no room for the pushed-back unit: storing it would
  // put the NUL past the buffer.
  if (slot != -1 && room()) *out++ = static_cast<Unit>(slot);
  const Unit* b;
  const Unit* e;
  while (room() && source.GetBuffer(b, e)) {
    while (b < e && room()) {
      const Unit c = *b++;
      if (c == kNewline) {
        source.DoneWith(b);
        *out = 0;
        return buf;
      }
      *out++ = c;
    }
    source.DoneWith(b);
  }
  *out = 0;
  return out != buf ? buf : nullptr;
}

}  // namespace varnice::internal

#endif  // VARNICE_STREAM_STDIO_LINE_READER_H_
