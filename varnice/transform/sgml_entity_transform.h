// Character references of SGML and HTML to the characters they name:
//
//   &eacute; &#233; &#xE9; -> é     &NotEqualTilde; -> U+2242 U+0338     &#x1F600; -> 😀 (a pair)
//
// Names are those of the HTML list (every HTML 4 entity is among them) and are
// matched with their case. A reference ends with ';': the legacy forms HTML
// also reads without it (&amp alone) are left as written, because in plain text
// they are more often not meant as references. Unknown names, numbers that are
// not a character (0, surrogates, above U+10FFFF, more than eight digits),
// malformed references and a bare '&' pass through unchanged. A number is the
// code point itself: &#150; is U+0096, not the Windows-1252 dash browsers show.
// A reference split between upstream blocks is held until it is complete.
// Built without a test: every reference is replaced.
#ifndef VARNICE_TRANSFORM_SGML_ENTITY_TRANSFORM_H_
#define VARNICE_TRANSFORM_SGML_ENTITY_TRANSFORM_H_

#include "varnice/transform/unicode_transform.h"
#include "varnice/varnice_export.h"

class VARNICE_API FromSGMLEntityTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~FromSGMLEntityTransform() override;
  bool FillBuffer() override;

  // The longest reference that can still be replaced: '&', 31 name characters, ';'.
  static constexpr int kMaxReference = 33;

 private:
  unsigned short* Feed(unsigned short c, unsigned short* out);
  bool Continues(unsigned short c) const;
  unsigned short* Resolve(unsigned short* out) const;

  unsigned short pending_[kMaxReference];  // an unfinished reference, from its '&'
  int count_ = 0;
};

#endif  // VARNICE_TRANSFORM_SGML_ENTITY_TRANSFORM_H_
