// The text a behaviour inserts at a conversion problem, held by a converting
// source until it has been delivered. Internal to the library.
#ifndef VARNICE_STREAM_CONVERTING_INSERTED_TEXT_H_
#define VARNICE_STREAM_CONVERTING_INSERTED_TEXT_H_

#include <cstring>
#include <new>

#include "varnice/widec/qz_exception.h"

namespace varnice::internal {

template <class T>
class InsertedText {
 public:
  InsertedText() = default;
  InsertedText(const InsertedText&) = delete;
  InsertedText& operator=(const InsertedText&) = delete;
  ~InsertedText() { delete[] data_; }

  // Replaces the text with a copy of [begin, end); a null end means up to the
  // terminating 0. The copy is made first, so the new text may point into the
  // old one.
  void Assign(const T* begin, const T* end) {
    if (end == nullptr) {
      end = begin;
      while (*end != 0) ++end;
    }
    const std::size_t n = static_cast<std::size_t>(end - begin);
    T* copy = nullptr;
    if (n != 0) {
      copy = new (std::nothrow) T[n];
      if (copy == nullptr) throw qz_sw_out_of_memory();
      std::memcpy(copy, begin, n * sizeof(T));
    }
    delete[] data_;
    data_ = copy;
    position_ = copy;
    end_ = copy != nullptr ? copy + n : nullptr;
  }

  void Clear() {
    delete[] data_;
    data_ = nullptr;
    position_ = end_ = nullptr;
  }

  bool Exists() const { return data_ != nullptr; }
  const T* Position() const { return position_; }
  const T* End() const { return end_; }
  void ConsumeTo(const T* p) { position_ = p; }

  // Copies as much as fits to out; frees the text and returns true once all
  // of it has been copied.
  bool CopyTo(T*& out, const T* limit) {
    std::size_t n = static_cast<std::size_t>(end_ - position_);
    const std::size_t room = static_cast<std::size_t>(limit - out);
    if (n > room) n = room;
    std::memcpy(out, position_, n * sizeof(T));
    out += n;
    position_ += n;
    if (position_ != end_) return false;
    Clear();
    return true;
  }

 private:
  T* data_ = nullptr;
  const T* position_ = nullptr;
  const T* end_ = nullptr;
};

}  // namespace varnice::internal

#endif  // VARNICE_STREAM_CONVERTING_INSERTED_TEXT_H_
