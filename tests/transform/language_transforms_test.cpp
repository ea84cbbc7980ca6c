// The language transforms: each one's conventions on representative words,
// round trips, the character test, and every transform split at every block
// boundary of a long text giving what the unsplit text gives.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/transform/transform_test_support.h"
#include "varnice/transform/language_tables.h"
#include "varnice/transform/latin_number_transform.h"

using testing_transforms::RandomSizes;
using testing_transforms::Through;

namespace {

TEST(KatakanaWidth, SplitsAndJoinsSoundMarks) {
  EXPECT_EQ(Through("hankaku-katakana", u"ガパヴア。「」、・ー゛゜\u3099\u309A"),
            u"ｶﾞﾊﾟｳﾞｱ｡｢｣､･ｰﾞﾟﾞﾟ");
  // No halfwidth base: full width stays; hiragana, Latin and the ideographic
  // space are not this transform's business.
  EXPECT_EQ(Through("hankaku-katakana", u"ヵヶヮヸがＡ　"), u"ヵヶヮヸがＡ　");
  EXPECT_EQ(Through("zenkaku-katakana", u"ｶﾞﾊﾟｳﾞﾜﾞｱ｡｢｣､･ｰ"), u"ガパヴヷア。「」、・ー");
  // A mark that cannot join becomes the spacing mark; the base stays.
  EXPECT_EQ(Through("zenkaku-katakana", u"ﾞｱﾞﾟｰﾟ"), u"゛ア゛゜ー゜");
  EXPECT_EQ(Through("zenkaku-katakana", u"ｶ"), u"カ");  // held base written at the end
  // The test: a base that fails it is neither widened nor joined.
  EXPECT_EQ(Through("zenkaku-katakana", u"ｶﾞA", {}, *LatinScript), u"ｶﾞA");
  EXPECT_EQ(Through("hankaku-katakana", u"ガa", {}, *LatinScript), u"ガa");
}

TEST(KatakanaWidth, EveryKatakanaRoundTrips) {
  std::u16string all;
  for (char16_t c = 0x30A1; c <= 0x30FA; ++c) all.push_back(c);
  all += u"。「」、・ー";
  const std::u16string half = Through("hankaku-katakana", all);
  EXPECT_EQ(Through("zenkaku-katakana", half), all);
  EXPECT_EQ(Through("zenkaku-katakana", half, {1}), all);
}

TEST(ToLatinNumber, DigitsOfEveryScriptAndNothingElse) {
  EXPECT_EQ(Through("latin-digits", u"０٩९๓߀১꘠\U0001D7CE\U0001D7FF\U000104A5"), u"0993010095");
  EXPECT_EQ(Through("latin-digits", u"①²Ⅻ十\U0001F600 \xD800x\xDC00"),
            u"①²Ⅻ十\U0001F600 \xD800x\xDC00");
  EXPECT_EQ(Through("latin-digits", u"١\xD835"), u"1\xD835");  // a high half at the end
  EXPECT_EQ(Through("latin-digits", u"١٢", {}, *LatinScript), u"١٢");
  EXPECT_EQ(ToLatinNumberTransform::Transform(0x0E59), '9');
  EXPECT_EQ(ToLatinNumberTransform::Transform(0x0E5A), 0x0E5Au);
}

TEST(FromSGMLEntity, NamedAndNumericReferences) {
  EXPECT_EQ(Through("entities", u"&eacute;&#233;&#xE9;&#XE9;&amp;&lt;&NotEqualTilde;"),
            u"ééé\u00E9&<\u2242\u0338");
  EXPECT_EQ(Through("entities", u"&#x1F600;&#128512;&CounterClockwiseContourIntegral;"),
            u"\U0001F600\U0001F600\u2233");
  // Passed through as written: no ';', unknown names, bad numbers, bare '&'.
  for (const char16_t* s : {u"&amp", u"AT&T", u"&nosuch;", u"&#0;", u"&#xD800;", u"&#x110000;",
                            u"&#123456789;", u"&#;", u"&#x;", u"& ;", u"&;", u"a & b", u"&&amp",
                            u"&1abc;"}) {
    EXPECT_EQ(Through("entities", s), s);
  }
  EXPECT_EQ(Through("entities", u"&&amp;"), u"&&");
  EXPECT_EQ(Through("entities", u"&am&lt;"), u"&am<");
}

struct RomajiCase {
  const char16_t* kana;
  const char16_t* hepburn;
  const char16_t* kunrei;
};

TEST(KanaToRomaji, HepburnAndKunrei) {
  const RomajiCase cases[] = {
      {u"しんぶん", u"shinbun", u"sinbun"},
      {u"ちゃっと", u"chatto", u"tyatto"},
      {u"まっちゃ", u"matcha", u"mattya"},
      {u"ふじさん", u"fujisan", u"huzisan"},
      {u"つづく", u"tsuduku", u"tuduku"},
      {u"こんや", u"kon'ya", u"kon'ya"},
      {u"きんえん", u"kin'en", u"kin'en"},
      {u"こんにちは", u"konnichiha", u"konnitiha"},
      {u"ほんをよむ", u"honwoyomu", u"honwoyomu"},
      {u"コンピューター", u"konpyu^ta^", u"konpyu^ta^"},
      {u"ファイル ティー ヴァイオリン", u"fairu thi^ vaiorin", u"fairu thi^ vaiorin"},
      {u"ジェット ウォッカ", u"jetto whokka", u"zyetto whokka"},
      {u"あっ。ァ", u"axtsu。xa", u"axtu。xa"},
      {u"ヶ月 漢字", u"xke月 漢字", u"xke月 漢字"},
  };
  for (const RomajiCase& c : cases) {
    EXPECT_EQ(Through("hepburn", c.kana), c.hepburn) << std::u16string(c.kana).size();
    EXPECT_EQ(Through("kunrei", c.kana), c.kunrei);
  }
  EXPECT_EQ(Through("hepburn", u"かな", {}, *LatinScript), u"かな");
}

TEST(RomajiToKana, ReadsHepburnKunreiAndKeyboardSpellings) {
  EXPECT_EQ(Through("romaji-hiragana", u"konnichiha konnnichiha kon'ya kanna"),
            u"こんにちは こんにちは こんや かんな");
  EXPECT_EQ(Through("romaji-hiragana", u"shi si chi ti tsu tu fu hu ji zi jya cya"),
            u"し し ち ち つ つ ふ ふ じ じ じゃ ちゃ");
  EXPECT_EQ(Through("romaji-hiragana", u"kitte matcha xtsu ltu la XA"),
            u"きって まっちゃ っ っ ぁ ぁ");
  EXPECT_EQ(Through("romaji-katakana", u"KONPYU-TA^ Tokyo"), u"コンピューター トキョ");
  EXPECT_EQ(Through("romaji-hiragana", u"shinbun, hon."), u"しんぶん, ほん.");
  // Letters that form no syllable stay; a hyphen not after a syllable stays.
  EXPECT_EQ(Through("romaji-hiragana", u"qlx -ka 3"), u"qlx -か 3");
  EXPECT_EQ(Through("romaji-hiragana", u"kaka", {}, *DecimalNumber), u"kaka");
}

TEST(Romaji, OrdinaryWordsRoundTrip) {
  const std::u16string hiragana =
      u"きょう がっこう ともだち しゅくだい ちいさい おかあさん おとうさん ほっかいどう "
      u"しんよう きんえん こんにちは さようなら ぎゅうにゅう りょこう でんしゃ つづく "
      u"はなぢ ちゃわん じゃんけん びょういん ひゃく みょうじ ぴゅう ゐど ゑひもせす "
      u"おんな かんい まっちゃ ざっし いっぱい きって ふっとう じっけん";
  const std::u16string katakana =
      u"コンピューター ティーシャツ ディズニー ファイル フォーク ヴァイオリン ウィーン "
      u"ウェブ ウォッカ ジェット チェック シェア パーティー トゥデイ ドゥ デュエット "
      u"フュージョン ツァー クァルテット イェール カフェ ピッツァ ベッド キャッチ";
  for (const char* style : {"hepburn", "kunrei"}) {
    EXPECT_EQ(Through("romaji-hiragana", Through(style, hiragana)), hiragana) << style;
    EXPECT_EQ(Through("romaji-katakana", Through(style, katakana)), katakana) << style;
  }
}

TEST(ChineseVariants, PhrasesDecideOneToManyCharacters) {
  EXPECT_EQ(Through("traditional", u"头发和发展，干燥的干部。"), u"頭髮和發展，乾燥的幹部。");
  EXPECT_EQ(Through("simplified", u"頭髮和發展，乾燥的幹部。"), u"头发和发展，干燥的干部。");
  EXPECT_EQ(Through("traditional", u"abc 123"), u"abc 123");
  // A character that fails the test is neither converted nor part of a phrase.
  EXPECT_EQ(Through("traditional", u"头发", {}, *LatinScript), u"头发");
}

// The plain reference: every key of the table in a map, forward longest match
// over the whole text, against the transform's index and held units.
std::u16string ReferenceVariants(const varnice::internal::VariantTable& t,
                                 const std::map<std::u16string, std::u16string>& keys,
                                 const std::u16string& text) {
  std::u16string out;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t n = std::min<std::size_t>(t.longestKey, text.size() - at);
    for (; n > 0; --n) {
      if (auto it = keys.find(text.substr(at, n)); it != keys.end()) {
        out += it->second;
        break;
      }
    }
    if (n == 0) {
      const char16_t mapped = t.Map(text[at]);
      out.push_back(mapped != 0 ? mapped : text[at]);
      n = 1;
    }
    at += n;
  }
  return out;
}

TEST(ChineseVariants, StreamingMatchesAPlainLongestMatch) {
  std::mt19937 rng(27);
  for (auto [name, table] : {std::pair{"traditional", &varnice::internal::kTraditionalTable},
                             std::pair{"simplified", &varnice::internal::kSimplifiedTable}}) {
    const varnice::internal::VariantTable& t = *table;
    std::map<std::u16string, std::u16string> keys;
    std::vector<std::u16string> pieces;
    for (long i = 0; i < t.count; ++i) {
      const varnice::internal::VariantKey& k = t.entries[i];
      std::u16string key(t.keys + k.key, t.keys + k.key + k.keyLength);
      keys.emplace(key, std::u16string(t.values + k.value, t.values + k.value + k.valueLength));
      pieces.push_back(key);
      pieces.push_back(key.substr(0, key.size() / 2 + 1));  // prefixes that must not match
    }
    std::uniform_int_distribution<std::size_t> pick(0, pieces.size() - 1);
    std::u16string text;
    while (text.size() < 20000) text += pieces[pick(rng)];
    EXPECT_EQ(Through(name, text, RandomSizes(rng)), ReferenceVariants(t, keys, text)) << name;
  }
}

// A long text that exercises every transform, its state at block ends in
// particular, split at every place and in random pieces; and random texts
// from the characters each transform holds or decides on, in random pieces.
// Every way gives what the unsplit text gives.
TEST(LanguageTransforms, EverySplitGivesTheUnsplitText) {
  const std::u16string piece =
      u"ガパヴｶﾞﾊﾟｳﾞｱﾞﾞ ０١९ \U0001D7CE &eacute;&#x1F600;&amp &NotEqualTilde; "
      u"きょうは がっこうで コンピューターを つかった。 kon'ya matcha konnnichiha shi-n "
      u"头发和发展，干燥的干部。頭髮和發展，乾燥的幹部。先天下之忧而忧，后天下之乐而乐。";
  static const char16_t kPool[] =
      u"&#;xX0129aAmpltENnyY'-^ktschiuoe ｶﾊｳﾜｱﾞﾟガヴっんーァャきゃティ"
      u"头发展干燥部先天下之忧而乐頭髮發乾幹١٢０Ø35ßCEØ00";
  std::mt19937 rng(17);
  std::uniform_int_distribution<std::size_t> pick(0, sizeof kPool / sizeof kPool[0] - 2);
  std::vector<std::u16string> texts(1);
  while (texts[0].size() < 1400) texts[0] += piece;
  for (int round = 0; round < 40; ++round) {
    texts.emplace_back();
    for (int i = 0; i < 1500; ++i) texts.back().push_back(kPool[pick(rng)]);
  }
  for (const char* name : {"hankaku-katakana", "zenkaku-katakana", "latin-digits", "entities",
                           "hepburn", "kunrei", "romaji-hiragana", "romaji-katakana",
                           "traditional", "simplified"}) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const std::u16string& text = texts[i];
      const std::u16string whole = Through(name, text);
      if (i == 0) {
        EXPECT_NE(whole, text) << name;
        for (std::size_t k = 1; k < text.size(); ++k) {
          ASSERT_EQ(Through(name, text, {k, text.size()}), whole) << name << " split at " << k;
        }
      }
      for (int round = i == 0 ? 20 : 1; round > 0; --round) {
        ASSERT_EQ(Through(name, text, RandomSizes(rng, i == 0 ? 64 : 200)), whole) << name << " text " << i;
      }
      ASSERT_EQ(Through(name, text, {1 + i % 3}), whole) << name << " text " << i;
    }
  }
}

}  // namespace
