// The writing rule of both buffer sinks (BufferCharSink, BufferChar16Sink):
// units are copied while they fit; the first that does not marks the sink
// truncated, and from then on nothing more is written. The text stays
// terminated whenever there is room for the terminator. Internal.
#ifndef VARNICE_STREAM_BUFFER_FILL_H_
#define VARNICE_STREAM_BUFFER_FILL_H_

#include <algorithm>

namespace varnice::internal {

template <class Unit>
void PutTruncating(const Unit* begin, const Unit* end, Unit*& position, Unit* limit, bool& truncated) {
  if (truncated) return;
  long n = end - begin;
  const long room = limit - position;
  if (n > room) {
    n = room;
    truncated = true;
  }
  if (n > 0) position = std::copy_n(begin, n, position);
  if (position < limit) *position = 0;
}

}  // namespace varnice::internal

#endif  // VARNICE_STREAM_BUFFER_FILL_H_
