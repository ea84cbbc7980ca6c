// The placement rule shared by the library's arenas (LinearAllocator over a
// malloc'd block, CallArena over storage on a C call's stack): a request is
// rounded up to a multiple of 4 and bumped from the free part of the block;
// one that does not fit comes from the heap, so an arena never fails for
// lack of room. Internal to the library.
#ifndef VARNICE_ENCODING_ARENA_PLACEMENT_H_
#define VARNICE_ENCODING_ARENA_PLACEMENT_H_

#include <new>

namespace varnice::internal {

// Places `size` bytes from [next, end), advancing `next`, or on the heap
// (null only when the heap has none); `fromHeap` says which.
inline void* PlaceInArena(char*& next, const char* end, unsigned int size, bool& fromHeap) {
  const unsigned long rounded = (static_cast<unsigned long>(size) + 3) & ~3ul;
  fromHeap = rounded > static_cast<unsigned long>(end - next);
  if (!fromHeap) {
    void* p = next;
    next += rounded;
    return p;
  }
  return new (std::nothrow) char[rounded == 0 ? 1 : rounded];
}

// Returns what PlaceInArena took from the heap; memory inside [start, end)
// goes with the block.
inline void FreeFromArena(void* p, const void* start, const void* end) {
  if (p != nullptr && !(p >= start && p < end)) delete[] static_cast<char*>(p);
}

}  // namespace varnice::internal

#endif  // VARNICE_ENCODING_ARENA_PLACEMENT_H_
