#include "varnice/encoding/actors/unicode_lib_allocator.h"

#include <new>

#include "varnice/widec/qz_exception.h"

namespace {

// The header holds the allocator pointer; its size keeps the object after it
// aligned like operator new's own memory.
constexpr std::size_t kHeader = alignof(std::max_align_t);

constexpr std::size_t RoundUp(std::size_t n) { return (n + kHeader - 1) / kHeader * kHeader; }

void* Place(void* block, UnicodeLibAllocator* allocator) {
  *static_cast<UnicodeLibAllocator**>(block) = allocator;
  return static_cast<char*>(block) + kHeader;
}

void* BlockOf(void* object) { return static_cast<char*>(object) - kHeader; }

}  // namespace

UnicodeLibPlaceable::~UnicodeLibPlaceable() = default;

void* UnicodeLibPlaceable::operator new(std::size_t size, UnicodeLibAllocator& allocator) {
  const std::size_t total = RoundUp(kHeader + size);
  if (total > 0xFFFFFFFFu) throw qz_sw_out_of_memory();
  void* block = allocator.Allocate(static_cast<unsigned int>(total));
  if (block == nullptr) throw qz_sw_out_of_memory();
  return Place(block, &allocator);
}

void* UnicodeLibPlaceable::operator new(std::size_t size) {
  char* block = new (std::nothrow) char[RoundUp(kHeader + size)];
  if (block == nullptr) throw qz_sw_out_of_memory();
  return Place(block, nullptr);
}

void UnicodeLibPlaceable::operator delete(void* p) noexcept {
  if (p == nullptr) return;
  void* block = BlockOf(p);
  if (UnicodeLibAllocator* allocator = *static_cast<UnicodeLibAllocator**>(block)) {
    allocator->Free(block);
  } else {
    delete[] static_cast<char*>(block);
  }
}

void UnicodeLibPlaceable::operator delete(void* p, UnicodeLibAllocator&) noexcept {
  operator delete(p);
}

UnicodeLibAllocator* UnicodeLibPlaceable::AllocatorOf(const void* object) {
  return *reinterpret_cast<UnicodeLibAllocator* const*>(static_cast<const char*>(object) - kHeader);
}
