// qz_auto_array: an array pointer with an owns flag. Lets an object point at
// constant data it must not free, or at an array of its own that it frees on
// destruction; the state machines use it for copy on write.
#ifndef VARNICE_TABLES_QZ_AUTO_ARRAY_H_
#define VARNICE_TABLES_QZ_AUTO_ARRAY_H_

#include <utility>

template <class T>
class qz_auto_array {
 public:
  qz_auto_array() noexcept = default;
  explicit qz_auto_array(T* array, bool owns = true) noexcept : array_(array), owns_(owns) {}
  qz_auto_array(qz_auto_array const&) = delete;
  qz_auto_array& operator=(qz_auto_array const&) = delete;
  ~qz_auto_array() {
    if (owns_) delete[] array_;
  }

  T* get() const noexcept { return array_; }
  bool owns() const noexcept { return owns_; }
  // True while an array is held.
  explicit operator bool() const noexcept { return array_ != nullptr; }

  void swap(qz_auto_array& other) noexcept {
    std::swap(array_, other.array_);
    std::swap(owns_, other.owns_);
  }

 private:
  T* array_ = nullptr;
  bool owns_ = false;
};

#endif  // VARNICE_TABLES_QZ_AUTO_ARRAY_H_
