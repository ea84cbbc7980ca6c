#include "varnice/tables/delta_table.h"

#include "varnice/tables/stored_value.h"

template <class K, class V>
DeltaTable<K, V>::DeltaTable(V missing, Table<K, long> const* deltas)
    : missing_(missing), deltas_(deltas) {}

template <class K, class V>
bool DeltaTable<K, V>::LookupUnsignedLong(K key, unsigned long& value) const {
  V v;
  if (!Lookup(key, v)) return false;
  value = v;
  return true;
}

template <class K, class V>
DeltaTable<K, V>::~DeltaTable() = default;

template <class K, class V>
bool DeltaTable<K, V>::Lookup(K key, V& value) const {
  long delta;
  if (!deltas_->Lookup(key, delta)) return false;
  value = static_cast<V>(static_cast<varnice::internal::StoredT<V>>(key + delta));
  return true;
}

template <class K, class V>
V DeltaTable<K, V>::LookupWithDefault(K key) const {
  V value;
  return Lookup(key, value) ? value : missing_;
}

template <class K, class V>
K DeltaTable<K, V>::SmallestIndex() const {
  return deltas_->SmallestIndex();
}

template <class K, class V>
K DeltaTable<K, V>::LargestIndex() const {
  return deltas_->LargestIndex();
}

template <class K, class V>
V DeltaTable<K, V>::GetMissingValue() const {
  return missing_;
}

template class DeltaTable<unsigned short, unsigned long>;
