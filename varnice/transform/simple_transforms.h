// The one-unit-at-a-time transforms: each code unit is looked at alone and
// replaced by at most one unit, so input and output have the same length.
//
//   BufferChar16Source in(text, nullptr);
//   ToUppercaseTransform upper(in, *InternalEncoding::Unicode(), *Ctype_alpha);
//   StringChar16Sink out;
//   out.Put(upper);
//
// Each transform also has a static Transform(c) for one character outside any
// stream; code points above U+FFFF come back unchanged. Case data is the
// simple (one-to-one) mappings of Unicode 2.1: U+00DF stays as it is.
#ifndef VARNICE_TRANSFORM_SIMPLE_TRANSFORMS_H_
#define VARNICE_TRANSFORM_SIMPLE_TRANSFORMS_H_

#include "varnice/transform/unicode_transform.h"
#include "varnice/varnice_export.h"

class VARNICE_API SimpleTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~SimpleTransform() override;
  // Replaces c by its transformed value, or leaves it.
  virtual void TransformChar(unsigned short& c) const = 0;
  bool FillBuffer() override;
};

// Lower and title case letters to upper case.
class VARNICE_API ToUppercaseTransform : public SimpleTransform {
 public:
  using SimpleTransform::SimpleTransform;
  ~ToUppercaseTransform() override;
  void TransformChar(unsigned short& c) const override;
  static unsigned long Transform(unsigned long c);
};

// Upper and title case letters to lower case.
class VARNICE_API ToLowercaseTransform : public SimpleTransform {
 public:
  using SimpleTransform::SimpleTransform;
  ~ToLowercaseTransform() override;
  void TransformChar(unsigned short& c) const override;
  static unsigned long Transform(unsigned long c);
};

// Fullwidth and wide forms to halfwidth and narrow ones. A voiced katakana has
// no single halfwidth form and stays (ZenkakuKatakanaToHankakuTransform splits
// it); U+3099/U+309A become the halfwidth sound marks U+FF9E/U+FF9F.
class VARNICE_API ToHalfwidthTransform : public SimpleTransform {
 public:
  using SimpleTransform::SimpleTransform;
  ~ToHalfwidthTransform() override;
  void TransformChar(unsigned short& c) const override;
  static unsigned long Transform(unsigned long c);
};

// The exact inverse of ToHalfwidthTransform (U+FF9E widens to the combining
// U+3099, not the spacing U+309B).
class VARNICE_API ToFullwidthTransform : public SimpleTransform {
 public:
  using SimpleTransform::SimpleTransform;
  ~ToFullwidthTransform() override;
  void TransformChar(unsigned short& c) const override;
  static unsigned long Transform(unsigned long c);
};

// Hiragana U+3041-U+3094 and the iteration marks U+309D/U+309E to katakana.
class VARNICE_API ToKatakanaTransform : public SimpleTransform {
 public:
  using SimpleTransform::SimpleTransform;
  ~ToKatakanaTransform() override;
  void TransformChar(unsigned short& c) const override;
  static unsigned long Transform(unsigned long c);
};

// Katakana, fullwidth and halfwidth, to hiragana. Halfwidth katakana widen
// first; small KA and KE become full-size hiragana KA and KE; katakana without
// a hiragana (U+30F7-U+30FA) and the middle dot and long-vowel mark stay
// katakana.
class VARNICE_API ToHiraganaTransform : public SimpleTransform {
 public:
  using SimpleTransform::SimpleTransform;
  ~ToHiraganaTransform() override;
  void TransformChar(unsigned short& c) const override;
  static unsigned long Transform(unsigned long c);
};

// Keeps only the units that pass the test. May read far ahead when few pass;
// ends only at the real end of input.
class VARNICE_API SelectTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~SelectTransform() override;
  bool FillBuffer() override;
};

// Drops the units that pass the test; the rest as SelectTransform.
class VARNICE_API FilterTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~FilterTransform() override;
  bool FillBuffer() override;
};

#endif  // VARNICE_TRANSFORM_SIMPLE_TRANSFORMS_H_
