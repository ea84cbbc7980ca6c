// Code-page conversion throughput, Shift_JIS, EUC-JP and ISO-8859-1 to UTF-16
// and back, beside ICU and glibc's iconv on the same text. The library is
// measured through its encodings' block converters, and again through the
// converting streams over an in-memory source or sink. Bytes processed are
// the bytes of the encoded text in both directions, so MB/s compare directly.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <memory>
#include <string>
#include <vector>

#include "varnice/varnice.h"

#ifdef VARNICE_BENCH_HAVE_ICU
#include <unicode/ucnv.h>
#endif

namespace {

struct Sample {
  std::vector<unsigned short> text;  // UTF-16
  std::string bytes;                 // the same text encoded
};

struct Page {
  const char* icuName;
  const char* iconvName;
  ExternalEncoding* (*encoding)();
};

const Page kPages[] = {
    {"Shift_JIS", "SHIFT_JIS", &ExternalEncoding::ShiftJIS},
    {"EUC-JP", "EUC-JP", &ExternalEncoding::EUCPkdFmtJapanese},
    {"ISO-8859-1", "ISO-8859-1", &ExternalEncoding::ISOLatin1},
};

const MBCSEncoding& Encoding(int page) { return dynamic_cast<const MBCSEncoding&>(*kPages[page].encoding()); }

// Each conversion gets converters of its own from an arena, as a pipeline
// does; they are made outside the timed loop.
struct Arena {
  LinearAllocator allocator{16384, __FILE__, __LINE__};
};

// About 64 KB of UTF-16: running text where every fourth character is ASCII
// (spaces, digits, punctuation) and the rest are kana and kanji (Latin-1
// letters for ISO-8859-1) that all three converters map the same way.
Sample MakeSample(const MBCSEncoding& encoding, bool latin) {
  std::vector<unsigned short> repertoire;
  for (unsigned u = 0xA0; u < 0xA000; ++u) {
    bool wanted = latin ? u < 0x100 : (u >= 0x3041 && u <= 0x30F6) || u >= 0x4E00;
    const unsigned long code = encoding.FromUnicode(static_cast<unsigned short>(u));
    if (wanted && code != 0xFFFD && code < 0x10000) {
      repertoire.push_back(static_cast<unsigned short>(u));
    }
  }
  Sample s;
  for (std::size_t i = 0; s.text.size() < 32768; ++i) {
    s.text.push_back(i % 4 == 3 ? static_cast<unsigned short>(0x20 + i % 90) : repertoire[i % repertoire.size()]);
  }
  Arena arena;
  std::unique_ptr<BlockConverter_16_to_8> from(encoding.CreateConverterFromUnicode(arena.allocator));
  std::vector<char> out(s.text.size() * 4);
  const unsigned short* in = s.text.data();
  char* o = out.data();
  from->Convert(in, in + s.text.size(), o, out.data() + out.size(), -1);
  s.bytes.assign(out.data(), o);
  return s;
}

Sample const& SampleOf(int page) {
  static Sample samples[3] = {MakeSample(Encoding(0), false), MakeSample(Encoding(1), false),
                              MakeSample(Encoding(2), true)};
  return samples[page];
}

// Every converter must have taken the whole text, or the figures lie.
void Check(benchmark::State& state, bool whole) {
  if (!whole) state.SkipWithError("converter stopped before the end of the text");
}

void Label(benchmark::State& state, int page, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
  state.SetLabel(kPages[page].icuName);
}

void BM_VarniceToUnicode(benchmark::State& state) {
  int page = static_cast<int>(state.range(0));
  Sample const& s = SampleOf(page);
  Arena arena;
  std::unique_ptr<BlockConverter_8_to_16> to(Encoding(page).CreateConverterToUnicode(arena.allocator));
  std::vector<unsigned short> out(s.bytes.size() + 1);
  for (auto _ : state) {
    to->Reset();
    const char* in = s.bytes.data();
    unsigned short* o = out.data();
    benchmark::DoNotOptimize(to->Convert(in, in + s.bytes.size(), o, out.data() + out.size()));
    Check(state, o - out.data() == static_cast<long>(s.text.size()));
  }
  Label(state, page, s.bytes.size());
}
BENCHMARK(BM_VarniceToUnicode)->DenseRange(0, 2);

void BM_VarniceFromUnicode(benchmark::State& state) {
  int page = static_cast<int>(state.range(0));
  Sample const& s = SampleOf(page);
  Arena arena;
  std::unique_ptr<BlockConverter_16_to_8> from(Encoding(page).CreateConverterFromUnicode(arena.allocator));
  std::vector<char> out(s.text.size() * 4);
  for (auto _ : state) {
    from->Reset();
    const unsigned short* in = s.text.data();
    char* o = out.data();
    benchmark::DoNotOptimize(from->Convert(in, in + s.text.size(), o, out.data() + out.size(), -1));
    Check(state, o - out.data() == static_cast<long>(s.bytes.size()));
  }
  Label(state, page, s.bytes.size());
}
BENCHMARK(BM_VarniceFromUnicode)->DenseRange(0, 2);

// Bytes from a buffer source through CharSource_8_to_16 into a buffer sink;
// the pipeline is built anew for every text, as a conversion builds it.
void BM_VarniceSourceToUnicode(benchmark::State& state) {
  int page = static_cast<int>(state.range(0));
  Sample const& s = SampleOf(page);
  std::vector<unsigned short> out(s.text.size());
  for (auto _ : state) {
    Arena arena;
    BufferCharSource bytes(s.bytes.data(), s.bytes.data() + s.bytes.size());
    std::unique_ptr<ExternalEncoding::ToUnicodeSource> units(
        Encoding(page).CreateCharSourceToUnicode(bytes, arena.allocator));
    BufferChar16Sink sink(out.data(), static_cast<long>(out.size()));
    sink.Put(*units);
    Check(state, sink.size() == static_cast<long>(s.text.size()));
  }
  Label(state, page, s.bytes.size());
}
BENCHMARK(BM_VarniceSourceToUnicode)->DenseRange(0, 2);

// Code units put into CharSink_16_to_8 in front of a buffer sink, whose
// remaining room is the converter's byte budget.
void BM_VarniceSinkFromUnicode(benchmark::State& state) {
  int page = static_cast<int>(state.range(0));
  Sample const& s = SampleOf(page);
  std::vector<char> out(s.bytes.size());
  for (auto _ : state) {
    Arena arena;
    BufferCharSink bytes(out.data(), static_cast<long>(out.size()));
    std::unique_ptr<Char16Sink> units(Encoding(page).CreateCharSinkFromUnicode(bytes, arena.allocator));
    units->Put(s.text.data(), s.text.data() + s.text.size());
    Check(state, bytes.size() == static_cast<long>(s.bytes.size()) && !bytes.truncated());
  }
  Label(state, page, s.bytes.size());
}
BENCHMARK(BM_VarniceSinkFromUnicode)->DenseRange(0, 2);

void BM_IconvToUnicode(benchmark::State& state) {
  int page = static_cast<int>(state.range(0));
  Sample const& s = SampleOf(page);
  iconv_t cd = iconv_open("UTF-16LE", kPages[page].iconvName);
  std::vector<char> out(s.bytes.size() * 2 + 16);
  for (auto _ : state) {
    char* in = const_cast<char*>(s.bytes.data());
    std::size_t inLeft = s.bytes.size();
    char* o = out.data();
    std::size_t outLeft = out.size();
    benchmark::DoNotOptimize(iconv(cd, &in, &inLeft, &o, &outLeft));
    Check(state, inLeft == 0);
  }
  iconv_close(cd);
  Label(state, page, s.bytes.size());
}
BENCHMARK(BM_IconvToUnicode)->DenseRange(0, 2);

void BM_IconvFromUnicode(benchmark::State& state) {
  int page = static_cast<int>(state.range(0));
  Sample const& s = SampleOf(page);
  iconv_t cd = iconv_open(kPages[page].iconvName, "UTF-16LE");
  std::vector<char> out(s.text.size() * 4);
  for (auto _ : state) {
    char* in = reinterpret_cast<char*>(const_cast<unsigned short*>(s.text.data()));
    std::size_t inLeft = s.text.size() * 2;
    char* o = out.data();
    std::size_t outLeft = out.size();
    benchmark::DoNotOptimize(iconv(cd, &in, &inLeft, &o, &outLeft));
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    Check(state, inLeft == 0);
  }
  iconv_close(cd);
  Label(state, page, s.bytes.size());
}
BENCHMARK(BM_IconvFromUnicode)->DenseRange(0, 2);

#ifdef VARNICE_BENCH_HAVE_ICU
void BM_IcuToUnicode(benchmark::State& state) {
  int page = static_cast<int>(state.range(0));
  Sample const& s = SampleOf(page);
  UErrorCode status = U_ZERO_ERROR;
  UConverter* cnv = ucnv_open(kPages[page].icuName, &status);
  std::vector<UChar> out(s.bytes.size() + 16);
  for (auto _ : state) {
    status = U_ZERO_ERROR;
    int32_t n = ucnv_toUChars(cnv, out.data(), static_cast<int32_t>(out.size()), s.bytes.data(),
                              static_cast<int32_t>(s.bytes.size()), &status);
    Check(state, U_SUCCESS(status) && n == static_cast<int32_t>(s.text.size()));
  }
  ucnv_close(cnv);
  Label(state, page, s.bytes.size());
}
BENCHMARK(BM_IcuToUnicode)->DenseRange(0, 2);

void BM_IcuFromUnicode(benchmark::State& state) {
  int page = static_cast<int>(state.range(0));
  Sample const& s = SampleOf(page);
  UErrorCode status = U_ZERO_ERROR;
  UConverter* cnv = ucnv_open(kPages[page].icuName, &status);
  std::vector<char> out(s.text.size() * 4);
  for (auto _ : state) {
    status = U_ZERO_ERROR;
    int32_t n = ucnv_fromUChars(cnv, out.data(), static_cast<int32_t>(out.size()),
                                reinterpret_cast<UChar const*>(s.text.data()),
                                static_cast<int32_t>(s.text.size()), &status);
    Check(state, U_SUCCESS(status) && n == static_cast<int32_t>(s.bytes.size()));
  }
  ucnv_close(cnv);
  Label(state, page, s.bytes.size());
}
BENCHMARK(BM_IcuFromUnicode)->DenseRange(0, 2);
#endif

}  // namespace
