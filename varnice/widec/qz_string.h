// qz_string: the library's string of bytes. qz_wstring (qz_wstring.h) is the same
// over UTF-16 code units (unsigned short); both share one implementation.
//
// A string holds one pointer to a reference-counted representation (null for
// the empty string). Copies share it until one of them is modified: modifying
// members take a private copy first (copy on write). The count is atomic, so
// copies may travel between threads; one object is still used by one thread at
// a time (c_str() may reallocate).
//
// Sizes and positions are unsigned 32-bit; npos is 0xFFFFFFFF. Constructors
// allocate exactly the length; an operation that needs more room than the
// capacity reallocates to the needed length times 1.6180339, truncated.
// Positions past size() throw qz_out_of_range; lengths are clamped to the end.
// Failed allocations throw qz_sw_out_of_memory.
//
// Comparison follows strncmp over the shorter length (so a unit 0 both strings
// share ends the comparison), and then the shorter string is the lesser. The
// operators ==, !=, <, <=, >, >= all follow compare().
#ifndef VARNICE_WIDEC_QZ_STRING_H_
#define VARNICE_WIDEC_QZ_STRING_H_

#include <algorithm>
#include <compare>
#include <cstddef>
#include <functional>
#include <string_view>

#include "varnice/varnice_export.h"
#include "varnice/widec/qz_basic_string.h"

class ExternalEncoding;

class VARNICE_API qz_string {
 public:
  using value_type = char;
  using size_type = unsigned int;
  using iterator = char*;
  using const_iterator = const char*;
  static constexpr size_type npos = 0xFFFFFFFF;

  constexpr qz_string() noexcept = default;
  qz_string(const qz_string& other) noexcept;
  qz_string(qz_string&& other) noexcept;
  qz_string(const char* s);               // NUL-terminated; null is empty
  qz_string(const char* s, size_type n);  // null is empty
  qz_string(size_type count, char c);
  // UTF-16 text converted to the encoding through an
  // InternalEncodingConverterSink, with the default behaviour deciding what
  // happens to characters the encoding lacks. The first form takes text
  // terminated by a 0 unit; null is empty.
  qz_string(const unsigned short* s, const ExternalEncoding& encoding);
  qz_string(const unsigned short* s, size_type n, const ExternalEncoding& encoding);
  ~qz_string();

  qz_string& operator=(const qz_string& other) noexcept;
  qz_string& operator=(qz_string&& other) noexcept;
  qz_string& operator=(const char* s);
  qz_string& assign(const char* s, size_type n);
  void swap(qz_string& other) noexcept;

  size_type size() const noexcept;
  size_type length() const noexcept;
  size_type capacity() const noexcept;
  bool empty() const noexcept;
  const char* data() const noexcept;  // never null; not terminated
  // Terminates the text in place, first enlarging a full array to size() + 1.
  // The empty string gives a static "".
  const char* c_str() const;
  explicit operator std::string_view() const noexcept;

  const_iterator begin() const noexcept;
  const_iterator end() const noexcept;
  iterator begin();  // unshares
  iterator end();    // unshares

  const char& operator[](size_type i) const;  // unchecked
  // Unshares. Throws qz_out_of_range for the empty string but does not check
  // i against size(); at() does.
  char& operator[](size_type i);
  const char& at(size_type i) const;
  char& at(size_type i);

  void clear();
  void reserve(size_type n);  // exactly n when n > capacity()
  void resize(size_type n, char c = '\0');

  qz_string& append(const qz_string& s);
  qz_string& append(const char* s, size_type n);
  qz_string& append(const char* s);
  qz_string& append(size_type count, char c);
  qz_string& operator+=(const qz_string& s);
  qz_string& operator+=(const char* s);
  qz_string& operator+=(char c);
  void push_back(char c);

  qz_string& insert(size_type pos, const qz_string& s);
  qz_string& insert(size_type pos, const char* s, size_type n);
  qz_string& insert(size_type pos, size_type count, char c);
  qz_string& erase(size_type pos = 0, size_type n = npos);
  qz_string& replace(size_type pos, size_type n, const qz_string& s);
  qz_string& replace(size_type pos, size_type n, const char* s, size_type n2);
  qz_string& replace(size_type pos, size_type n, size_type count, char c);

  size_type find(const qz_string& s, size_type pos = 0) const;
  size_type find(const char* s, size_type pos = 0) const;
  size_type find(const char* s, size_type pos, size_type n) const;
  size_type find(char c, size_type pos = 0) const;
  size_type rfind(const qz_string& s, size_type pos = npos) const;
  size_type rfind(const char* s, size_type pos = npos) const;
  size_type rfind(const char* s, size_type pos, size_type n) const;
  size_type rfind(char c, size_type pos = npos) const;
  qz_string substr(size_type pos = 0, size_type n = npos) const;

  int compare(const qz_string& s) const;
  int compare(const char* s) const;  // null is empty
  bool operator==(const qz_string& s) const;
  bool operator==(const char* s) const;
  std::weak_ordering operator<=>(const qz_string& s) const;
  std::weak_ordering operator<=>(const char* s) const;

 private:
  varnice::internal::BasicQzString<char> s_;
};

VARNICE_API qz_string operator+(const qz_string& a, const qz_string& b);
VARNICE_API qz_string operator+(const qz_string& a, char c);

// Equal strings hash alike: as compare does, the hash reads up to the first
// 0 byte and then takes the length into account.
template <>
struct std::hash<qz_string> {
  std::size_t operator()(const qz_string& s) const noexcept {
    const char* end = std::find(s.data(), s.data() + s.size(), '\0');
    const std::size_t prefix =
        std::hash<std::string_view>{}(std::string_view(s.data(), static_cast<std::size_t>(end - s.data())));
    return prefix ^ (std::size_t{s.size()} * 0x9E3779B97F4A7C15ULL);
  }
};

#endif  // VARNICE_WIDEC_QZ_STRING_H_
