#include "varnice/encoding/block_converter.h"

#include <gtest/gtest.h>

#include "tests/stream/stream_test_support.h"
#include "varnice/encoding/unicode/unicode11_encoding.h"

namespace {

using namespace testing_streams;

TEST(BlockConverter_16_to_8, CapacityBudgetStopsWithoutWritingUntilReset) {
  UnitToBytes converter;
  const unsigned short text[] = {0x0141, 0x0142};
  char out[8] = {};
  const unsigned short* in = text;
  char* o = out;
  // A budget of 3 fits the first two-byte character only.
  EXPECT_EQ(converter.Convert(in, text + 2, o, out + 8, 3), kCapacityReached);
  EXPECT_EQ(o - out, 2);
  EXPECT_EQ(in, text + 1);
  EXPECT_TRUE(converter.CapacityWasReached());
  // Once reached, even a roomy budget writes nothing until Reset.
  EXPECT_EQ(converter.Convert(in, text + 2, o, out + 8, 100), kCapacityReached);
  EXPECT_EQ(o - out, 2);
  converter.Reset();
  EXPECT_EQ(converter.Convert(in, text + 2, o, out + 8, 2), kInputUsedUp);  // exactly fits
  EXPECT_EQ(o - out, 4);
  // -1 is unlimited.
  in = text;
  EXPECT_EQ(converter.Convert(in, text + 2, o, out + 8, -1), kInputUsedUp);
}

TEST(BlockConverter_16_to_16, ContractEdges) {
  Unicode11to20 converter;
  const unsigned short text[] = {0x3400, 0x0041};
  unsigned short out[1];
  const unsigned short* in = text;
  unsigned short* o = out;
  EXPECT_EQ(converter.Convert(in, text, o, out + 1), kInputUsedUp);  // nothing to read
  EXPECT_EQ(o, out);
  EXPECT_EQ(converter.Convert(in, text + 2, o, out + 1), kOutputFull);
  EXPECT_EQ(out[0], 0xAC00);
  EXPECT_EQ(in, text + 1);
  unsigned short* full = out + 1;
  EXPECT_EQ(converter.Convert(in, text + 2, full, out + 1), kOutputFull);
  EXPECT_EQ(in, text + 1);
}

}  // namespace
