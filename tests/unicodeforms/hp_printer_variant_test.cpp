// The printer form of a multi-byte code page. No catalogue encoding has the
// number 9, so the tests register one of their own over the Shift_JIS tables.
#include "varnice/unicodeforms/hp_printer_variant.h"

#include <gtest/gtest.h>

#include "tests/fresh_process.h"

#include "tests/codepages/converter_test_support.h"
#include "varnice/encoding/unicode_lib_behavior.h"

namespace {

using namespace codepage_test;

const char* kNames[] = {"Printer-SJIS", nullptr};

const MBCSEncoding& PrinterBase() {
  static const MBCSEncoding* encoding = [] {
    auto& sjis = dynamic_cast<const MBCSEncoding&>(*ExternalEncoding::ShiftJIS());
    return new MBCSEncoding(TextEncodingID(9), kNames, nullptr, 0, sjis.ToUnicodeTable(), sjis.FromUnicodeTable(),
                            true);
  }();
  return *encoding;
}

const ExternalEncoding* PrinterVariant() {
  return ExternalEncoding::Lookup(TextEncodingID(9) + EncodingVariationID(8));
}

// Each order of creation is seen in a fresh process.
FRESH_PROCESS_TEST(HPPrinterVariation, MadeForNumberNineWhicheverComesFirst) {
  PrinterBase();
  EncodingVariation* printer = EncodingVariation::HPPrinter();
  EXPECT_EQ(EncodingVariation::HPPrinter(), printer);
  EXPECT_EQ(EncodingVariation::Lookup("hp printer"), printer);
  ASSERT_NE(PrinterVariant(), nullptr);
  EXPECT_EQ(printer->CountVariants(), 1u);
  EXPECT_STREQ(PrinterVariant()->Name(), "Printer-SJISHP-Printer");
  EXPECT_EQ(ExternalEncoding::Lookup("printer sjis:HP-Printer"), PrinterVariant());
  EXPECT_EQ(&dynamic_cast<const HPPrinterVariant&>(*PrinterVariant()).MultiByteEncoding(), &PrinterBase());
  EXPECT_TRUE(PrinterVariant()->IsTextModeSafe());
}

FRESH_PROCESS_TEST(HPPrinterVariation, VariationFirstThenEncoding) {
  EncodingVariation::HPPrinter();
  EXPECT_EQ(PrinterVariant(), nullptr);
  PrinterBase();
  EXPECT_NE(PrinterVariant(), nullptr);
}

FRESH_PROCESS_TEST(HPPrinterVariation, NoOtherEncodingGetsAPrinterForm) {
  ExternalEncoding::ShiftJIS();
  EncodingVariation::HPPrinter();
  ExternalEncoding::EUCPkdFmtJapanese();
  EXPECT_EQ(ExternalEncoding::ShiftJIS()->LookupVariant(EncodingVariationID(8)), nullptr);
  EXPECT_EQ(ExternalEncoding::EUCPkdFmtJapanese()->LookupVariant(EncodingVariationID(8)), nullptr);
  EXPECT_EQ(EncodingVariation::HPPrinter()->CountVariants(), 0u);
}

struct Printer : Converters {
  Printer() : Converters((PrinterBase(), EncodingVariation::HPPrinter(), PrinterVariant())) {}
};

TEST(HPPrinterVariant, ZeroHighByteIsStrippedOnlyInFirstPosition) {
  Printer p;
  EXPECT_EQ(Decode(*p.to, std::string("\x00\x41\x81\x40\x00\x00", 6)),
            (Decoded{kInputUsedUp, std::u16string(u"A\u3000\0", 3), 6}));
  EXPECT_EQ(Decode(*p.to, std::string("\x00\x80\x00\x42", 4)), (Decoded{kNoCharacterDefined, u"", 2}));
  EXPECT_EQ(Decode(*p.to, std::string("\x00\x42", 2)).units, u"B");
  // A pair split across blocks keeps its parity.
  EXPECT_EQ(Decode(*p.to, std::string("\x00", 1)).units, u"");
  EXPECT_EQ(Decode(*p.to, "C").units, u"C");
}

TEST(HPPrinterVariant, EveryCodeInAtLeastTwoBytes) {
  Printer p;
  EXPECT_EQ(Encode(*p.from, u"A\u3000\uFF71").hex, "00 41 81 40 00 B1");
  const Encoded e = Encode(*p.from, u"A\u3000", 3);
  EXPECT_EQ(e.result, kCapacityReached);
  EXPECT_EQ(e.hex, "00 41");
  p.from->Reset();
  EXPECT_EQ(Encode(*p.from, u"\u00E9"), (Encoded{kNotInTargetRepertoire, "", 1}));
}

TEST(HPPrinterVariant, ForcedDirectMappingGoesAsSingleBytes) {
  UnicodeLibBehavior forced;
  forced.SetForcedDirectMapping("A\x80");
  Printer p;
  p.from->SetBehavior(&forced);
  p.to->SetBehavior(&forced);
  EXPECT_EQ(Encode(*p.from, u"AB").hex, "41 00 42");
  // 0x80 passes only between characters; after the lead 0x81 it is a trail.
  EXPECT_EQ(Decode(*p.to, std::string("\x00\x80\x81\x80", 4)).units, u"\u0080\u00F7");
}

}  // namespace
