#include "varnice/encoding/text_encoding.h"

#include <gtest/gtest.h>

#include "tests/fresh_process.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/stream/stream_test_support.h"
#include "varnice/encoding/encoding_variation.h"
#include "varnice/encoding/external_encoding.h"

// Tests that depend on which test encodings and variations exist already run
// in a fresh process (FRESH_PROCESS_TEST), so the registry starts empty of them.
namespace {

// Test encodings use base numbers 120-125 and test variations the free
// numbers 7 and 9, so that they apply to nothing the library registers.
bool IsTestBase(const TextEncoding& e) {
  const unsigned long base = e.GetTextEncodingID().GetBaseEncodingID().Value();
  return base >= 120 && base <= 125;
}

struct TestExternal : testing_streams::StubExternalEncoding {
  TestExternal(unsigned long id, const char** nicknames, const char* mime, unsigned int cp)
      : StubExternalEncoding(TextEncodingID(id), nicknames, mime, cp) {}
  TestExternal(const TextEncoding& parent, const EncodingVariation& variation)
      : StubExternalEncoding(parent, variation, nullptr, nullptr, 0) {}
};

// A 16-bit registry entry, for the token-size filter.
struct TestWide : TextEncoding {
  explicit TestWide(const char** nicknames) : TextEncoding(TextEncodingID(125), nicknames, nullptr, 0) {}
  unsigned int TokenSize() const override { return 2; }
};

class TestVariation : public RealEncodingVariation {
 public:
  TestVariation(unsigned long number, const char** names)
      : RealEncodingVariation(EncodingVariationID(number), names) {}
  void GenerateVariantOf(const ExternalEncoding& encoding) override {
    if (IsTestBase(encoding) && !AlreadyAppliedTo(encoding)) AddVariant(new TestExternal(encoding, *this));
  }
};

const char* kFrameNames[] = {"Framed", "FRM", nullptr};
const char* kShoutNames[] = {"Shout", nullptr};

// Factories in the library's style: construct once, then catch up on the
// encodings that already exist.
TestVariation* Made(unsigned long number, const char** names) {
  auto* made = new TestVariation(number, names);
  made->GenerateVariantsForExistingEncodings();
  return made;
}

TestVariation& Framed() {
  static TestVariation* v = Made(7, kFrameNames);
  return *v;
}

TestVariation& Shout() {
  static TestVariation* v = Made(9, kShoutNames);
  return *v;
}

const char* kAlphaNames[] = {"Alpha-Code", "csAlpha", "AL 1", nullptr};
const char* kBetaNames[] = {"Beta", nullptr};

std::vector<unsigned short> Utf16(const std::string& s) {
  std::vector<unsigned short> units(s.begin(), s.end());
  units.push_back(0);
  return units;
}

TEST(TextEncoding, SameNameIgnoresCaseAndSeparators) {
  EXPECT_TRUE(TextEncoding::SameName("Shift_JIS", "shift jis", nullptr));
  EXPECT_TRUE(TextEncoding::SameName("Shift_JIS", "SHIFTJIS", nullptr));
  EXPECT_TRUE(TextEncoding::SameName("UTF8", "-U-T-F-8_", nullptr));
  EXPECT_TRUE(TextEncoding::SameName("UTF8", "utf8:x", nullptr) == false);
  EXPECT_TRUE(TextEncoding::SameName("UTF8", "utf8:x", std::string("utf8:x").c_str() + 4) == false);
  const char* given = "utf8:x";
  EXPECT_TRUE(TextEncoding::SameName("UTF8", given, given + 4));
  EXPECT_FALSE(TextEncoding::SameName("UTF8", "UTF", nullptr));   // given ends first
  EXPECT_FALSE(TextEncoding::SameName("UTF", "UTF8", nullptr));   // known ends first
  EXPECT_TRUE(TextEncoding::SameName("", "--", nullptr));
  EXPECT_FALSE(TextEncoding::SameName("Latin\xE9", "latin\xC9", nullptr));  // no folding past ASCII in "C"
}

FRESH_PROCESS_TEST(TextEncoding, LookupByNameNumberAndCodePage) {
  const unsigned int before = TextEncoding::Count();
  auto* alpha = new TestExternal(120, kAlphaNames, "X-ALPHA", 4242);
  auto* beta = new TestExternal(121, kBetaNames, nullptr, 0);
  auto* wide = new TestWide(kBetaNames);  // same name, other token size
  ASSERT_EQ(TextEncoding::Count(), before + 3);
  EXPECT_EQ(TextEncoding::Lookup(before), alpha);
  EXPECT_EQ(TextEncoding::Lookup(before + 3), nullptr);

  EXPECT_EQ(TextEncoding::Lookup("alpha code", 0), alpha);
  EXPECT_EQ(TextEncoding::Lookup("x_alpha", 1), alpha);  // MIME name
  EXPECT_EQ(TextEncoding::Lookup("AL1", 0), alpha);
  EXPECT_EQ(TextEncoding::Lookup("csAlpha", 2), nullptr);
  EXPECT_EQ(TextEncoding::Lookup("beta", 0), beta);  // first in list order
  EXPECT_EQ(TextEncoding::Lookup("beta", 2), wide);
  EXPECT_EQ(ExternalEncoding::Lookup("BETA"), beta);
  EXPECT_EQ(TextEncoding::Lookup("gamma", 0), nullptr);
  EXPECT_EQ(TextEncoding::Lookup(static_cast<const char*>(nullptr), 0), nullptr);

  EXPECT_EQ(TextEncoding::Lookup(Utf16("Alpha-Code").data(), 1), alpha);
  auto accented = Utf16("Alpha-Code");
  accented[2] = 0xE9;
  EXPECT_EQ(TextEncoding::Lookup(accented.data(), 0), nullptr);
  auto tilde = Utf16("Alpha\x7F");
  EXPECT_EQ(TextEncoding::Lookup(tilde.data(), 0), nullptr);
  EXPECT_EQ(TextEncoding::Lookup(Utf16("csAlpha" + std::string(1015, '-')).data(), 0), alpha);  // 1022 units fit
  EXPECT_EQ(TextEncoding::Lookup(Utf16("csAlpha" + std::string(1016, '-')).data(), 0), nullptr);

  EXPECT_EQ(TextEncoding::Lookup(TextEncodingID(121)), beta);
  EXPECT_EQ(TextEncoding::Lookup(TextEncodingID(124)), nullptr);
  EXPECT_EQ(TextEncoding::LookupCodePage(4242), alpha);
  TextEncoding* firstWithoutCodePage = nullptr;
  for (unsigned int i = 0; i < TextEncoding::Count() && !firstWithoutCodePage; ++i) {
    if (TextEncoding::Lookup(i)->CodePage() == 0) firstWithoutCodePage = TextEncoding::Lookup(i);
  }
  EXPECT_EQ(TextEncoding::LookupCodePage(0), firstWithoutCodePage);
  EXPECT_NE(firstWithoutCodePage, nullptr);

  EXPECT_STREQ(alpha->Name(), "Alpha-Code");
  EXPECT_EQ(alpha->CountNicknames(), 3u);
  EXPECT_STREQ(alpha->GetNickname(2), "AL 1");
  EXPECT_EQ(alpha->GetNickname(3), nullptr);
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(alpha->MimeNameInUnicode())), u"X-ALPHA");
  EXPECT_EQ(beta->MimeNameInUnicode(), nullptr);
  EXPECT_EQ(alpha->AsExternalEncoding(), alpha);
  EXPECT_EQ(alpha->AsInternalEncoding(), nullptr);
}

void ExpectClosedUnderVariations(const TextEncoding& base) {
  const TextEncodingID id = base.GetTextEncodingID();
  const TextEncoding* framed = TextEncoding::Lookup(id + EncodingVariationID(7));
  const TextEncoding* shouted = TextEncoding::Lookup(id + EncodingVariationID(9));
  const TextEncoding* both = TextEncoding::Lookup(id + EncodingVariationID(7) + EncodingVariationID(9));
  const TextEncoding* other = TextEncoding::Lookup(id + EncodingVariationID(9) + EncodingVariationID(7));
  ASSERT_NE(framed, nullptr);
  ASSERT_NE(shouted, nullptr);
  ASSERT_NE(both, nullptr);
  ASSERT_NE(other, nullptr);
  EXPECT_EQ(framed->GetParentEncoding(), &base);
  EXPECT_EQ(framed->GetParentVariation(), &Framed());
  EXPECT_EQ(both->GetParentEncoding(), framed);
  EXPECT_EQ(base.LookupVariant(EncodingVariationID(7) + EncodingVariationID(9)), both);
  EXPECT_TRUE(Framed().AlreadyAppliedTo(*both));
  EXPECT_FALSE(Framed().AlreadyAppliedTo(*shouted));
}

FRESH_PROCESS_TEST(TextEncoding, VariantsExistWhicheverCameFirst) {
  auto* early = new TestExternal(122, kAlphaNames, nullptr, 0);  // before the variations
  Framed();
  Shout();
  auto* late = new TestExternal(123, kBetaNames, nullptr, 0);  // after them
  ExpectClosedUnderVariations(*early);
  ExpectClosedUnderVariations(*late);
  EXPECT_EQ(Framed().CountVariants(), 4u);  // base and shouted form of each
  EXPECT_EQ(Framed().GetVariant(4), nullptr);
}

FRESH_PROCESS_TEST(TextEncoding, VariantNamesAndColonLookups) {
  Framed();
  Shout();
  auto* alpha = new TestExternal(120, kAlphaNames, nullptr, 0);
  const TextEncoding* framed = alpha->LookupVariant(EncodingVariationID(7));
  const TextEncoding* framedShouted = alpha->LookupVariant(EncodingVariationID(7 | 9 << 5));
  ASSERT_NE(framedShouted, nullptr);

  EXPECT_STREQ(framed->Name(), "Alpha-CodeFramed");  // composed without a separator
  EXPECT_STREQ(framedShouted->Name(), "Alpha-CodeFramedShout");
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(framedShouted->NameInUnicode())),
            u"Alpha-CodeFramedShout");
  EXPECT_EQ(TextEncoding::Lookup("Alpha-CodeFramed", 0), nullptr);  // composed names are not nicknames

  EXPECT_EQ(TextEncoding::Lookup("alpha code:frm", 1), framed);
  EXPECT_EQ(TextEncoding::Lookup("csAlpha:FRAMED:shout", 0), framedShouted);
  EXPECT_EQ(TextEncoding::Lookup("csAlpha:Shout:Framed", 0),
            alpha->LookupVariant(EncodingVariationID(9 | 7 << 5)));
  EXPECT_EQ(TextEncoding::Lookup("csAlpha:Framed", 2), nullptr);
  EXPECT_EQ(TextEncoding::Lookup("csAlpha:Nothing", 0), nullptr);
  EXPECT_EQ(TextEncoding::Lookup(":Framed", 0), nullptr);
  EXPECT_TRUE(framedShouted->HasName("AL1:frm:shout"));
  EXPECT_FALSE(alpha->HasName("AL1:frm"));
}

FRESH_PROCESS_TEST(EncodingVariation, LookupByNameAndNumber) {
  EXPECT_EQ(EncodingVariation::Lookup("frm"), nullptr);
  TestVariation& framed = Framed();
  EXPECT_EQ(EncodingVariation::Lookup("f-r-m"), &framed);
  EXPECT_EQ(EncodingVariation::Lookup(EncodingVariationID(7)), &framed);
  EXPECT_EQ(EncodingVariation::Lookup(EncodingVariationID(7 | 7 << 5)), nullptr);  // a chain
  EXPECT_EQ(EncodingVariation::Lookup(EncodingVariationID(0x41)), nullptr);
  EXPECT_EQ(EncodingVariation::gAllVariations[7], &framed);
  EXPECT_STREQ(framed.Name(), "Framed");
  EXPECT_EQ(framed.CountNames(), 2u);
  EXPECT_STREQ(framed.GetName(1), "FRM");
  EXPECT_EQ(framed.GetName(2), nullptr);
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(framed.NameInUnicode())), u"Framed");
}

// A derived constructor that throws after the base registered the encoding
// (here after the variations made a variant of it) leaves nothing findable
// behind: no entry, no number, no code page, no variant naming a dead parent.
FRESH_PROCESS_TEST(TextEncoding, AnEncodingWhoseConstructionFailsIsForgotten) {
  struct Failing : TestExternal {
    explicit Failing(const char** names) : TestExternal(124, names, "x-failing", 59999) {
      throw std::runtime_error("refused");
    }
  };
  static const char* names[] = {"Failing-Code", nullptr};
  Framed();
  const unsigned int all = TextEncoding::Count(), external = ExternalEncoding::Count();
  EXPECT_THROW(Failing{names}, std::runtime_error);
  EXPECT_EQ(TextEncoding::Count(), all);
  EXPECT_EQ(ExternalEncoding::Count(), external);
  EXPECT_EQ(TextEncoding::Lookup(TextEncodingID(124)), nullptr);
  EXPECT_EQ(TextEncoding::Lookup(TextEncodingID(124) + EncodingVariationID(7)), nullptr);
  EXPECT_EQ(ExternalEncoding::Lookup("Failing-Code"), nullptr);
  EXPECT_EQ(ExternalEncoding::Lookup("Failing-Code:Framed"), nullptr);
  EXPECT_EQ(TextEncoding::LookupCodePage(59999), nullptr);
  for (unsigned int i = 0; i < ExternalEncoding::Count(); ++i) EXPECT_NE(ExternalEncoding::Lookup(i)->Name(), nullptr);

  // The number is free again for an encoding that does get made.
  static const char* again[] = {"Made-Code", nullptr};
  static TestExternal made(124, again, nullptr, 0);
  EXPECT_EQ(TextEncoding::Lookup(TextEncodingID(124)), &made);
  EXPECT_NE(ExternalEncoding::Lookup("Made-Code:Framed"), nullptr);
}

}  // namespace
