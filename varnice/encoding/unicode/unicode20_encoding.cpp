#include "varnice/encoding/unicode/unicode20_encoding.h"

#include "varnice/encoding/unicode/unicode_data_tables.h"
#include "varnice/stream/converting/proxy_streams.h"
#include "varnice/tables/lookup_functions.h"

namespace {

const char* kUnicode20Names[] = {"Unicode20", "Unicode 2.0", "Unicode", "csUnicode",
                                 "csUnicode20", "ISO-10646-UCS-2", nullptr};

}  // namespace

InternalEncoding* InternalEncoding::Unicode20() {
  // Never destroyed: the registry keeps pointing at it until unload.
  static InternalEncoding* const encoding = new Unicode20Encoding;
  return encoding;
}

InternalEncoding* InternalEncoding::Unicode() { return Unicode20(); }

Unicode20Encoding::Unicode20Encoding() : InternalEncoding(TextEncodingID(2), kUnicode20Names, nullptr, 0) {}
Unicode20Encoding::~Unicode20Encoding() = default;

unsigned long Unicode20Encoding::ToUnicode(unsigned long ch) const { return ch; }
unsigned long Unicode20Encoding::FromUnicode(unsigned long ch) const { return ch; }

unsigned long Unicode20Encoding::MayBreakLineBefore(unsigned short ch) const {
  return ChunkTableLookupWithDefault(varnice::internal::kLineBreakBefore,
                                     varnice::internal::kLineBreakBeforeCount, ch, 1);
}

unsigned long Unicode20Encoding::MayBreakLineAfter(unsigned short ch) const {
  return ChunkTableLookupWithDefault(varnice::internal::kLineBreakAfter,
                                     varnice::internal::kLineBreakAfterCount, ch, 1);
}

Char16Source* Unicode20Encoding::CreateCharSourceToUnicode(Char16Source& in, UnicodeLibAllocator& a) const {
  return new (a) Char16ProxySource(&in);
}

Char16Source* Unicode20Encoding::CreateCharSourceFromUnicode(Char16Source& in, UnicodeLibAllocator& a) const {
  return new (a) Char16ProxySource(&in);
}

Char16Sink* Unicode20Encoding::CreateCharSinkToUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  return new (a) Char16ProxySink(&out);
}

Char16Sink* Unicode20Encoding::CreateCharSinkFromUnicode(Char16Sink& out, UnicodeLibAllocator& a) const {
  return new (a) Char16ProxySink(&out);
}
