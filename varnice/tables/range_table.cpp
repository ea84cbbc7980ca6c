#include "varnice/tables/range_table.h"

#include "varnice/tables/lookup_search.h"

using varnice::internal::FindInRange;
using varnice::internal::TakeUnlessMissing;
using varnice::internal::Wide;

template <class K, class V>
RangeTable<K, V>::RangeTable(V missing, K base, long count, StoredValue const* values)
    : missing_(missing),
      base_(base),
      count_(static_cast<std::int32_t>(count)),
      values_(values) {}

template <class K, class V>
bool RangeTable<K, V>::LookupUnsignedLong(K key, unsigned long& value) const {
  return TakeUnlessMissing(FindInRange(base_, count_, values_, key), missing_, value);
}

template <class K, class V>
RangeTable<K, V>::~RangeTable() = default;

template <class K, class V>
bool RangeTable<K, V>::Lookup(K key, V& value) const {
  return TakeUnlessMissing(FindInRange(base_, count_, values_, key), missing_, value);
}

template <class K, class V>
V RangeTable<K, V>::LookupWithDefault(K key) const {
  StoredValue const* slot = FindInRange(base_, count_, values_, key);
  return slot == nullptr ? missing_ : static_cast<V>(*slot);
}

template <class K, class V>
K RangeTable<K, V>::SmallestIndex() const {
  for (std::int32_t i = 0; i < count_; ++i) {
    if (Wide(values_[i]) != Wide(missing_)) return static_cast<K>(base_ + i);
  }
  return 0;
}

template <class K, class V>
K RangeTable<K, V>::LargestIndex() const {
  for (std::int32_t i = count_ - 1; i >= 0; --i) {
    if (Wide(values_[i]) != Wide(missing_)) return static_cast<K>(base_ + i);
  }
  return 0;
}

template <class K, class V>
V RangeTable<K, V>::GetMissingValue() const {
  return missing_;
}

template class RangeTable<unsigned short, unsigned long>;
