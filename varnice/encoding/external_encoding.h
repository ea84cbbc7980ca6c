// ExternalEncoding: an encoding of text as bytes. It converts nothing itself:
// it is a factory of the stream stages that convert to and from UTF-16, and
// of a detector that scores unlabelled input.
#ifndef VARNICE_ENCODING_EXTERNAL_ENCODING_H_
#define VARNICE_ENCODING_EXTERNAL_ENCODING_H_

#include "varnice/encoding/text_encoding.h"
#include "varnice/stream/char16_source.h"
#include "varnice/varnice_export.h"

class CharSink;
class CharSource;
class Char16Sink;
class Char16Source;
class ExternalEncodingDetector;
class UnicodeLibAllocator;

// The overrides of an external encoding that makes its own stages and
// detector, in slot order; a class's own comments say where its answers differ.
#define VARNICE_EXTERNAL_ENCODING_OVERRIDES                                                     \
  bool IsTextModeSafe() const override;                                                           \
  ToUnicodeSource* CreateCharSourceToUnicode(CharSource& in, UnicodeLibAllocator& a) const override; \
  CharSource* CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const override; \
  Char16Sink* CreateCharSinkFromUnicode(CharSink& out, UnicodeLibAllocator& a) const override;    \
  CharSink* CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const override;      \
  ExternalEncodingDetector* CreateEncodingDetector(UnicodeLibAllocator& a) const override

class VARNICE_API ExternalEncoding : public TextEncoding {
 public:
  // A Char16Source that decodes this encoding; the type every
  // CreateCharSourceToUnicode returns.
  class ToUnicodeSource;

  unsigned int TokenSize() const override;
  bool IsValidForInput() const override;
  bool IsValidForOutput() const override;
  // The byte written for a character this encoding cannot represent (0x1A).
  virtual char SubstituteChar() const;
  virtual bool IsBasedOnASCII() const;
  // Whether text-mode line-end translation leaves the encoded bytes intact.
  virtual bool IsTextModeSafe() const = 0;
  // Pipeline stages, placed with the allocator; the caller owns them.
  virtual ToUnicodeSource* CreateCharSourceToUnicode(CharSource& in, UnicodeLibAllocator& a) const = 0;
  virtual CharSource* CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const = 0;
  virtual Char16Sink* CreateCharSinkFromUnicode(CharSink& out, UnicodeLibAllocator& a) const = 0;
  virtual CharSink* CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const = 0;
  // Null when the encoding cannot be detected.
  virtual ExternalEncodingDetector* CreateEncodingDetector(UnicodeLibAllocator& a) const;

  // The Unicode forms, made (with their variation) on first call: UTF-8 and
  // UTF-7 of Unicode 2.0 and 1.1; their big-endian two-byte forms; and
  // ("UCS-2") the host-order two-byte form with a byte-order mark.
  // Defined in varnice/unicodeforms/unicode_form_factories.cpp, a layer above.
  static ExternalEncoding* Unicode20UTF8();
  static ExternalEncoding* Unicode11UTF8();
  static ExternalEncoding* Unicode20UTF7();
  static ExternalEncoding* Unicode11UTF7();
  static ExternalEncoding* Unicode20BigEndian();
  static ExternalEncoding* Unicode11BigEndian();
  static ExternalEncoding* Unicode20ByteStream();
  static ExternalEncoding* Unicode11ByteStream();

  // The registry, restricted to external encodings.
  static unsigned int Count();
  static ExternalEncoding* Lookup(unsigned int index);
  static ExternalEncoding* Lookup(TextEncodingID id);
  static ExternalEncoding* Lookup(const char* name);
  static ExternalEncoding* Lookup(const unsigned short* name);
  static ExternalEncoding* LookupCodePage(unsigned int cp);

  // The table-driven code pages and ISO-2022-JP, each made on first call and
  // kept until unload. Their facts are listed once, in data/codepages/catalogue.txt;
  // the generator defines these factories from it a layer above
  // (varnice/codepages/generated/code_page_catalogue.cpp) and fails when this
  // list, in the catalogue's order, is not the catalogue's.
  static ExternalEncoding* ASCII();
  static ExternalEncoding* CP1252();
  static ExternalEncoding* EUCPkdFmtJapanese();
  static ExternalEncoding* HalfWidthKatakana();
  static ExternalEncoding* ISO2022JP();
  static ExternalEncoding* ISO87JISX0208();
  static ExternalEncoding* ISOLatin1();
  static ExternalEncoding* ISOLatin2();
  static ExternalEncoding* ISOLatin3();
  static ExternalEncoding* ISOLatin5();
  static ExternalEncoding* PC850Multilingual();
  static ExternalEncoding* PC8CodePage437();
  static ExternalEncoding* ShiftJIS();
  static ExternalEncoding* CP932();
  static ExternalEncoding* CP852();
  static ExternalEncoding* CP857();
  static ExternalEncoding* CP860();
  static ExternalEncoding* CP863();
  static ExternalEncoding* CP870();
  static ExternalEncoding* CP1250();
  static ExternalEncoding* CP1254();
  static ExternalEncoding* CP20105();
  static ExternalEncoding* CP20290();
  static ExternalEncoding* CP21027();
  static ExternalEncoding* CP28599();
  static ExternalEncoding* ISO_8859_15();
  static ExternalEncoding* CCSID290();
  static ExternalEncoding* CCSID942();
  static ExternalEncoding* CCSID1027();

 protected:
  // Both forms register the encoding and let every variation generate its
  // variants of it.
  ExternalEncoding(TextEncodingID id, const char** nicknames, const char* mimeName, unsigned int codePage);
  ExternalEncoding(const TextEncoding& parent, const EncodingVariation& variation,
                   const char** nicknames, const char* mimeName, unsigned int codePage);
  ~ExternalEncoding();
};

// The face every to-Unicode stage of an external encoding shows: a source of
// UTF-16 that can also say which encoding it is decoding.
class VARNICE_API ExternalEncoding::ToUnicodeSource : public virtual Char16Source {
 public:
  ~ToUnicodeSource() override;
  // The encoding of the bytes being read; a detecting source answers with the
  // encoding it chose (choosing now if it has not yet).
  virtual const ExternalEncoding* ActualInputEncoding() = 0;
};

#endif  // VARNICE_ENCODING_EXTERNAL_ENCODING_H_
