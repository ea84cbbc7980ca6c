// LinearAllocator: an arena for one conversion pipeline. Allocation bumps a
// pointer through one malloc'd block; freeing inside the block does nothing,
// and the block goes away with the allocator. When the block is full the arena
// falls back on the heap instead of failing.
#ifndef VARNICE_ENCODING_LINEAR_ALLOCATOR_H_
#define VARNICE_ENCODING_LINEAR_ALLOCATOR_H_

#include "varnice/encoding/actors/unicode_lib_allocator.h"
#include "varnice/varnice_export.h"

class CharSink;

class VARNICE_API LinearAllocator : public UnicodeLibAllocator {
 public:
  // `file` and `line` name the creator, for diagnostics only. Throws
  // qz_sw_out_of_memory if the block cannot be had.
  LinearAllocator(unsigned int size, const char* file, int line);
  LinearAllocator(const LinearAllocator&) = delete;
  LinearAllocator& operator=(const LinearAllocator&) = delete;
  virtual ~LinearAllocator();

  // Rounds `size` up to a multiple of 4; serves it from the block when it fits,
  // else from the heap.
  void* Allocate(unsigned int size) override;
  // Nothing for memory inside the block; heap memory is returned.
  void Free(void* p) override;

  // Writes a one-line account of the arena's use.
  void GenerateReport(CharSink& sink) const;

  unsigned int BytesUsed() const { return static_cast<unsigned int>(next_ - start_); }
  unsigned int BytesTotal() const { return static_cast<unsigned int>(end_ - start_); }

 private:
  void* block_;
  char* start_;
  char* next_;
  char* end_;
  // Not counted as the arena's own state; kept for the report.
  const char* file_;
  int line_;
  unsigned int heapRequests_ = 0;
};

#endif  // VARNICE_ENCODING_LINEAR_ALLOCATOR_H_
