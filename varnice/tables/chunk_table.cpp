#include "varnice/tables/chunk_table.h"

#include "varnice/tables/lookup_search.h"

using varnice::internal::FindChunk;

template <class K, class V>
ChunkTable<K, V>::ChunkTable(V missing, ChunkTableEntryUSL const* entries, long count)
    : missing_(missing), entries_(entries), count_(static_cast<std::int32_t>(count)) {}

template <class K, class V>
bool ChunkTable<K, V>::LookupUnsignedLong(K key, unsigned long& value) const {
  ChunkTableEntryUSL const* e = FindChunk(entries_, count_, key);
  if (e == nullptr) return false;
  value = static_cast<unsigned long>(static_cast<V>(e->value));
  return true;
}

template <class K, class V>
ChunkTable<K, V>::~ChunkTable() = default;

template <class K, class V>
bool ChunkTable<K, V>::Lookup(K key, V& value) const {
  ChunkTableEntryUSL const* e = FindChunk(entries_, count_, key);
  if (e == nullptr) return false;
  value = static_cast<V>(e->value);
  return true;
}

template <class K, class V>
V ChunkTable<K, V>::LookupWithDefault(K key) const {
  ChunkTableEntryUSL const* e = FindChunk(entries_, count_, key);
  return e == nullptr ? missing_ : static_cast<V>(e->value);
}

template <class K, class V>
K ChunkTable<K, V>::SmallestIndex() const {
  return count_ < 1 ? K(0) : static_cast<K>(entries_[0].first);
}

template <class K, class V>
K ChunkTable<K, V>::LargestIndex() const {
  return count_ < 1 ? K(0) : static_cast<K>(entries_[count_ - 1].last);
}

template <class K, class V>
V ChunkTable<K, V>::GetMissingValue() const {
  return missing_;
}

template class ChunkTable<unsigned short, long>;
