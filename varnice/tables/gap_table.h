// GapTable: a Table for a sparse key space. Runs of deltas (the gap table)
// move each key so that the empty stretches between runs close up; the moved
// key, taken mod 65536, is looked up in a dense value table.
#ifndef VARNICE_TABLES_GAP_TABLE_H_
#define VARNICE_TABLES_GAP_TABLE_H_

#include "varnice/tables/table.h"
#include "varnice/varnice_export.h"

template <class K, class V>
class GapTable : public virtual Table<K, V> {
 public:
  // gaps: the delta runs (a ChunkTable); values: the dense values (a
  // RangeTable). Neither is owned.
  GapTable(Table<K, long> const* gaps, Table<K, V> const* values);

  // LookupWithDefault: the value table's answer for the moved key; its missing
  // value when no gap run holds the key. SmallestIndex/LargestIndex: those of
  // the gap runs, keys of the input space. GetMissingValue: the value table's.
  VARNICE_TABLE_OVERRIDES(GapTable);

 private:
  Table<K, long> const* gaps_;
  Table<K, V> const* values_;
};

extern template class VARNICE_API GapTable<unsigned short, unsigned long>;

#endif  // VARNICE_TABLES_GAP_TABLE_H_
