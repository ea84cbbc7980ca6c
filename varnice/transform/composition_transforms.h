// Transforms that change the number of code units: decomposition and
// composition of two-unit canonical pairs, spacing and combining diacritics,
// and compatibility forms folded to their ordinary characters.
//
// A transform whose one unit may become two fills its buffer only while fewer
// than 511 units are written, so the last unit always has room.
#ifndef VARNICE_TRANSFORM_COMPOSITION_TRANSFORMS_H_
#define VARNICE_TRANSFORM_COMPOSITION_TRANSFORMS_H_

#include "varnice/transform/unicode_transform.h"
#include "varnice/varnice_export.h"

// A precomposed character whose full canonical decomposition is two units
// becomes those two (U+00C5 and U+212B -> U+0041 U+030A). Not applied again to
// its own output.
class VARNICE_API DecomposeTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~DecomposeTransform() override;
  bool FillBuffer() override;
};

// Joins a unit that passes the test with the next unit when the pair composes.
// Only two units are ever joined: a composed character is written at once, so
// a base with two marks gets only its first mark composed. The unit waiting
// for its partner is held across blocks.
class VARNICE_API ComposeTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ComposeTransform() override;
  bool FillBuffer() override;

 private:
  bool pending_ = false;
  unsigned short pendingUnit_ = 0;
};

// Spacing diacritics to combining marks (U+005E -> U+0302). A space before the
// diacritic stays and gets a second space as the base that carries the mark,
// which makes ToSpacingMarkTransform the inverse.
class VARNICE_API ToCombiningMarkTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToCombiningMarkTransform() override;
  bool FillBuffer() override;

 private:
  bool afterSpace_ = false;  // the last unit written was a space
};

// Combining marks to spacing diacritics; a space that carried the mark is
// dropped (U+0020 U+0301 -> U+00B4). A space is held until the next unit shows
// whether it is such a base, and written at the end of input.
class VARNICE_API ToSpacingMarkTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToSpacingMarkTransform() override;
  bool FillBuffer() override;

 private:
  bool heldSpace_ = false;  // a space has been read and not yet written
};

// CJK compatibility ideographs, alphabetic and Arabic presentation forms and
// halfwidth and fullwidth forms (U+F900-U+FFFF) to their ordinary one or two
// characters. Not applied again to its own output.
class VARNICE_API ToCanonicalTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToCanonicalTransform() override;
  bool FillBuffer() override;
};

#endif  // VARNICE_TRANSFORM_COMPOSITION_TRANSFORMS_H_
