#include "varnice/encoding/unicode/unicode11_encoding.h"

#include "varnice/encoding/unicode/unicode_data_tables.h"
#include "varnice/stream/converting/converting_sinks.h"
#include "varnice/stream/converting/converting_sources.h"
#include "varnice/widec/qz_auto_ptr.h"

using varnice::internal::kUnicode11to20Rows;
using varnice::internal::kUnicode20to11Rows;
using varnice::internal::MapThroughRows;

namespace {

const char* kUnicode11Names[] = {"Unicode11", "csUnicode11", "UNICODE-1-1", "Unicode 1.1", nullptr};

unsigned long MapCharacter(const unsigned short* const* rows, unsigned long ch) {
  return ch > 0xFFFF ? ch : MapThroughRows(rows, static_cast<unsigned short>(ch));
}

int MapBlock(const unsigned short* const* rows, const unsigned short*& in, const unsigned short* inEnd,
             unsigned short*& out, const unsigned short* outEnd) {
  for (;;) {
    if (in == inEnd) return kInputUsedUp;
    if (out == outEnd) return kOutputFull;
    *out++ = MapThroughRows(rows, *in++);
  }
}

}  // namespace

InternalEncoding* InternalEncoding::Unicode11() {
  static InternalEncoding* const encoding = new Unicode11Encoding;
  return encoding;
}

Unicode11Encoding::Unicode11Encoding() : InternalEncoding(TextEncodingID(1), kUnicode11Names, nullptr, 0) {}
Unicode11Encoding::~Unicode11Encoding() = default;

unsigned long Unicode11Encoding::ToUnicode(unsigned long ch) const {
  return MapCharacter(kUnicode11to20Rows, ch);
}

unsigned long Unicode11Encoding::FromUnicode(unsigned long ch) const {
  return MapCharacter(kUnicode20to11Rows, ch);
}

unsigned long Unicode11Encoding::MayBreakLineBefore(unsigned short ch) const {
  return Unicode20()->MayBreakLineBefore(MapThroughRows(kUnicode11to20Rows, ch));
}

unsigned long Unicode11Encoding::MayBreakLineAfter(unsigned short ch) const {
  return Unicode20()->MayBreakLineAfter(MapThroughRows(kUnicode11to20Rows, ch));
}

Char16Source* Unicode11Encoding::CreateCharSourceToUnicode(Char16Source& in, UnicodeLibAllocator& a) const {
  qz_auto_ptr<Unicode11to20> converter(new (a) Unicode11to20);
  auto* stream = new (a) CharSource_16_to_16(in, *this, converter.get(), *Unicode20());
  converter.release();
  return stream;
}

Char16Source* Unicode11Encoding::CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const {
  qz_auto_ptr<Unicode20to11> converter(new (a) Unicode20to11);
  auto* stream = new (a) CharSource_16_to_16(in, *Unicode20(), converter.get(), *this);
  converter.release();
  return stream;
}

Char16Sink* Unicode11Encoding::CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  qz_auto_ptr<Unicode11to20> converter(new (a) Unicode11to20);
  auto* stream = new (a) CharSink_16_to_16(*this, converter.get(), *Unicode20(), out);
  converter.release();
  return stream;
}

Char16Sink* Unicode11Encoding::CreateCharSinkFromUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  qz_auto_ptr<Unicode20to11> converter(new (a) Unicode20to11);
  auto* stream = new (a) CharSink_16_to_16(*Unicode20(), converter.get(), *this, out);
  converter.release();
  return stream;
}

int Unicode11to20::Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
                           const unsigned short* outEnd) {
  return MapBlock(kUnicode11to20Rows, in, inEnd, out, outEnd);
}

void Unicode11to20::Reset() {}

int Unicode20to11::Convert(const unsigned short*& in, const unsigned short* inEnd, unsigned short*& out,
                           const unsigned short* outEnd) {
  return MapBlock(kUnicode20to11Rows, in, inEnd, out, outEnd);
}

void Unicode20to11::Reset() {}
