// NewArray: array allocation that reports exhausted memory the library's way,
// as qz_sw_out_of_memory.
#ifndef VARNICE_TABLES_NEW_ARRAY_H_
#define VARNICE_TABLES_NEW_ARRAY_H_

#include <cstddef>
#include <new>

#include "varnice/widec/qz_exception.h"

namespace varnice::internal {

// count default-initialised elements; the caller owns them (delete[]).
template <class T>
T* NewArray(std::size_t count) {
  T* array = new (std::nothrow) T[count];
  if (array == nullptr) throw qz_sw_out_of_memory();
  return array;
}

}  // namespace varnice::internal

#endif  // VARNICE_TABLES_NEW_ARRAY_H_
