// CallArena: a bump arena with its storage inside the object, for a pipeline
// that lives for one C call. It places objects exactly as LinearAllocator
// does (requests rounded to 4, the heap when full, Free a no-op inside the
// storage), but on the caller's stack, so a call costs no malloc for it.
#ifndef VARNICE_CAPI_CALL_ARENA_H_
#define VARNICE_CAPI_CALL_ARENA_H_

#include <cstddef>
#include <new>

#include "varnice/encoding/actors/unicode_lib_allocator.h"

namespace varnice::internal {

template <unsigned int kSize>
class CallArena final : public UnicodeLibAllocator {
 public:
  CallArena() = default;
  CallArena(const CallArena&) = delete;
  CallArena& operator=(const CallArena&) = delete;

  void* Allocate(unsigned int size) override {
    const unsigned long rounded = (static_cast<unsigned long>(size) + 3) & ~3ul;
    if (rounded <= kSize - used_) {
      void* p = storage_ + used_;
      used_ += static_cast<unsigned int>(rounded);
      return p;
    }
    return new (std::nothrow) char[rounded == 0 ? 1 : rounded];
  }

  void Free(void* p) override {
    if (p != nullptr && !Owns(p)) delete[] static_cast<char*>(p);
  }

  unsigned int BytesUsed() const { return used_; }

 private:
  bool Owns(const void* p) const {
    auto* q = static_cast<const unsigned char*>(p);
    return q >= storage_ && q < storage_ + kSize;
  }

  // Left uninitialised: only what is placed is touched.
  alignas(std::max_align_t) unsigned char storage_[kSize];
  unsigned int used_ = 0;
};

}  // namespace varnice::internal

#endif  // VARNICE_CAPI_CALL_ARENA_H_
