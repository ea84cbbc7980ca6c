// Decoding realistic text: 1 MiB of seeded sample words (Latin, kana and kanji
// where the encoding has them) per encoding, decoded to UTF-16 through an
// InternalEncodingConverter; and the cost of making such samples.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "varnice/varnice.h"

namespace {

constexpr unsigned long kSampleBytes = 1UL << 20;

const char* const kEncodings[] = {"UTF-8", "Shift_JIS", "EUC-JP", "ISO-2022-JP", "UTF-7", "CP1252", "UCS-2"};

std::string MakeSample(const ExternalEncoding& encoding) {
  const CharacterTest* const mix[] = {LatinScript, HiraganaScript, KatakanaScript, CJKScript};
  SampleTextSource sample(encoding, mix, 4, kSampleBytes, 2026);
  std::string bytes;
  const char* b;
  const char* e;
  while (sample.GetBuffer(b, e)) {
    bytes.append(b, e);
    sample.DoneWith(e);
  }
  return bytes;
}

void BM_DecodeSample(benchmark::State& state) {
  EncodingCatalogue::CreateAll();
  const ExternalEncoding& encoding = *ExternalEncoding::Lookup(kEncodings[state.range(0)]);
  state.SetLabel(encoding.Name());
  const std::string bytes = MakeSample(encoding);
  std::vector<unsigned short> units(bytes.size() + 1);
  for (auto _ : state) {
    BufferCharSource in(bytes.data(), bytes.data() + bytes.size());
    InternalEncodingConverter text(in, encoding, *InternalEncoding::Unicode());
    BufferChar16Sink sink(units.data(), static_cast<long>(units.size()));
    sink.Put(text);
    benchmark::DoNotOptimize(sink.size());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(bytes.size()));
}
BENCHMARK(BM_DecodeSample)->DenseRange(0, 6)->Unit(benchmark::kMillisecond);

void BM_MakeSample(benchmark::State& state) {
  EncodingCatalogue::CreateAll();
  const ExternalEncoding& encoding = *ExternalEncoding::ShiftJIS();
  for (auto _ : state) benchmark::DoNotOptimize(MakeSample(encoding).size());
  state.SetBytesProcessed(state.iterations() * static_cast<long>(kSampleBytes));
}
BENCHMARK(BM_MakeSample)->Unit(benchmark::kMillisecond);

}  // namespace
