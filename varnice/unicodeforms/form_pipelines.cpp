#include "varnice/unicodeforms/form_pipelines.h"

#include "varnice/encoding/block_converter.h"
#include "varnice/encoding/internal_encoding.h"
#include "varnice/stream/converting/converting_sinks.h"
#include "varnice/stream/converting/converting_sources.h"
#include "varnice/stream/converting/proxy_streams.h"
#include "varnice/widec/qz_auto_ptr.h"

namespace varnice::internal {

// Every stage is held by a qz_auto_ptr until the proxy that owns it exists,
// so a failed allocation part-way leaves nothing behind.

ExternalEncoding::ToUnicodeSource* FormSourceToUnicode(const ExternalEncoding& form,
                                                       const InternalEncoding& internal,
                                                       BlockConverter_8_to_16* decoder, CharSource& in,
                                                       UnicodeLibAllocator& a) {
  qz_auto_ptr<BlockConverter_8_to_16> converter(decoder);
  qz_auto_ptr<CharSource_8_to_16> decode(new (a) CharSource_8_to_16(in, form, converter.get(), internal));
  converter.release();
  qz_auto_ptr<Char16Source> widen(internal.CreateCharSourceToUnicode(*decode, a));
  auto* proxy = new (a) ToUnicodeProxySource(form, widen.get());
  proxy->Director().DeleteFirst(widen.release());
  proxy->Director().DeleteSecond(decode.release());
  return proxy;
}

CharSource* FormSourceFromUnicode(const ExternalEncoding& form, const InternalEncoding& internal,
                                  BlockConverter_16_to_8* encoder, Char16Source& in, UnicodeLibAllocator& a) {
  qz_auto_ptr<BlockConverter_16_to_8> converter(encoder);
  qz_auto_ptr<Char16Source> narrow(internal.CreateCharSourceFromUnicode(in, a));
  qz_auto_ptr<CharSource_16_to_8> encode(new (a) CharSource_16_to_8(*narrow, internal, converter.get(), form));
  converter.release();
  auto* proxy = new (a) DirectedCharProxySource(encode.get(), encode.get(), narrow.get());
  encode.release();
  narrow.release();
  return proxy;
}

Char16Sink* FormSinkFromUnicode(const ExternalEncoding& form, const InternalEncoding& internal,
                                BlockConverter_16_to_8* encoder, CharSink& out, UnicodeLibAllocator& a) {
  qz_auto_ptr<BlockConverter_16_to_8> converter(encoder);
  qz_auto_ptr<CharSink_16_to_8> encode(new (a) CharSink_16_to_8(internal, converter.get(), form, out));
  converter.release();
  qz_auto_ptr<Char16Sink> narrow(internal.CreateCharSinkFromUnicode(*encode, a));
  // The stage that receives the text goes first: it is destroyed before the
  // stage it writes to.
  auto* proxy = new (a) DirectedChar16ProxySink(narrow.get(), narrow.get(), encode.get());
  narrow.release();
  encode.release();
  return proxy;
}

CharSink* FormSinkToUnicode(const ExternalEncoding& form, const InternalEncoding& internal,
                            BlockConverter_8_to_16* decoder, Char16Sink& out, UnicodeLibAllocator& a) {
  qz_auto_ptr<BlockConverter_8_to_16> converter(decoder);
  qz_auto_ptr<Char16Sink> widen(internal.CreateCharSinkToUnicode(out, a));
  qz_auto_ptr<CharSink_8_to_16> decode(new (a) CharSink_8_to_16(form, converter.get(), internal, *widen));
  converter.release();
  auto* proxy = new (a) DirectedCharProxySink(decode.get(), decode.get(), widen.get());
  decode.release();
  widen.release();
  return proxy;
}

}  // namespace varnice::internal
