// qz_wstring forwards to the shared implementation; see qz_basic_string.cpp.
#include "varnice/widec/qz_wstring.h"

using size_type = qz_wstring::size_type;
using Impl = varnice::internal::BasicQzString<unsigned short>;

qz_wstring::qz_wstring(const qz_wstring& other) noexcept = default;
qz_wstring::qz_wstring(qz_wstring&& other) noexcept = default;
qz_wstring::qz_wstring(const unsigned short* s) : s_(s, Impl::length_of(s)) {}
qz_wstring::qz_wstring(const unsigned short* s, size_type n) : s_(s, n) {}
qz_wstring::qz_wstring(size_type count, unsigned short c) : s_(count, c) {}
qz_wstring::~qz_wstring() = default;

qz_wstring& qz_wstring::operator=(const qz_wstring& other) noexcept = default;
qz_wstring& qz_wstring::operator=(qz_wstring&& other) noexcept = default;
qz_wstring& qz_wstring::operator=(const unsigned short* s) { return assign(s, Impl::length_of(s)); }
qz_wstring& qz_wstring::assign(const unsigned short* s, size_type n) {
  s_.assign(s, n);
  return *this;
}
void qz_wstring::swap(qz_wstring& other) noexcept { s_.swap(other.s_); }

size_type qz_wstring::size() const noexcept { return s_.size(); }
size_type qz_wstring::length() const noexcept { return s_.size(); }
size_type qz_wstring::capacity() const noexcept { return s_.capacity(); }
bool qz_wstring::empty() const noexcept { return s_.size() == 0; }
const unsigned short* qz_wstring::data() const noexcept { return s_.data(); }
const unsigned short* qz_wstring::c_str() const { return s_.c_str(); }

qz_wstring::const_iterator qz_wstring::begin() const noexcept { return s_.data(); }
qz_wstring::const_iterator qz_wstring::end() const noexcept { return s_.data() + s_.size(); }
qz_wstring::iterator qz_wstring::begin() { return s_.mutable_data(); }
qz_wstring::iterator qz_wstring::end() { return s_.mutable_data() + s_.size(); }

const unsigned short& qz_wstring::operator[](size_type i) const { return s_.data()[i]; }
unsigned short& qz_wstring::operator[](size_type i) { return s_.index(i); }
const unsigned short& qz_wstring::at(size_type i) const { return s_.at(i); }
unsigned short& qz_wstring::at(size_type i) { return s_.at(i); }

void qz_wstring::clear() { s_.clear(); }
void qz_wstring::reserve(size_type n) { s_.reserve(n); }
void qz_wstring::resize(size_type n, unsigned short c) { s_.resize(n, c); }

qz_wstring& qz_wstring::append(const qz_wstring& s) {
  s_.append(s.data(), s.size());
  return *this;
}
qz_wstring& qz_wstring::append(const unsigned short* s, size_type n) {
  s_.append(s, n);
  return *this;
}
qz_wstring& qz_wstring::append(const unsigned short* s) {
  s_.append(s, Impl::length_of(s));
  return *this;
}
qz_wstring& qz_wstring::append(size_type count, unsigned short c) {
  s_.append(count, c);
  return *this;
}
qz_wstring& qz_wstring::operator+=(const qz_wstring& s) { return append(s); }
qz_wstring& qz_wstring::operator+=(const unsigned short* s) { return append(s); }
qz_wstring& qz_wstring::operator+=(unsigned short c) {
  s_.append(1, c);
  return *this;
}
void qz_wstring::push_back(unsigned short c) { s_.append(1, c); }

qz_wstring& qz_wstring::insert(size_type pos, const qz_wstring& s) {
  s_.replace(pos, 0, s.data(), s.size());
  return *this;
}
qz_wstring& qz_wstring::insert(size_type pos, const unsigned short* s, size_type n) {
  s_.replace(pos, 0, s, n);
  return *this;
}
qz_wstring& qz_wstring::insert(size_type pos, size_type count, unsigned short c) {
  s_.replace(pos, 0, count, c);
  return *this;
}
qz_wstring& qz_wstring::erase(size_type pos, size_type n) {
  s_.replace(pos, n, nullptr, 0);
  return *this;
}
qz_wstring& qz_wstring::replace(size_type pos, size_type n, const qz_wstring& s) {
  s_.replace(pos, n, s.data(), s.size());
  return *this;
}
qz_wstring& qz_wstring::replace(size_type pos, size_type n, const unsigned short* s, size_type n2) {
  s_.replace(pos, n, s, n2);
  return *this;
}
qz_wstring& qz_wstring::replace(size_type pos, size_type n, size_type count, unsigned short c) {
  s_.replace(pos, n, count, c);
  return *this;
}

size_type qz_wstring::find(const qz_wstring& s, size_type pos) const {
  return s_.find(s.data(), pos, s.size());
}
size_type qz_wstring::find(const unsigned short* s, size_type pos) const {
  return s_.find(s, pos, Impl::length_of(s));
}
size_type qz_wstring::find(const unsigned short* s, size_type pos, size_type n) const {
  return s_.find(s, pos, n);
}
size_type qz_wstring::find(unsigned short c, size_type pos) const { return s_.find(c, pos); }
size_type qz_wstring::rfind(const qz_wstring& s, size_type pos) const {
  return s_.rfind(s.data(), pos, s.size());
}
size_type qz_wstring::rfind(const unsigned short* s, size_type pos) const {
  return s_.rfind(s, pos, Impl::length_of(s));
}
size_type qz_wstring::rfind(const unsigned short* s, size_type pos, size_type n) const {
  return s_.rfind(s, pos, n);
}
size_type qz_wstring::rfind(unsigned short c, size_type pos) const { return s_.rfind(c, pos); }
qz_wstring qz_wstring::substr(size_type pos, size_type n) const {
  qz_wstring part;
  part.s_ = s_.substr(pos, n);
  return part;
}

int qz_wstring::compare(const qz_wstring& s) const { return s_.compare(s.data(), s.size()); }
int qz_wstring::compare(const unsigned short* s) const { return s_.compare(s, Impl::length_of(s)); }
bool qz_wstring::operator==(const qz_wstring& s) const { return compare(s) == 0; }
bool qz_wstring::operator==(const unsigned short* s) const { return compare(s) == 0; }
std::weak_ordering qz_wstring::operator<=>(const qz_wstring& s) const { return compare(s) <=> 0; }
std::weak_ordering qz_wstring::operator<=>(const unsigned short* s) const {
  return compare(s) <=> 0;
}

qz_wstring operator+(const qz_wstring& a, const qz_wstring& b) {
  qz_wstring sum;
  sum.reserve(a.size() + b.size());
  sum.append(a).append(b);
  return sum;
}
qz_wstring operator+(const qz_wstring& a, unsigned short c) {
  qz_wstring sum;
  sum.reserve(a.size() + 1);
  sum.append(a).push_back(c);
  return sum;
}
