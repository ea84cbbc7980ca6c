// The line readers behind StdioSource and Stdio16Source, written once for
// both unit types. `Slot` is the adaptor's push-back slot (-1 when empty).
#ifndef VARNICE_STREAM_STDIO_LINE_READER_H_
#define VARNICE_STREAM_STDIO_LINE_READER_H_

namespace varnice::internal {

constexpr int kNewline = 10;

// The loop both readers share: copies units from `source` to `out` while
// `room(out)` allows, up to and including a newline (stored only when
// `keepNewline`), then NUL-terminates. Returns buf, or null when nothing was
// stored and no newline came.
template <class Unit, class Source, class Room>
Unit* CopyLine(Source& source, Unit* buf, Unit* out, Room room, bool keepNewline) {
  const Unit* b;
  const Unit* e;
  while (room(out) && source.GetBuffer(b, e)) {
    while (b < e && room(out)) {
      const Unit c = *b++;
      if (c == kNewline) {
        if (keepNewline) *out++ = c;
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
  return CopyLine(source, buf, out, [limit](const Unit* at) { return at < limit; }, true);
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
  auto room = [unlimited, limit](const Unit* at) { return unlimited || at < limit; };
  if (slot == kNewline) {
    slot = -1;
    *buf = 0;
    return buf;
  }
  // With n == 1 there is no room for the pushed-back unit: storing it would
  // put the NUL past the buffer.
  if (slot != -1 && room(out)) *out++ = static_cast<Unit>(slot);
  return CopyLine(source, buf, out, room, false);
}

}  // namespace varnice::internal

#endif  // VARNICE_STREAM_STDIO_LINE_READER_H_
