#include "varnice/transform/simple_transforms.h"

#include <typeinfo>

#include "varnice/charprops/property_tables.h"
#include "varnice/transform/transform_frame.h"
#include "varnice/transform/transform_tables.h"

using varnice::internal::FillUnits;

namespace {

unsigned short Upper(unsigned short c) { return varnice::internal::SimpleUppercase(c); }
unsigned short Lower(unsigned short c) { return varnice::internal::SimpleLowercase(c); }

unsigned short Halfwidth(unsigned short c) {
  const unsigned short mapped = HalfwidthMappingTable.Find(c);
  return mapped != 0 ? mapped : c;
}

unsigned short Fullwidth(unsigned short c) {
  const unsigned short mapped = FullwidthMappingTable.Find(c);
  return mapped != 0 ? mapped : c;
}

unsigned short Katakana(unsigned short c) {
  if ((c >= 0x3041 && c <= 0x3094) || c == 0x309D || c == 0x309E) return c + 0x60;
  return c;
}

unsigned short Hiragana(unsigned short c) {
  if (c >= 0xFF66 && c <= 0xFF9D) c = Fullwidth(c);
  if ((c >= 0x30A1 && c <= 0x30F4) || c == 0x30FD || c == 0x30FE) return c - 0x60;
  if (c == 0x30F5) return 0x304B;
  if (c == 0x30F6) return 0x3051;
  return c;
}

// Above the BMP nothing is mapped.
template <unsigned short (*Map)(unsigned short)>
unsigned long OnePoint(unsigned long c) {
  return c > 0xFFFF ? c : Map(static_cast<unsigned short>(c));
}

// A select or filter step: keeps (Keep == true) or drops the units that pass
// the test; dropped units are consumed all the same.
template <bool Keep, class Passes>
auto Sift(Passes passes) {
  return [passes](unsigned short c, unsigned short* out) {
    if (passes(c) == Keep) *out++ = c;
    return out;
  };
}

// One block of a simple transform, with the mapping known at compile time.
template <unsigned short (*Map)(unsigned short)>
unsigned short* FillMapped(Char16Source& source, unsigned short* out, unsigned short* limit,
                           UnicodeTransform::Gate passes) {
  return FillUnits(source, out, limit, [passes](unsigned short c, unsigned short* out) {
    const unsigned short mapped = Map(c);
    // A unit that the mapping leaves alone needs no test.
    *out = (mapped != c && passes(c)) ? mapped : c;
    return out + 1;
  });
}

}  // namespace

SimpleTransform::~SimpleTransform() = default;

bool SimpleTransform::FillBuffer() {
  unsigned short* const limit = buffer_ + kBufferSize;
  const Gate passes = TestGate();
  // The library's own six are run without a virtual call per unit; a class
  // derived from one of them gets its own TransformChar.
  const std::type_info& type = typeid(*this);
  if (type == typeid(ToUppercaseTransform)) return Lend(FillMapped<Upper>(source_, buffer_, limit, passes));
  if (type == typeid(ToLowercaseTransform)) return Lend(FillMapped<Lower>(source_, buffer_, limit, passes));
  if (type == typeid(ToHalfwidthTransform)) return Lend(FillMapped<Halfwidth>(source_, buffer_, limit, passes));
  if (type == typeid(ToFullwidthTransform)) return Lend(FillMapped<Fullwidth>(source_, buffer_, limit, passes));
  if (type == typeid(ToKatakanaTransform)) return Lend(FillMapped<Katakana>(source_, buffer_, limit, passes));
  if (type == typeid(ToHiraganaTransform)) return Lend(FillMapped<Hiragana>(source_, buffer_, limit, passes));
  return Lend(FillUnits(source_, buffer_, limit, [this, passes](unsigned short c, unsigned short* out) {
    unsigned short mapped = c;
    TransformChar(mapped);
    *out = (mapped != c && passes(c)) ? mapped : c;
    return out + 1;
  }));
}



ToUppercaseTransform::~ToUppercaseTransform() = default;
void ToUppercaseTransform::TransformChar(unsigned short& c) const { c = Upper(c); }
unsigned long ToUppercaseTransform::Transform(unsigned long c) { return OnePoint<Upper>(c); }

ToLowercaseTransform::~ToLowercaseTransform() = default;
void ToLowercaseTransform::TransformChar(unsigned short& c) const { c = Lower(c); }
unsigned long ToLowercaseTransform::Transform(unsigned long c) { return OnePoint<Lower>(c); }

ToHalfwidthTransform::~ToHalfwidthTransform() = default;
void ToHalfwidthTransform::TransformChar(unsigned short& c) const { c = Halfwidth(c); }
unsigned long ToHalfwidthTransform::Transform(unsigned long c) { return OnePoint<Halfwidth>(c); }

ToFullwidthTransform::~ToFullwidthTransform() = default;
void ToFullwidthTransform::TransformChar(unsigned short& c) const { c = Fullwidth(c); }
unsigned long ToFullwidthTransform::Transform(unsigned long c) { return OnePoint<Fullwidth>(c); }

ToKatakanaTransform::~ToKatakanaTransform() = default;
void ToKatakanaTransform::TransformChar(unsigned short& c) const { c = Katakana(c); }
unsigned long ToKatakanaTransform::Transform(unsigned long c) { return OnePoint<Katakana>(c); }

ToHiraganaTransform::~ToHiraganaTransform() = default;
void ToHiraganaTransform::TransformChar(unsigned short& c) const { c = Hiragana(c); }
unsigned long ToHiraganaTransform::Transform(unsigned long c) { return OnePoint<Hiragana>(c); }

SelectTransform::~SelectTransform() = default;
FilterTransform::~FilterTransform() = default;

bool SelectTransform::FillBuffer() {
  return Lend(FillUnits(source_, buffer_, buffer_ + kBufferSize,
                        Sift<true>(TestGate())));
}

bool FilterTransform::FillBuffer() {
  return Lend(FillUnits(source_, buffer_, buffer_ + kBufferSize,
                        Sift<false>(TestGate())));
}
