// CallArena: a bump arena with its storage inside the object, for a pipeline
// that lives for one C call. It places objects by LinearAllocator's rule (the
// shared PlaceInArena: requests rounded to 4, the heap when full, Free a no-op
// inside the storage), but on the caller's stack, so a call costs no malloc.
#ifndef VARNICE_CAPI_CALL_ARENA_H_
#define VARNICE_CAPI_CALL_ARENA_H_

#include <cstddef>

#include "varnice/encoding/actors/unicode_lib_allocator.h"
#include "varnice/encoding/arena_placement.h"

namespace varnice::internal {

template <unsigned int kSize>
class CallArena final : public UnicodeLibAllocator {
 public:
  CallArena() = default;
  CallArena(const CallArena&) = delete;
  CallArena& operator=(const CallArena&) = delete;

  void* Allocate(unsigned int size) override {
    bool fromHeap;
    return PlaceInArena(next_, storage_ + kSize, size, fromHeap);
  }
  void Free(void* p) override { FreeFromArena(p, storage_, storage_ + kSize); }

  unsigned int BytesUsed() const { return static_cast<unsigned int>(next_ - storage_); }

 private:
  // Left uninitialised: only what is placed is touched.
  alignas(std::max_align_t) char storage_[kSize];
  char* next_ = storage_;
};

}  // namespace varnice::internal

#endif  // VARNICE_CAPI_CALL_ARENA_H_
