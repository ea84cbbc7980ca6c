// qz_vector<T>: a growable array. It grows as the strings do, to the needed
// size times 1.6180339, and throws qz_sw_out_of_memory when that fails.
// Elements must move without throwing, so growing never loses any.
#ifndef VARNICE_WIDEC_QZ_VECTOR_H_
#define VARNICE_WIDEC_QZ_VECTOR_H_

#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "varnice/widec/qz_exception.h"

template <class T>
class qz_vector {
  static_assert(std::is_nothrow_move_constructible_v<T>);

 public:
  using size_type = unsigned int;

  qz_vector() noexcept = default;
  qz_vector(qz_vector&& other) noexcept
      : items_(std::exchange(other.items_, nullptr)),
        size_(std::exchange(other.size_, 0)),
        capacity_(std::exchange(other.capacity_, 0)) {}
  qz_vector& operator=(qz_vector&& other) noexcept {
    qz_vector(std::move(other)).swap(*this);
    return *this;
  }
  qz_vector(const qz_vector&) = delete;
  qz_vector& operator=(const qz_vector&) = delete;
  ~qz_vector() {
    clear();
    ::operator delete(items_);
  }
  void swap(qz_vector& other) noexcept {
    std::swap(items_, other.items_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
  }

  size_type size() const noexcept { return size_; }
  size_type capacity() const noexcept { return capacity_; }
  bool empty() const noexcept { return size_ == 0; }
  T& operator[](size_type i) noexcept { return items_[i]; }
  const T& operator[](size_type i) const noexcept { return items_[i]; }
  T* begin() noexcept { return items_; }
  T* end() noexcept { return items_ + size_; }
  const T* begin() const noexcept { return items_; }
  const T* end() const noexcept { return items_ + size_; }

  void push_back(const T& item) { emplace_back(item); }
  void push_back(T&& item) { emplace_back(std::move(item)); }
  template <class... Args>
  T& emplace_back(Args&&... args) {
    if (size_ < capacity_) {
      T* item = ::new (static_cast<void*>(items_ + size_)) T(std::forward<Args>(args)...);
      ++size_;
      return *item;
    }
    return grow_and_emplace(std::forward<Args>(args)...);
  }
  void clear() noexcept {
    std::destroy_n(items_, size_);
    size_ = 0;
  }

 private:
  template <class... Args>
  T& grow_and_emplace(Args&&... args) {
    const double wanted = (size_ + 1.0) * 1.6180339;
    const size_type capacity = wanted >= 0xFFFFFFFF ? 0xFFFFFFFF : static_cast<size_type>(wanted);
    if (capacity <= size_) throw qz_sw_out_of_memory();
    T* fresh = static_cast<T*>(::operator new (sizeof(T) * std::size_t{capacity}, std::nothrow));
    if (!fresh) throw qz_sw_out_of_memory();
    T* item;
    try {
      // Built before the old elements move: args may refer to one of them.
      item = ::new (static_cast<void*>(fresh + size_)) T(std::forward<Args>(args)...);
    } catch (...) {
      ::operator delete(fresh);
      throw;
    }
    std::uninitialized_move(items_, items_ + size_, fresh);
    std::destroy_n(items_, size_);
    ::operator delete(items_);
    items_ = fresh;
    capacity_ = capacity;
    ++size_;
    return *item;
  }

  T* items_ = nullptr;
  size_type size_ = 0;
  size_type capacity_ = 0;
};

#endif  // VARNICE_WIDEC_QZ_VECTOR_H_
