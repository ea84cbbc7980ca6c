// PlaneTable: a Table over 256 planes of 256 values, indexed by the high and
// low byte of the key. Constant-time lookups; suited to dense, scattered data.
#ifndef VARNICE_TABLES_PLANE_TABLE_H_
#define VARNICE_TABLES_PLANE_TABLE_H_

#include "varnice/tables/stored_value.h"
#include "varnice/tables/table.h"
#include "varnice/varnice_export.h"

template <class K, class V>
class PlaneTable : public virtual Table<K, V> {
 public:
  using StoredValue = varnice::internal::StoredT<V>;

  // planes: 256 plane pointers, null for a plane whose values are all missing.
  // Not owned.
  PlaneTable(V missing, StoredValue const* const* planes);

  // SmallestIndex/LargestIndex scan to the first (last) present plane and
  // then within it. If that plane holds only missing values the result is the
  // plane number itself, not shifted; this long-standing answer is kept. 0 when
  // no plane exists.
  VARNICE_TABLE_OVERRIDES(PlaneTable);

 private:
  V missing_;
  StoredValue const* const* planes_;
};

extern template class VARNICE_API PlaneTable<unsigned short, unsigned long>;

#endif  // VARNICE_TABLES_PLANE_TABLE_H_
