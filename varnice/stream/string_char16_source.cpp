#include "varnice/stream/string_char16_source.h"

#include <utility>

namespace {

qz_wstring Copy(const unsigned short* begin, const unsigned short* end) {
  if (begin == nullptr) return qz_wstring();
  if (end == nullptr) {
    end = begin;
    while (*end != 0) ++end;
  }
  return qz_wstring(begin, static_cast<qz_wstring::size_type>(end - begin));
}

}  // namespace

StringChar16Source::StringChar16Source(const qz_wstring& text) : text_(text) { Lend(); }

StringChar16Source::StringChar16Source(const unsigned short* begin, const unsigned short* end)
    : text_(Copy(begin, end)) {
  Lend();
}

StringChar16Source::StringChar16Source(const StringChar16Source& other)
    : UnicodeLibActor(other), Char16Source(other), text_(Copy(other.position_, other.end_)) {
  Lend();
}

StringChar16Source& StringChar16Source::operator=(const StringChar16Source& other) {
  qz_wstring rest = Copy(other.position_, other.end_);
  text_ = std::move(rest);
  Lend();
  return *this;
}

StringChar16Source::~StringChar16Source() = default;

bool StringChar16Source::FillBuffer() { return false; }

// As in StringCharSource: never text_.c_str() here, it can move the array.
void StringChar16Source::Lend() {
  position_ = text_.data();
  end_ = position_ + text_.size();
}
