// qz_wstring: the library's string of UTF-16 code units (unsigned short). It
// behaves exactly as qz_string (see qz_string.h) over 16-bit units.
#ifndef VARNICE_WIDEC_QZ_WSTRING_H_
#define VARNICE_WIDEC_QZ_WSTRING_H_

#include <algorithm>
#include <compare>
#include <cstddef>
#include <functional>
#include <string_view>

#include "varnice/varnice_export.h"
#include "varnice/widec/qz_basic_string.h"

class ExternalEncoding;

class VARNICE_API qz_wstring {
 public:
  using value_type = unsigned short;
  using size_type = unsigned int;
  using iterator = unsigned short*;
  using const_iterator = const unsigned short*;
  static constexpr size_type npos = 0xFFFFFFFF;

  constexpr qz_wstring() noexcept = default;
  qz_wstring(const qz_wstring& other) noexcept;
  qz_wstring(qz_wstring&& other) noexcept;
  qz_wstring(const unsigned short* s);               // 0-terminated; null is empty
  qz_wstring(const unsigned short* s, size_type n);  // null is empty
  qz_wstring(size_type count, unsigned short c);
  // Bytes in the encoding decoded to UTF-16 through an
  // ExternalEncodingConverterSink, with the default behaviour deciding what
  // happens to undecodable bytes. The first form takes NUL-terminated text;
  // null is empty.
  qz_wstring(const char* s, const ExternalEncoding& encoding);
  qz_wstring(const char* s, size_type n, const ExternalEncoding& encoding);
  ~qz_wstring();

  qz_wstring& operator=(const qz_wstring& other) noexcept;
  qz_wstring& operator=(qz_wstring&& other) noexcept;
  qz_wstring& operator=(const unsigned short* s);
  qz_wstring& assign(const unsigned short* s, size_type n);
  void swap(qz_wstring& other) noexcept;

  size_type size() const noexcept;
  size_type length() const noexcept;
  size_type capacity() const noexcept;
  bool empty() const noexcept;
  const unsigned short* data() const noexcept;  // never null; not terminated
  // As qz_string::c_str().
  const unsigned short* c_str() const;

  const_iterator begin() const noexcept;
  const_iterator end() const noexcept;
  iterator begin();  // unshares
  iterator end();    // unshares

  const unsigned short& operator[](size_type i) const;  // unchecked
  // As qz_string: unshares, throws only for the empty string.
  unsigned short& operator[](size_type i);
  const unsigned short& at(size_type i) const;
  unsigned short& at(size_type i);

  void clear();
  void reserve(size_type n);  // exactly n when n > capacity()
  void resize(size_type n, unsigned short c = 0);

  qz_wstring& append(const qz_wstring& s);
  qz_wstring& append(const unsigned short* s, size_type n);
  qz_wstring& append(const unsigned short* s);
  qz_wstring& append(size_type count, unsigned short c);
  qz_wstring& operator+=(const qz_wstring& s);
  qz_wstring& operator+=(const unsigned short* s);
  qz_wstring& operator+=(unsigned short c);
  void push_back(unsigned short c);

  qz_wstring& insert(size_type pos, const qz_wstring& s);
  qz_wstring& insert(size_type pos, const unsigned short* s, size_type n);
  qz_wstring& insert(size_type pos, size_type count, unsigned short c);
  qz_wstring& erase(size_type pos = 0, size_type n = npos);
  qz_wstring& replace(size_type pos, size_type n, const qz_wstring& s);
  qz_wstring& replace(size_type pos, size_type n, const unsigned short* s, size_type n2);
  qz_wstring& replace(size_type pos, size_type n, size_type count, unsigned short c);

  size_type find(const qz_wstring& s, size_type pos = 0) const;
  size_type find(const unsigned short* s, size_type pos = 0) const;
  size_type find(const unsigned short* s, size_type pos, size_type n) const;
  size_type find(unsigned short c, size_type pos = 0) const;
  size_type rfind(const qz_wstring& s, size_type pos = npos) const;
  size_type rfind(const unsigned short* s, size_type pos = npos) const;
  size_type rfind(const unsigned short* s, size_type pos, size_type n) const;
  size_type rfind(unsigned short c, size_type pos = npos) const;
  qz_wstring substr(size_type pos = 0, size_type n = npos) const;

  // Code units compare as unsigned 16-bit values.
  int compare(const qz_wstring& s) const;
  int compare(const unsigned short* s) const;  // null is empty
  bool operator==(const qz_wstring& s) const;
  bool operator==(const unsigned short* s) const;
  std::weak_ordering operator<=>(const qz_wstring& s) const;
  std::weak_ordering operator<=>(const unsigned short* s) const;

 private:
  varnice::internal::BasicQzString<unsigned short> s_;
};

VARNICE_API qz_wstring operator+(const qz_wstring& a, const qz_wstring& b);
VARNICE_API qz_wstring operator+(const qz_wstring& a, unsigned short c);

// Equal strings hash alike: as compare does, the hash reads up to the first
// 0 unit and then takes the length into account.
template <>
struct std::hash<qz_wstring> {
  std::size_t operator()(const qz_wstring& s) const noexcept {
    const unsigned short* end = std::find(s.data(), s.data() + s.size(), 0);
    const std::size_t prefix = std::hash<std::string_view>{}(std::string_view(
        reinterpret_cast<const char*>(s.data()), sizeof(unsigned short) * static_cast<std::size_t>(end - s.data())));
    return prefix ^ (std::size_t{s.size()} * 0x9E3779B97F4A7C15ULL);
  }
};

#endif  // VARNICE_WIDEC_QZ_WSTRING_H_
