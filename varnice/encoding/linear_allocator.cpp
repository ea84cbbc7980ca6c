#include "varnice/encoding/linear_allocator.h"

#include <cstdio>
#include <cstdlib>
#include <new>

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
  const unsigned long rounded = (static_cast<unsigned long>(size) + 3) & ~3ul;
  if (rounded <= static_cast<unsigned long>(end_ - next_)) {
    void* p = next_;
    next_ += rounded;
    return p;
  }
  ++heapRequests_;
  return new (std::nothrow) char[rounded == 0 ? 1 : rounded];
}

void LinearAllocator::Free(void* p) {
  if (p != nullptr && !Owns(p)) delete[] static_cast<char*>(p);
}

void LinearAllocator::GenerateReport(CharSink& sink) const {
  char line[320];
  const int n = std::snprintf(line, sizeof line,
                              "LinearAllocator(%s:%d): %u of %u bytes used, %u request%s "
                              "served from the heap\n",
                              file_ != nullptr ? file_ : "?", line_, BytesUsed(), BytesTotal(),
                              heapRequests_, heapRequests_ == 1 ? "" : "s");
  if (n > 0) sink.Put(line, line + (n < static_cast<int>(sizeof line) ? n : sizeof line - 1));
}
