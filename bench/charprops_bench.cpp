// Character classification and string comparison, in characters per second,
// beside ICU's general-category lookup and its code-unit and collation
// comparisons on the same text.
#include <benchmark/benchmark.h>

#include <vector>

#include "varnice/varnice.h"

#ifdef VARNICE_BENCH_HAVE_ICU
#include <dlfcn.h>
#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>
#endif

namespace {

// 4096 code units of mixed Japanese and Latin text: kana, kanji, ASCII letters,
// digits, spaces and punctuation, a few accented letters.
std::vector<unsigned short> const& Text() {
  static const std::vector<unsigned short> text = [] {
    const unsigned short sample[] = {
        0x6771, 0x4EAC, 0x90FD, 0x3067, 0x3042, 0x308B, 0x3002, 'T', 'o', 'k', 'y', 'o', ' ',
        'i', 's', ' ', 0x00E9, 't', 0x00E9, ',', ' ', '1', '9', '9', '9', '.', ' ', 0x30AB,
        0x30BF, 0x30AB, 0x30CA, 0xFF71, 0xFF72, 0x3000, 0x5B57, 0x3001, 'A', 'B', 'C', '!'};
    std::vector<unsigned short> t;
    for (std::size_t i = 0; t.size() < 4096; ++i) t.push_back(sample[i % (sizeof sample / 2)]);
    return t;
  }();
  return text;
}

void CountCharacters(benchmark::State& state, std::size_t perIteration) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * perIteration));
}

// Classification.

void BM_Varnice_AnyLetter_Test(benchmark::State& state) {
  std::vector<unsigned short> const& text = Text();
  for (auto _ : state) {
    int n = 0;
    for (unsigned short c : text) n += AnyLetter->Test(c);
    benchmark::DoNotOptimize(n);
  }
  CountCharacters(state, Text().size());
}
BENCHMARK(BM_Varnice_AnyLetter_Test);

// Two kinds: a category and a script lookup per character.
void BM_Varnice_LatinCapital_Test(benchmark::State& state) {
  std::vector<unsigned short> const& text = Text();
  const CharacterProperty latinCapitals = *LatinScript + *UppercaseLetter;
  for (auto _ : state) {
    int n = 0;
    for (unsigned short c : text) n += latinCapitals.Test(c);
    benchmark::DoNotOptimize(n);
  }
  CountCharacters(state, Text().size());
}
BENCHMARK(BM_Varnice_LatinCapital_Test);

void BM_Varnice_qz_iswalpha(benchmark::State& state) {
  std::vector<unsigned short> const& text = Text();
  for (auto _ : state) {
    int n = 0;
    for (unsigned short c : text) n += qz_iswalpha(c);
    benchmark::DoNotOptimize(n);
  }
  CountCharacters(state, Text().size());
}
BENCHMARK(BM_Varnice_qz_iswalpha);

#ifdef VARNICE_BENCH_HAVE_ICU
void BM_Icu_u_charType_IsLetter(benchmark::State& state) {
  std::vector<unsigned short> const& text = Text();
  for (auto _ : state) {
    int n = 0;
    for (unsigned short c : text) n += (U_MASK(u_charType(c)) & U_GC_L_MASK) != 0;
    benchmark::DoNotOptimize(n);
  }
  CountCharacters(state, Text().size());
}
BENCHMARK(BM_Icu_u_charType_IsLetter);
#endif

// Comparison: two equal strings but for the last unit, so the whole length is
// compared. Characters counted are those of one string.

struct Pair {
  std::vector<unsigned short> a, b;  // NUL-terminated
};

Pair const& Strings() {
  static const Pair pair = [] {
    Pair p{Text(), Text()};
    p.b.back() = static_cast<unsigned short>(p.b.back() + 1);
    p.a.push_back(0);
    p.b.push_back(0);
    return p;
  }();
  return pair;
}

constexpr unsigned kCompared = 4096;

void BM_Varnice_compare_raw_unicode_pl(benchmark::State& state) {
  Pair const& p = Strings();
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        Varnice_compare_raw_unicode_pl(p.a.data(), kCompared, p.b.data(), kCompared));
  }
  CountCharacters(state, kCompared);
}
BENCHMARK(BM_Varnice_compare_raw_unicode_pl);

void BM_Varnice_compare_raw_unicode_sz(benchmark::State& state) {
  Pair const& p = Strings();
  for (auto _ : state) {
    benchmark::DoNotOptimize(Varnice_compare_raw_unicode_sz(p.a.data(), p.b.data()));
  }
  CountCharacters(state, kCompared);
}
BENCHMARK(BM_Varnice_compare_raw_unicode_sz);

// Keys each unit by its EUC-JP code (a table lookup per unit).
void BM_Varnice_compare_JIS_pl(benchmark::State& state) {
  Pair const& p = Strings();
  for (auto _ : state) {
    benchmark::DoNotOptimize(Varnice_compare_JIS_pl(p.a.data(), kCompared, p.b.data(), kCompared));
  }
  CountCharacters(state, kCompared);
}
BENCHMARK(BM_Varnice_compare_JIS_pl);

#ifdef VARNICE_BENCH_HAVE_ICU
void BM_Icu_u_strcmp(benchmark::State& state) {
  Pair const& p = Strings();
  const auto* a = reinterpret_cast<const UChar*>(p.a.data());
  const auto* b = reinterpret_cast<const UChar*>(p.b.data());
  for (auto _ : state) benchmark::DoNotOptimize(u_strcmp(a, b));
  CountCharacters(state, kCompared);
}
BENCHMARK(BM_Icu_u_strcmp);

// The benchmark links ICU's common library only, so the collator is reached
// through ICU's i18n library at run time, under its versioned symbol names.
#define VARNICE_BENCH_STR2(x) #x
#define VARNICE_BENCH_STR(x) VARNICE_BENCH_STR2(x)

void BM_Icu_ucol_strcoll_ja(benchmark::State& state) {
  void* i18n = dlopen("libicui18n.so." U_ICU_VERSION_SHORT, RTLD_NOW);
  if (i18n == nullptr) {
    state.SkipWithError("libicui18n not found");
    return;
  }
  using Open = UCollator* (*)(const char*, UErrorCode*);
  using Coll = UCollationResult (*)(const UCollator*, const UChar*, int32_t, const UChar*, int32_t);
  using Close = void (*)(UCollator*);
  auto open = reinterpret_cast<Open>(dlsym(i18n, VARNICE_BENCH_STR(ucol_open)));
  auto coll = reinterpret_cast<Coll>(dlsym(i18n, VARNICE_BENCH_STR(ucol_strcoll)));
  auto close = reinterpret_cast<Close>(dlsym(i18n, VARNICE_BENCH_STR(ucol_close)));
  UErrorCode status = U_ZERO_ERROR;
  UCollator* collator = open != nullptr ? open("ja", &status) : nullptr;
  if (collator == nullptr || coll == nullptr || close == nullptr || U_FAILURE(status)) {
    state.SkipWithError("no ICU collator");
    return;
  }
  Pair const& p = Strings();
  const auto* a = reinterpret_cast<const UChar*>(p.a.data());
  const auto* b = reinterpret_cast<const UChar*>(p.b.data());
  for (auto _ : state) benchmark::DoNotOptimize(coll(collator, a, kCompared, b, kCompared));
  CountCharacters(state, kCompared);
  close(collator);
}
BENCHMARK(BM_Icu_ucol_strcoll_ja);
#endif

}  // namespace
