// Detection throughput: every candidate of "auto" scoring the whole of about
// 1 MB of text, with the candidates' own detectors (which count errors) and
// with the plausibility detectors the catalogue uses; ICU's charset detector
// beside them on the same bytes. Bytes processed are the input bytes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "varnice/varnice.h"

#ifdef VARNICE_BENCH_HAVE_ICU
#include <unicode/ucsdet.h>
#endif

namespace {

std::string Text(const ExternalEncoding& e, const std::u16string& paragraph) {
  std::u16string text;
  while (text.size() < (1u << 19)) text += paragraph;
  qz_string s(reinterpret_cast<const unsigned short*>(text.data()), text.size(), e);
  return std::string(s.c_str(), s.size());
}

const std::string& Sample(int which) {
  EncodingCatalogue::CreateAll();
  static const std::string samples[] = {
      Text(*ExternalEncoding::ShiftJIS(), u"吾輩は猫である。名前はまだ無い。どこで生れたかとんと見当がつかぬ。\n"),
      Text(*ExternalEncoding::CP1252(), u"“Déjà vu,” she said — and ordered the same soufflé as last week.\n"),
      Text(*ExternalEncoding::Unicode20UTF8(), u"吾輩は猫である。Café crème, s’il vous plaît.\n"),
  };
  return samples[which];
}

const char* kNames[] = {"Shift_JIS", "CP1252", "UTF-8"};

// Scans everything, as a reader of text nothing decides early would.
void BM_Detect(benchmark::State& state) {
  const std::string& bytes = Sample(static_cast<int>(state.range(0)));
  const bool plausibility = state.range(1) != 0;
  const AutoDetectEncoding& automatic = *AutoDetectEncoding::General();
  BufferCharSource actor("", nullptr);
  for (auto _ : state) {
    LinearAllocator arena(16384, __FILE__, __LINE__);
    EncodingChooser chooser(actor, automatic.SubEncodings(), automatic.CountSubEncodings(), arena,
                            plausibility ? automatic.DetectorFactory() : nullptr);
    for (std::size_t at = 0; at < bytes.size(); at += 65536) {
      const std::size_t n = std::min<std::size_t>(65536, bytes.size() - at);
      chooser.Scan(bytes.data() + at, bytes.data() + at + n);
    }
    benchmark::DoNotOptimize(chooser.Guess());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes.size());
  state.SetLabel(std::string(kNames[state.range(0)]) + (plausibility ? " plausibility" : " own detectors"));
}
BENCHMARK(BM_Detect)->ArgsProduct({{0, 1, 2}, {0, 1}})->Unit(benchmark::kMillisecond);

#ifdef VARNICE_BENCH_HAVE_ICU
void BM_DetectIcu(benchmark::State& state) {
  const std::string& bytes = Sample(static_cast<int>(state.range(0)));
  UErrorCode status = U_ZERO_ERROR;
  UCharsetDetector* detector = ucsdet_open(&status);
  for (auto _ : state) {
    ucsdet_setText(detector, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    benchmark::DoNotOptimize(ucsdet_detect(detector, &status));
  }
  ucsdet_close(detector);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes.size());
  state.SetLabel(kNames[state.range(0)]);
}
BENCHMARK(BM_DetectIcu)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
