#include "varnice/encoding/linear_allocator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

#include "varnice/encoding/actors/unicode_lib_actor.h"

namespace {

bool Inside(const LinearAllocator& arena, const void* p, const void* first) {
  const auto* c = static_cast<const char*>(p);
  const auto* start = static_cast<const char*>(first);
  return c >= start && c < start + arena.BytesTotal();
}

TEST(LinearAllocator, RoundsToFourAndFallsBackOnTheHeap) {
  LinearAllocator arena(16, __FILE__, __LINE__);
  void* first = arena.Allocate(3);
  void* second = arena.Allocate(3);
  void* third = arena.Allocate(3);
  void* fourth = arena.Allocate(3);
  EXPECT_EQ(static_cast<char*>(second) - static_cast<char*>(first), 4);
  EXPECT_EQ(static_cast<char*>(fourth) - static_cast<char*>(first), 12);
  EXPECT_EQ(arena.BytesUsed(), 16u);
  void* fifth = arena.Allocate(3);
  ASSERT_NE(fifth, nullptr);
  EXPECT_FALSE(Inside(arena, fifth, first));
  for (void* p : {first, second, third, fourth, fifth}) arena.Free(p);  // heap memory really freed (ASan/valgrind)
  arena.Free(nullptr);
}

struct Probe : UnicodeLibActor {
  explicit Probe(bool fail) : UnicodeLibActor(static_cast<UnicodeLibBehavior*>(nullptr)) {
    if (fail) throw std::runtime_error("constructor failed");
  }
  char payload[5];
};

TEST(UnicodeLibPlaceable, PlacedObjectsRememberTheirAllocatorAndStayAligned) {
  LinearAllocator arena(256, __FILE__, __LINE__);
  Probe* a = new (arena) Probe(false);
  Probe* b = new (arena) Probe(false);
  EXPECT_EQ(UnicodeLibPlaceable::AllocatorOf(a), &arena);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(a) % alignof(std::max_align_t), 0u);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(b) % alignof(std::max_align_t), 0u);
  const unsigned int used = arena.BytesUsed();
  delete b;
  delete a;
  EXPECT_EQ(arena.BytesUsed(), used);  // freeing inside the arena is a no-op

  Probe* heap = new Probe(false);
  EXPECT_EQ(UnicodeLibPlaceable::AllocatorOf(heap), nullptr);
  delete heap;
}

TEST(UnicodeLibPlaceable, ThrowingConstructorReturnsTheMemory) {
  LinearAllocator tiny(0, __FILE__, __LINE__);  // every request goes to the heap
  EXPECT_THROW(new (tiny) Probe(true), std::runtime_error);
  EXPECT_THROW(new Probe(true), std::runtime_error);
}

}  // namespace
