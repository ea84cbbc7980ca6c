// The searches behind every lookup, shared by the free lookup functions and
// the table classes. Inline templates so that each record shape gets a tight
// loop of its own; they allocate nothing and never throw.
#ifndef VARNICE_TABLES_LOOKUP_SEARCH_H_
#define VARNICE_TABLES_LOOKUP_SEARCH_H_

namespace varnice::internal {

// Keys and record fields are all unsigned, so comparing them widened to
// unsigned long is exact whatever their widths (a 16-bit key against a 32-bit
// last is zero-extended).
template <class T>
constexpr unsigned long Wide(T v) {
  return static_cast<unsigned long>(v);
}

// Index of the last entry whose `KeyOf` is not above key, or 0 when none is.
// Narrows on the key field alone; count must be at least 1.
template <auto KeyOf, class Entry>
inline long Narrow(Entry const* entries, long count, unsigned long key) {
  long lo = 0;
  long hi = count;
  while (lo < hi - 1) {
    long mid = (lo + hi) / 2;
    if (key < Wide(entries[mid].*KeyOf)) {
      hi = mid;
    } else {
      lo = mid;
    }
  }
  return lo;
}

// The chunk record whose run first..last holds key, or null.
template <class Entry>
inline Entry const* FindChunk(Entry const* entries, long count, unsigned long key) {
  if (count < 1) return nullptr;
  Entry const* e = entries + Narrow<&Entry::first>(entries, count, key);
  return (Wide(e->first) <= key && key <= Wide(e->last)) ? e : nullptr;
}

// The sparse record whose key equals key, or null.
template <class Entry>
inline Entry const* FindSparse(Entry const* entries, long count, unsigned long key) {
  if (count < 1) return nullptr;
  Entry const* e = entries + Narrow<&Entry::key>(entries, count, key);
  return Wide(e->key) == key ? e : nullptr;
}

// The slot of key in a range table (values[key - base]), or null outside it.
template <class Stored>
inline Stored const* FindInRange(unsigned short base, long count, Stored const* values,
                                 unsigned short key) {
  long i = static_cast<long>(key) - static_cast<long>(base);
  return (i < 0 || i >= count) ? nullptr : values + i;
}

// The slot of key in a table of 256 planes, or null when its plane is absent.
template <class Stored>
inline Stored const* FindInPlanes(Stored const* const* planes, unsigned long key) {
  Stored const* plane = planes[(key >> 8) & 0xFF];
  return plane == nullptr ? nullptr : plane + (key & 0xFF);
}

// Writes *slot to out and reports true unless the slot is absent or holds the
// missing value (compared widened, so a missing value the slot cannot hold
// never matches).
template <class Stored, class Missing, class Out>
inline bool TakeUnlessMissing(Stored const* slot, Missing missing, Out& out) {
  if (slot == nullptr || Wide(*slot) == Wide(missing)) return false;
  out = static_cast<Out>(*slot);
  return true;
}

}  // namespace varnice::internal

#endif  // VARNICE_TABLES_LOOKUP_SEARCH_H_
