#include "varnice/encoding/linear_allocator.h"

#include <cstdio>
#include <cstdlib>

#include "varnice/encoding/arena_placement.h"
#include "varnice/stream/char_sink.h"
#include "varnice/widec/qz_exception.h"

LinearAllocator::LinearAllocator(unsigned int size, const char* file, int line)
    : block_(std::malloc(size == 0 ? 1 : size)), file_(file), line_(line) {
  if (block_ == nullptr) throw qz_sw_out_of_memory();
  start_ = next_ = static_cast<char*>(block_);
  end_ = start_ + size;
}

LinearAllocator::~LinearAllocator() { std::free(block_); }

void* LinearAllocator::Allocate(unsigned int size) {
  bool fromHeap;
  void* p = varnice::internal::PlaceInArena(next_, end_, size, fromHeap);
  if (fromHeap) ++heapRequests_;
  return p;
}

void LinearAllocator::Free(void* p) { varnice::internal::FreeFromArena(p, start_, end_); }

void LinearAllocator::GenerateReport(CharSink& sink) const {
  char line[320];
  const int n = std::snprintf(line, sizeof line,
                              "LinearAllocator(%s:%d): %u of %u bytes used, %u request%s "
                              "served from the heap\n",
                              file_ != nullptr ? file_ : "?", line_, BytesUsed(), BytesTotal(),
                              heapRequests_, heapRequests_ == 1 ? "" : "s");
  if (n > 0) sink.Put(line, line + (n < static_cast<int>(sizeof line) ? n : sizeof line - 1));
}
