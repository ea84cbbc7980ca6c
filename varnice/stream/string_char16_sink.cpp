#include "varnice/stream/string_char16_sink.h"

// The virtual base's constructor is chosen here (see BufferCharSink).
StringChar16Sink::StringChar16Sink()
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      Char16Sink(static_cast<const UnicodeLibActor*>(nullptr)) {}

void StringChar16Sink::Flush() {}

void StringChar16Sink::PutBuffer(const unsigned short* begin, const unsigned short* end) {
  text_.append(begin, static_cast<qz_wstring::size_type>(end - begin));
}
