// The printer form of a multi-byte code page: every character goes as a code
// of at least two bytes, big-endian, so single-byte characters carry a zero
// high byte. It reads and writes through the code page's own tables and, like
// the code page, honours the behaviour's forced direct mapping (whose bytes go
// alone, without a zero byte).
//
// HPPrinterVariation (variation 8, "HP-Printer") makes this variant of the
// multi-byte encoding numbered 9 only; no other encoding has a printer form.
#ifndef VARNICE_UNICODEFORMS_HP_PRINTER_VARIANT_H_
#define VARNICE_UNICODEFORMS_HP_PRINTER_VARIANT_H_

#include "varnice/codepages/mbcs_encoding.h"
#include "varnice/encoding/block_converter.h"
#include "varnice/stream/converting/block_external_encoding.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/varnice_export.h"

class VARNICE_API HPPrinterVariant : public BlockExternalEncoding {
 public:
  class ToUnicode;
  class FromUnicode;

  HPPrinterVariant(const MBCSEncoding& encoding, const EncodingVariation& variation, const char** names);
  ~HPPrinterVariant();

  // The code page's answer.
  bool IsTextModeSafe() const override;
  // Over the code page's tables; forced direct mapping where the code page
  // honours it.
  BlockConverter_8_to_16* CreateConverterToUnicode(UnicodeLibAllocator& a) const override;
  BlockConverter_16_to_8* CreateConverterFromUnicode(UnicodeLibAllocator& a) const override;

  const MBCSEncoding& MultiByteEncoding() const;

 private:
  friend class HPPrinterVariation;
  // For the variation, which meets the code page from the ExternalEncoding
  // constructor, before the code page is an MBCSEncoding: it is held as its
  // base and read as a code page only once converters are made.
  HPPrinterVariant(const ExternalEncoding& codePage, const EncodingVariation& variation);

  const ExternalEncoding& encoding_;
};

class VARNICE_API HPPrinterVariant::ToUnicode : public BlockConverter_8_to_16 {
 public:
  ToUnicode(const MBCStoUnicodeTable& table, bool forcedMappingAllowed);
  ~ToUnicode() override;

  // Results as MBCStoUnicode's. A zero byte in the first position of a pair
  // is the high byte of a single-byte character and is skipped.
  int Convert(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) override;
  void Reset() override;

 private:
  const MBCStoUnicodeTable& table_;
  unsigned short state_ = 0;
  bool forcedMappingAllowed_;
  bool parity_ = false;  // set while the last byte read was the first of a pair
};

class VARNICE_API HPPrinterVariant::FromUnicode : public BlockConverter_16_to_8 {
 public:
  FromUnicode(const LookupUnsignedLongTable<unsigned short>& table, bool forcedMappingAllowed);
  ~FromUnicode() override;

  // Results as MBCSfromUnicode's; codes below 0x10000 take two bytes.
  int Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out, const char* outEnd,
              long capacity) override;

 private:
  const LookupUnsignedLongTable<unsigned short>& table_;
  bool forcedMappingAllowed_;
};

class VARNICE_API HPPrinterVariation : public RealEncodingVariation {
 public:
  HPPrinterVariation();
  ~HPPrinterVariation() override;

  using EncodingVariation::GenerateVariantOf;
  // A printer variant of the encoding numbered 9, which must be an
  // MBCSEncoding (it is taken to be one); nothing for any other.
  void GenerateVariantOf(const ExternalEncoding& encoding) override;
};

#endif  // VARNICE_UNICODEFORMS_HP_PRINTER_VARIANT_H_
