#include "varnice/transform/romaji_transforms.h"

#include <algorithm>

#include "varnice/transform/language_tables.h"
#include "varnice/transform/transform_frame.h"

using varnice::internal::kKanaRomaji;
using varnice::internal::kRomajiKana;
using varnice::internal::kRomajiKanaCount;
using varnice::internal::kRomajiSpellings;
using varnice::internal::KanaRomaji;
using varnice::internal::RomajiKana;

namespace {

constexpr unsigned short kSokuon = 0x3063;  // っ
constexpr unsigned short kMoraicN = 0x3093;  // ん
constexpr unsigned short kLongVowel = 0x30FC;  // ー
constexpr char16_t kSokuonKana[] = {0x3063, 0};
constexpr char16_t kMoraicNKana[] = {0x3093, 0};

// The most units one step writes: three held syllables of up to four letters
// and an apostrophe, or four held letters of two kana each, and the unit itself.
constexpr long kStepRoom = 16;

// The hiragana a kana unit is spelled as (ー as itself), or 0.
unsigned short AsHiragana(unsigned short c) {
  if (c >= 0x3041 && c <= 0x3096) return c;
  if (c >= 0x30A1 && c <= 0x30F6) return c - 0x60;
  return c == kLongVowel ? c : 0;
}

const KanaRomaji* FindKana(unsigned short first, unsigned short second) {
  if (first < 0x3040 || first >= 0x30A0) return nullptr;
  const std::uint32_t key = (static_cast<std::uint32_t>(first) << 16) | second;
  const KanaRomaji* end = kKanaRomaji + varnice::internal::kKanaRomajiFirsts[first - 0x3040 + 1];
  for (const KanaRomaji* e = kKanaRomaji + varnice::internal::kKanaRomajiFirsts[first - 0x3040];
       e != end; ++e) {
    if (e->kana == key) return e;
  }
  return nullptr;
}

bool IsVowel(char c) { return c == 'a' || c == 'i' || c == 'u' || c == 'e' || c == 'o'; }
bool IsAsciiLetter(unsigned short c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }
bool IsConsonant(char c) { return c >= 'a' && c <= 'z' && !IsVowel(c); }

// p[0, n) packed as the table packs spellings.
std::uint32_t Pack(const char* p, int n) {
  std::uint32_t packed = 0;
  for (int i = 0; i < 4; ++i) packed = (packed << 8) | (i < n ? static_cast<unsigned char>(p[i]) : 0);
  return packed;
}

const RomajiKana* LowerBound(std::uint32_t packed) {
  return std::lower_bound(kRomajiKana, kRomajiKana + kRomajiKanaCount, packed,
                          [](const RomajiKana& e, std::uint32_t v) { return e.spelling < v; });
}

const RomajiKana* FindSpelling(const char* p, int n) {
  const std::uint32_t packed = Pack(p, n);
  const RomajiKana* e = LowerBound(packed);
  return e != kRomajiKana + kRomajiKanaCount && e->spelling == packed ? e : nullptr;
}

// Whether a longer spelling begins with p[0, n): one lies between p and p
// followed by the highest letters.
bool MayGrow(const char* p, int n) {
  if (n >= 4) return false;
  const std::uint32_t packed = Pack(p, n);
  const RomajiKana* e = LowerBound(packed + 1);
  return e != kRomajiKana + kRomajiKanaCount && e->spelling <= (packed | (0xFFFFFFFFu >> (8 * n)));
}

}  // namespace

KanaToRomajiTransform::KanaToRomajiTransform(Char16Source& source,
                                             const InternalEncoding& encoding,
                                             const CharacterTest& test, Style style)
    : UnicodeTransform(source, encoding, test), style_(style) {}
KanaToRomajiTransform::~KanaToRomajiTransform() = default;
KanaToHebonRomajiTransform::~KanaToHebonRomajiTransform() = default;
KanaToKunreiRomajiTransform::~KanaToKunreiRomajiTransform() = default;

// Spells the held kana that the ones after them no longer affect; with `all`,
// every held kana (nothing that could join them follows).
unsigned short* KanaToRomajiTransform::Drain(bool all, unsigned short* out) {
  const bool hepburn = style_ == Style::kHepburn;
  auto spelling = [hepburn](const KanaRomaji* k, int& length) {
    length = hepburn ? k->hepburnLength : k->kunreiLength;
    return kRomajiSpellings + (hepburn ? k->hepburn : k->kunrei);
  };
  // The syllable at held_[i]: two units when they form one, else one.
  auto syllable = [this](int i, int& units) -> const KanaRomaji* {
    if (i + 1 < count_) {
      if (const KanaRomaji* k = FindKana(held_[i], held_[i + 1]); k != nullptr) {
        units = 2;
        return k;
      }
    }
    units = 1;
    return FindKana(held_[i], 0);
  };
  while (count_ > 0) {
    const unsigned short u = held_[0];
    int used = 1;
    if (u == kLongVowel) {
      *out++ = '^';
    } else if (u == kSokuon || u == kMoraicN) {
      if (count_ < 3 && !all) return out;  // the next syllable decides
      const unsigned short next = count_ > 1 ? held_[1] : 0;
      int units, length = 0;
      const KanaRomaji* k = next != 0 && next != kSokuon && next != kMoraicN ? syllable(1, units)
                                                                            : nullptr;
      const char* s = k != nullptr ? spelling(k, length) : "";
      if (u == kSokuon) {
        if (IsConsonant(s[0]) && s[0] != 'n') {
          *out++ = hepburn && s[0] == 'c' ? 't' : s[0];
        } else {
          const char* x = hepburn ? "xtsu" : "xtu";
          while (*x != 0) *out++ = *x++;
        }
      } else {
        *out++ = 'n';
        if (IsVowel(s[0]) || s[0] == 'y' || next == kMoraicN) *out++ = '\'';
      }
    } else {
      if (count_ < 2 && !all) return out;  // a small kana may follow
      int length;
      const char* s = spelling(syllable(0, used), length);
      out = std::copy(s, s + length, out);
    }
    count_ -= used;
    std::copy(held_ + used, held_ + used + count_, held_);
  }
  return out;
}

unsigned short* KanaToRomajiTransform::Feed(unsigned short c, bool isKana, unsigned short* out) {
  if (isKana) {
    held_[count_++] = AsHiragana(c);
    return Drain(false, out);
  }
  out = Drain(true, out);
  *out = c;
  return out + 1;
}

bool KanaToRomajiTransform::FillBuffer() {
  bool ended;
  unsigned short* out = varnice::internal::FillUnits(
      source_, buffer_, buffer_ + kBufferSize - kStepRoom, ended,
      [this, passes = TestGate()](unsigned short c, unsigned short* out) {
        return Feed(c, AsHiragana(c) != 0 && passes(c), out);
      });
  if (ended) out = Drain(true, out);
  return Lend(out);
}

RomajiToKanaTransform::RomajiToKanaTransform(Char16Source& source,
                                             const InternalEncoding& encoding,
                                             const CharacterTest& test, bool katakana)
    : UnicodeTransform(source, encoding, test), katakana_(katakana) {}
RomajiToKanaTransform::~RomajiToKanaTransform() = default;
RomajiToHiraganaTransform::~RomajiToHiraganaTransform() = default;
RomajiToKatakanaTransform::~RomajiToKatakanaTransform() = default;

unsigned short* RomajiToKanaTransform::Kana(const char16_t* kana, unsigned short* out) {
  const unsigned short shift = katakana_ ? 0x60 : 0;
  *out++ = kana[0] + shift;
  if (kana[1] != 0) *out++ = kana[1] + shift;
  afterKana_ = true;
  return out;
}

// Reads the held letters that the ones after them no longer affect; with
// `all`, every held letter.
unsigned short* RomajiToKanaTransform::Drain(bool all, unsigned short* out) {
  while (count_ > 0) {
    char p[4];
    for (int i = 0; i < count_; ++i) p[i] = static_cast<char>(held_[i] | (held_[i] == '\'' ? 0 : 0x20));
    const bool pair = count_ >= 2 && p[0] == p[1];
    if (!all && count_ < 4 &&
        (MayGrow(p, count_) || (count_ == 2 && ((pair && p[0] == 'n') || (p[0] == 't' && p[1] == 'c'))))) {
      return out;
    }
    int used = 0;
    if (p[0] == 'n' && count_ >= 2 && p[1] == '\'') {
      out = Kana(kMoraicNKana, out);
      used = 2;
    } else if (p[0] == 'n' && pair) {
      // nn is ん; before a vowel or y the second n begins the next syllable.
      const bool nextBegins = count_ >= 3 && (IsVowel(p[2]) || p[2] == 'y');
      out = Kana(kMoraicNKana, out);
      used = nextBegins ? 1 : 2;
    } else if ((pair && IsConsonant(p[0])) ||
               (count_ >= 3 && p[0] == 't' && p[1] == 'c' && p[2] == 'h')) {
      out = Kana(kSokuonKana, out);
      used = 1;
    } else {
      for (int n = count_; n > 0 && used == 0; --n) {
        if (const RomajiKana* e = FindSpelling(p, n); e != nullptr) {
          out = Kana(e->kana, out);
          used = n;
        }
      }
      if (used == 0) {  // forms no syllable: left as written
        *out++ = held_[0];
        afterKana_ = false;
        used = 1;
      }
    }
    count_ -= used;
    std::copy(held_ + used, held_ + used + count_, held_);
  }
  return out;
}

unsigned short* RomajiToKanaTransform::Feed(unsigned short c, bool isLetter, unsigned short* out) {
  if (isLetter || (c == '\'' && count_ == 1 && (held_[0] | 0x20) == 'n')) {
    held_[count_++] = c;
    return Drain(false, out);
  }
  out = Drain(true, out);
  if ((c == '^' || c == '-') && afterKana_) {
    *out = kLongVowel;
    return out + 1;
  }
  afterKana_ = false;
  *out = c;
  return out + 1;
}

bool RomajiToKanaTransform::FillBuffer() {
  bool ended;
  const Gate passes = TestGate();
  unsigned short* out = varnice::internal::FillUnits(
      source_, buffer_, buffer_ + kBufferSize - kStepRoom, ended,
      [this, passes](unsigned short c, unsigned short* out) {
        const bool mayChange = c < 0x80 && passes(c);
        if (!mayChange) {
          out = Drain(true, out);
          afterKana_ = false;
          *out = c;
          return out + 1;
        }
        return Feed(c, IsAsciiLetter(c), out);
      });
  if (ended) out = Drain(true, out);
  return Lend(out);
}
