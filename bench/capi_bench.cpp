// Per-call cost of the C conversion functions on short strings (32 and 200
// bytes), Shift_JIS and ISO-8859-1, to UTF-16 and back, beside ICU and glibc's
// iconv with a converter opened once. Short strings are where the C functions'
// per-call set-up (building the pipeline in an arena) shows, so the figure that
// matters is the time per iteration: one iteration is one call. Names read as
// a table: BM_CToUnicode/<implementation>/<encoding>/<bytes>.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <cstring>
#include <string>
#include <vector>

#include "varnice/capi/varnice_c.h"

#ifdef VARNICE_BENCH_HAVE_ICU
#include <unicode/ucnv.h>
#endif

namespace {

struct Sample {
  std::vector<unsigned short> units;  // UTF-16
  std::string bytes;                  // the same text encoded, exactly the size asked for
};

struct Page {
  const char* key;  // in benchmark names
  const char* varniceName;
  const char* icuName;
  const char* iconvName;
  // Running text the sample is cut from. No backslash, tilde or wave dash:
  // the three implementations map those differently in Shift_JIS.
  const char* utf8;
};

const Page kPages[] = {
    {"sjis", "Shift_JIS", "Shift_JIS", "SHIFT_JIS",
     "2024年の春、京都でWebの勉強会を開きます。参加費は無料、定員は30名です。"
     "カタカナとひらがな、漢字を混ぜた文章を変換して、速さを比べましょう。"
     "お申し込みはメールでどうぞ。会場は駅から徒歩5分のビルの3階にあります。"},
    {"latin1", "ISO-8859-1", "ISO-8859-1", "ISO-8859-1",
     "Déjà vu à Zürich: l'été dernier, les élèves ont mangé des crêpes au café. "
     "Señor Núñez viaja de Málaga a São Paulo; ¿qué tal? ¡Olé! Ærøskøbing, "
     "Göteborg, Straße, naïve façade, « garçon », 12 £ ou 15 ¥, ÅÖÜ ñ ç ß ÿ. "},
};

const int kSizes[] = {32, 200};

// Data-encoding numbers; 0 is ISO-8859-1 without registering.
int Number(int page) {
  static const int sjis = VarniceRegisterEncoding(kPages[0].varniceName);
  return page == 0 ? sjis : 0;
}

// The page's text cut to exactly `size` bytes on a character boundary: whole
// characters while they fit, then spaces. Both encodings are stateless, so
// the characters' encodings laid end to end are the text's encoding.
Sample MakeSample(int page, int size) {
  const char* utf8 = kPages[page].utf8;
  std::vector<unsigned short> text(std::strlen(utf8) + 1);
  const int n = VarniceConvertToUnicode(VarniceRegisterEncoding("UTF-8"), utf8, -1, text.data(),
                                        static_cast<int>(text.size()));
  Sample s;
  for (int i = 0; static_cast<int>(s.bytes.size()) < size; i = (i + 1) % n) {
    char one[4];
    int length = VarniceConvertFromUnicode(Number(page), &text[i], 1, one, sizeof one, 0);
    if (static_cast<int>(s.bytes.size()) + length > size) {
      text[i] = ' ';
      length = VarniceConvertFromUnicode(Number(page), &text[i], 1, one, sizeof one, 0);
    }
    s.units.push_back(text[i]);
    s.bytes.append(one, static_cast<std::size_t>(length));
  }
  return s;
}

const Sample& SampleOf(int page, int sizeIndex) {
  static const Sample samples[2][2] = {{MakeSample(0, kSizes[0]), MakeSample(0, kSizes[1])},
                                       {MakeSample(1, kSizes[0]), MakeSample(1, kSizes[1])}};
  return samples[page][sizeIndex];
}

// Compares one conversion's output with the sample before timing starts: a
// converter that disagrees would be timed doing different work.
bool Matches(benchmark::State& state, const void* out, std::size_t outBytes, const void* expected,
             std::size_t expectedBytes) {
  if (outBytes == expectedBytes && std::memcmp(out, expected, outBytes) == 0) return true;
  state.SkipWithError("output differs from the sample");
  return false;
}

bool MatchesUnits(benchmark::State& state, const void* out, std::size_t units, const Sample& s) {
  return Matches(state, out, units * 2, s.units.data(), s.units.size() * 2);
}

bool MatchesBytes(benchmark::State& state, const void* out, std::size_t bytes, const Sample& s) {
  return Matches(state, out, bytes, s.bytes.data(), s.bytes.size());
}

void Count(benchmark::State& state, const Sample& s) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * s.bytes.size()));
}

// ---- Varnice, through the C interface ----

void VarniceToUnicode(benchmark::State& state, int page, const Sample& s) {
  const int number = Number(page);
  const int srcLen = static_cast<int>(s.bytes.size());
  std::vector<unsigned short> out(s.bytes.size() + 1);  // no character takes fewer units than bytes
  const int dstLen = static_cast<int>(out.size());
  const int n = VarniceConvertToUnicode(number, s.bytes.data(), srcLen, out.data(), dstLen);
  if (!MatchesUnits(state, out.data(), static_cast<std::size_t>(n), s)) return;
  for (auto _ : state) {
    benchmark::DoNotOptimize(VarniceConvertToUnicode(number, s.bytes.data(), srcLen, out.data(), dstLen));
  }
  Count(state, s);
}

void VarniceFromUnicode(benchmark::State& state, int page, const Sample& s) {
  const int number = Number(page);
  const int srcLen = static_cast<int>(s.units.size());
  std::vector<char> out(s.units.size() * 2 + 1);
  const int dstLen = static_cast<int>(out.size());
  const int n = VarniceConvertFromUnicode(number, s.units.data(), srcLen, out.data(), dstLen, 0);
  if (!MatchesBytes(state, out.data(), static_cast<std::size_t>(n), s)) return;
  for (auto _ : state) {
    benchmark::DoNotOptimize(VarniceConvertFromUnicode(number, s.units.data(), srcLen, out.data(), dstLen, 0));
  }
  Count(state, s);
}

// ---- glibc iconv: opened once, reset before every call ----

std::size_t IconvOnce(iconv_t cd, const void* src, std::size_t srcBytes, void* dst, std::size_t dstBytes) {
  iconv(cd, nullptr, nullptr, nullptr, nullptr);
  char* in = static_cast<char*>(const_cast<void*>(src));
  char* out = static_cast<char*>(dst);
  std::size_t outLeft = dstBytes;
  if (iconv(cd, &in, &srcBytes, &out, &outLeft) == static_cast<std::size_t>(-1) || srcBytes != 0) {
    return static_cast<std::size_t>(-1);
  }
  return dstBytes - outLeft;
}

void IconvToUnicode(benchmark::State& state, int page, const Sample& s) {
  iconv_t cd = iconv_open("UTF-16LE", kPages[page].iconvName);
  if (cd == reinterpret_cast<iconv_t>(-1)) {
    state.SkipWithError("iconv_open failed");
    return;
  }
  std::vector<unsigned short> out(s.bytes.size() + 1);
  const std::size_t outBytes = out.size() * 2;
  const std::size_t n = IconvOnce(cd, s.bytes.data(), s.bytes.size(), out.data(), outBytes);
  if (MatchesUnits(state, out.data(), n == static_cast<std::size_t>(-1) ? 0 : n / 2, s)) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(IconvOnce(cd, s.bytes.data(), s.bytes.size(), out.data(), outBytes));
    }
    Count(state, s);
  }
  iconv_close(cd);
}

void IconvFromUnicode(benchmark::State& state, int page, const Sample& s) {
  iconv_t cd = iconv_open(kPages[page].iconvName, "UTF-16LE");
  if (cd == reinterpret_cast<iconv_t>(-1)) {
    state.SkipWithError("iconv_open failed");
    return;
  }
  std::vector<char> out(s.units.size() * 2 + 1);
  const std::size_t srcBytes = s.units.size() * 2;
  const std::size_t n = IconvOnce(cd, s.units.data(), srcBytes, out.data(), out.size());
  if (MatchesBytes(state, out.data(), n, s)) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(IconvOnce(cd, s.units.data(), srcBytes, out.data(), out.size()));
    }
    Count(state, s);
  }
  iconv_close(cd);
}

// ---- ICU: opened once; ucnv_toUChars and ucnv_fromUChars reset it themselves ----

#ifdef VARNICE_BENCH_HAVE_ICU
UConverter* OpenIcu(benchmark::State& state, int page) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* cnv = ucnv_open(kPages[page].icuName, &status);
  if (U_FAILURE(status)) {
    state.SkipWithError("ucnv_open failed");
    return nullptr;
  }
  return cnv;
}

void IcuToUnicode(benchmark::State& state, int page, const Sample& s) {
  UConverter* cnv = OpenIcu(state, page);
  if (cnv == nullptr) return;
  std::vector<UChar> out(s.bytes.size() + 1);
  const int32_t srcLen = static_cast<int32_t>(s.bytes.size());
  const int32_t dstLen = static_cast<int32_t>(out.size());
  UErrorCode status = U_ZERO_ERROR;
  const int32_t n = ucnv_toUChars(cnv, out.data(), dstLen, s.bytes.data(), srcLen, &status);
  if (MatchesUnits(state, out.data(), U_SUCCESS(status) ? static_cast<std::size_t>(n) : 0, s)) {
    for (auto _ : state) {
      status = U_ZERO_ERROR;
      benchmark::DoNotOptimize(ucnv_toUChars(cnv, out.data(), dstLen, s.bytes.data(), srcLen, &status));
    }
    Count(state, s);
  }
  ucnv_close(cnv);
}

void IcuFromUnicode(benchmark::State& state, int page, const Sample& s) {
  UConverter* cnv = OpenIcu(state, page);
  if (cnv == nullptr) return;
  std::vector<char> out(s.units.size() * 2 + 1);
  const UChar* src = reinterpret_cast<const UChar*>(s.units.data());
  const int32_t srcLen = static_cast<int32_t>(s.units.size());
  const int32_t dstLen = static_cast<int32_t>(out.size());
  UErrorCode status = U_ZERO_ERROR;
  const int32_t n = ucnv_fromUChars(cnv, out.data(), dstLen, src, srcLen, &status);
  if (MatchesBytes(state, out.data(), U_SUCCESS(status) ? static_cast<std::size_t>(n) : 0, s)) {
    for (auto _ : state) {
      status = U_ZERO_ERROR;
      benchmark::DoNotOptimize(ucnv_fromUChars(cnv, out.data(), dstLen, src, srcLen, &status));
    }
    Count(state, s);
  }
  ucnv_close(cnv);
}
#endif

using Run = void (*)(benchmark::State&, int, const Sample&);

struct Implementation {
  const char* key;
  Run to;
  Run from;
};

const Implementation kImplementations[] = {
    {"varnice", VarniceToUnicode, VarniceFromUnicode},
#ifdef VARNICE_BENCH_HAVE_ICU
    {"icu", IcuToUnicode, IcuFromUnicode},
#endif
    {"iconv", IconvToUnicode, IconvFromUnicode},
};

// The implementations of one case are registered one after another, so that
// they are reported on neighbouring lines.
const bool kRegistered = [] {
  for (bool toUnicode : {true, false}) {
    for (int page : {0, 1}) {
      for (int sizeIndex : {0, 1}) {
        for (const Implementation& impl : kImplementations) {
          const std::string name = std::string(toUnicode ? "BM_CToUnicode/" : "BM_CFromUnicode/") + impl.key +
                                   "/" + kPages[page].key + "/" + std::to_string(kSizes[sizeIndex]);
          const Run run = toUnicode ? impl.to : impl.from;
          benchmark::RegisterBenchmark(name.c_str(), [run, page, sizeIndex](benchmark::State& state) {
            run(state, page, SampleOf(page, sizeIndex));
          });
        }
      }
    }
  }
  return true;
}();

}  // namespace
