// qz_auto_array<T>: holds an array made with new[] and deletes it with delete[]
// when it owns it. The owns flag lets one type hold either an array of its own
// or constant data it merely points at.
#ifndef VARNICE_WIDEC_QZ_AUTO_ARRAY_H_
#define VARNICE_WIDEC_QZ_AUTO_ARRAY_H_

#include <cstddef>
#include <utility>

template <class T>
class qz_auto_array {
 public:
  explicit qz_auto_array(T* array = nullptr, bool owns = true) noexcept
      : array_(array), owns_(array != nullptr && owns) {}
  qz_auto_array(qz_auto_array&& other) noexcept
      : array_(std::exchange(other.array_, nullptr)), owns_(std::exchange(other.owns_, false)) {}
  qz_auto_array& operator=(qz_auto_array&& other) noexcept {
    if (this != &other) {
      const bool owns = other.owns_;
      reset(other.release(), owns);
    }
    return *this;
  }
  qz_auto_array(const qz_auto_array&) = delete;
  qz_auto_array& operator=(const qz_auto_array&) = delete;
  ~qz_auto_array() {
    if (owns_) delete[] array_;
  }

  T* get() const noexcept { return array_; }
  bool owns() const noexcept { return owns_; }
  T& operator[](std::size_t i) const noexcept { return array_[i]; }
  explicit operator bool() const noexcept { return array_ != nullptr; }

  // Gives up ownership; the caller deletes the array if it was owned.
  T* release() noexcept {
    owns_ = false;
    return std::exchange(array_, nullptr);
  }
  void reset(T* array = nullptr, bool owns = true) noexcept {
    if (owns_ && array_ != array) delete[] array_;
    array_ = array;
    owns_ = array != nullptr && owns;
  }

 private:
  T* array_;
  bool owns_;
};

#endif  // VARNICE_WIDEC_QZ_AUTO_ARRAY_H_
