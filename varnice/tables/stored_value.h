// How a value type is held in stored tables. 32-bit values are kept in 32 bits
// even though long is wider here, so that the records and arrays of the
// constant data keep their fixed, compact layouts.
#ifndef VARNICE_TABLES_STORED_VALUE_H_
#define VARNICE_TABLES_STORED_VALUE_H_

#include <cstdint>

namespace varnice::internal {

template <class V>
struct Stored {
  using type = V;
};
template <>
struct Stored<unsigned long> {
  using type = std::uint32_t;
};
template <>
struct Stored<long> {
  using type = std::int32_t;
};

template <class V>
using StoredT = typename Stored<V>::type;

}  // namespace varnice::internal

#endif  // VARNICE_TABLES_STORED_VALUE_H_
