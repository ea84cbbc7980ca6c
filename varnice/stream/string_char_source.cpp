#include "varnice/stream/string_char_source.h"

#include <cstring>
#include <utility>

namespace {

qz_string Copy(const char* begin, const char* end) {
  if (begin == nullptr) return qz_string();
  if (end == nullptr) end = begin + std::strlen(begin);
  return qz_string(begin, static_cast<qz_string::size_type>(end - begin));
}

}  // namespace

StringCharSource::StringCharSource(const qz_string& text) : text_(text) { Lend(); }

StringCharSource::StringCharSource(const char* begin, const char* end) : text_(Copy(begin, end)) {
  Lend();
}

StringCharSource::StringCharSource(const unsigned char* begin, const unsigned char* end)
    : StringCharSource(reinterpret_cast<const char*>(begin), reinterpret_cast<const char*>(end)) {}

// UnicodeLibActor is a virtual base: name it, or the copy would take the
// default behaviour instead of the other's.
StringCharSource::StringCharSource(const StringCharSource& other)
    : UnicodeLibActor(other), CharSource(other), text_(Copy(other.position_, other.end_)) {
  Lend();
}

StringCharSource& StringCharSource::operator=(const StringCharSource& other) {
  // Copy first: `other` may be this source.
  qz_string rest = Copy(other.position_, other.end_);
  text_ = std::move(rest);
  Lend();
  return *this;
}

StringCharSource::~StringCharSource() = default;

bool StringCharSource::FillBuffer() { return false; }

// Lends the whole string. Nothing here may call text_.c_str(): it can move the
// array out from under the lent range.
void StringCharSource::Lend() {
  position_ = text_.data();
  end_ = position_ + text_.size();
}
