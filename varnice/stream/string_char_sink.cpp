#include "varnice/stream/string_char_sink.h"

// The virtual base's constructor is chosen here (see BufferCharSink).
StringCharSink::StringCharSink()
    : UnicodeLibActor(static_cast<const UnicodeLibActor*>(nullptr)),
      CharSink(static_cast<const UnicodeLibActor*>(nullptr)) {}

void StringCharSink::Flush() {}

void StringCharSink::PutBuffer(const char* begin, const char* end) {
  text_.append(begin, static_cast<qz_string::size_type>(end - begin));
}
