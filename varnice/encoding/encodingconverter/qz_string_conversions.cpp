// The string constructors that convert: they live with the converters rather
// than with the string classes, which know nothing of encodings.
#include "varnice/encoding/encodingconverter/encoding_converter.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/stream/string_char16_sink.h"
#include "varnice/stream/string_char_sink.h"
#include "varnice/widec/qz_string.h"
#include "varnice/widec/qz_wstring.h"

namespace {

qz_string::size_type LengthOf(const unsigned short* s) {
  qz_string::size_type n = 0;
  if (s != nullptr) {
    while (s[n] != 0) ++n;
  }
  return n;
}

qz_wstring::size_type LengthOf(const char* s) {
  qz_wstring::size_type n = 0;
  if (s != nullptr) {
    while (s[n] != 0) ++n;
  }
  return n;
}

}  // namespace

qz_string::qz_string(const unsigned short* s, const ExternalEncoding& encoding)
    : qz_string(s, LengthOf(s), encoding) {}

qz_string::qz_string(const unsigned short* s, size_type n, const ExternalEncoding& encoding) {
  if (s == nullptr || n == 0) return;
  StringCharSink sink;
  InternalEncodingConverterSink converter(*InternalEncoding::Unicode(), encoding, sink);
  converter.PutBuffer(s, s + n);
  converter.Flush();
  *this = sink.str();
}

qz_wstring::qz_wstring(const char* s, const ExternalEncoding& encoding) : qz_wstring(s, LengthOf(s), encoding) {}

qz_wstring::qz_wstring(const char* s, size_type n, const ExternalEncoding& encoding) {
  if (s == nullptr || n == 0) return;
  StringChar16Sink sink;
  ExternalEncodingConverterSink converter(encoding, *InternalEncoding::Unicode(), sink);
  converter.PutBuffer(s, s + n);
  converter.Flush();
  *this = sink.str();
}
