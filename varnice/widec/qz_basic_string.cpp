#include "varnice/widec/qz_basic_string.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include "varnice/widec/qz_exception.h"

namespace varnice::internal {
namespace {

template <class CharT>
constexpr CharT kEmpty[1] = {};

// strncmp, and the same for 16-bit units: stop at the first difference or at
// a 0 unit both share; units compare as unsigned values.
int compare_units(const char* a, const char* b, std::size_t n) { return std::strncmp(a, b, n); }
int compare_units(const unsigned short* a, const unsigned short* b, std::size_t n) {
  for (std::size_t i = 0; i < n && (a[i] != 0 || b[i] != 0); ++i) {
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
  }
  return 0;
}

}  // namespace

template <class CharT>
auto BasicQzString<CharT>::allocate(size_type capacity) -> Rep* {
  void* block = std::malloc(sizeof(Rep) + std::size_t{capacity} * sizeof(CharT));
  if (!block) throw qz_sw_out_of_memory();
  return new (block) Rep{{1}, capacity, 0};
}

template <class CharT>
void BasicQzString<CharT>::release(Rep* rep) noexcept {
  if (rep && rep->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    rep->~Rep();
    std::free(rep);
  }
}

template <class CharT>
auto BasicQzString<CharT>::grown(size_type needed) -> size_type {
  const double wanted = needed * 1.6180339;
  return wanted >= kMaxSize ? kMaxSize : static_cast<size_type>(wanted);
}

template <class CharT>
bool BasicQzString<CharT>::shared() const noexcept {
  return rep_ && rep_->refs.load(std::memory_order_acquire) > 1;
}

// Gives this object a private array of the given capacity holding its text.
template <class CharT>
void BasicQzString<CharT>::reallocate(size_type capacity) const {
  Rep* fresh = allocate(capacity);
  const size_type length = size();
  if (length) std::copy_n(rep_->chars(), length, fresh->chars());
  fresh->set_length(length);
  release(rep_);
  rep_ = fresh;
}

// Makes [pos, pos + n1) into n2 writable units (unsharing and growing as
// needed) and returns where they start; the caller fills them.
template <class CharT>
CharT* BasicQzString<CharT>::open_gap(size_type pos, size_type n1, size_type n2) {
  const size_type length = size();
  if (pos > length) throw qz_out_of_range("string position out of range");
  n1 = std::min(n1, length - pos);
  if (n2 > kMaxSize - (length - n1)) throw qz_logic_error("string too long");
  const size_type new_length = length - n1 + n2;
  if (new_length == 0) {
    clear();
    return nullptr;
  }
  const size_type tail = length - pos - n1;
  if (new_length > capacity() || shared()) {
    Rep* fresh = allocate(new_length > capacity() ? grown(new_length) : capacity());
    if (rep_) {
      std::copy_n(rep_->chars(), pos, fresh->chars());
      std::copy_n(rep_->chars() + pos + n1, tail, fresh->chars() + pos + n2);
    }
    release(rep_);
    rep_ = fresh;
  } else {
    CharT* chars = rep_->chars();
    std::memmove(chars + pos + n2, chars + pos + n1, tail * sizeof(CharT));
  }
  rep_->set_length(new_length);
  return rep_->chars() + pos;
}

template <class CharT>
BasicQzString<CharT>::BasicQzString(const CharT* s, size_type n) {
  if (!s || n == 0) return;
  if (n > kMaxSize) throw qz_logic_error("string too long");
  rep_ = allocate(n);
  std::copy_n(s, n, rep_->chars());
  rep_->set_length(n);
}

template <class CharT>
BasicQzString<CharT>::BasicQzString(size_type count, CharT c) {
  if (count == 0) return;
  if (count > kMaxSize) throw qz_logic_error("string too long");
  rep_ = allocate(count);
  std::fill_n(rep_->chars(), count, c);
  rep_->set_length(count);
}

template <class CharT>
BasicQzString<CharT>::BasicQzString(const BasicQzString& other) noexcept : rep_(other.rep_) {
  if (rep_) rep_->refs.fetch_add(1, std::memory_order_relaxed);
}

template <class CharT>
BasicQzString<CharT>::~BasicQzString() {
  release(rep_);
}

template <class CharT>
BasicQzString<CharT>& BasicQzString<CharT>::operator=(const BasicQzString& other) noexcept {
  if (other.rep_) other.rep_->refs.fetch_add(1, std::memory_order_relaxed);
  release(rep_);
  rep_ = other.rep_;
  return *this;
}

template <class CharT>
BasicQzString<CharT>& BasicQzString<CharT>::operator=(BasicQzString&& other) noexcept {
  if (this != &other) {
    release(rep_);
    rep_ = other.rep_;
    other.rep_ = nullptr;
  }
  return *this;
}

template <class CharT>
void BasicQzString<CharT>::swap(BasicQzString& other) noexcept {
  std::swap(rep_, other.rep_);
}

template <class CharT>
auto BasicQzString<CharT>::length_of(const CharT* s) -> size_type {
  if (!s) return 0;
  const CharT* end = s;
  while (*end) ++end;
  return static_cast<size_type>(end - s);
}

template <class CharT>
const CharT* BasicQzString<CharT>::data() const noexcept {
  return rep_ ? rep_->chars() : kEmpty<CharT>;
}

template <class CharT>
const CharT* BasicQzString<CharT>::c_str() const {
  if (size() == 0) return kEmpty<CharT>;
  // Only a full array lacks the terminator; see set_length.
  if (rep_->length == rep_->capacity) reallocate(rep_->length + 1);
  return rep_->chars();
}

template <class CharT>
CharT* BasicQzString<CharT>::mutable_data() {
  if (shared()) reallocate(rep_->capacity);
  return rep_ ? rep_->chars() : nullptr;
}

template <class CharT>
CharT& BasicQzString<CharT>::index(size_type i) {
  if (size() == 0) throw qz_out_of_range("index into an empty string");
  return mutable_data()[i];
}

template <class CharT>
CharT& BasicQzString<CharT>::at(size_type i) {
  if (i >= size()) throw qz_out_of_range("string index out of range");
  return mutable_data()[i];
}

template <class CharT>
const CharT& BasicQzString<CharT>::at(size_type i) const {
  if (i >= size()) throw qz_out_of_range("string index out of range");
  return data()[i];
}

template <class CharT>
void BasicQzString<CharT>::clear() {
  if (shared()) {
    release(rep_);
    rep_ = nullptr;
  } else if (rep_) {
    rep_->set_length(0);
  }
}

template <class CharT>
void BasicQzString<CharT>::reserve(size_type n) {
  if (n > capacity()) reallocate(n);
}

template <class CharT>
void BasicQzString<CharT>::resize(size_type n, CharT c) {
  const size_type length = size();
  if (n < length) {
    replace(n, npos, nullptr, 0);
  } else if (n > length) {
    append(n - length, c);
  }
}

template <class CharT>
void BasicQzString<CharT>::replace(size_type pos, size_type n1, const CharT* s, size_type n2) {
  if (!s) n2 = 0;
  const CharT* chars = data();
  std::less<const CharT*> before;
  if (n2 && !before(s, chars) && before(s, chars + size())) {
    // The source lies in our own array, which open_gap may move or free.
    const BasicQzString copy(s, n2);
    replace(pos, n1, copy.data(), n2);
    return;
  }
  CharT* gap = open_gap(pos, n1, n2);
  if (n2) std::copy_n(s, n2, gap);
}

template <class CharT>
void BasicQzString<CharT>::replace(size_type pos, size_type n1, size_type count, CharT c) {
  CharT* gap = open_gap(pos, n1, count);
  if (count) std::fill_n(gap, count, c);
}

template <class CharT>
auto BasicQzString<CharT>::find(const CharT* s, size_type pos, size_type n) const -> size_type {
  const size_type length = size();
  if (pos > length) return npos;
  if (n == 0) return pos;
  if (n > length - pos) return npos;
  const CharT* chars = data();
  const CharT* hit = std::search(chars + pos, chars + length, s, s + n);
  return hit == chars + length ? npos : static_cast<size_type>(hit - chars);
}

template <class CharT>
auto BasicQzString<CharT>::find(CharT c, size_type pos) const -> size_type {
  const size_type length = size();
  if (pos >= length) return npos;
  const CharT* chars = data();
  const CharT* hit = std::find(chars + pos, chars + length, c);
  return hit == chars + length ? npos : static_cast<size_type>(hit - chars);
}

template <class CharT>
auto BasicQzString<CharT>::rfind(const CharT* s, size_type pos, size_type n) const -> size_type {
  const size_type length = size();
  if (n > length) return npos;
  const CharT* chars = data();
  for (size_type i = std::min(pos, length - n);; --i) {
    if (std::equal(s, s + n, chars + i)) return i;
    if (i == 0) return npos;
  }
}

template <class CharT>
auto BasicQzString<CharT>::rfind(CharT c, size_type pos) const -> size_type {
  const size_type length = size();
  if (length == 0) return npos;
  const CharT* chars = data();
  for (size_type i = std::min(pos, length - 1);; --i) {
    if (chars[i] == c) return i;
    if (i == 0) return npos;
  }
}

template <class CharT>
BasicQzString<CharT> BasicQzString<CharT>::substr(size_type pos, size_type n) const {
  if (pos > size()) throw qz_out_of_range("substring position out of range");
  return BasicQzString(data() + pos, std::min(n, size() - pos));
}

// strncmp over the shorter length; when that ties, the shorter string is less.
template <class CharT>
int BasicQzString<CharT>::compare(const CharT* s, size_type n) const {
  const size_type length = size();
  const size_type common = std::min(length, n);
  if (int order = common ? compare_units(data(), s, common) : 0) return order;
  return length < n ? -1 : length > n ? 1 : 0;
}

template class BasicQzString<char>;
template class BasicQzString<unsigned short>;

}  // namespace varnice::internal
