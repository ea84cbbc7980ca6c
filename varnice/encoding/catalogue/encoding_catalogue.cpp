#include "varnice/encoding/catalogue/encoding_catalogue.h"

#include "varnice/codepages/code_page_catalogue.h"
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
  // The code pages and ISO-2022-JP, in the order of their numbers.
  varnice::internal::CreateCodePages();
  // Last: they read through the encodings above.
  AutoDetectEncoding::General();
  AutoDetectEncoding::Japanese();
}

}  // namespace

void EncodingCatalogue::CreateAll() {
  static const bool created = (CreateEverything(), true);
  (void)created;
}
