#include "varnice/stream/converting/block_external_encoding.h"

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/encoding/wrap_converter.h"
#include "varnice/stream/converting/converting_sinks.h"
#include "varnice/stream/converting/converting_sources.h"

BlockExternalEncoding::~BlockExternalEncoding() = default;

using varnice::internal::WrapConverter;

ExternalEncoding::ToUnicodeSource* BlockExternalEncoding::CreateCharSourceToUnicode(
    CharSource& in, UnicodeLibAllocator& a) const {
  return WrapConverter(CreateConverterToUnicode(a), [&](BlockConverter_8_to_16* c) {
    return new (a) CharSource_8_to_16(in, *this, c, *InternalEncoding::Unicode());
  });
}

CharSource* BlockExternalEncoding::CreateCharSourceFromUnicode(Char16Source& in,
                                                               UnicodeLibAllocator& a) const {
  return WrapConverter(CreateConverterFromUnicode(a), [&](BlockConverter_16_to_8* c) {
    return new (a) CharSource_16_to_8(in, *InternalEncoding::Unicode(), c, *this);
  });
}

Char16Sink* BlockExternalEncoding::CreateCharSinkFromUnicode(CharSink& out,
                                                             UnicodeLibAllocator& a) const {
  return WrapConverter(CreateConverterFromUnicode(a), [&](BlockConverter_16_to_8* c) {
    return new (a) CharSink_16_to_8(*InternalEncoding::Unicode(), c, *this, out);
  });
}

CharSink* BlockExternalEncoding::CreateCharSinkToUnicode(Char16Sink& out,
                                                         UnicodeLibAllocator& a) const {
  return WrapConverter(CreateConverterToUnicode(a), [&](BlockConverter_8_to_16* c) {
    return new (a) CharSink_8_to_16(*this, c, *InternalEncoding::Unicode(), out);
  });
}

// The converters declare these; they are defined here, where the encoding
// they ask is a complete type.
BlockConverter_8_to_16* BlockConverter_8_to_16::CreateRelatedConverterToUnicode(
    const BlockExternalEncoding& encoding, UnicodeLibAllocator& allocator) {
  return encoding.CreateConverterToUnicode(allocator);
}

BlockConverter_16_to_8* BlockConverter_16_to_8::CreateRelatedConverterFromUnicode(
    const BlockExternalEncoding& encoding, UnicodeLibAllocator& allocator) {
  return encoding.CreateConverterFromUnicode(allocator);
}
