#include "varnice/tables/plane_table.h"

#include "varnice/tables/lookup_search.h"

using varnice::internal::FindInPlanes;
using varnice::internal::TakeUnlessMissing;
using varnice::internal::Wide;

template <class K, class V>
PlaneTable<K, V>::PlaneTable(V missing, StoredValue const* const* planes)
    : missing_(missing), planes_(planes) {}

template <class K, class V>
bool PlaneTable<K, V>::LookupUnsignedLong(K key, unsigned long& value) const {
  return TakeUnlessMissing(FindInPlanes(planes_, key), missing_, value);
}

template <class K, class V>
PlaneTable<K, V>::~PlaneTable() = default;

template <class K, class V>
bool PlaneTable<K, V>::Lookup(K key, V& value) const {
  return TakeUnlessMissing(FindInPlanes(planes_, key), missing_, value);
}

template <class K, class V>
V PlaneTable<K, V>::LookupWithDefault(K key) const {
  V value;
  return Lookup(key, value) ? value : missing_;
}

template <class K, class V>
K PlaneTable<K, V>::SmallestIndex() const {
  for (int p = 0; p < 256; ++p) {
    StoredValue const* plane = planes_[p];
    if (plane == nullptr) continue;
    for (int q = 0; q < 256; ++q) {
      if (Wide(plane[q]) != Wide(missing_)) return static_cast<K>(p * 256 + q);
    }
    return static_cast<K>(p);
  }
  return 0;
}

template <class K, class V>
K PlaneTable<K, V>::LargestIndex() const {
  for (int p = 255; p >= 0; --p) {
    StoredValue const* plane = planes_[p];
    if (plane == nullptr) continue;
    for (int q = 255; q >= 0; --q) {
      if (Wide(plane[q]) != Wide(missing_)) return static_cast<K>(p * 256 + q);
    }
    return static_cast<K>(p);
  }
  return 0;
}

template <class K, class V>
V PlaneTable<K, V>::GetMissingValue() const {
  return missing_;
}

template class PlaneTable<unsigned short, unsigned long>;
