#include "varnice/charprops/unicode_comparator.h"

#include "varnice/charprops/euc_jp_key.h"

namespace {

unsigned int LengthOf(unsigned short const* s) {
  unsigned int n = 0;
  while (s[n] != 0) ++n;
  return n;
}

// Key by key (both keys taken before comparing), then the shorter first.
template <class KeyOf>
int CompareByKeys(unsigned short const* a, unsigned int aLength, unsigned short const* b,
                  unsigned int bLength, KeyOf keyOf) {
  const unsigned int common = aLength < bLength ? aLength : bLength;
  for (unsigned int i = 0; i < common; ++i) {
    const unsigned long ka = keyOf(a[i]);
    const unsigned long kb = keyOf(b[i]);
    if (ka < kb) return -1;
    if (ka > kb) return 1;
  }
  if (aLength < bLength) return -1;
  return aLength > bLength ? 1 : 0;
}

}  // namespace

int UnicodeComparator::operator()(unsigned short const* a, unsigned int aLength,
                                  unsigned short const* b, unsigned int bLength) const {
  return CompareBuffers(a, aLength, b, bLength);
}

int UnicodeComparator::operator()(unsigned short const* a, unsigned short const* b) const {
  return CompareBuffers(a, LengthOf(a), b, LengthOf(b));
}

int UnicodeComparator::operator()(qz_wstring const& a, qz_wstring const& b) const {
  return CompareBuffers(a.data(), a.size(), b.data(), b.size());
}

int CharwiseUnicodeComparator::CompareBuffers(unsigned short const* a, unsigned int aLength,
                                              unsigned short const* b,
                                              unsigned int bLength) const {
  return CompareByKeys(a, aLength, b, bLength, [this](unsigned short c) { return SortKey(c); });
}

// The two concrete orders fix their keys (SortKey is final), so they can
// compare without a virtual call per unit and still agree with the general
// loop.

int RawUnicodeComparator::CompareBuffers(unsigned short const* a, unsigned int aLength,
                                         unsigned short const* b, unsigned int bLength) const {
  return CompareByKeys(a, aLength, b, bLength, [](unsigned short c) { return c; });
}

unsigned long RawUnicodeComparator::SortKey(unsigned long c) const { return c; }

int JISUnicodeComparator::CompareBuffers(unsigned short const* a, unsigned int aLength,
                                         unsigned short const* b, unsigned int bLength) const {
  return CompareByKeys(a, aLength, b, bLength, &varnice::internal::EucJpCodeOf);
}

unsigned long JISUnicodeComparator::SortKey(unsigned long c) const {
  return varnice::internal::EucJpCodeOf(c);
}
