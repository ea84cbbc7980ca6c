// The C face of character properties and classification.
#include "varnice/capi/varnice_c.h"
#include "varnice/charprops/character_property.h"
#include "varnice/charprops/classification.h"
#include "varnice/charprops/property_codes.h"
#include "varnice/charprops/property_tables.h"
#include "varnice/transform/simple_transforms.h"
#include "varnice/widec/same_ignoring_case.h"

using varnice::internal::CodeForCombination;
using varnice::internal::PropertyForCode;

extern "C" int TestUnicodeCharacter(unsigned short c, int code) {
  return PropertyForCode(code).Test(c) ? 1 : 0;
}

extern "C" int Combine2Charprops(int a, int b) {
  return CodeForCombination(PropertyForCode(a) + PropertyForCode(b));
}

extern "C" int CombineNCharprops(const int* codes, int n) {
  CharacterProperty combined;
  for (int i = 0; i < n; ++i) combined += PropertyForCode(codes[i]);
  return CodeForCombination(combined);
}

extern "C" int qz_iswalnum(unsigned short c) { return Ctype_alnum->Test(c) ? 1 : 0; }
extern "C" int qz_iswalpha(unsigned short c) { return Ctype_alpha->Test(c) ? 1 : 0; }
extern "C" int qz_iswcntrl(unsigned short c) { return Ctype_cntrl->Test(c) ? 1 : 0; }
extern "C" int qz_iswdigit(unsigned short c) { return Ctype_digit->Test(c) ? 1 : 0; }
extern "C" int qz_iswgraph(unsigned short c) { return Ctype_graph->Test(c) ? 1 : 0; }
extern "C" int qz_iswlower(unsigned short c) { return Ctype_lower->Test(c) ? 1 : 0; }
extern "C" int qz_iswprint(unsigned short c) { return Ctype_print->Test(c) ? 1 : 0; }
extern "C" int qz_iswpunct(unsigned short c) { return Ctype_punct->Test(c) ? 1 : 0; }
extern "C" int qz_iswspace(unsigned short c) { return Ctype_space->Test(c) ? 1 : 0; }
extern "C" int qz_iswupper(unsigned short c) { return Ctype_upper->Test(c) ? 1 : 0; }
extern "C" int qz_iswxdigit(unsigned short c) { return Ctype_xdigit->Test(c) ? 1 : 0; }

extern "C" int qz_wctype(const char* name) { return CharacterTest::IndexOf(qz_string(name)) + 1; }

extern "C" int qz_iswctype(unsigned short c, int type) {
  CharacterTest const* test = CharacterTest::Lookup(static_cast<unsigned int>(type - 1));
  return test != nullptr && test->Test(c) ? 1 : 0;
}

extern "C" unsigned short qz_towlower(unsigned short c) {
  return varnice::internal::SimpleLowercase(c);
}

extern "C" unsigned short qz_towupper(unsigned short c) {
  return varnice::internal::SimpleUppercase(c);
}

extern "C" int qz_wctrans(const char* name) {
  static const char* const kNames[] = {
      "tolower",              "toupper",              "ToUppercaseTransform",
      "ToLowercaseTransform", "ToFullwidthTransform", "ToHalfwidthTransform",
      "ToKatakanaTransform",  "ToHiraganaTransform",
  };
  for (int i = 0; i < 8; ++i) {
    if (SameIgnoringCase(name, kNames[i])) return i + 1;
  }
  return 0;
}

extern "C" unsigned short qz_towctrans(unsigned short c, int mapping) {
  switch (mapping) {
    case 1:
    case 4:
      return qz_towlower(c);
    case 2:
    case 3:
      return qz_towupper(c);
    case 5:
      return static_cast<unsigned short>(ToFullwidthTransform::Transform(c));
    case 6:
      return static_cast<unsigned short>(ToHalfwidthTransform::Transform(c));
    case 7:
      return static_cast<unsigned short>(ToKatakanaTransform::Transform(c));
    case 8:
      return static_cast<unsigned short>(ToHiraganaTransform::Transform(c));
    default:
      return c;
  }
}
