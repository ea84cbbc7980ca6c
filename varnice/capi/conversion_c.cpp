// The C registration and conversion functions.
//
// A code page, ISO-2022-JP or UTF-8 under the plain default policy is
// converted directly over the caller's buffers (direct_route.h); everything
// else takes the general route below.
//
// The general route builds the same stages the encoding converters would build
// (the encodings' own factories, with the default behaviour the buffer
// streams capture), but places them in an arena on the stack instead of a
// converter's malloc'd block, and owns them through a director as a
// converter does. The converters' proxies only forward, so the output is the
// same; a short call is spared a malloc and a free.
#include <cstring>

#include "varnice/capi/call_arena.h"
#include "varnice/capi/data_encoding_table.h"
#include "varnice/capi/varnice_c.h"
#include "varnice/encoding/encodingconverter/encoding_converter.h"
#include "varnice/encoding/unicode_lib_behavior.h"
#include "varnice/encoding/unicode_lib_director.h"
#include "varnice/stream/buffer_char16_sink.h"
#include "varnice/stream/buffer_char_sink.h"
#include "varnice/stream/buffer_char_source.h"

using varnice::internal::CallArena;
using varnice::internal::DataEncodings;
using varnice::internal::DirectRoute;

namespace {

// Room for every pipeline of one or two stages the library builds (the
// largest, a Unicode 1.1 UTF-7 decoder with byte-order mark, takes about
// 3.9 KB); the heap still serves anything larger.
using Arena = CallArena<6144>;

long UnitCount(const unsigned short* s) {
  long n = 0;
  while (s[n] != 0) ++n;
  return n;
}

// The general route of VarniceConvertToUnicode, kept out of line so that
// the direct route does not set up its stack frame (arena included).
[[gnu::noinline]] int ToUnicodeThroughPipeline(const ExternalEncoding& encoding, const char* src, long length,
                                               unsigned short* dst, int dstLen) {
  BufferCharSource source(src, src + length);
  Arena arena;
  UnicodeLibDirector director;
  ExternalEncoding::ToUnicodeSource* units = encoding.CreateCharSourceToUnicode(source, arena);
  director.DeleteFirst(units);

  if (dstLen < 0) {
    // The caller vouches for the room.
    unsigned short* out = dst;
    const unsigned short* begin;
    const unsigned short* end;
    while (units->GetBuffer(begin, end)) {
      std::memcpy(out, begin, static_cast<std::size_t>(end - begin) * sizeof *out);
      out += end - begin;
      units->DoneWith(end);
    }
    *out = 0;
    return static_cast<int>(out - dst);
  }

  // The whole input is converted even once the buffer is full, so that the
  // behaviour sees every problem in it, as with an unbounded buffer.
  BufferChar16Sink sink(dst, dstLen);
  sink.Put(*units);
  sink.Flush();
  long count = sink.size();
  // A cut text fills the buffer, and so may a text that fits exactly: either
  // way the last unit is taken for the terminator, which must stay inside.
  if (sink.truncated() || count == dstLen) count = dstLen - 1;
  dst[count] = 0;
  return static_cast<int>(count);
}

}  // namespace

extern "C" int VarniceRegisterEncoding(const char* name) { return DataEncodings().Register(name); }

extern "C" const char* VarniceEncodingName(int number) { return DataEncodings().Name(number); }

extern "C" int VarniceEncodingNominalCharLength(int number) { return DataEncodings().NominalCharLength(number); }

extern "C" int VarniceConvertToUnicode(int number, const char* src, int srcLen, unsigned short* dst, int dstLen) {
  long length = src == nullptr ? 0 : srcLen >= 0 ? srcLen : static_cast<long>(std::strlen(src));
  const ExternalEncoding* encoding = DataEncodings().Encoding(number);
  if (encoding == nullptr) length = 0;
  if (length == 0) {
    if (dstLen > 0) dst[0] = 0;
    return 0;
  }
  if (dstLen == 0) return 0;

  if (const DirectRoute& route = DataEncodings().Direct(number)) {
    if (UnicodeLibBehavior* behavior = varnice::internal::PlainDefaultBehavior()) {
      long count = varnice::internal::DecodeDirect(route, *behavior, src, length, dst, dstLen > 0 ? dstLen : -1);
      // A full buffer is cut, as below.
      if (count == dstLen) count = dstLen - 1;
      dst[count] = 0;
      return static_cast<int>(count);
    }
  }

  return ToUnicodeThroughPipeline(*encoding, src, length, dst, dstLen);
}

extern "C" int VarniceConvertFromUnicode(int number, const unsigned short* src, int srcLen, char* dst, int dstLen,
                                         int pad) {
  (void)pad;  // The padding step writes nothing: results are never padded.
  const long length = src == nullptr ? 0 : srcLen >= 0 ? srcLen : UnitCount(src);
  const ExternalEncoding* encoding = DataEncodings().Encoding(number);
  if (length == 0 || encoding == nullptr) return 0;

  if (const DirectRoute& route = DataEncodings().Direct(number)) {
    if (UnicodeLibBehavior* behavior = varnice::internal::PlainDefaultBehavior()) {
      // No room (or unstated room) takes nothing, as the sink below does.
      if (dstLen <= 0) return 0;
      const long count = varnice::internal::EncodeDirect(route, *behavior, src, length, dst, dstLen);
      // Terminated only if the NUL fits, as the sink terminates.
      if (count < dstLen) dst[count] = '\0';
      return static_cast<int>(count);
    }
  }

  BufferCharSink bytes(dst, dstLen);
  Arena arena;
  UnicodeLibDirector director;
  Char16Sink* units = encoding->CreateCharSinkFromUnicode(bytes, arena);
  if (units == nullptr) throw InvalidOutputEncoding(*encoding);
  director.DeleteFirst(units);
  units->PutBuffer(src, src + length);
  units->Flush();
  return static_cast<int>(bytes.size());
}

extern "C" int VarniceCopyDataBetweenEncodings(int fromNumber, const char* src, int srcLen, int toNumber, char* dst,
                                               int dstLen, int pad) {
  (void)pad;
  const ExternalEncoding* from = DataEncodings().Encoding(fromNumber);
  const ExternalEncoding* to = DataEncodings().Encoding(toNumber);
  // An empty first byte ends the text whatever srcLen says.
  if (src == nullptr || src[0] == 0 || from == nullptr || to == nullptr) {
    if (dstLen > 0) dst[0] = 0;
    return 0;
  }
  const char* end = srcLen > 0 ? src + srcLen : src + std::strlen(src);

  BufferCharSink bytes(dst, dstLen);
  Arena arena;
  // First the stage next to the output, destroyed first, as in a converter.
  UnicodeLibDirector director;
  Char16Sink* units = to->CreateCharSinkFromUnicode(bytes, arena);
  if (units == nullptr) throw InvalidOutputEncoding(*to);
  director.DeleteFirst(units);
  CharSink* input = from->CreateCharSinkToUnicode(*units, arena);
  director.DeleteSecond(input);
  input->PutBuffer(src, end);
  input->Flush();
  return static_cast<int>(bytes.size());
}
