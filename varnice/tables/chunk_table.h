// ChunkTable: a Table over ChunkTableEntryUSL runs, each mapping first..last to
// one signed value. Binary search; the usual holder of delta runs.
#ifndef VARNICE_TABLES_CHUNK_TABLE_H_
#define VARNICE_TABLES_CHUNK_TABLE_H_

#include <cstdint>

#include "varnice/tables/lookup_records.h"
#include "varnice/tables/table.h"
#include "varnice/varnice_export.h"

template <class K, class V>
class ChunkTable : public virtual Table<K, V> {
 public:
  // entries: count runs sorted by first, not owned. A run's value is returned
  // as stored, even when it equals the missing value.
  ChunkTable(V missing, ChunkTableEntryUSL const* entries, long count);

  // SmallestIndex/LargestIndex: first of the first run and last of the last
  // run; 0 for an empty table.
  VARNICE_TABLE_OVERRIDES(ChunkTable);

 private:
  V missing_;
  ChunkTableEntryUSL const* entries_;
  std::int32_t count_;
};

extern template class VARNICE_API ChunkTable<unsigned short, long>;

#endif  // VARNICE_TABLES_CHUNK_TABLE_H_
