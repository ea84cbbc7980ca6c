#include "varnice/encoding/block_converter.h"

BlockConverter_8_to_16::~BlockConverter_8_to_16() = default;

int BlockConverter_8_to_16::Finish(unsigned short*&, const unsigned short*) { return kConversionDone; }

BlockConverter_16_to_8::~BlockConverter_16_to_8() = default;

int BlockConverter_16_to_8::Finish(char*&, const char*) { return kConversionDone; }

void BlockConverter_16_to_8::Reset() { capacityReached_ = false; }

bool BlockConverter_16_to_8::ReachedCapacity(long n, long reserve, long& capacity) {
  if (capacity == -1) return false;
  if (capacityReached_) return true;
  if (n + reserve <= capacity) {
    capacity -= n;
    return false;
  }
  capacityReached_ = true;
  return true;
}

BlockConverter_16_to_16::~BlockConverter_16_to_16() = default;

int BlockConverter_16_to_16::Finish(unsigned short*&, const unsigned short*) { return kConversionDone; }
