// The one implementation behind qz_string (char) and qz_wstring (unsigned short
// code units). The public classes wrap it and forward to it, so that they are
// real exported classes while the logic is written once. Member definitions
// live in qz_basic_string.cpp, instantiated there for both character types.
#ifndef VARNICE_WIDEC_QZ_BASIC_STRING_H_
#define VARNICE_WIDEC_QZ_BASIC_STRING_H_

#include <atomic>

namespace varnice::internal {

// A string is one pointer to a reference-counted representation, null for the
// empty string. Copies share the representation; every modifying member first
// takes a private copy while it is shared (copy on write).
//
// Sizes and positions are unsigned 32-bit. A representation's array is kept
// terminated whenever it has room past the length, so c_str() only has to act
// (and may reallocate) when the array is exactly full. Because of that, c_str()
// must not race with other calls on the same object; distinct objects sharing
// one representation may be used from different threads.
//
// Pointers and references from the non-const accessors are invalidated by any
// later modification, and writes through them after the string has been copied
// would be seen by the copy too: take them, use them, drop them.
template <class CharT>
class BasicQzString {
 public:
  using size_type = unsigned int;
  static constexpr size_type npos = 0xFFFFFFFF;
  static constexpr size_type kMaxSize = npos - 1;

  BasicQzString() noexcept = default;
  BasicQzString(const CharT* s, size_type n);  // null s: empty
  BasicQzString(size_type count, CharT c);
  BasicQzString(const BasicQzString& other) noexcept;
  BasicQzString(BasicQzString&& other) noexcept : rep_(other.rep_) { other.rep_ = nullptr; }
  ~BasicQzString();
  BasicQzString& operator=(const BasicQzString& other) noexcept;
  BasicQzString& operator=(BasicQzString&& other) noexcept;
  void swap(BasicQzString& other) noexcept;

  // Length of a NUL-terminated array; 0 for null.
  static size_type length_of(const CharT* s);

  size_type size() const noexcept { return rep_ ? rep_->length : 0; }
  size_type capacity() const noexcept { return rep_ ? rep_->capacity : 0; }
  const CharT* data() const noexcept;  // never null
  const CharT* c_str() const;
  CharT* mutable_data();      // unshares first; null when there is no array
  CharT& index(size_type i);  // throws only when empty
  CharT& at(size_type i);
  const CharT& at(size_type i) const;

  void clear();
  void reserve(size_type n);
  void resize(size_type n, CharT c);
  void assign(const CharT* s, size_type n) { replace(0, npos, s, n); }
  void append(const CharT* s, size_type n) { replace(size(), 0, s, n); }
  void append(size_type count, CharT c) { replace(size(), 0, count, c); }
  void replace(size_type pos, size_type n1, const CharT* s, size_type n2);
  void replace(size_type pos, size_type n1, size_type count, CharT c);

  size_type find(const CharT* s, size_type pos, size_type n) const;
  size_type find(CharT c, size_type pos) const;
  size_type rfind(const CharT* s, size_type pos, size_type n) const;
  size_type rfind(CharT c, size_type pos) const;
  BasicQzString substr(size_type pos, size_type n) const;
  int compare(const CharT* s, size_type n) const;

 private:
  // Reference count, capacity, length, then the characters in the same block.
  struct Rep {
    std::atomic<unsigned int> refs;
    size_type capacity;
    size_type length;
    CharT* chars() noexcept { return reinterpret_cast<CharT*>(this + 1); }
    // Sole owner only. Keeps the slot past the end zeroed when there is one.
    void set_length(size_type n) noexcept {
      length = n;
      if (n < capacity) chars()[n] = CharT();
    }
  };

  static Rep* allocate(size_type capacity);
  static void release(Rep* rep) noexcept;
  static size_type grown(size_type needed);
  bool shared() const noexcept;
  void reallocate(size_type capacity) const;
  CharT* open_gap(size_type pos, size_type n1, size_type n2);

  mutable Rep* rep_ = nullptr;  // mutable: c_str() may enlarge the array
};

}  // namespace varnice::internal

#endif  // VARNICE_WIDEC_QZ_BASIC_STRING_H_
