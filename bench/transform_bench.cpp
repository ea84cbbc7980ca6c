// Transforms over UTF-16 text, MB/s of UTF-16 input, through
// TransformUnicodeString (the caller's buffer in, the caller's buffer out).
// With ICU, each benchmark also times ICU's counterpart on the same text in
// the same run and reports `x_ICU`: how many times faster Varnice is.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

#include "varnice/capi/varnice_c.h"

#ifdef VARNICE_BENCH_HAVE_ICU
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utrans.h>
#endif

namespace {

constexpr std::size_t kUnits = 256 * 1024;
constexpr int kAnyCharacter = 0;

const char16_t kJapanese[] =
    u"日本語の文章は、漢字とひらがなとカタカナが混じり合っています。ﾃﾞｰﾀﾍﾞｰｽには"
    u"２０２４年の記録がＵＴＦ－１６で保存されている。ガギグゲゴ　パピプペポ\n";
const char16_t kEuropean[] =
    u"Déjà vu: the café in Zürich serves crème brûlée; Ærøskøbing lies in Denmark. "
    u"Cafe\u0301, nai\u0308ve and A\u030Angstro\u0308m are spelt with combining marks.\n";

std::vector<unsigned short> Text(int which) {
  const char16_t* p = which == 0 ? kJapanese : kEuropean;
  std::vector<unsigned short> text;
  while (text.size() < kUnits) {
    for (const char16_t* c = p; *c != 0; ++c) text.push_back(*c);
  }
  return text;
}

enum Kind { kUpper = 17, kHalfwidth = 5, kHiragana = 2, kDecompose = 3, kCompose = 4 };

#ifdef VARNICE_BENCH_HAVE_ICU
// ICU's counterpart of one transform over `text` into `out`, once.
void Icu(Kind kind, const std::vector<unsigned short>& text, std::vector<UChar>& out) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* src = reinterpret_cast<const UChar*>(text.data());
  const int32_t n = static_cast<int32_t>(text.size());
  const int32_t capacity = static_cast<int32_t>(out.size());
  switch (kind) {
    case kUpper:
      u_strToUpper(out.data(), capacity, src, n, "", &status);
      break;
    case kDecompose:
    case kCompose: {
      const UNormalizer2* norm =
          kind == kDecompose ? unorm2_getNFDInstance(&status) : unorm2_getNFCInstance(&status);
      unorm2_normalize(norm, src, n, out.data(), capacity, &status);
      break;
    }
    case kHalfwidth:
    case kHiragana: {
      static UTransliterator* halfwidth = nullptr;
      static UTransliterator* hiragana = nullptr;
      UTransliterator*& t = kind == kHalfwidth ? halfwidth : hiragana;
      if (t == nullptr) {
        const char16_t* id = kind == kHalfwidth ? u"Fullwidth-Halfwidth" : u"Katakana-Hiragana";
        t = utrans_openU(reinterpret_cast<const UChar*>(id), -1, UTRANS_FORWARD, nullptr, 0,
                         nullptr, &status);
      }
      std::copy(src, src + n, out.begin());
      int32_t length = n;
      int32_t limit = n;
      utrans_transUChars(t, out.data(), &length, capacity, 0, &limit, &status);
      break;
    }
  }
  benchmark::DoNotOptimize(out.data());
}
#endif

void BM_Transform(benchmark::State& state, Kind kind, int which) {
  const std::vector<unsigned short> text = Text(which);
  std::vector<unsigned short> out(text.size() * 2 + 1);
  const auto start = std::chrono::steady_clock::now();
  for (auto _ : state) {
    const int n = TransformUnicodeString(kind, kAnyCharacter, text.data(),
                                         static_cast<long>(text.size()), out.data(),
                                         static_cast<long>(out.size()));
    benchmark::DoNotOptimize(n);
  }
  const double ours = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() /
                      static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size() * 2));
#ifdef VARNICE_BENCH_HAVE_ICU
  std::vector<UChar> icuOut(text.size() * 4 + 1);
  Icu(kind, text, icuOut);  // warm up (and open the transliterator)
  const int rounds = kind == kHalfwidth || kind == kHiragana ? 2 : 20;
  const auto icuStart = std::chrono::steady_clock::now();
  for (int i = 0; i < rounds; ++i) Icu(kind, text, icuOut);
  const double icu =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - icuStart).count() / rounds;
  state.counters["x_ICU"] = icu / ours;
#endif
}

BENCHMARK_CAPTURE(BM_Transform, upper_ja, kUpper, 0);
BENCHMARK_CAPTURE(BM_Transform, upper_eu, kUpper, 1);
BENCHMARK_CAPTURE(BM_Transform, halfwidth_ja, kHalfwidth, 0);
BENCHMARK_CAPTURE(BM_Transform, halfwidth_eu, kHalfwidth, 1);
BENCHMARK_CAPTURE(BM_Transform, hiragana_ja, kHiragana, 0);
BENCHMARK_CAPTURE(BM_Transform, hiragana_eu, kHiragana, 1);
BENCHMARK_CAPTURE(BM_Transform, decompose_ja, kDecompose, 0);
BENCHMARK_CAPTURE(BM_Transform, decompose_eu, kDecompose, 1);
BENCHMARK_CAPTURE(BM_Transform, compose_ja, kCompose, 0);
BENCHMARK_CAPTURE(BM_Transform, compose_eu, kCompose, 1);

}  // namespace
