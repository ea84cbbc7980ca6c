// qz_string forwards to the shared implementation; see qz_basic_string.cpp.
#include "varnice/widec/qz_string.h"

using size_type = qz_string::size_type;
using Impl = varnice::internal::BasicQzString<char>;

qz_string::qz_string(const qz_string& other) noexcept = default;
qz_string::qz_string(qz_string&& other) noexcept = default;
qz_string::qz_string(const char* s) : s_(s, Impl::length_of(s)) {}
qz_string::qz_string(const char* s, size_type n) : s_(s, n) {}
qz_string::qz_string(size_type count, char c) : s_(count, c) {}
qz_string::~qz_string() = default;

qz_string& qz_string::operator=(const qz_string& other) noexcept = default;
qz_string& qz_string::operator=(qz_string&& other) noexcept = default;
qz_string& qz_string::operator=(const char* s) { return assign(s, Impl::length_of(s)); }
qz_string& qz_string::assign(const char* s, size_type n) {
  s_.assign(s, n);
  return *this;
}
void qz_string::swap(qz_string& other) noexcept { s_.swap(other.s_); }

size_type qz_string::size() const noexcept { return s_.size(); }
size_type qz_string::length() const noexcept { return s_.size(); }
size_type qz_string::capacity() const noexcept { return s_.capacity(); }
bool qz_string::empty() const noexcept { return s_.size() == 0; }
const char* qz_string::data() const noexcept { return s_.data(); }
const char* qz_string::c_str() const { return s_.c_str(); }
qz_string::operator std::string_view() const noexcept { return {s_.data(), s_.size()}; }

qz_string::const_iterator qz_string::begin() const noexcept { return s_.data(); }
qz_string::const_iterator qz_string::end() const noexcept { return s_.data() + s_.size(); }
qz_string::iterator qz_string::begin() { return s_.mutable_data(); }
qz_string::iterator qz_string::end() { return s_.mutable_data() + s_.size(); }

const char& qz_string::operator[](size_type i) const { return s_.data()[i]; }
char& qz_string::operator[](size_type i) { return s_.index(i); }
const char& qz_string::at(size_type i) const { return s_.at(i); }
char& qz_string::at(size_type i) { return s_.at(i); }

void qz_string::clear() { s_.clear(); }
void qz_string::reserve(size_type n) { s_.reserve(n); }
void qz_string::resize(size_type n, char c) { s_.resize(n, c); }

qz_string& qz_string::append(const qz_string& s) {
  s_.append(s.data(), s.size());
  return *this;
}
qz_string& qz_string::append(const char* s, size_type n) {
  s_.append(s, n);
  return *this;
}
qz_string& qz_string::append(const char* s) {
  s_.append(s, Impl::length_of(s));
  return *this;
}
qz_string& qz_string::append(size_type count, char c) {
  s_.append(count, c);
  return *this;
}
qz_string& qz_string::operator+=(const qz_string& s) { return append(s); }
qz_string& qz_string::operator+=(const char* s) { return append(s); }
qz_string& qz_string::operator+=(char c) {
  s_.append(1, c);
  return *this;
}
void qz_string::push_back(char c) { s_.append(1, c); }

qz_string& qz_string::insert(size_type pos, const qz_string& s) {
  s_.replace(pos, 0, s.data(), s.size());
  return *this;
}
qz_string& qz_string::insert(size_type pos, const char* s, size_type n) {
  s_.replace(pos, 0, s, n);
  return *this;
}
qz_string& qz_string::insert(size_type pos, size_type count, char c) {
  s_.replace(pos, 0, count, c);
  return *this;
}
qz_string& qz_string::erase(size_type pos, size_type n) {
  s_.replace(pos, n, nullptr, 0);
  return *this;
}
qz_string& qz_string::replace(size_type pos, size_type n, const qz_string& s) {
  s_.replace(pos, n, s.data(), s.size());
  return *this;
}
qz_string& qz_string::replace(size_type pos, size_type n, const char* s, size_type n2) {
  s_.replace(pos, n, s, n2);
  return *this;
}
qz_string& qz_string::replace(size_type pos, size_type n, size_type count, char c) {
  s_.replace(pos, n, count, c);
  return *this;
}

size_type qz_string::find(const qz_string& s, size_type pos) const {
  return s_.find(s.data(), pos, s.size());
}
size_type qz_string::find(const char* s, size_type pos) const {
  return s_.find(s, pos, Impl::length_of(s));
}
size_type qz_string::find(const char* s, size_type pos, size_type n) const {
  return s_.find(s, pos, n);
}
size_type qz_string::find(char c, size_type pos) const { return s_.find(c, pos); }
size_type qz_string::rfind(const qz_string& s, size_type pos) const {
  return s_.rfind(s.data(), pos, s.size());
}
size_type qz_string::rfind(const char* s, size_type pos) const {
  return s_.rfind(s, pos, Impl::length_of(s));
}
size_type qz_string::rfind(const char* s, size_type pos, size_type n) const {
  return s_.rfind(s, pos, n);
}
size_type qz_string::rfind(char c, size_type pos) const { return s_.rfind(c, pos); }
qz_string qz_string::substr(size_type pos, size_type n) const {
  qz_string part;
  part.s_ = s_.substr(pos, n);
  return part;
}

int qz_string::compare(const qz_string& s) const { return s_.compare(s.data(), s.size()); }
int qz_string::compare(const char* s) const { return s_.compare(s, Impl::length_of(s)); }
bool qz_string::operator==(const qz_string& s) const { return compare(s) == 0; }
bool qz_string::operator==(const char* s) const { return compare(s) == 0; }
std::weak_ordering qz_string::operator<=>(const qz_string& s) const { return compare(s) <=> 0; }
std::weak_ordering qz_string::operator<=>(const char* s) const { return compare(s) <=> 0; }

qz_string operator+(const qz_string& a, const qz_string& b) {
  qz_string sum;
  sum.reserve(a.size() + b.size());
  sum.append(a).append(b);
  return sum;
}
qz_string operator+(const qz_string& a, char c) {
  qz_string sum;
  sum.reserve(a.size() + 1);
  sum.append(a).push_back(c);
  return sum;
}
