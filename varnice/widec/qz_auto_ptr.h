// qz_auto_ptr<T>: sole owner of an object made with new; deletes it on
// destruction. Ownership moves, it is never copied.
#ifndef VARNICE_WIDEC_QZ_AUTO_PTR_H_
#define VARNICE_WIDEC_QZ_AUTO_PTR_H_

#include <utility>

template <class T>
class qz_auto_ptr {
 public:
  explicit qz_auto_ptr(T* object = nullptr) noexcept : object_(object) {}
  qz_auto_ptr(qz_auto_ptr&& other) noexcept : object_(other.release()) {}
  qz_auto_ptr& operator=(qz_auto_ptr&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  qz_auto_ptr(const qz_auto_ptr&) = delete;
  qz_auto_ptr& operator=(const qz_auto_ptr&) = delete;
  ~qz_auto_ptr() { delete object_; }

  T* get() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  T* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  T* release() noexcept { return std::exchange(object_, nullptr); }
  void reset(T* object = nullptr) noexcept {
    T* old = std::exchange(object_, object);
    if (old != object) delete old;
  }

 private:
  T* object_;
};

#endif  // VARNICE_WIDEC_QZ_AUTO_PTR_H_
