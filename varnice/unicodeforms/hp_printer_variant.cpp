#include "varnice/unicodeforms/hp_printer_variant.h"

#include "varnice/codepages/mbcs_engine.h"

using varnice::internal::DecodePrinterPairs;
using varnice::internal::EncodePrinterPairs;
using varnice::internal::FromUnicodeFinder;
using varnice::internal::PassThrough;

namespace {

const char* kHPPrinterNames[] = {"HP-Printer", nullptr};

// The one encoding number that has a printer form.
constexpr unsigned long kPrinterBase = 9;

}  // namespace

HPPrinterVariant::HPPrinterVariant(const MBCSEncoding& encoding, const EncodingVariation& variation,
                                   const char** names)
    : BlockExternalEncoding(encoding, variation, names, nullptr, 0), encoding_(encoding) {}

HPPrinterVariant::HPPrinterVariant(const ExternalEncoding& codePage, const EncodingVariation& variation)
    : BlockExternalEncoding(codePage, variation, nullptr, nullptr, 0), encoding_(codePage) {}

const MBCSEncoding& HPPrinterVariant::MultiByteEncoding() const {
  return static_cast<const MBCSEncoding&>(encoding_);
}

HPPrinterVariant::~HPPrinterVariant() = default;

bool HPPrinterVariant::IsTextModeSafe() const { return MultiByteEncoding().IsTextModeSafe(); }

BlockConverter_8_to_16* HPPrinterVariant::CreateConverterToUnicode(UnicodeLibAllocator& a) const {
  const MBCSEncoding& codePage = MultiByteEncoding();
  return new (a) ToUnicode(codePage.ToUnicodeTable(), codePage.IsBasedOnASCII());
}

BlockConverter_16_to_8* HPPrinterVariant::CreateConverterFromUnicode(UnicodeLibAllocator& a) const {
  const MBCSEncoding& codePage = MultiByteEncoding();
  return new (a) FromUnicode(codePage.FromUnicodeTable(), codePage.IsBasedOnASCII());
}

HPPrinterVariant::ToUnicode::ToUnicode(const MBCStoUnicodeTable& table, bool forcedMappingAllowed)
    : table_(table), forcedMappingAllowed_(forcedMappingAllowed) {}

HPPrinterVariant::ToUnicode::~ToUnicode() = default;

int HPPrinterVariant::ToUnicode::Convert(const char*& in, const char* inEnd, unsigned short*& out,
                                         const unsigned short* outEnd) {
  auto* p = reinterpret_cast<const unsigned char*>(in);
  const int result =
      DecodePrinterPairs(table_.Actions(), state_, parity_, PassThrough(forcedMappingAllowed_, Behavior()), p,
                         reinterpret_cast<const unsigned char*>(inEnd), out, outEnd);
  in = reinterpret_cast<const char*>(p);
  return result;
}

void HPPrinterVariant::ToUnicode::Reset() {
  state_ = 0;
  parity_ = false;
}

HPPrinterVariant::FromUnicode::FromUnicode(const LookupUnsignedLongTable<unsigned short>& table,
                                           bool forcedMappingAllowed)
    : table_(table), forcedMappingAllowed_(forcedMappingAllowed) {}

HPPrinterVariant::FromUnicode::~FromUnicode() = default;

int HPPrinterVariant::FromUnicode::Convert(const unsigned short*& in, const unsigned short* inEnd, char*& out,
                                           const char* outEnd, long capacity) {
  const PassThrough pass(forcedMappingAllowed_, Behavior());
  return FromUnicodeFinder(table_).With([&](const auto& find) {
    return EncodePrinterPairs(find, pass, in, inEnd, out, outEnd,
                              [&](long n) { return ReachedCapacity(n, 0, capacity); });
  });
}

HPPrinterVariation::HPPrinterVariation() : RealEncodingVariation(EncodingVariationID(8), kHPPrinterNames) {}

HPPrinterVariation::~HPPrinterVariation() = default;

void HPPrinterVariation::GenerateVariantOf(const ExternalEncoding& encoding) {
  if (AlreadyAppliedTo(encoding) || encoding.GetTextEncodingID() != TextEncodingID(kPrinterBase)) return;
  // A new encoding is offered to the variations from the ExternalEncoding
  // constructor, before its MBCSEncoding part exists, so its type cannot be
  // asked (or cast to) yet; the number says what it is. Lives as long as the
  // code page, until unload.
  AddVariant(new HPPrinterVariant(encoding, *this));
}

EncodingVariation* EncodingVariation::HPPrinter() {
  static EncodingVariation* const variation = [] {
    auto* made = new HPPrinterVariation;
    made->GenerateVariantsForExistingEncodings();
    return made;
  }();
  return variation;
}
