#include "varnice/tables/gap_table.h"

template <class K, class V>
GapTable<K, V>::GapTable(Table<K, long> const* gaps, Table<K, V> const* values)
    : gaps_(gaps), values_(values) {}

template <class K, class V>
bool GapTable<K, V>::LookupUnsignedLong(K key, unsigned long& value) const {
  V v;
  if (!Lookup(key, v)) return false;
  value = v;
  return true;
}

template <class K, class V>
GapTable<K, V>::~GapTable() = default;

template <class K, class V>
bool GapTable<K, V>::Lookup(K key, V& value) const {
  long delta;
  return gaps_->Lookup(key, delta) && values_->Lookup(static_cast<K>(key + delta), value);
}

template <class K, class V>
V GapTable<K, V>::LookupWithDefault(K key) const {
  long delta;
  if (!gaps_->Lookup(key, delta)) return values_->GetMissingValue();
  return values_->LookupWithDefault(static_cast<K>(key + delta));
}

template <class K, class V>
K GapTable<K, V>::SmallestIndex() const {
  return gaps_->SmallestIndex();
}

template <class K, class V>
K GapTable<K, V>::LargestIndex() const {
  return gaps_->LargestIndex();
}

template <class K, class V>
V GapTable<K, V>::GetMissingValue() const {
  return values_->GetMissingValue();
}

template class GapTable<unsigned short, unsigned long>;
