// Make every line end of a text alike. A line end is CR, LF, CR LF, LINE
// SEPARATOR (U+2028) or PARAGRAPH SEPARATOR (U+2029); NEL, FF and VT are not.
// Only CR followed by LF is one line end (U+2028 LF is two), also when the CR
// ends one block and the LF starts the next. These transforms treat every
// line end: they ignore their test.
#ifndef VARNICE_TRANSFORM_LINE_END_TRANSFORMS_H_
#define VARNICE_TRANSFORM_LINE_END_TRANSFORMS_H_

#include "varnice/transform/unicode_transform.h"
#include "varnice/varnice_export.h"

// Every line end to CR LF.
class VARNICE_API ToCRLFTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToCRLFTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short previous_ = 0;
};

// Every line end to CR.
class VARNICE_API ToCRTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToCRTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short previous_ = 0;
};

// Every line end to LF.
class VARNICE_API ToLFTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToLFTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short previous_ = 0;
};

// Every line end to PARAGRAPH SEPARATOR.
class VARNICE_API ToParagraphSeparatorTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToParagraphSeparatorTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short previous_ = 0;
};

// Every line end to LINE SEPARATOR.
class VARNICE_API ToLineSeparatorTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ToLineSeparatorTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short previous_ = 0;
};

#endif  // VARNICE_TRANSFORM_LINE_END_TRANSFORMS_H_
