// Katakana between full and half width, the way Japanese mail and forms have
// always needed it: a voiced katakana has no single halfwidth form, so it is
// split into its base and a halfwidth sound mark, and joined again on the way
// back.
//
//   ガ -> ｶﾞ   パ -> ﾊﾟ   ヴ -> ｳﾞ   。「」、・ー -> ｡｢｣､･ｰ   ゛゜ (and U+3099/U+309A) -> ﾞﾟ
//   ｶﾞ -> ガ   ｳﾞ -> ヴ   ﾜﾞ -> ヷ   ﾞ alone -> ゛   ｱﾞ (cannot join) -> ア゛
//
// Katakana with no halfwidth base (ヵ ヶ ヮ ヰ ヱ ヸ ヹ) stay full width. Only
// katakana and the seven punctuation marks change: hiragana, fullwidth Latin
// and the ideographic space are left to ToHalfwidthTransform. A base and its
// mark are joined only when both pass the test; a halfwidth base is held until
// the next unit shows whether a mark follows, across blocks too.
#ifndef VARNICE_TRANSFORM_KATAKANA_WIDTH_TRANSFORMS_H_
#define VARNICE_TRANSFORM_KATAKANA_WIDTH_TRANSFORMS_H_

#include "varnice/transform/unicode_transform.h"
#include "varnice/varnice_export.h"

class VARNICE_API ZenkakuKatakanaToHankakuTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~ZenkakuKatakanaToHankakuTransform() override;
  bool FillBuffer() override;
};

class VARNICE_API HankakuKatakanaToZenkakuTransform : public UnicodeTransform {
 public:
  using UnicodeTransform::UnicodeTransform;
  ~HankakuKatakanaToZenkakuTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short held_ = 0;  // the fullwidth form of a base waiting for its mark, or 0
};

#endif  // VARNICE_TRANSFORM_KATAKANA_WIDTH_TRANSFORMS_H_
