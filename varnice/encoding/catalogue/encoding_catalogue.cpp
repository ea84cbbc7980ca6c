#include "varnice/encoding/catalogue/encoding_catalogue.h"

#include "varnice/detect/auto_detect_encoding.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/external_encoding.h"
#include "varnice/encoding/internal_encoding.h"

namespace {

void CreateEverything() {
  InternalEncoding::Unicode20();
  InternalEncoding::Unicode11();
  // The variations generate the Unicode forms of both internal encodings.
  EncodingVariation::ByteOrderMark();
  EncodingVariation::UTF7();
  EncodingVariation::UTF8();
  EncodingVariation::BigEndian();
  EncodingVariation::LittleEndian();
  EncodingVariation::PlatformByteOrder();
  EncodingVariation::HPPrinter();
  // Code pages and ISO-2022-JP, in the order of their numbers.
  for (ExternalEncoding* (*factory)() :
       {&ExternalEncoding::ASCII, &ExternalEncoding::CP1252, &ExternalEncoding::EUCPkdFmtJapanese,
        &ExternalEncoding::HalfWidthKatakana, &ExternalEncoding::ISO2022JP, &ExternalEncoding::ISO87JISX0208,
        &ExternalEncoding::ISOLatin1, &ExternalEncoding::ISOLatin2, &ExternalEncoding::ISOLatin3,
        &ExternalEncoding::ISOLatin5, &ExternalEncoding::PC850Multilingual, &ExternalEncoding::PC8CodePage437,
        &ExternalEncoding::ShiftJIS, &ExternalEncoding::CP932, &ExternalEncoding::CP852, &ExternalEncoding::CP857,
        &ExternalEncoding::CP860, &ExternalEncoding::CP863, &ExternalEncoding::CP870, &ExternalEncoding::CP1250,
        &ExternalEncoding::CP1254, &ExternalEncoding::CP20105, &ExternalEncoding::CP20290,
        &ExternalEncoding::CP21027, &ExternalEncoding::CP28599, &ExternalEncoding::ISO_8859_15,
        &ExternalEncoding::CCSID290, &ExternalEncoding::CCSID942, &ExternalEncoding::CCSID1027}) {
    factory();
  }
  // Last: they read through the encodings above.
  AutoDetectEncoding::General();
  AutoDetectEncoding::Japanese();
}

}  // namespace

void EncodingCatalogue::CreateAll() {
  static const bool created = (CreateEverything(), true);
  (void)created;
}
