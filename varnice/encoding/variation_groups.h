// The variation groups that EncodingVariationID and TextEncodingID pack into
// one 32-bit word: five bits each, the first group lowest, above `baseBits`
// bits of their own (none for a chain, the base number for an identifier).
// Internal to the library.
#ifndef VARNICE_ENCODING_VARIATION_GROUPS_H_
#define VARNICE_ENCODING_VARIATION_GROUPS_H_

#include <cstdint>

namespace varnice::internal {

constexpr unsigned int kVariationGroupBits = 5;

// `baseBits` plus five per group up to the highest non-zero one.
inline unsigned int VariationBitsUsed(std::uint32_t word, unsigned int baseBits) {
  unsigned int bits = baseBits;
  for (std::uint64_t threshold = std::uint64_t{1} << baseBits; threshold <= 0xFFFFFFFFu && word >= threshold;
       threshold <<= kVariationGroupBits) {
    bits += kVariationGroupBits;
  }
  return bits;
}

// Whether every group above `baseBits` holds a variation number (0-9) and the
// groups end below `limitBits`.
inline bool VariationGroupsWellFormed(std::uint32_t word, unsigned int baseBits, unsigned int limitBits) {
  unsigned int bits = baseBits;
  for (std::uint32_t rest = word >> baseBits; rest != 0; rest >>= kVariationGroupBits) {
    if ((rest & 31) > 9) return false;
    bits += kVariationGroupBits;
  }
  return bits < limitBits;
}

}  // namespace varnice::internal

#endif  // VARNICE_ENCODING_VARIATION_GROUPS_H_
