// The C conversion functions' direct route: the encoding's own block
// converter run straight over the caller's buffers.
//
// The general route builds a stream pipeline per call and pushes the text
// through the stages' buffers. When that pipeline is a single converting
// stage around a block converter (nothing else between the bytes and
// UTF-16), the same converter can write into the caller's buffer itself, with
// problems handed to the same behaviour in the same order, so it is taken
// only when the outcome cannot differ:
//   - the encoding is exactly one whose stages are known to be one block
//     converter: a table-driven code page, ISO-2022-JP, or UTF-8 over
//     Unicode 2.0 (a subclass could build other stages);
//   - the default behaviour is exactly UnicodeLibBehavior, whatever its
//     settings: its handlers only insert substitutes and look at nothing but
//     the problem's target, so conversion may stop once the buffer is full and
//     the problem records need not point into a stage's buffer.
// Only the last few units or bytes before the end of the room go through a
// small buffer of the route's own, where the general route's sink would cut
// them.
#ifndef VARNICE_CAPI_DIRECT_ROUTE_H_
#define VARNICE_CAPI_DIRECT_ROUTE_H_

class ExternalEncoding;
class InternalEncoding;
class UnicodeLibBehavior;

namespace varnice::internal {

// An encoding to convert directly: the Unicode side its stages name in
// problem records, and the two conversions over its own converters. Decided
// once, at registration.
struct DirectRoute {
  using Decode = long (*)(const DirectRoute&, UnicodeLibBehavior&, const char*, long, unsigned short*, long);
  using Encode = long (*)(const DirectRoute&, UnicodeLibBehavior&, const unsigned short*, long, char*, long);

  const ExternalEncoding* encoding = nullptr;
  const InternalEncoding* unicode = nullptr;
  Decode decode = nullptr;
  Encode encode = nullptr;

  // Empty unless `encoding` is one of those named above.
  static DirectRoute Of(const ExternalEncoding* encoding);
  explicit operator bool() const { return encoding != nullptr; }
};

// The default behaviour if it is a UnicodeLibBehavior itself, else null.
UnicodeLibBehavior* PlainDefaultBehavior();

// Converts [src, src + length) into at most `room` (> 0) units at dst and
// returns how many were written: the first `room` units of the whole result,
// or all of it if shorter. room -1: the caller vouches that the whole result
// fits. Writes no terminator.
inline long DecodeDirect(const DirectRoute& route, UnicodeLibBehavior& behavior, const char* src, long length,
                         unsigned short* dst, long room) {
  return route.decode(route, behavior, src, length, dst, room);
}

// Converts [src, src + length) into at most `room` (> 0) bytes at dst and
// returns how many were written, cut as the general route's sink cuts: whole
// characters within the room (the converter's byte budget), substitutes and
// the closing sequence cut at its end. Writes no terminator.
inline long EncodeDirect(const DirectRoute& route, UnicodeLibBehavior& behavior, const unsigned short* src,
                         long length, char* dst, long room) {
  return route.encode(route, behavior, src, length, dst, room);
}

}  // namespace varnice::internal

#endif  // VARNICE_CAPI_DIRECT_ROUTE_H_
