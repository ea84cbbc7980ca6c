// Name lookup: what every host registration call does first.
#include <benchmark/benchmark.h>

#include "varnice/varnice.h"

#ifdef VARNICE_BENCH_HAVE_ICU
#include <unicode/ucnv.h>
#endif

namespace {

struct BenchEncoding : ExternalEncoding {
  BenchEncoding(unsigned long id, const char** names) : ExternalEncoding(TextEncodingID(id), names, nullptr, 0) {}
  bool IsTextModeSafe() const override { return true; }
  ToUnicodeSource* CreateCharSourceToUnicode(CharSource&, UnicodeLibAllocator&) const override { return nullptr; }
  CharSource* CreateCharSourceFromUnicode(Char16Source&, UnicodeLibAllocator&) const override { return nullptr; }
  Char16Sink* CreateCharSinkFromUnicode(CharSink&, UnicodeLibAllocator&) const override { return nullptr; }
  CharSink* CreateCharSinkToUnicode(Char16Sink&, UnicodeLibAllocator&) const override { return nullptr; }
};

const char* kNames[][4] = {{"Latin1", "l1", "IBM819", nullptr},
                           {"Shift-JIS", "MS_Kanji", "SJIS", nullptr},
                           {"EUC-J", "J-EUC", "JP-EUC", nullptr}};

void RegisterOnce() {
  static bool done = [] {
    new BenchEncoding(130, kNames[0]);
    new BenchEncoding(131, kNames[1]);
    new BenchEncoding(132, kNames[2]);
    return true;
  }();
  (void)done;
}

void BM_VarniceLookupByName(benchmark::State& state) {
  RegisterOnce();
  for (auto _ : state) benchmark::DoNotOptimize(TextEncoding::Lookup("jp_euc", 0));
}
BENCHMARK(BM_VarniceLookupByName);

#ifdef VARNICE_BENCH_HAVE_ICU
void BM_IcuCanonicalName(benchmark::State& state) {
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    benchmark::DoNotOptimize(ucnv_getCanonicalName("EUC-JP", "MIME", &status));
  }
}
BENCHMARK(BM_IcuCanonicalName);
#endif

}  // namespace
