// The stream stages of the byte forms of an internal encoding (UTF-8, UTF-7,
// UCS-2): the form's block converter in a converting stream, joined to the
// internal encoding's own stage so that the Unicode side is always
// Unicode 2.0, inside a proxy that owns both. Internal to the library.
//
// Each function takes ownership of the converter it is given, also when it
// throws.
#ifndef VARNICE_UNICODEFORMS_FORM_PIPELINES_H_
#define VARNICE_UNICODEFORMS_FORM_PIPELINES_H_

#include "varnice/encoding/external_encoding.h"

class BlockConverter_8_to_16;
class BlockConverter_16_to_8;
class CharSink;
class CharSource;
class Char16Sink;
class Char16Source;
class InternalEncoding;
class UnicodeLibAllocator;

namespace varnice::internal {

// bytes -> decoder -> internal's to-Unicode stage, in a ToUnicodeProxySource.
ExternalEncoding::ToUnicodeSource* FormSourceToUnicode(const ExternalEncoding& form,
                                                       const InternalEncoding& internal,
                                                       BlockConverter_8_to_16* decoder, CharSource& in,
                                                       UnicodeLibAllocator& a);

// Unicode 2.0 -> internal's from-Unicode stage -> encoder, in a
// DirectedCharProxySource.
CharSource* FormSourceFromUnicode(const ExternalEncoding& form, const InternalEncoding& internal,
                                  BlockConverter_16_to_8* encoder, Char16Source& in, UnicodeLibAllocator& a);

// Accepts Unicode 2.0 and writes the form's bytes to `out`, in a
// DirectedChar16ProxySink.
Char16Sink* FormSinkFromUnicode(const ExternalEncoding& form, const InternalEncoding& internal,
                                BlockConverter_16_to_8* encoder, CharSink& out, UnicodeLibAllocator& a);

// Accepts the form's bytes and writes Unicode 2.0 to `out`, in a
// DirectedCharProxySink.
CharSink* FormSinkToUnicode(const ExternalEncoding& form, const InternalEncoding& internal,
                            BlockConverter_8_to_16* decoder, Char16Sink& out, UnicodeLibAllocator& a);

}  // namespace varnice::internal

#endif  // VARNICE_UNICODEFORMS_FORM_PIPELINES_H_
