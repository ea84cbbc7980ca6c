// UTF-8 <-> UTF-16 throughput through the converters (an
// InternalEncodingConverter reading UTF-8 from a buffer, an
// InternalEncodingConverterSink writing UTF-8 to a buffer), on ASCII-heavy
// text and on Japanese text, beside ICU's converter API doing the same.
// Bytes/s are counted in UTF-8 bytes in both directions, so the figures of a
// text compare directly. The block converters alone, with and without their
// fast paths, are measured too.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "varnice/varnice.h"

#ifdef VARNICE_BENCH_HAVE_ICU
#include <unicode/ucnv.h>
#endif

namespace {

constexpr std::size_t kTextBytes = 4u << 20;

const char kEnglish[] =
    "The quick brown fox jumps over the lazy dog, then rests in the caf\xC3\xA9 by the river. "
    "Database engines store text in many national encodings; converting it quickly matters "
    "when millions of rows are loaded at once. Na\xC3\xAFve code converts one byte at a time.\n";

const char kJapanese[] =
    "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE6\x96\x87\xE7\xAB\xA0\xE3\x81\xAF\xE3\x80\x81"
    "\xE6\xBC\xA2\xE5\xAD\x97\xE3\x81\xA8\xE3\x81\xB2\xE3\x82\x89\xE3\x81\x8C\xE3\x81\xAA\xE3\x81\xA8"
    "\xE3\x82\xAB\xE3\x82\xBF\xE3\x82\xAB\xE3\x83\x8A\xE3\x81\x8C\xE6\xB7\xB7\xE3\x81\x98\xE3\x82\x8A"
    "\xE5\x90\x88\xE3\x81\xA3\xE3\x81\xA6\xE3\x81\x84\xE3\x81\xBE\xE3\x81\x99\xE3\x80\x82"
    "\xE3\x83\x87\xE3\x83\xBC\xE3\x82\xBF\xE3\x83\x99\xE3\x83\xBC\xE3\x82\xB9\xE3\x81\xAB\xE3\x81\xAF"
    "2024\xE5\xB9\xB4\xE3\x81\xAE\xE8\xA8\x98\xE9\x8C\xB2\xE3\x81\x8C\xE4\xBF\x9D\xE5\xAD\x98\xE3\x81"
    "\x95\xE3\x82\x8C\xE3\x81\xA6\xE3\x81\x84\xE3\x82\x8B\xE3\x80\x82\n";

std::string Repeat(const char* paragraph) {
  std::string text;
  while (text.size() < kTextBytes) text += paragraph;
  return text;
}

const std::string& Text(int which) {
  static const std::string english = Repeat(kEnglish);
  static const std::string japanese = Repeat(kJapanese);
  return which == 0 ? english : japanese;
}

std::vector<unsigned short> Units(const std::string& utf8) {
  std::vector<unsigned short> units(utf8.size() + 2);
  UTF8toWhatever decoder(true);
  const char* in = utf8.data();
  unsigned short* out = units.data();
  decoder.Convert(in, in + utf8.size(), out, units.data() + units.size());
  units.resize(static_cast<std::size_t>(out - units.data()));
  return units;
}

void BM_Varnice_UTF8_to_UTF16(benchmark::State& state, int which) {
  const std::string& text = Text(which);
  std::vector<unsigned short> output(text.size() + 2);
  for (auto _ : state) {
    BufferCharSource bytes(text.data(), text.data() + text.size());
    InternalEncodingConverter converter(bytes, *ExternalEncoding::Unicode20UTF8(), *InternalEncoding::Unicode());
    BufferChar16Sink sink(output.data(), static_cast<long>(output.size()));
    sink.Put(converter);
    benchmark::DoNotOptimize(sink.size());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_Varnice_UTF16_to_UTF8(benchmark::State& state, int which) {
  const std::string& text = Text(which);
  const std::vector<unsigned short> units = Units(text);
  std::vector<char> output(text.size() + 8);
  for (auto _ : state) {
    BufferCharSink sink(output.data(), static_cast<long>(output.size()));
    InternalEncodingConverterSink converter(*InternalEncoding::Unicode(), *ExternalEncoding::Unicode20UTF8(), sink);
    converter.PutBuffer(units.data(), units.data() + units.size());
    benchmark::DoNotOptimize(sink.size());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

// The block converters alone, in 64 KiB blocks.
template <bool kFast>
void BM_UTF8Decoder(benchmark::State& state, int which) {
  const std::string& text = Text(which);
  std::vector<unsigned short> output(1 << 16);
  for (auto _ : state) {
    UTF8toWhatever decoder(true);
    const char* in = text.data();
    const char* const end = in + text.size();
    for (int result = kOutputFull; result == kOutputFull;) {
      unsigned short* out = output.data();
      result = kFast ? decoder.Convert(in, end, out, output.data() + output.size())
                     : decoder.ConvertByteAtATime(in, end, out, output.data() + output.size());
      benchmark::DoNotOptimize(out);
    }
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

template <bool kFast>
void BM_UTF8Encoder(benchmark::State& state, int which) {
  const std::string& text = Text(which);
  const std::vector<unsigned short> units = Units(text);
  std::vector<char> output(1 << 16);
  for (auto _ : state) {
    UTF8fromWhatever encoder(true);
    const unsigned short* in = units.data();
    const unsigned short* const end = in + units.size();
    for (int result = kOutputFull; result == kOutputFull;) {
      char* out = output.data();
      result = kFast ? encoder.Convert(in, end, out, output.data() + output.size(), -1)
                     : encoder.ConvertUnitAtATime(in, end, out, output.data() + output.size(), -1);
      benchmark::DoNotOptimize(out);
    }
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

#ifdef VARNICE_BENCH_HAVE_ICU
UConverter* OpenUTF8() {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* converter = ucnv_open("UTF-8", &status);
  return U_SUCCESS(status) ? converter : nullptr;
}

void BM_ICU_UTF8_to_UTF16(benchmark::State& state, int which) {
  const std::string& text = Text(which);
  std::vector<UChar> output(text.size() + 2);
  UConverter* converter = OpenUTF8();
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t n = ucnv_toUChars(converter, output.data(), static_cast<int32_t>(output.size()), text.data(),
                                    static_cast<int32_t>(text.size()), &status);
    benchmark::DoNotOptimize(n);
  }
  ucnv_close(converter);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_ICU_UTF16_to_UTF8(benchmark::State& state, int which) {
  const std::string& text = Text(which);
  const std::vector<unsigned short> units = Units(text);
  std::vector<char> output(text.size() + 8);
  UConverter* converter = OpenUTF8();
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t n = ucnv_fromUChars(converter, output.data(), static_cast<int32_t>(output.size()),
                                      reinterpret_cast<const UChar*>(units.data()),
                                      static_cast<int32_t>(units.size()), &status);
    benchmark::DoNotOptimize(n);
  }
  ucnv_close(converter);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

#endif

// Registers the benchmark on the ASCII-heavy text and on the Japanese one.
void OnBothTexts(const char* name, void (*run)(benchmark::State&, int)) {
  for (int which : {0, 1}) {
    const std::string full = std::string(name) + (which == 0 ? "/ascii" : "/japanese");
    benchmark::RegisterBenchmark(full.c_str(), [run, which](benchmark::State& state) { run(state, which); })
        ->Unit(benchmark::kMicrosecond);
  }
}

const bool kRegistered = [] {
  OnBothTexts("BM_Varnice_UTF8_to_UTF16", BM_Varnice_UTF8_to_UTF16);
  OnBothTexts("BM_Varnice_UTF16_to_UTF8", BM_Varnice_UTF16_to_UTF8);
  OnBothTexts("BM_UTF8toWhatever_Convert", BM_UTF8Decoder<true>);
  OnBothTexts("BM_UTF8toWhatever_ByteAtATime", BM_UTF8Decoder<false>);
  OnBothTexts("BM_UTF8fromWhatever_Convert", BM_UTF8Encoder<true>);
  OnBothTexts("BM_UTF8fromWhatever_UnitAtATime", BM_UTF8Encoder<false>);
#ifdef VARNICE_BENCH_HAVE_ICU
  OnBothTexts("BM_ICU_UTF8_to_UTF16", BM_ICU_UTF8_to_UTF16);
  OnBothTexts("BM_ICU_UTF16_to_UTF8", BM_ICU_UTF16_to_UTF8);
#endif
  return true;
}();

}  // namespace
