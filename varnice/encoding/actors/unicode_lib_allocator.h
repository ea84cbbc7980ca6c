// UnicodeLibAllocator is where pipeline objects live; UnicodeLibPlaceable is
// the base of every object a factory places in one.
//
// Placing an object puts a small header in front of it that remembers the
// allocator, so the object can be destroyed with a plain `delete` whoever made
// it. The header is 16 bytes on 64-bit machines (the allocator pointer, padded)
// and every request is rounded to 16, so placed objects stay aligned for any
// type. An object created with an ordinary `new` gets a null header and its
// memory comes from, and returns to, the global array new/delete.
#ifndef VARNICE_ENCODING_ACTORS_UNICODE_LIB_ALLOCATOR_H_
#define VARNICE_ENCODING_ACTORS_UNICODE_LIB_ALLOCATOR_H_

#include <cstddef>

#include "varnice/varnice_export.h"

class VARNICE_API UnicodeLibAllocator {
 public:
  virtual void* Allocate(unsigned int size) = 0;
  virtual void Free(void* p) = 0;

 protected:
  ~UnicodeLibAllocator() = default;
};

class VARNICE_API UnicodeLibPlaceable {
 public:
  virtual ~UnicodeLibPlaceable();

  // `new (allocator) T(...)`: places the object with that allocator.
  static void* operator new(std::size_t size, UnicodeLibAllocator& allocator);
  // Plain `new T(...)`: heap memory with a null allocator header.
  static void* operator new(std::size_t size);
  // Returns the memory to whichever allocator the header names.
  static void operator delete(void* p) noexcept;
  // Called only when a placed object's constructor throws.
  static void operator delete(void* p, UnicodeLibAllocator& allocator) noexcept;

  // The allocator an object was placed with, or null for the heap.
  static UnicodeLibAllocator* AllocatorOf(const void* object);
};

#endif  // VARNICE_ENCODING_ACTORS_UNICODE_LIB_ALLOCATOR_H_
