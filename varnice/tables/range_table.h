// RangeTable: a Table over a dense array of values for the keys base ..
// base + count - 1. Constant-time lookups.
#ifndef VARNICE_TABLES_RANGE_TABLE_H_
#define VARNICE_TABLES_RANGE_TABLE_H_

#include <cstdint>

#include "varnice/tables/stored_value.h"
#include "varnice/tables/table.h"
#include "varnice/varnice_export.h"

template <class K, class V>
class RangeTable : public virtual Table<K, V> {
 public:
  using StoredValue = varnice::internal::StoredT<V>;

  // values: count values for the keys from base on, not owned.
  RangeTable(V missing, K base, long count, StoredValue const* values);

  // SmallestIndex/LargestIndex: the first (last) key whose value is not
  // missing; 0 if there is none.
  VARNICE_TABLE_OVERRIDES(RangeTable);

 private:
  V missing_;
  K base_;
  std::int32_t count_;
  StoredValue const* values_;
};

extern template class VARNICE_API RangeTable<unsigned short, unsigned long>;

#endif  // VARNICE_TABLES_RANGE_TABLE_H_
