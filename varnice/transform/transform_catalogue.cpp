#include "varnice/transform/transform_catalogue.h"

#include <new>

#include "varnice/transform/chinese_variant_transforms.h"
#include "varnice/transform/composition_transforms.h"
#include "varnice/transform/katakana_width_transforms.h"
#include "varnice/transform/latin_number_transform.h"
#include "varnice/transform/line_end_transforms.h"
#include "varnice/transform/romaji_transforms.h"
#include "varnice/transform/sgml_entity_transform.h"
#include "varnice/transform/simple_transforms.h"
#include "varnice/widec/same_ignoring_case.h"

namespace {

template <class T>
UnicodeTransform* Place(void* where, Char16Source& source, const InternalEncoding& encoding,
                        const CharacterTest& test) {
  static_assert(sizeof(T) <= TransformCatalogue::kStorageSize);
  static_assert(alignof(T) <= alignof(std::max_align_t));
  return ::new (where) T(source, encoding, test);
}

template <class T>
UnicodeTransform* Create(Char16Source& source, const InternalEncoding& encoding,
                         const CharacterTest& test) {
  return new T(source, encoding, test);
}

#define VARNICE_TRANSFORM(T) &Place<T>, &Create<T>
#define VARNICE_NOT_YET nullptr, nullptr

// One row per selector, in selector order. New transforms fill their row's
// factories; the numbers never change, hosts store them.
const TransformCatalogue::Entry kEntries[] = {
    {1, "katakana", "ToKatakanaTransform", "hiragana to katakana",
     VARNICE_TRANSFORM(ToKatakanaTransform)},
    {2, "hiragana", "ToHiraganaTransform", "katakana (full and half width) to hiragana",
     VARNICE_TRANSFORM(ToHiraganaTransform)},
    {3, "decompose", "DecomposeTransform", "precomposed characters to base and mark",
     VARNICE_TRANSFORM(DecomposeTransform)},
    {4, "compose", "ComposeTransform", "base and mark to the precomposed character",
     VARNICE_TRANSFORM(ComposeTransform)},
    {5, "halfwidth", "ToHalfwidthTransform", "fullwidth and wide forms to half width",
     VARNICE_TRANSFORM(ToHalfwidthTransform)},
    {6, "fullwidth", "ToFullwidthTransform", "halfwidth and narrow forms to full width",
     VARNICE_TRANSFORM(ToFullwidthTransform)},
    {7, "hepburn", "KanaToHebonRomajiTransform", "kana to Hepburn romaji",
     VARNICE_TRANSFORM(KanaToHebonRomajiTransform)},
    {8, "kunrei", "KanaToKunreiRomajiTransform", "kana to Kunrei-shiki romaji",
     VARNICE_TRANSFORM(KanaToKunreiRomajiTransform)},
    {9, "romaji-katakana", "RomajiToKatakanaTransform", "romaji to katakana",
     VARNICE_TRANSFORM(RomajiToKatakanaTransform)},
    {10, "romaji-hiragana", "RomajiToHiraganaTransform", "romaji to hiragana",
     VARNICE_TRANSFORM(RomajiToHiraganaTransform)},
    {11, "latin-digits", "ToLatinNumberTransform", "decimal digits of every script to 0-9",
     VARNICE_TRANSFORM(ToLatinNumberTransform)},
    {12, "canonical", "ToCanonicalTransform",
     "compatibility ideographs, presentation and width forms to ordinary characters",
     VARNICE_TRANSFORM(ToCanonicalTransform)},
    {13, "filter", "FilterTransform", "drops the characters of the class",
     VARNICE_TRANSFORM(FilterTransform)},
    {14, "select", "SelectTransform", "keeps only the characters of the class",
     VARNICE_TRANSFORM(SelectTransform)},
    {15, "zenkaku-katakana", "HankakuKatakanaToZenkakuTransform",
     "halfwidth katakana to fullwidth, joining sound marks",
     VARNICE_TRANSFORM(HankakuKatakanaToZenkakuTransform)},
    {16, "hankaku-katakana", "ZenkakuKatakanaToHankakuTransform",
     "fullwidth katakana to halfwidth, splitting sound marks",
     VARNICE_TRANSFORM(ZenkakuKatakanaToHankakuTransform)},
    {17, "upper", "ToUppercaseTransform", "letters to upper case",
     VARNICE_TRANSFORM(ToUppercaseTransform)},
    {18, "lower", "ToLowercaseTransform", "letters to lower case",
     VARNICE_TRANSFORM(ToLowercaseTransform)},
    {19, "spacing-marks", "ToSpacingMarkTransform", "combining marks to spacing diacritics",
     VARNICE_TRANSFORM(ToSpacingMarkTransform)},
    {20, "combining-marks", "ToCombiningMarkTransform", "spacing diacritics to combining marks",
     VARNICE_TRANSFORM(ToCombiningMarkTransform)},
    {21, "entities", "FromSGMLEntityTransform", "SGML and HTML character references to characters",
     VARNICE_TRANSFORM(FromSGMLEntityTransform)},
    {22, "cr", "ToCRTransform", "every line end to CR", VARNICE_TRANSFORM(ToCRTransform)},
    {23, "lf", "ToLFTransform", "every line end to LF", VARNICE_TRANSFORM(ToLFTransform)},
    {24, "crlf", "ToCRLFTransform", "every line end to CR LF",
     VARNICE_TRANSFORM(ToCRLFTransform)},
    {25, "ls", "ToLineSeparatorTransform", "every line end to LINE SEPARATOR",
     VARNICE_TRANSFORM(ToLineSeparatorTransform)},
    {26, "ps", "ToParagraphSeparatorTransform", "every line end to PARAGRAPH SEPARATOR",
     VARNICE_TRANSFORM(ToParagraphSeparatorTransform)},
    {27, "traditional", "ToTraditionalChineseTransform", "simplified to traditional Chinese",
     VARNICE_TRANSFORM(ToTraditionalChineseTransform)},
    {28, "simplified", "ToSimplifiedChineseTransform", "traditional to simplified Chinese",
     VARNICE_TRANSFORM(ToSimplifiedChineseTransform)},
};

#undef VARNICE_TRANSFORM
#undef VARNICE_NOT_YET

constexpr int kCount = sizeof kEntries / sizeof kEntries[0];

}  // namespace

std::unique_ptr<UnicodeTransform> TransformCatalogue::Entry::Create(
    Char16Source& source, const InternalEncoding& encoding, const CharacterTest& test) const {
  return std::unique_ptr<UnicodeTransform>(create != nullptr ? create(source, encoding, test)
                                                             : nullptr);
}

TransformCatalogue::Entry const* TransformCatalogue::begin() { return kEntries; }
TransformCatalogue::Entry const* TransformCatalogue::end() { return kEntries + kCount; }

TransformCatalogue::Entry const* TransformCatalogue::Find(int selector) {
  return selector >= 1 && selector <= kCount ? &kEntries[selector - 1] : nullptr;
}

TransformCatalogue::Entry const* TransformCatalogue::Find(const char* name) {
  if (name == nullptr) return nullptr;
  for (Entry const& e : kEntries) {
    if (SameIgnoringCase(name, e.name) || SameIgnoringCase(name, e.className)) return &e;
  }
  return nullptr;
}

void PlacedTransformDeleter::operator()(UnicodeTransform* t) const {
  if (t != nullptr) t->~UnicodeTransform();
}
