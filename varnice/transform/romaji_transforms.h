// Kana to romaji and back.
//
//   KanaToHebonRomajiTransform  きょうは しんぶんを よんだ。 -> kyouha shinbunwo yonda.
//   KanaToKunreiRomajiTransform ちゃっと ふじさん            -> tyatto huzisan
//   RomajiToHiraganaTransform   konnichiha, kon'ya, kitte    -> こんにちは、 こんや、 きって
//   RomajiToKatakanaTransform   konpyu^ta^                   -> コンピューター
//
// Conventions, chosen so that kana -> romaji -> kana gives the kana back:
// - kana are spelled as written, not as pronounced: おう -> ou, は -> ha,
//   を -> wo; the long-vowel mark ー is ^ (read back from ^ or from - after a
//   syllable);
// - ん is n, and n' before a vowel, y or another ん (kon'ya, kan'i); the
//   sokuon doubles the next consonant (kitte; Hepburn っち -> tchi), and is
//   xtsu (Kunrei xtu) where nothing follows to double; small kana alone are
//   x-spellings (ァ -> xa, ヶ -> xke);
// - where Hepburn would spell two kana alike, the kana keep their own
//   spelling: ぢ づ -> di du, ティ ディ -> thi dhi, トゥ -> twu, ウォ -> who;
//   ゐ ゑ -> wyi wye; the letters are lower case.
// Hiragana and fullwidth katakana are read; halfwidth katakana, iteration
// marks and ヷ-ヺ pass unchanged. The reader accepts Hepburn, Kunrei and the
// usual keyboard spellings in either case (si, tu, hu, zi, jya, cya, la, ltu,
// nn for ん before a consonant), doubles any consonant but n into っ, and leaves
// letters that form no syllable as they are. A syllable, a sokuon or an ん
// split between upstream blocks is held until the next characters decide it.
#ifndef VARNICE_TRANSFORM_ROMAJI_TRANSFORMS_H_
#define VARNICE_TRANSFORM_ROMAJI_TRANSFORMS_H_

#include "varnice/transform/unicode_transform.h"
#include "varnice/varnice_export.h"

class VARNICE_API KanaToRomajiTransform : public UnicodeTransform {
 public:
  enum class Style { kHepburn, kKunrei };
  KanaToRomajiTransform(Char16Source& source, const InternalEncoding& encoding,
                        const CharacterTest& test, Style style);
  ~KanaToRomajiTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short* Feed(unsigned short c, bool isKana, unsigned short* out);
  unsigned short* Drain(bool all, unsigned short* out);

  Style style_;
  unsigned short held_[3];  // kana (as hiragana) not yet spelled
  int count_ = 0;
};

class VARNICE_API KanaToHebonRomajiTransform : public KanaToRomajiTransform {
 public:
  KanaToHebonRomajiTransform(Char16Source& source, const InternalEncoding& encoding,
                             const CharacterTest& test)
      : KanaToRomajiTransform(source, encoding, test, Style::kHepburn) {}
  ~KanaToHebonRomajiTransform() override;
};

class VARNICE_API KanaToKunreiRomajiTransform : public KanaToRomajiTransform {
 public:
  KanaToKunreiRomajiTransform(Char16Source& source, const InternalEncoding& encoding,
                              const CharacterTest& test)
      : KanaToRomajiTransform(source, encoding, test, Style::kKunrei) {}
  ~KanaToKunreiRomajiTransform() override;
};

class VARNICE_API RomajiToKanaTransform : public UnicodeTransform {
 public:
  RomajiToKanaTransform(Char16Source& source, const InternalEncoding& encoding,
                        const CharacterTest& test, bool katakana);
  ~RomajiToKanaTransform() override;
  bool FillBuffer() override;

 private:
  unsigned short* Feed(unsigned short c, bool isLetter, unsigned short* out);
  unsigned short* Drain(bool all, unsigned short* out);
  unsigned short* Kana(const char16_t* kana, unsigned short* out);

  bool katakana_;
  bool afterKana_ = false;  // the last unit written was a syllable
  unsigned short held_[4];  // letters (as written) not yet read
  int count_ = 0;
};

class VARNICE_API RomajiToHiraganaTransform : public RomajiToKanaTransform {
 public:
  RomajiToHiraganaTransform(Char16Source& source, const InternalEncoding& encoding,
                            const CharacterTest& test)
      : RomajiToKanaTransform(source, encoding, test, false) {}
  ~RomajiToHiraganaTransform() override;
};

class VARNICE_API RomajiToKatakanaTransform : public RomajiToKanaTransform {
 public:
  RomajiToKatakanaTransform(Char16Source& source, const InternalEncoding& encoding,
                            const CharacterTest& test)
      : RomajiToKanaTransform(source, encoding, test, true) {}
  ~RomajiToKatakanaTransform() override;
};

#endif  // VARNICE_TRANSFORM_ROMAJI_TRANSFORMS_H_
