#include "varnice/stream/converting/block_external_encoding.h"

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/stream/converting/converting_sinks.h"
#include "varnice/stream/converting/converting_sources.h"
#include "varnice/widec/qz_auto_ptr.h"

BlockExternalEncoding::~BlockExternalEncoding() = default;

// Each factory holds the new converter until the stream that owns it exists.

ExternalEncoding::ToUnicodeSource* BlockExternalEncoding::CreateCharSourceToUnicode(
    CharSource& in, UnicodeLibAllocator& a) const {
  qz_auto_ptr<BlockConverter_8_to_16> converter(CreateConverterToUnicode(a));
  auto* stream = new (a) CharSource_8_to_16(in, *this, converter.get(), *InternalEncoding::Unicode());
  converter.release();
  return stream;
}

CharSource* BlockExternalEncoding::CreateCharSourceFromUnicode(Char16Source& in,
                                                               UnicodeLibAllocator& a) const {
  qz_auto_ptr<BlockConverter_16_to_8> converter(CreateConverterFromUnicode(a));
  auto* stream = new (a) CharSource_16_to_8(in, *InternalEncoding::Unicode(), converter.get(), *this);
  converter.release();
  return stream;
}

Char16Sink* BlockExternalEncoding::CreateCharSinkFromUnicode(CharSink& out,
                                                             UnicodeLibAllocator& a) const {
  qz_auto_ptr<BlockConverter_16_to_8> converter(CreateConverterFromUnicode(a));
  auto* stream = new (a) CharSink_16_to_8(*InternalEncoding::Unicode(), converter.get(), *this, out);
  converter.release();
  return stream;
}

CharSink* BlockExternalEncoding::CreateCharSinkToUnicode(Char16Sink& out,
                                                         UnicodeLibAllocator& a) const {
  qz_auto_ptr<BlockConverter_8_to_16> converter(CreateConverterToUnicode(a));
  auto* stream = new (a) CharSink_8_to_16(*this, converter.get(), *InternalEncoding::Unicode(), out);
  converter.release();
  return stream;
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
