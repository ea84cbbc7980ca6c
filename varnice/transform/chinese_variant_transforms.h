// Simplified and traditional Chinese, converted phrase by phrase: at each
// position the longest phrase of the dictionary wins, then the character, so a
// character with several counterparts comes out right in context:
//
//   头发 -> 頭髮   发展 -> 發展   干燥 -> 乾燥   干部 -> 幹部   (and back)
//
// The dictionaries are OpenCC's (characters and phrases, first candidate of
// each), without regional wording: 计算机 stays 計算機, not 電腦. Characters
// that fail the test are neither changed nor part of a phrase. A phrase split
// between upstream blocks is held (at most kMaxHeld units) until the next
// characters decide it.
#ifndef VARNICE_TRANSFORM_CHINESE_VARIANT_TRANSFORMS_H_
#define VARNICE_TRANSFORM_CHINESE_VARIANT_TRANSFORMS_H_

#include "varnice/transform/unicode_transform.h"
#include "varnice/varnice_export.h"

namespace varnice::internal {
struct VariantTable;
}

class VARNICE_API ChineseVariantTransform : public UnicodeTransform {
 public:
  static constexpr int kMaxHeld = 32;

  enum class Direction { kToTraditional, kToSimplified };
  ChineseVariantTransform(Char16Source& source, const InternalEncoding& encoding,
                          const CharacterTest& test, Direction direction);
  ~ChineseVariantTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short* Drain(bool all, unsigned short* out);

  const varnice::internal::VariantTable& table_;
  unsigned short held_[kMaxHeld];  // units that may begin a phrase, not yet converted
  int count_ = 0;
};

class VARNICE_API ToTraditionalChineseTransform : public ChineseVariantTransform {
 public:
  ToTraditionalChineseTransform(Char16Source& source, const InternalEncoding& encoding,
                                const CharacterTest& test);
  ~ToTraditionalChineseTransform() override;
};

class VARNICE_API ToSimplifiedChineseTransform : public ChineseVariantTransform {
 public:
  ToSimplifiedChineseTransform(Char16Source& source, const InternalEncoding& encoding,
                               const CharacterTest& test);
  ~ToSimplifiedChineseTransform() override;
};

#endif  // VARNICE_TRANSFORM_CHINESE_VARIANT_TRANSFORMS_H_
