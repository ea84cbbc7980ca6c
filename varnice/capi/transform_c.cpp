// TransformUnicodeString: any catalogued transform over a caller's buffer,
// with every object on the stack so that calls may run on several threads.
#include <cstddef>
#include <memory>

#include "varnice/capi/varnice_c.h"
#include "varnice/charprops/property_codes.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/stream/buffer_char16_sink.h"
#include "varnice/stream/buffer_char16_source.h"
#include "varnice/transform/transform_catalogue.h"
#include "varnice/transform/unicode_transform.h"

extern "C" int TransformUnicodeString(int selector, int propertyCode,
                                      const unsigned short* source, long sourceLength,
                                      unsigned short* destination, long destinationCapacity) {
  const CharacterTest& test = varnice::internal::PropertyForCode(propertyCode);
  const InternalEncoding& encoding = *InternalEncoding::Unicode();
  if (destinationCapacity <= 0) return -1;
  if (sourceLength < 0) {
    sourceLength = 0;
    while (source[sourceLength] != 0) ++sourceLength;
  } else if (sourceLength == 0) {
    destination[0] = 0;
    return 0;
  }
  // Checked before the sink exists: building the sink writes a terminator, and
  // a bad selector must leave the destination untouched.
  TransformCatalogue::Entry const* entry = TransformCatalogue::Find(selector);
  if (entry == nullptr || !entry->Available()) return -1;

  BufferChar16Source in(source, source + sourceLength);
  BufferChar16Sink out(destination, destinationCapacity);
  alignas(std::max_align_t) unsigned char storage[TransformCatalogue::kStorageSize];
  std::unique_ptr<UnicodeTransform, PlacedTransformDeleter> transform(
      entry->place(storage, in, encoding, test));
  out.Put(*transform);
  out.Flush();
  const long n = out.size();
  if (n < destinationCapacity) {
    destination[n] = 0;
    return static_cast<int>(n);
  }
  destination[n - 1] = 0;
  return -1;
}
