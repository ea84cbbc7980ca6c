// Converting-stream throughput: 16 MiB from a buffer source through a
// CharSource_8_to_16 whose converter does nothing but widen each byte, into a
// buffer sink. What is measured is the stream's own cost per buffer.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "varnice/varnice.h"

namespace {

constexpr long kInputBytes = 16L << 20;

// Byte b becomes code unit b; a whole buffer per call.
class Widen : public BlockConverter_8_to_16 {
 public:
  int Convert(const char*& in, const char* inEnd, unsigned short*& out, const unsigned short* outEnd) override {
    const long n = std::min<long>(inEnd - in, outEnd - out);
    for (long i = 0; i < n; ++i) out[i] = static_cast<unsigned char>(in[i]);
    in += n;
    out += n;
    return in == inEnd ? kInputUsedUp : kOutputFull;
  }
  void Reset() override {}
};

// Problem records name an encoding; this one is never asked anything.
struct WidenEncoding : BlockExternalEncoding {
  WidenEncoding() : BlockExternalEncoding(TextEncodingID(133), nullptr, nullptr, 0) {}
  bool IsTextModeSafe() const override { return true; }
  BlockConverter_8_to_16* CreateConverterToUnicode(UnicodeLibAllocator& a) const override { return new (a) Widen; }
  BlockConverter_16_to_8* CreateConverterFromUnicode(UnicodeLibAllocator&) const override { return nullptr; }
};

const WidenEncoding& Encoding() {
  static const WidenEncoding* encoding = new WidenEncoding;
  return *encoding;
}

void BM_ConvertingSource8to16(benchmark::State& state) {
  std::vector<char> input(kInputBytes);
  for (long i = 0; i < kInputBytes; ++i) input[i] = static_cast<char>('a' + i % 26);
  std::vector<unsigned short> output(kInputBytes);
  for (auto _ : state) {
    BufferCharSource bytes(input.data(), input.data() + input.size());
    CharSource_8_to_16 units(bytes, Encoding(), new Widen, *InternalEncoding::Unicode());
    BufferChar16Sink sink(output.data(), static_cast<long>(output.size()));
    sink.Put(units);
    benchmark::DoNotOptimize(sink.size());
  }
  state.SetBytesProcessed(state.iterations() * kInputBytes);
}
BENCHMARK(BM_ConvertingSource8to16)->Unit(benchmark::kMillisecond);

}  // namespace
