// Converting-stream throughput: 16 MiB from a buffer source through a
// CharSource_8_to_16 whose converter does nothing but widen each byte, into a
// buffer sink. What is measured is the stream's own cost per buffer.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
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

// The whole input as one lent range, as a buffer source lends it.
class WholeBufferSource : public CharSource {
 public:
  WholeBufferSource(const char* begin, const char* end) {
    position_ = begin;
    end_ = end;
  }
  bool FillBuffer() override { return false; }
};

// Copies into a caller buffer, as a buffer sink does.
class ArraySink : public Char16Sink {
 public:
  ArraySink(unsigned short* buffer, long capacity)
      : Char16Sink(static_cast<const UnicodeLibActor*>(nullptr)), next_(buffer), limit_(buffer + capacity) {}
  void Flush() override {}
  void PutBuffer(const unsigned short* begin, const unsigned short* end) override {
    const long n = std::min<long>(end - begin, limit_ - next_);
    std::memcpy(next_, begin, n * sizeof *begin);
    next_ += n;
  }
  const unsigned short* End() const { return next_; }

 private:
  unsigned short* next_;
  unsigned short* limit_;
};

void BM_ConvertingSource8to16(benchmark::State& state) {
  std::vector<char> input(kInputBytes);
  for (long i = 0; i < kInputBytes; ++i) input[i] = static_cast<char>('a' + i % 26);
  std::vector<unsigned short> output(kInputBytes);
  for (auto _ : state) {
    WholeBufferSource bytes(input.data(), input.data() + input.size());
    CharSource_8_to_16 units(bytes, Encoding(), new Widen, *InternalEncoding::Unicode());
    ArraySink sink(output.data(), static_cast<long>(output.size()));
    sink.Put(units);
    benchmark::DoNotOptimize(sink.End());
  }
  state.SetBytesProcessed(state.iterations() * kInputBytes);
}
BENCHMARK(BM_ConvertingSource8to16)->Unit(benchmark::kMillisecond);

}  // namespace
