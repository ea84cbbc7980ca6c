#include "varnice/capi/data_encoding_table.h"

#include <cstdio>

#include "varnice/encoding/catalogue/encoding_catalogue.h"
#include "varnice/encoding/encodingconverter/encoding_converter.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/encoding/unicode_library.h"
#include "varnice/stream/buffer_char16_source.h"
#include "varnice/stream/buffer_char_sink.h"

namespace varnice::internal {

namespace {

constinit DataEncodingTable gDataEncodings;

// Writes U+0020 in `encoding` into two bytes and returns how many it took. A
// longer form (a byte-order mark first, say) is cut at two bytes. An encoding
// that cannot be written at all takes none: it can still be read.
int EncodeSpace(const ExternalEncoding& encoding, unsigned char (&bytes)[2]) {
  const unsigned short space = 0x20;
  BufferChar16Source source(&space, &space + 1);
  BufferCharSink sink(bytes, 2);
  try {
    ExternalEncodingConverter converter(source, *InternalEncoding::Unicode20(), encoding);
    sink.Put(converter);
    sink.Flush();
  } catch (const InvalidOutputEncoding&) {
    return 0;
  }
  return static_cast<int>(sink.size());
}

}  // namespace

DataEncodingTable& DataEncodings() { return gDataEncodings; }

bool DataEncodingTable::HostVersionIsCompatible() { return UnicodeLibrary::VersionIsCompatible(11, 20); }

const ExternalEncoding* DataEncodingTable::Latin1() { return ExternalEncoding::ISOLatin1(); }

const DirectRoute& DataEncodingTable::Latin1Direct() {
  static const DirectRoute latin1 = DirectRoute::Of(Latin1());
  return latin1;
}

int DataEncodingTable::Register(const char* name) {
  // Only the first call ever checks, even if that check failed.
  if (++registerCalls_ == 1 && !versionCheck_()) {
    std::fputs("The installed version of Varnice (the Quillmark Unicode library) is incompatible "
               "with the version assumed by this application.\n",
               stderr);
    return 0;
  }
  if (name == nullptr) return 0;
  // Names find only encodings that exist.
  EncodingCatalogue::CreateAll();
  const ExternalEncoding* encoding = ExternalEncoding::Lookup(name);
  if (encoding == nullptr) return 0;
  return Add(*encoding);
}

int DataEncodingTable::Add(const ExternalEncoding& found) {
  const ExternalEncoding* encoding = &found;
  for (int number = 1; number < nextFree_ && number <= kMaxNumber; ++number) {
    if (encodings_[number] == encoding) return number;
  }
  if (nextFree_ > kMaxNumber) {
    std::fprintf(stderr, "Maximum number of data encodings (%d) exceeded.\n", kMaxNumber);
    return 0;
  }
  // Encoded before the number is taken, so that a failure leaves no gap.
  unsigned char space[2] = {0, 0};
  const int length = EncodeSpace(*encoding, space);
  const int number = nextFree_++;
  encodings_[number] = encoding;
  direct_[number] = DirectRoute::Of(encoding);
  nominalLength_[number] = static_cast<signed char>(length);
  encodedSpace_[number][0] = space[0];
  encodedSpace_[number][1] = space[1];
  return number;
}

const char* DataEncodingTable::Name(int number) const {
  const ExternalEncoding* encoding = number != 0 ? Encoding(number) : nullptr;
  return encoding != nullptr ? encoding->Name() : "";
}

}  // namespace varnice::internal
