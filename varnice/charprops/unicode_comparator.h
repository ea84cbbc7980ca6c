// Comparators: orders of UTF-16 strings for the host's sorting, by a sort key
// per code unit. RawUnicodeComparator keys a unit by itself (so surrogate
// pairs sort by their units, not by code point); JISUnicodeComparator by its
// EUC-JP code, so that kana and kanji follow the JIS character set.
#ifndef VARNICE_CHARPROPS_UNICODE_COMPARATOR_H_
#define VARNICE_CHARPROPS_UNICODE_COMPARATOR_H_

#include "varnice/varnice_export.h"
#include "varnice/widec/qz_wstring.h"

class VARNICE_API UnicodeComparator {
 public:
  // Negative, 0 or positive as a sorts before, with or after b.
  virtual int CompareBuffers(unsigned short const* a, unsigned int aLength,
                             unsigned short const* b, unsigned int bLength) const = 0;

  int operator()(unsigned short const* a, unsigned int aLength, unsigned short const* b,
                 unsigned int bLength) const;
  // NUL-terminated strings.
  int operator()(unsigned short const* a, unsigned short const* b) const;
  // Whole strings; embedded NUL units take part.
  int operator()(qz_wstring const& a, qz_wstring const& b) const;

 protected:
  constexpr UnicodeComparator() = default;
  UnicodeComparator(UnicodeComparator const&) = default;
  UnicodeComparator& operator=(UnicodeComparator const&) = default;
  ~UnicodeComparator() = default;  // never deleted through this interface
};

// Compares key by key (unsigned), then the shorter string first; the result
// is exactly -1, 0 or 1. Different strings whose keys agree compare equal.
class VARNICE_API CharwiseUnicodeComparator : public UnicodeComparator {
 public:
  int CompareBuffers(unsigned short const* a, unsigned int aLength, unsigned short const* b,
                     unsigned int bLength) const override;
  virtual unsigned long SortKey(unsigned long c) const = 0;

 protected:
  constexpr CharwiseUnicodeComparator() = default;
};

class VARNICE_API RawUnicodeComparator : public CharwiseUnicodeComparator {
 public:
  constexpr RawUnicodeComparator() = default;
  int CompareBuffers(unsigned short const* a, unsigned int aLength, unsigned short const* b,
                     unsigned int bLength) const override;  // the same loop, inlined key
  unsigned long SortKey(unsigned long c) const final;
};

// ASCII, then halfwidth katakana, then JIS X 0208 (symbols, digits, Latin,
// kana, kanji in JIS row order), then every character EUC-JP cannot represent
// (all alike, key 0xFFFD), then JIS X 0212.
class VARNICE_API JISUnicodeComparator : public CharwiseUnicodeComparator {
 public:
  constexpr JISUnicodeComparator() = default;
  int CompareBuffers(unsigned short const* a, unsigned int aLength, unsigned short const* b,
                     unsigned int bLength) const override;  // the same loop, direct key
  unsigned long SortKey(unsigned long c) const final;
};

#endif  // VARNICE_CHARPROPS_UNICODE_COMPARATOR_H_
