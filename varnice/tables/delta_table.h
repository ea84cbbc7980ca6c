// DeltaTable: a Table whose values are the key plus a per-run difference kept
// in an inner table of deltas. Suits mappings that shift whole runs of keys
// (for example a block of code units onto a block of codes).
#ifndef VARNICE_TABLES_DELTA_TABLE_H_
#define VARNICE_TABLES_DELTA_TABLE_H_

#include "varnice/tables/table.h"
#include "varnice/varnice_export.h"

template <class K, class V>
class DeltaTable : public virtual Table<K, V> {
 public:
  // deltas: the runs of differences (a ChunkTable), not owned.
  DeltaTable(V missing, Table<K, long> const* deltas);

  // Lookup: key + delta, cut to 32 bits, when a run holds the key.
  // SmallestIndex/LargestIndex: those of the delta runs.
  VARNICE_TABLE_OVERRIDES(DeltaTable);

 private:
  V missing_;
  Table<K, long> const* deltas_;
};

extern template class VARNICE_API DeltaTable<unsigned short, unsigned long>;

#endif  // VARNICE_TABLES_DELTA_TABLE_H_
