// BlockExternalEncoding: an external encoding whose conversions are block
// converters. It supplies the two converters; the stream factories wrap a
// fresh one in the matching converting stream, which owns it.
#ifndef VARNICE_STREAM_CONVERTING_BLOCK_EXTERNAL_ENCODING_H_
#define VARNICE_STREAM_CONVERTING_BLOCK_EXTERNAL_ENCODING_H_

#include "varnice/encoding/external_encoding.h"
#include "varnice/varnice_export.h"

class BlockConverter_8_to_16;
class BlockConverter_16_to_8;

class VARNICE_API BlockExternalEncoding : public ExternalEncoding {
 public:
  // CharSource_8_to_16 over the bytes.
  ToUnicodeSource* CreateCharSourceToUnicode(CharSource& in, UnicodeLibAllocator& a) const override;
  // CharSource_16_to_8 over the code units.
  CharSource* CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const override;
  // CharSink_16_to_8 in front of the byte sink.
  Char16Sink* CreateCharSinkFromUnicode(CharSink& out, UnicodeLibAllocator& a) const override;
  // CharSink_8_to_16 in front of the code-unit sink.
  CharSink* CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const override;

  // New converters, placed with the allocator; the caller owns them.
  virtual BlockConverter_8_to_16* CreateConverterToUnicode(UnicodeLibAllocator& a) const = 0;
  virtual BlockConverter_16_to_8* CreateConverterFromUnicode(UnicodeLibAllocator& a) const = 0;

 protected:
  BlockExternalEncoding(TextEncodingID id, const char** nicknames, const char* mimeName,
                        unsigned int codePage)
      : ExternalEncoding(id, nicknames, mimeName, codePage) {}
  BlockExternalEncoding(const TextEncoding& parent, const EncodingVariation& variation,
                        const char** nicknames, const char* mimeName, unsigned int codePage)
      : ExternalEncoding(parent, variation, nicknames, mimeName, codePage) {}
  ~BlockExternalEncoding();
};

#endif  // VARNICE_STREAM_CONVERTING_BLOCK_EXTERNAL_ENCODING_H_
