#include <gtest/gtest.h>

#include <string>

#include "varnice/encoding/encoding_variation_id.h"
#include "varnice/encoding/text_encoding_id.h"

namespace {

template <typename Exception, typename F>
std::string MessageOf(F f) {
  try {
    f();
  } catch (const Exception& e) {
    return e.what();
  }
  return "(nothing thrown)";
}

TEST(EncodingVariationID, WellFormedChainsAndWidth) {
  EXPECT_EQ(EncodingVariationID(0).BitsUsed(), 0u);
  EXPECT_EQ(EncodingVariationID(3).BitsUsed(), 5u);
  EXPECT_EQ(EncodingVariationID(0x20).BitsUsed(), 10u);  // a zero group below a non-zero one is fine
  EXPECT_EQ(EncodingVariationID(9 | 9 << 5 | 9 << 10 | 9 << 15).BitsUsed(), 20u);
  EXPECT_EQ(EncodingVariationID(0x41).GetFirstVariationID(), EncodingVariationID(1));
  EXPECT_EQ(EncodingVariationID(0x41).GetRemainingVariationIDs(), EncodingVariationID(2));
}

TEST(EncodingVariationID, MalformedWords) {
  EXPECT_EQ(MessageOf<EncodingVariationID::Malformed>([] { EncodingVariationID(10); }),
            "malformed EncodingVariationID 0x0000000a");
  EXPECT_THROW(EncodingVariationID(10 << 5), EncodingVariationID::Malformed);
  EXPECT_THROW(EncodingVariationID(1ul << 20), EncodingVariationID::Malformed);  // fifth group
  EXPECT_THROW(EncodingVariationID(0x100000000ul), EncodingVariationID::Malformed);  // above 32 bits
  EXPECT_THROW(EncodingVariationID(0x100000001ul), EncodingVariationID::Malformed);
}

TEST(EncodingVariationID, CombiningAppendsAfterTheChain) {
  EXPECT_EQ((EncodingVariationID(1) + EncodingVariationID(2)).Value(), 0x41u);
  EncodingVariationID chain(1);
  chain += EncodingVariationID(2);
  chain += EncodingVariationID(0x83);  // two groups: 3 then 4
  EXPECT_EQ(chain.Value(), 1u | 2u << 5 | 3u << 10 | 4u << 15);
  EXPECT_EQ(chain + EncodingVariationID(0), chain);

  const EncodingVariationID before = chain;
  EXPECT_EQ(MessageOf<EncodingVariationID::TooManyVariations>([&] { chain += EncodingVariationID(5); }),
            "adding EncodingVariationIDs 0x00020c41 and 0x00000005 would exceed the maximum number "
            "of variations");
  EXPECT_EQ(chain, before);  // a failed += leaves the target alone
}

TEST(TextEncodingID, BaseRangeAndMessages) {
  EXPECT_EQ(TextEncodingID(0).BitsUsed(), 12u);
  EXPECT_NO_THROW(TextEncodingID(141));
  // The text deliberately names EncodingVariationID.
  EXPECT_EQ(MessageOf<TextEncodingID::Malformed>([] { TextEncodingID(142); }),
            "malformed EncodingVariationID 0x0000008e");
  EXPECT_THROW(TextEncodingID(2 | 10 << 12), TextEncodingID::Malformed);
  EXPECT_THROW(TextEncodingID(2ul | 1ul << 27), TextEncodingID::Malformed);  // bits 27-31
  EXPECT_THROW(TextEncodingID(0x100000002ul), TextEncodingID::Malformed);
  EXPECT_NO_THROW(TextEncodingID(2 | 1 << 17));  // empty first group, second set
}

TEST(TextEncodingID, AddingVariations) {
  EXPECT_EQ((TextEncodingID(2) + EncodingVariationID(3)).Value(), 0x3002u);
  EXPECT_EQ(TextEncodingID(2) + EncodingVariationID(0), TextEncodingID(2));
  TextEncodingID id(32);
  id += EncodingVariationID(1);
  id += EncodingVariationID(4);
  id += EncodingVariationID(8);
  EXPECT_EQ(id.BitsUsed(), 27u);
  EXPECT_EQ(id.GetBaseEncodingID(), TextEncodingID(32));
  EXPECT_EQ(id.GetVariationIDs().Value(), 1u | 4u << 5 | 8u << 10);
  EXPECT_EQ(MessageOf<TextEncodingID::TooManyVariations>([&] { id += EncodingVariationID(2); }),
            "adding TextEncodingID 0x02081020 and EncodingVariationID 0x00000002 would exceed the "
            "maximum number of variations");
  EXPECT_EQ(id.GetVariationIDs().Value(), 1u | 4u << 5 | 8u << 10);
  // A two-variation chain on a base that has two already does not fit.
  EXPECT_THROW(TextEncodingID(2 | 1 << 12 | 1 << 17) + EncodingVariationID(0x41),
               TextEncodingID::TooManyVariations);
}

}  // namespace
